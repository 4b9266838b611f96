// SPDX-License-Identifier: MIT
#include "files/recovery.h"

#include "common/filecontent.h"
#include "files/filestate.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QUuid>

#include <algorithm>

namespace {

QString suffix()
{
    return QStringLiteral(".recovery");
}

QByteArray firstLine()
{
    return QByteArrayLiteral("kpshapes-recovery 1");
}

/** What stands in front of the text. */
struct Header
{
    QString path;
    QByteArray digest;
    QByteArray textDigest;
    qint64 bytes = -1;
};

QByteArray headerOf(RecoveryContent const& content)
{
    return firstLine() + "\npath: " + content.path.toUtf8().toPercentEncoding()
        + "\ndigest: " + content.digest + "\nbytes: " + QByteArray::number(content.text.size())
        + "\ntext-digest: " + digestOf(content.text) + "\n\n";
}

/** Reads on to the text; nothing if there is no header. */
std::optional<Header> readHeader(QIODevice& device)
{
    // Longer than any path.
    constexpr qint64 longestLine = 65536;
    constexpr int mostLines = 100;
    if (device.readLine(longestLine) != firstLine() + '\n')
        return std::nullopt;
    Header header;
    for (int i = 0; i < mostLines; ++i) {
        QByteArray const line = device.readLine(longestLine);
        if (!line.endsWith('\n'))
            return std::nullopt;
        if (line == "\n")
            return header;
        int const colon = line.indexOf(':');
        QByteArray const name = line.left(colon);
        QByteArray const value = line.mid(colon + 1).trimmed();
        if (name == "path")
            header.path = QString::fromUtf8(QByteArray::fromPercentEncoding(value));
        else if (name == "digest")
            header.digest = value;
        else if (name == "text-digest")
            header.textDigest = value;
        else if (name == "bytes")
            header.bytes = value.toLongLong();
    }
    return std::nullopt;
}

/** The lock of a recovery file if no running process has it. */
std::unique_ptr<QLockFile> lockOf(QString const& file)
{
    QString const name = file.left(file.size() - suffix().size()) + QStringLiteral(".lock");
    auto lock = std::make_unique<QLockFile>(name);
    // However old: it lasts as long as its process.
    lock->setStaleLockTime(0);
    return lock->tryLock() ? std::move(lock) : nullptr;
}

/** Removes the locks of processes that were killed before they had kept anything. */
void removeLeftLocks(QString const& folder)
{
    QString const lock = QStringLiteral(".lock");
    auto const locks = QDir(folder).entryInfoList({QLatin1Char('*') + lock}, QDir::Files);
    for (QFileInfo const& info : locks) {
        QString const path = info.filePath();
        QString const file = path.left(path.size() - lock.size()) + suffix();
        // To take it and to let it go removes it.
        if (!QFileInfo::exists(file))
            lockOf(file);
    }
}

std::optional<RecoverableDocument> recoverable(QFileInfo const& info)
{
    QString const file = info.filePath();
    if (!lockOf(file))
        return std::nullopt;
    QFile device(file);
    if (!device.open(QIODevice::ReadOnly))
        return std::nullopt;
    auto const header = readHeader(device);
    if (!header || header->bytes != device.size() - device.pos())
        return std::nullopt;
    return RecoverableDocument {file, header->path, info.lastModified()};
}

} // namespace

RecoveryFile::RecoveryFile(QString const& file, std::unique_ptr<QLockFile> lock)
    : m_file(file)
    , m_lock(std::move(lock))
{
}

RecoveryFile::~RecoveryFile()
{
    discard();
}

std::unique_ptr<RecoveryFile> RecoveryFile::create(QString const& folder, Diagnostics& diagnostics)
{
    QString const file =
        QDir(folder).filePath(QUuid::createUuid().toString(QUuid::WithoutBraces) + suffix());
    auto lock = QDir().mkpath(folder) ? lockOf(file) : nullptr;
    if (!lock) {
        diagnostics.error(folder, QStringLiteral("work cannot be kept there for recovery"));
        return nullptr;
    }
    return std::unique_ptr<RecoveryFile>(new RecoveryFile(file, std::move(lock)));
}

std::unique_ptr<RecoveryFile> RecoveryFile::adopt(QString const& file)
{
    auto lock = file.endsWith(suffix()) ? lockOf(file) : nullptr;
    if (!lock || !QFileInfo(file).isFile())
        return nullptr;
    return std::unique_ptr<RecoveryFile>(new RecoveryFile(file, std::move(lock)));
}

bool RecoveryFile::store(RecoveryContent const& content, Diagnostics& diagnostics) const
{
    auto const output = OutputFile::open(m_file, diagnostics);
    if (!output)
        return false;
    // What fails here, commit() reports.
    output->device().write(headerOf(content));
    output->device().write(content.text);
    return output->commit(diagnostics);
}

void RecoveryFile::discard() const
{
    QFile::remove(m_file);
}

std::vector<RecoverableDocument> listRecoverable(QString const& folder)
{
    removeLeftLocks(folder);
    std::vector<RecoverableDocument> documents;
    auto const files = QDir(folder).entryInfoList({QLatin1Char('*') + suffix()}, QDir::Files);
    for (QFileInfo const& info : files) {
        if (auto document = recoverable(info))
            documents.push_back(std::move(*document));
    }
    std::stable_sort(documents.begin(), documents.end(),
        [](auto const& left, auto const& right) { return left.time > right.time; });
    return documents;
}

std::optional<RecoveryContent> readRecovery(QString const& file, Diagnostics& diagnostics)
{
    QFile device;
    if (!openFile(device, file, diagnostics))
        return std::nullopt;
    auto const header = readHeader(device);
    if (!header) {
        diagnostics.error(file, QStringLiteral("is no recovery file"));
        return std::nullopt;
    }
    auto const text = contentOf(device, file, diagnostics);
    if (!text)
        return std::nullopt;
    if (text->size() != header->bytes || digestOf(*text) != header->textDigest) {
        diagnostics.error(file, QStringLiteral("is damaged"));
        return std::nullopt;
    }
    return RecoveryContent {header->path, header->digest, *text};
}

bool discardRecovery(QString const& file)
{
    auto const lock = file.endsWith(suffix()) ? lockOf(file) : nullptr;
    return lock && QFile::remove(file);
}

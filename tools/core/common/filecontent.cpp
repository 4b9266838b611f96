// SPDX-License-Identifier: MIT
#include "common/filecontent.h"

#include "boundedxml_p.h"
#include "common/opening.h"
#include "common/ownership.h"
#include "common/spool.h"
#include "common/unfinishedfile.h"
#include "filereplacement_p.h"
#include "savedfile_p.h"

#include <QFileInfo>
#include <QMutex>
#include <QSet>

#include <array>
#include <cerrno>
#include <optional>

#include <sys/stat.h>

namespace {

/**
 * Removes what ended processes have left in the folder of a file, once for each folder: many files
 * go to the same one.
 */
void removeStaleOnce(QString const& file)
{
    // Never destroyed: a file may still be written while the process exits.
    static auto* const mutex = new QMutex;
    static auto* const folders = new QSet<QString>;
    QString const folder = QFileInfo(file).absolutePath();
    {
        QMutexLocker const lock(mutex);
        if (folders->contains(folder))
            return;
        folders->insert(folder);
    }
    SavedFile::removeStale(file);
}

/** Whether links lead from one to another and to no end: a file would take the place of the first. */
bool hasEndlessLinks(QString const& file)
{
    struct stat status
    {
    };
    return stat(QFile::encodeName(file).constData(), &status) != 0 && errno == ELOOP;
}

} // namespace

QString reasonOf(QFileDevice const& device)
{
    return errno == 0 ? device.errorString() : qt_error_string(errno);
}

bool isNameExact(QString const& file, Diagnostics& diagnostics)
{
    if (QFile::decodeName(QFile::encodeName(file)) == file)
        return true;
    diagnostics.error(file, QStringLiteral("the name is not valid text"));
    return false;
}

bool openFile(QFile& device, QString const& file, Diagnostics& diagnostics)
{
    if (!isNameExact(file, diagnostics))
        return false;
    QString fault;
    if (Opening::forReading(device, file, fault))
        return true;
    diagnostics.error(file, fault);
    return false;
}

std::optional<QByteArray> contentOf(
    QIODevice& device, QString const& file, Diagnostics& diagnostics)
{
    BoundedXml::Error error;
    QByteArray const content = BoundedXml::read(device, error);
    if (error.isNull())
        return content;
    diagnostics.error(file, error.message);
    return std::nullopt;
}

bool copyAll(QIODevice& from, QIODevice& to)
{
    std::array<char, 65536> chunk;
    for (;;) {
        qint64 const size = from.read(chunk.data(), static_cast<qint64>(chunk.size()));
        if (size <= 0)
            return size == 0;
        if (to.write(chunk.data(), size) != size)
            return false;
    }
}

std::optional<QByteArray> readFile(QString const& file, Diagnostics& diagnostics)
{
    QFile device;
    if (!openFile(device, file, diagnostics))
        return std::nullopt;
    return contentOf(device, file, diagnostics);
}

/** What is written into the place of a file. It remembers the first failure. */
class OutputFile::Replacement : public QIODevice
{
public:
    explicit Replacement(QString const& file)
        : m_file(file)
    {
        removeStaleOnce(file);
        m_unfinished.emplace();
        errno = 0;
        if (m_file.begin()) {
            takeOverOwnership(m_file.handle(), QFile::encodeName(file));
            open(QIODevice::WriteOnly | QIODevice::Unbuffered);
        } else {
            m_fault = reasonOf(m_file);
        }
        if (!m_file.isNamed())
            m_unfinished.reset();
    }

    /** Why it cannot be written; empty if it can. */
    QString const& fault() const { return m_fault; }

    /** Puts all in its place unless anything has failed. */
    void commit()
    {
        if (!m_unfinished)
            m_unfinished.emplace(); // it is about to have a name
        errno = 0;
        if (m_fault.isEmpty() && !FileReplacement::write(m_file, QByteArray()))
            m_fault = reasonOf(m_file);
        if (!m_fault.isEmpty())
            m_file.cancel();
        else if (!m_file.commit())
            m_fault = reasonOf(m_file);
        m_unfinished.reset();
    }

    /** One writes it from start to end. */
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* /*data*/, qint64 /*size*/) override { return -1; }

    qint64 writeData(char const* data, qint64 size) override
    {
        errno = 0;
        if (m_fault.isEmpty() && m_file.write(data, size) == size)
            return size;
        if (m_fault.isEmpty())
            m_fault = reasonOf(m_file);
        return -1;
    }

private:
    std::optional<UnfinishedFile> m_unfinished; ///< while the new file has a name, or may get one
    SavedFile m_file;
    QString m_fault;
};

OutputFile::OutputFile(QString const& file)
    : m_file(file)
{
}

OutputFile::~OutputFile() = default;

std::unique_ptr<OutputFile> OutputFile::open(QString const& file, Diagnostics& diagnostics)
{
    if (!isNameExact(file, diagnostics))
        return nullptr;
    QFileInfo const target(file);
    if (target.isDir()) {
        diagnostics.error(file, QStringLiteral("is a directory"));
        return nullptr;
    }
    if (hasEndlessLinks(file)) {
        diagnostics.error(file, qt_error_string(ELOOP));
        return nullptr;
    }
    std::unique_ptr<OutputFile> output(new OutputFile(file));
    if (FileReplacement::isDeviceOrPipe(target) || Opening::ownDescriptor(file)) {
        output->m_waiting = std::make_unique<Spool>();
        return output;
    }
    output->m_replacement = std::make_unique<Replacement>(file);
    if (output->m_replacement->fault().isEmpty())
        return output;
    diagnostics.error(file, output->m_replacement->fault());
    return nullptr;
}

QIODevice& OutputFile::device()
{
    if (m_replacement)
        return *m_replacement;
    return *m_waiting;
}

bool OutputFile::commit(Diagnostics& diagnostics)
{
    QString fault;
    if (m_replacement) {
        m_replacement->commit();
        fault = m_replacement->fault();
    } else {
        QFile target;
        QIODevice& content = m_waiting->content();
        if (m_waiting->hasFailed())
            fault = m_waiting->errorString();
        else if (Opening::forWriting(target, m_file, fault) && !copyAll(content, target))
            fault = target.errorString();
    }
    if (!fault.isEmpty())
        diagnostics.error(m_file, fault);
    return fault.isEmpty();
}

bool writeFile(QString const& file, QByteArray const& content, Diagnostics& diagnostics)
{
    auto const output = OutputFile::open(file, diagnostics);
    if (!output)
        return false;
    // What fails here, commit() reports.
    output->device().write(content);
    return output->commit(diagnostics);
}

bool isPlainFile(QString const& file, Diagnostics& diagnostics)
{
    QFileInfo const target(file);
    if (!target.exists() || target.isFile())
        return true;
    diagnostics.error(file, QStringLiteral("is no file that can be edited"));
    return false;
}

std::optional<QByteArray> readPlainFile(QString const& file, Diagnostics& diagnostics)
{
    return isPlainFile(file, diagnostics) ? readFile(file, diagnostics) : std::nullopt;
}

bool writePlainFile(QString const& file, QByteArray const& content, Diagnostics& diagnostics)
{
    return isPlainFile(file, diagnostics) && writeFile(file, content, diagnostics);
}

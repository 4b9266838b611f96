// SPDX-License-Identifier: MIT
#include "common/repeatableinput.h"

#include "common/filecontent.h"
#include "common/unfinishedfile.h"
#include "savedfile_p.h"

#include <QBuffer>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/** A file that can be read at any place. */
class SharedFile
{
public:
    explicit SharedFile(std::unique_ptr<QFile> file)
        : m_file(std::move(file))
        , m_isRegular(isRegular())
        , m_start(m_isRegular ? std::max<qint64>(0, lseek(m_file->handle(), 0, SEEK_CUR)) : 0)
    {
    }

    /** Of what is left of it; 0 if it is not known. */
    qint64 size() const { return m_isRegular ? m_file->size() - m_start : 0; }

    /** Up to `size` bytes from `position` on; -1, with `fault` set, if that fails. */
    qint64 read(qint64 position, char* data, qint64 size, QString& fault)
    {
        if (!m_isRegular && position == m_copied)
            return readOn(data, size, fault);
        qint64 const most = m_isRegular ? size : std::min(size, m_copied - position);
        int const source = m_isRegular ? m_file->handle() : m_copy.handle();
        qint64 const count =
            pread(source, data, static_cast<std::size_t>(most), m_start + position);
        if (count < 0)
            fault = qt_error_string(errno);
        return count;
    }

private:
    bool isRegular() const
    {
        struct stat status
        {
        };
        return fstat(m_file->handle(), &status) == 0 && S_ISREG(status.st_mode);
    }

    qint64 readOn(char* data, qint64 size, QString& fault)
    {
        qint64 const count = m_file->read(data, size);
        if (count < 0)
            fault = m_file->errorString();
        if (count <= 0)
            return count;
        errno = 0;
        bool const isKept =
            (m_copy.isOpen() || openCopy()) && m_copy.write(data, count) == count && m_copy.flush();
        if (!isKept) {
            fault = QStringLiteral("cannot be kept to be read again: %1").arg(reasonOf(m_copy));
            return -1;
        }
        m_copied += count;
        return count;
    }

    bool openCopy()
    {
        UnfinishedFile const unfinished;
        return SavedFile::openTemporary(m_copy);
    }

    std::unique_ptr<QFile> const m_file;
    bool const m_isRegular;
    qint64 const m_start; ///< where in the file it begins
    QFile m_copy; ///< what has been read so far, unless the file is regular
    qint64 m_copied = 0;
};

/** Reads a file that others read, too. */
class SharedFileReader : public QIODevice
{
public:
    explicit SharedFileReader(std::shared_ptr<SharedFile> file)
        : m_file(std::move(file))
    {
        open(QIODevice::ReadOnly);
    }

    bool isSequential() const override { return true; }
    qint64 size() const override { return m_file->size(); }

protected:
    qint64 readData(char* data, qint64 size) override
    {
        QString fault;
        qint64 const count = m_file->read(m_position, data, size, fault);
        if (count < 0)
            setErrorString(fault);
        else
            m_position += count;
        return count;
    }

    qint64 writeData(char const* /*data*/, qint64 /*size*/) override { return -1; }

private:
    std::shared_ptr<SharedFile> const m_file;
    qint64 m_position = 0;
};

} // namespace

RepeatableInput repeatableInput(QByteArray const& text)
{
    return [text]() -> std::unique_ptr<QIODevice> {
        auto buffer = std::make_unique<QBuffer>();
        buffer->setData(text);
        buffer->open(QIODevice::ReadOnly);
        return buffer;
    };
}

RepeatableInput repeatableInput(std::unique_ptr<QFile> file)
{
    auto const shared = std::make_shared<SharedFile>(std::move(file));
    return [shared] { return std::make_unique<SharedFileReader>(shared); };
}

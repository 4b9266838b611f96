// SPDX-License-Identifier: MIT
#include "common/spool.h"

#include "common/filecontent.h"
#include "common/unfinishedfile.h"
#include "savedfile_p.h"

#include <QFile>

#include <cerrno>

Spool::Spool()
{
    m_memory.open(QIODevice::ReadWrite);
    open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

Spool::~Spool() = default;

QIODevice& Spool::content()
{
    if (m_file) {
        errno = 0;
        if (!m_file->flush())
            fail();
        m_file->seek(0);
        return *m_file;
    }
    m_memory.seek(0);
    return m_memory;
}

qint64 Spool::readData(char* /*data*/, qint64 /*size*/)
{
    return -1;
}

qint64 Spool::writeData(char const* data, qint64 size)
{
    constexpr qint64 mostInMemory = 1 << 20;
    if (!m_file && m_memory.size() + size <= mostInMemory)
        return m_memory.write(data, size);
    errno = 0;
    if ((m_file || moveToFile()) && m_file->write(data, size) == size)
        return size;
    fail();
    return -1;
}

void Spool::fail()
{
    m_hasFailed = true;
    setErrorString(reasonOf(*m_file));
}

bool Spool::moveToFile()
{
    UnfinishedFile const unfinished;
    m_file = std::make_unique<QFile>();
    bool const isMoved =
        SavedFile::openTemporary(*m_file) && m_file->write(m_memory.data()) == m_memory.size();
    m_memory.close();
    m_memory.setData(QByteArray());
    return isMoved;
}

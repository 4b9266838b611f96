// SPDX-License-Identifier: MIT
#ifndef SPOOL_H
#define SPOOL_H

#include <QBuffer>
#include <QIODevice>

#include <memory>

class QFile;

/**
 * Takes what is written and keeps it to be read: the first megabyte in memory, more than that in a
 * temporary file without a name.
 */
class Spool : public QIODevice
{
public:
    Spool();
    ~Spool() override;

    /** All that was written, open for reading from its start. Nothing is to be written any more. */
    QIODevice& content();

    /** Whether anything that was written is lost; errorString() tells why. */
    bool hasFailed() const { return m_hasFailed; }

    /** What is written cannot be read here. */
    bool isSequential() const override { return true; }

protected:
    /** Reads nothing. */
    qint64 readData(char* data, qint64 size) override;
    /** Keeps it; -1, with an error text, if the temporary file cannot be written. */
    qint64 writeData(char const* data, qint64 size) override;

private:
    bool moveToFile();
    void fail();

    QBuffer m_memory;
    std::unique_ptr<QFile> m_file; ///< null as long as the memory is enough
    bool m_hasFailed = false;
};

#endif // SPOOL_H

// SPDX-License-Identifier: MIT
#include "common/repeatableinput.h"

#include "testing.h"

#include <QFile>
#include <QTemporaryDir>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace {

/** Reads two devices of one input, some bytes of either in turn. */
void readInTurn(RepeatableInput const& input, QByteArray const& expected)
{
    auto const first = input();
    auto const second = input();
    QByteArray contents[2];
    while (contents[1].size() < expected.size()) {
        QByteArray const piece = second->read(7001);
        QVERIFY(!piece.isEmpty());
        contents[0] += first->read(9001);
        contents[1] += piece;
    }
    contents[0] += first->readAll();
    QVERIFY(contents[0] == expected);
    QVERIFY(contents[1] == expected);
    QVERIFY(second->read(1).isEmpty());
    QVERIFY(input()->readAll() == expected);
}

QByteArray someBytes()
{
    QByteArray bytes;
    for (int i = 0; i < 100000; ++i)
        bytes += QByteArray::number(i);
    return bytes;
}

} // namespace

/** One input, several readers. */
class TestRepeatableInput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textIsReadAgain() { readInTurn(repeatableInput(someBytes()), someBytes()); }
    void fileIsReadAgain();
    void restOfAFileIsRead();
    void pipeIsReadAgain();
    void failureIsReported();
    void failureToKeepIsReported();
};

void TestRepeatableInput::fileIsReadAgain()
{
    QTemporaryDir const folder;
    auto file = std::make_unique<QFile>(folder.filePath("a"));
    QVERIFY(file->open(QIODevice::ReadWrite));
    file->write(someBytes());
    file->close();
    QVERIFY(file->open(QIODevice::ReadOnly));
    auto const input = repeatableInput(std::move(file));
    QCOMPARE(input()->size(), qint64(someBytes().size()));
    readInTurn(input, someBytes());
}

void TestRepeatableInput::restOfAFileIsRead()
{
    QTemporaryDir const folder;
    QFile written(folder.filePath("a"));
    QVERIFY(written.open(QIODevice::WriteOnly));
    written.write("head" + someBytes());
    written.close();
    int const descriptor = ::open(QFile::encodeName(written.fileName()).constData(), O_RDONLY);
    std::array<char, 4> head {};
    QCOMPARE(::read(descriptor, head.data(), head.size()), ssize_t(4));
    auto file = std::make_unique<QFile>();
    QVERIFY(file->open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle));
    auto const input = repeatableInput(std::move(file));
    QCOMPARE(input()->size(), qint64(someBytes().size()));
    readInTurn(input, someBytes());
}

void TestRepeatableInput::pipeIsReadAgain()
{
    std::array<int, 2> ends {};
    QCOMPARE(pipe(ends.data()), 0);
    std::thread writer([&ends] {
        QFile file;
        file.open(ends[1], QIODevice::WriteOnly, QFileDevice::AutoCloseHandle);
        file.write(someBytes());
    });
    auto file = std::make_unique<QFile>();
    bool const isOpen = file->open(ends[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
    QVERIFY(isOpen);
    readInTurn(repeatableInput(std::move(file)), someBytes());
    writer.join();
}

void TestRepeatableInput::failureIsReported()
{
    // A directory can be opened, and not be read.
    auto file = std::make_unique<QFile>();
    QVERIFY(file->open(::open(".", O_RDONLY), QIODevice::ReadOnly, QFileDevice::AutoCloseHandle));
    auto const device = repeatableInput(std::move(file))();
    char byte = 0;
    QCOMPARE(device->read(&byte, 1), qint64(-1));
    QCOMPARE(device->errorString(), QString("Is a directory"));
}

/** What comes through a pipe is kept in a file, for which there may be no room. */
void TestRepeatableInput::failureToKeepIsReported()
{
    std::array<int, 2> ends {};
    QCOMPARE(pipe(ends.data()), 0);
    QByteArray const bytes(1000, 'x');
    QCOMPARE(::write(ends[1], bytes.constData(), 1000), ssize_t(1000));
    QCOMPARE(::close(ends[1]), 0);
    auto file = std::make_unique<QFile>();
    QVERIFY(file->open(ends[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle));
    auto const device = repeatableInput(std::move(file))();

    rlimit usual {};
    getrlimit(RLIMIT_FSIZE, &usual);
    rlimit const lower {100, usual.rlim_max};
    auto* const handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &lower);
    char byte = 0;
    qint64 const count = device->read(&byte, 1);
    setrlimit(RLIMIT_FSIZE, &usual);
    std::signal(SIGXFSZ, handler);
    QCOMPARE(count, qint64(-1));
    QCOMPARE(device->errorString(), QString("cannot be kept to be read again: File too large"));
}

QTEST_GUILESS_MAIN(TestRepeatableInput)

#include "tst_repeatableinput.moc"

// SPDX-License-Identifier: MIT
#include "md5.h"
#include "testing.h"

#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

Q_DECLARE_METATYPE(std::string)

using Testing::seededRandom;

namespace {

/** The digest written down once more, step by step, from its description. */
class PlainDigest
{
public:
    void add(std::string const& bytes)
    {
        m_finished = false;
        feed(bytes);
    }

    std::string text()
    {
        if (!m_finished)
            finish();
        m_finished = true;
        return m_text;
    }

private:
    static quint64 rotate(quint64 word, int shift)
    {
        return (word << shift) | (word >> (32 - shift));
    }

    void compress(std::string const& block)
    {
        static int const shifts[] = {7, 12, 17, 22, 5, 9, 14, 20, 4, 11, 16, 23, 6, 10, 15, 21};
        quint64 a = m_state[0];
        quint64 b = m_state[1];
        quint64 c = m_state[2];
        quint64 d = m_state[3];
        for (int i = 0; i < 64; ++i) {
            quint64 function = 0;
            int word = 0;
            switch (i / 16) {
            case 0:
                function = (b & c) | (~b & d);
                word = i;
                break;
            case 1:
                function = (b & d) | (c & ~d);
                word = (5 * i + 1) % 16;
                break;
            case 2:
                function = b ^ c ^ d;
                word = (3 * i + 5) % 16;
                break;
            default:
                function = c ^ (b | ~d);
                word = 7 * i % 16;
                break;
            }
            quint64 input = 0;
            for (int byte = 3; byte >= 0; --byte)
                input = input * 256 + quint8(block[size_t(4 * word + byte)]);
            quint64 const constant = quint64(std::floor(std::abs(std::sin(i + 1)) * 4294967296.0));
            quint64 const next =
                b + rotate(a + function + input + constant, shifts[i / 16 * 4 + i % 4]);
            a = d;
            d = c;
            c = b;
            b = next;
        }
        m_state[0] += a;
        m_state[1] += b;
        m_state[2] += c;
        m_state[3] += d;
    }

    void feed(std::string const& bytes)
    {
        size_t used = size_t(m_low / 8 % 64);
        quint64 const bits = quint64(bytes.size()) * 8;
        m_high += (m_low + bits < m_low ? 1 : 0) + bytes.size() / 536870912;
        m_low += bits;
        for (char const byte : bytes) {
            m_buffer[used++] = byte;
            if (used == 64) {
                compress(m_buffer);
                used = 0;
            }
        }
    }

    static std::string lowBytes(quint64 word)
    {
        std::string bytes;
        for (int i = 0; i < 4; ++i)
            bytes += char(word >> (8 * i));
        return bytes;
    }

    void finish()
    {
        quint64 const kept[] = {m_state[0], m_state[1], m_low};
        std::string const count = lowBytes(m_low) + lowBytes(m_high);
        size_t const used = size_t(m_low / 8 % 64);
        feed('\x80' + std::string(used < 56 ? 55 - used : 119 - used, '\0'));
        feed(count);
        m_text.clear();
        for (quint64 const word : m_state) {
            for (char const byte : lowBytes(word)) {
                m_text += "0123456789abcdef"[quint8(byte) >> 4];
                m_text += "0123456789abcdef"[quint8(byte) & 15];
            }
        }
        m_state[0] = kept[0];
        m_state[1] = kept[1];
        m_low = kept[2];
    }

    quint64 m_state[4] = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
    quint64 m_low = 0;
    quint64 m_high = 0;
    std::string m_buffer = std::string(64, '\0');
    std::string m_text;
    bool m_finished = false;
};

std::string randomBytes(size_t size, QRandomGenerator& random)
{
    std::string bytes(size, '\0');
    for (char& byte : bytes)
        byte = char(random.generate());
    return bytes;
}

std::string plainText(std::string const& bytes)
{
    PlainDigest digest;
    digest.add(bytes);
    return digest.text();
}

std::string digestText(MD5& md5, unsigned char const* bytes)
{
    return md5.bytesToHexString(bytes, 16);
}

using Words = QVector<quint64>;

/** The chaining values, which are the first four words of an object, and the count behind them. */
Words stateAndCount(MD5 const& md5)
{
    Words words(6);
    std::memcpy(words.data(), static_cast<void const*>(&md5), 6 * sizeof(quint64));
    return words;
}

void setCount(MD5& md5, Words const& count)
{
    Words const words = stateAndCount(md5).mid(0, 4) + count;
    std::memcpy(static_cast<void*>(&md5), words.constData(), 6 * sizeof(quint64));
}

/** 0, 1, 2 and so on: no two words of it are the same. */
std::string risingBlock()
{
    std::string block;
    for (int i = 0; i < 64; ++i)
        block += char(i);
    return block;
}

unsigned char const* bytesOf(std::string const& block)
{
    return reinterpret_cast<unsigned char const*>(block.data());
}

} // namespace

class TestMd5 : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void digestsAreTheKnownOnes_data();
    void digestsAreTheKnownOnes();
    void constantsAreThePaddingAndTheDigits();
    void everyLengthAgreesWithThePlainDigest();
    void piecesMakeNoDifference();
    void everyWayToAddGivesTheSame();
    void nothingToAddNeedsNoInput();
    void digestIsKept();
    void digestGoesOnFromAPartlyRestoredState();
    void resetBeginsAnewMessage();
    void ownDigestCanBeAdded();
    void anyOrderOfOperationsAgreesWithThePlainDigest();
    void bitsBeyondTheLowWordCountInTheCarry();
    void aPieceOfHalfAGigabyteCountsInTheCarry();
    void smallerPiecesOfItDoNot();
    void wordsAreLittleEndian();
    void bytesBecomeDigits();
    void freshStateIsThatOfTheAlgorithm();
    void aBlockIsAddedToTheState_data();
    void aBlockIsAddedToTheState();
    void aBlockAddedByHandIsNotCounted();
    void aBlockIsAStepOfUpdate();
    void finalComputesTheDigest();
    void finalPutsBackPartOfTheState();

    void filesAreReadToTheirEnd_data();
    void filesAreReadToTheirEnd();
    void filesAreReadFromWhereTheyStand();
    void emptyFilesLeaveADigestAsItIs();
    void failedStreamsAreLeftAlone();
    void streamsThatTurnBadEndThere();
};

void TestMd5::digestsAreTheKnownOnes_data()
{
    QTest::addColumn<std::string>("message");
    QTest::addColumn<std::string>("digest");
    QTest::newRow("empty") << std::string() << std::string("e4c23762ed2823a27e62a64b95c024e7");
    QTest::newRow("abc") << std::string("abc") << std::string("7999dc75e8da648c6727e137c5b77803");
    QTest::newRow("a sentence") << std::string("The quick brown fox jumps over the lazy dog")
                                << std::string("bfbe39925969b115fd802c3f70edd436");
}

void TestMd5::digestsAreTheKnownOnes()
{
    QFETCH(std::string, message);
    QFETCH(std::string, digest);
    QCOMPARE(MD5(message).toString(), digest);
    QCOMPARE(MD5(message.data(), message.size()).toString(), digest);
    QCOMPARE(plainText(message), digest);
}

void TestMd5::constantsAreThePaddingAndTheDigits()
{
    QCOMPARE(sizeof MD5::PADDING, size_t(64));
    QCOMPARE(int(MD5::PADDING[0]), 0x80);
    QVERIFY(std::all_of(MD5::PADDING + 1, MD5::PADDING + 64, [](int byte) { return byte == 0; }));
    QCOMPARE(std::string(MD5::HEX, sizeof MD5::HEX), std::string("0123456789abcdef"));
}

void TestMd5::everyLengthAgreesWithThePlainDigest()
{
    QRandomGenerator random = seededRandom(21);
    for (size_t size = 0; size <= 400; ++size) {
        std::string const bytes = randomBytes(size, random);
        QVERIFY2(MD5(bytes).toString() == plainText(bytes), qPrintable(QString::number(size)));
    }
}

void TestMd5::piecesMakeNoDifference()
{
    QRandomGenerator random = seededRandom(22);
    for (size_t const size : std::vector<size_t> {55, 56, 63, 64, 65, 119, 120, 128, 1000}) {
        std::string const bytes = randomBytes(size, random);
        std::string const whole = MD5(bytes).toString();
        for (size_t piece = 1; piece <= size; piece += piece < 140 ? 1 : 97) {
            MD5 md5;
            for (size_t at = 0; at < size; at += piece)
                md5.update(bytes.data() + at, std::min(piece, size - at));
            QCOMPARE(md5.toString(), whole);
        }
    }
}

void TestMd5::everyWayToAddGivesTheSame()
{
    std::string const bytes("a\0b", 3);
    auto const* const memory = reinterpret_cast<unsigned char const*>(bytes.data());
    std::string const expected = plainText(bytes);
    MD5 fromBytes;
    fromBytes.update(memory, 3);
    QCOMPARE(fromBytes.toString(), expected);
    MD5 fromMemory;
    fromMemory.update(static_cast<void const*>(memory), 3);
    QCOMPARE(fromMemory.toString(), expected);
    MD5 fromString;
    fromString.update(bytes);
    QCOMPARE(fromString.toString(), expected);
    QCOMPARE(MD5(bytes).toString(), expected);
    QCOMPARE(MD5(bytes.data(), 3).toString(), expected);
}

void TestMd5::nothingToAddNeedsNoInput()
{
    MD5 md5(nullptr, 0);
    md5.update(static_cast<unsigned char const*>(nullptr), 0);
    md5.update(static_cast<void const*>(nullptr), 0);
    md5.update(std::string());
    QCOMPARE(md5.toString(), std::string("e4c23762ed2823a27e62a64b95c024e7"));
}

void TestMd5::digestIsKept()
{
    MD5 md5("abc", 3);
    unsigned char const* const first = md5.digest();
    std::string const bytes(reinterpret_cast<char const*>(first), 16);
    QCOMPARE(md5.bytesToHexString(first, 16), std::string("7999dc75e8da648c6727e137c5b77803"));
    QCOMPARE(md5.digest(), first);
    QCOMPARE(std::string(reinterpret_cast<char const*>(first), 16), bytes);
    QCOMPARE(md5.toString(), md5.toString());
    QCOMPARE(md5.toString(), std::string("7999dc75e8da648c6727e137c5b77803"));
}

void TestMd5::digestGoesOnFromAPartlyRestoredState()
{
    MD5 md5("abc", 3);
    PlainDigest plain;
    plain.add("abc");
    QCOMPARE(md5.toString(), plain.text());
    md5.update("def", 3);
    plain.add("def");
    QCOMPARE(md5.toString(), plain.text());
    QVERIFY(md5.toString() != plainText("abcdef"));
    // Even without input, an update makes the next digest another one.
    md5.update("", 0);
    plain.add("");
    QCOMPARE(md5.toString(), plain.text());
}

void TestMd5::resetBeginsAnewMessage()
{
    MD5 md5("abc", 3);
    md5.digest();
    md5.update(std::string(1000, 'x'));
    md5.reset();
    QCOMPARE(md5.toString(), std::string("e4c23762ed2823a27e62a64b95c024e7"));
    md5.reset();
    md5.update("abc", 3);
    QCOMPARE(md5.toString(), std::string("7999dc75e8da648c6727e137c5b77803"));
}

void TestMd5::ownDigestCanBeAdded()
{
    MD5 md5("abc", 3);
    PlainDigest plain;
    plain.add("abc");
    plain.text();
    for (int i = 0; i < 10; ++i) {
        std::string const now(reinterpret_cast<char const*>(md5.digest()), 16);
        md5.update(md5.digest(), 16);
        plain.add(now);
        QCOMPARE(md5.toString(), plain.text());
    }
}

void TestMd5::anyOrderOfOperationsAgreesWithThePlainDigest()
{
    QRandomGenerator random = seededRandom(23);
    MD5 md5;
    PlainDigest plain;
    int digests = 0;
    for (int i = 0; i < 100000; ++i) {
        switch (random.bounded(8)) {
        case 0:
            QCOMPARE(md5.toString(), plain.text());
            ++digests;
            break;
        case 1:
            if (random.bounded(4) == 0) {
                md5.reset();
                plain = PlainDigest();
            }
            break;
        default: {
            int const limit = random.bounded(2) == 0 ? 20 : 200;
            std::string const bytes = randomBytes(size_t(random.bounded(limit)), random);
            md5.update(bytes.data(), bytes.size());
            plain.add(bytes);
            break;
        }
        }
    }
    QVERIFY(digests > 10000);
}

void TestMd5::bitsBeyondTheLowWordCountInTheCarry()
{
    // As after nearly 2^61 bytes; what they were does not matter here.
    MD5 md5;
    setCount(md5, {quint64(-512), 3});
    md5.update(std::string(63, 'x'));
    QCOMPARE(stateAndCount(md5).mid(4), (Words {quint64(-8), 3}));
    md5.update("xyz", 3);
    QCOMPARE(stateAndCount(md5).mid(4), (Words {16, 4}));
    md5.update("xyz", 3);
    QCOMPARE(stateAndCount(md5).mid(4), (Words {40, 4}));
}

void TestMd5::aPieceOfHalfAGigabyteCountsInTheCarry()
{
    if (Testing::sanitized) {
        qInfo("half a gigabyte takes too long with a sanitizer: not run");
        return;
    }
    // 2^29 bytes are 2^32 bits. The low word has 64, but a piece of that length counts in the
    // carry all the same.
    MD5 md5(std::string(size_t(1) << 29, '\0'));
    QCOMPARE(stateAndCount(md5).mid(4), (Words {quint64(1) << 32, 1}));
    // What the plain digest says of it, after some seconds.
    QCOMPARE(md5.toString(), std::string("9e657da7f67ba7c2142cda4e76e0a9fe"));
}

void TestMd5::smallerPiecesOfItDoNot()
{
    if (Testing::sanitized) {
        qInfo("half a gigabyte takes too long with a sanitizer: not run");
        return;
    }
    std::string const half(size_t(1) << 28, '\0');
    MD5 md5(half);
    md5.update(half);
    QCOMPARE(stateAndCount(md5).mid(4), (Words {quint64(1) << 32, 0}));
    QVERIFY(md5.toString() != std::string("9e657da7f67ba7c2142cda4e76e0a9fe"));
}

void TestMd5::wordsAreLittleEndian()
{
    MD5 md5;
    unsigned long const words[] = {0x1122334455667788UL, 0xFFFFFFFF00000080UL};
    unsigned char bytes[10] = {};
    md5.encode(words, bytes + 1, 8);
    QCOMPARE(
        QByteArray(reinterpret_cast<char*>(bytes), 10).toHex(), QByteArray("00887766558000000000"));
    unsigned long decoded[3] = {1, 1, 7};
    md5.decode(bytes + 1, decoded, 8);
    QCOMPARE(decoded[0], 0x55667788UL);
    QCOMPARE(decoded[1], 0x80UL);
    QCOMPARE(decoded[2], 7UL);
    md5.encode(words, bytes, 0);
    md5.decode(bytes, decoded, 0);
    QCOMPARE(int(bytes[0]), 0);
    QCOMPARE(decoded[0], 0x55667788UL);
}

void TestMd5::bytesBecomeDigits()
{
    MD5 md5;
    unsigned char const bytes[] = {0x00, 0x0F, 0xF0, 0xA5};
    QCOMPARE(md5.bytesToHexString(bytes, 4), std::string("000ff0a5"));
    QCOMPARE(md5.bytesToHexString(nullptr, 0), std::string());
    std::vector<unsigned char> const many(1000, 0xAB);
    QCOMPARE(md5.bytesToHexString(many.data(), many.size()).size(), size_t(2000));
}

void TestMd5::freshStateIsThatOfTheAlgorithm()
{
    Words const fresh {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0, 0};
    MD5 md5;
    QCOMPARE(stateAndCount(md5), fresh);
    md5.update(std::string(100, 'x'));
    QVERIFY(stateAndCount(md5) != fresh);
    md5.reset();
    QCOMPARE(stateAndCount(md5), fresh);
}

void TestMd5::aBlockIsAddedToTheState_data()
{
    QTest::addColumn<QVector<std::string>>("blocks");
    QTest::addColumn<Words>("state");
    std::string const rising = risingBlock();
    std::string const ones(64, '\xFF');
    QTest::newRow("0 to 63") << QVector<std::string> {rising}
                             << Words {0x831CCB39E7FEC98D, 0x7657C3CF3DB5050B, 0x1AB7CA2EE6EA7DF9,
                                    0x4875CB2F66E5FAB7};
    QTest::newRow("all bits set") << QVector<std::string> {ones}
                                  << Words {0x7C529DE3BC2D6022, 0xF85B1E788DAA4D28,
                                         0x5B7BDFE098D56016, 0x420341E234CD3991};
    QTest::newRow("one after the other")
        << QVector<std::string> {rising, ones}
        << Words {0xB7A70946ED763835, 0x2D901527721EBB8C, 0x2831458F1F65E2B5, 0xADEA493BE25BA762};
}

void TestMd5::aBlockIsAddedToTheState()
{
    QFETCH(QVector<std::string>, blocks);
    QFETCH(Words, state);
    MD5 md5;
    for (std::string const& block : qAsConst(blocks))
        md5.transform(bytesOf(block));
    QCOMPARE(stateAndCount(md5).mid(0, 4), state);
}

void TestMd5::aBlockAddedByHandIsNotCounted()
{
    MD5 md5("abc", 3);
    md5.transform(bytesOf(risingBlock()));
    QCOMPARE(stateAndCount(md5).mid(4), (Words {24, 0}));
    // The three bytes are still in the buffer.
    md5.update("def", 3);
    QCOMPARE(stateAndCount(md5).mid(4), (Words {48, 0}));
    QCOMPARE(md5.toString(), std::string("f02cef394c3c7001e6aeb3aa263d3bb5"));
}

void TestMd5::aBlockIsAStepOfUpdate()
{
    MD5 byHand;
    byHand.transform(bytesOf(risingBlock()));
    QCOMPARE(byHand.toString(), std::string("8f21c8bfd887c793a8681bbed44e6d3e"));
    MD5 updated(risingBlock());
    QCOMPARE(stateAndCount(updated).mid(4), (Words {512, 0}));
    QCOMPARE(updated.toString(), std::string("fb6122b802138409f4c4bdb21f80b934"));
}

void TestMd5::finalComputesTheDigest()
{
    MD5 md5;
    unsigned char const* const bytes = md5.digest();
    md5.reset();
    md5.update("abc", 3);
    // Nothing has computed the digest of the new message yet.
    QCOMPARE(digestText(md5, bytes), std::string("e4c23762ed2823a27e62a64b95c024e7"));
    md5.final();
    QCOMPARE(digestText(md5, bytes), std::string("7999dc75e8da648c6727e137c5b77803"));
    // It was no digest(): that one computes again, from what the first has left.
    QCOMPARE(md5.toString(), std::string("c7ca5bc53a31434fdd0907e87ede8ec6"));
}

void TestMd5::finalPutsBackPartOfTheState()
{
    MD5 md5(std::string(60, 'x'));
    Words const before = stateAndCount(md5);
    md5.final();
    Words const after = stateAndCount(md5);
    QCOMPARE(after.at(0), before.at(0));
    QCOMPARE(after.at(1), before.at(1));
    QVERIFY(after.at(2) != before.at(2));
    QVERIFY(after.at(3) != before.at(3));
    QCOMPARE(after.mid(4), (Words {480, 0}));
    QCOMPARE(before.mid(4), (Words {480, 0}));
    md5.update(std::string(60, 'y'));
    QCOMPARE(md5.toString(), std::string("b99c23225aa75f39c09ac1f06912aab9"));
}

void TestMd5::filesAreReadToTheirEnd_data()
{
    QTest::addColumn<int>("size");
    for (int const size : {0, 1, 55, 64, 1023, 1024, 1025, 2048, 100000})
        QTest::addRow("%d bytes", size) << size;
}

void TestMd5::filesAreReadToTheirEnd()
{
    QFETCH(int, size);
    QRandomGenerator random = seededRandom(quint32(size));
    std::string const bytes = randomBytes(size_t(size), random);
    QTemporaryDir const directory;
    std::string const name = directory.filePath("file").toStdString();
    std::ofstream(name, std::ios::binary) << bytes;
    std::ifstream file(name, std::ios::binary);
    MD5 md5(file);
    QCOMPARE(md5.toString(), plainText(bytes));
    QVERIFY(!file.is_open());
}

void TestMd5::filesAreReadFromWhereTheyStand()
{
    QTemporaryDir const directory;
    std::string const name = directory.filePath("file").toStdString();
    std::ofstream(name, std::ios::binary) << "01234abc";
    std::ifstream file(name, std::ios::binary);
    file.seekg(5);
    MD5 md5(file);
    QCOMPARE(md5.toString(), std::string("7999dc75e8da648c6727e137c5b77803"));
}

void TestMd5::emptyFilesLeaveADigestAsItIs()
{
    QTemporaryDir const directory;
    std::string const name = directory.filePath("file").toStdString();
    std::ofstream(name, std::ios::binary).flush();
    std::ifstream file(name, std::ios::binary);
    MD5 md5(std::string("abc"));
    QCOMPARE(md5.toString(), std::string("7999dc75e8da648c6727e137c5b77803"));
    // Nothing is fed, so that nothing is computed anew: that would begin where the end has left off.
    md5.update(file);
    QCOMPARE(md5.toString(), std::string("7999dc75e8da648c6727e137c5b77803"));
    QVERIFY(!file.is_open());
}

void TestMd5::failedStreamsAreLeftAlone()
{
    QTemporaryDir const directory;
    std::ifstream missing(directory.filePath("missing").toStdString());
    MD5 md5(missing);
    QCOMPARE(md5.toString(), std::string("e4c23762ed2823a27e62a64b95c024e7"));

    std::string const name = directory.filePath("file").toStdString();
    std::ofstream(name) << "abc";
    for (std::ios::iostate const state : {std::ios::failbit, std::ios::badbit}) {
        std::ifstream file(name);
        file.setstate(state);
        md5.reset();
        md5.update(file);
        QVERIFY(file.is_open());
        QCOMPARE(file.rdstate(), state);
        QCOMPARE(md5.toString(), std::string("e4c23762ed2823a27e62a64b95c024e7"));
    }
}

void TestMd5::streamsThatTurnBadEndThere()
{
    // A directory can be opened, and not read.
    QTemporaryDir const directory;
    std::ifstream file(directory.path().toStdString());
    MD5 md5(file);
    QCOMPARE(md5.toString(), std::string("e4c23762ed2823a27e62a64b95c024e7"));
    QVERIFY(!file.is_open());
}

QTEST_GUILESS_MAIN(TestMd5)
#include "tst_md5.moc"

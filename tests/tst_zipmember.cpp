// SPDX-License-Identifier: MIT
#include "import/zipmember.h"
#include "outlinetesting.h"
#include "ziptesting.h"

using namespace ZipTesting;

class TestZipMember : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsMembers_data();
    void readsMembers();
    void findsTheDirectoryBehindAComment();
    void takesTheFirstOfTwo();
    void saysWhatIsWrong_data();
    void saysWhatIsWrong();
    void unpacksNoMoreThanAllowed();
    void everyBeginningIsRefused();
    void noChangedByteDoesHarm();
};

namespace {

std::optional<QByteArray> read(QByteArray const& zip, QString& fault, qint64 most = 1000000)
{
    OutlineTesting::ExactlySized const sized(zip);
    return zipMember(sized.bytes(), "content.xml", most, fault);
}

} // namespace

void TestZipMember::readsMembers_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isDeflated");

    QTest::newRow("stored") << QByteArray("<a/>") << false;
    QTest::newRow("deflated") << QByteArray("<a/>").repeated(1000) << true;
    QTest::newRow("empty, stored") << QByteArray("") << false;
    QTest::newRow("empty, deflated") << QByteArray("") << true;
}

void TestZipMember::readsMembers()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, isDeflated);

    Member member {"content.xml", content};
    member.isDeflated = isDeflated;
    QByteArray const zip = zipOf({{"mimetype", "text"}, member, {"other", "more"}});
    QVERIFY(isZip(zip));
    QString fault;
    auto const result = read(zip, fault);
    QVERIFY2(result, qPrintable(fault));
    QCOMPARE(*result, content);
}

void TestZipMember::findsTheDirectoryBehindAComment()
{
    QByteArray zip = zipOf({{"content.xml", "text"}});
    QByteArray const comment = "a comment PK\5\6 with what looks like a record in it";
    zip[zip.size() - 2] = char(comment.size());
    QString fault;
    QCOMPARE(read(zip + comment, fault).value_or(fault.toUtf8()), QByteArray("text"));
}

void TestZipMember::takesTheFirstOfTwo()
{
    QString fault;
    QCOMPARE(read(zipOf({{"content.xml", "one"}, {"content.xml", "two"}}), fault),
        std::optional(QByteArray("one")));
}

void TestZipMember::saysWhatIsWrong_data()
{
    QTest::addColumn<QByteArray>("zip");
    QTest::addColumn<QString>("fault");

    auto const row = [](char const* name, QByteArray const& zip, char const* fault) {
        QTest::newRow(name) << zip << QString(fault);
    };
    auto const changed = [](void (*change)(Member&)) {
        Member member {"content.xml", QByteArray("text").repeated(20)};
        change(member);
        return zipOf({member});
    };
    row("empty", "", "the zip file is damaged or incomplete");
    row("a head alone", "PK\3\4", "the zip file is damaged or incomplete");
    row("no such member", zipOf({{"Content.xml", ""}}), "there is no content.xml in the zip file");
    row("no member", zipOf({}), "there is no content.xml in the zip file");
    row("encrypted", changed([](Member& member) { member.flags = 1; }),
        "content.xml in the zip file is encrypted");
    row("another packing", changed([](Member& member) { member.method = 12; }),
        "content.xml in the zip file is packed in an unknown way");
    row("too large", changed([](Member& member) { member.size = 1000001; }),
        "content.xml in the zip file is larger than 1000000 bytes");
    row("Zip64", changed([](Member& member) { member.size = 0xffffffff; }),
        "content.xml in the zip file is larger than 1000000 bytes");
    row("larger than it says", changed([](Member& member) { member.size = 79; }),
        "content.xml in the zip file is damaged");
    row("smaller than it says", changed([](Member& member) { member.size = 81; }),
        "content.xml in the zip file is damaged");
    row("beyond the end", changed([](Member& member) { member.packedSize = 100000; }),
        "content.xml in the zip file is damaged");
    row("another checksum", changed([](Member& member) { member.checksum = 1; }),
        "content.xml in the zip file is damaged");
    row("nowhere", changed([](Member& member) { member.offset = 0xfffffff0; }),
        "content.xml in the zip file is damaged");
    row("no deflated data", changed([](Member& member) { member.method = 8; }),
        "content.xml in the zip file is damaged");
}

void TestZipMember::saysWhatIsWrong()
{
    QFETCH(QByteArray, zip);
    QFETCH(QString, fault);

    QString said;
    QVERIFY(!read(zip, said));
    QCOMPARE(said, fault);
}

void TestZipMember::unpacksNoMoreThanAllowed()
{
    // Three megabytes in three kilobytes, which claim to be one.
    Member member {"content.xml", QByteArray(3000000, ' ')};
    member.isDeflated = true;
    QString fault;
    QVERIFY(!read(zipOf({member}), fault));
    QCOMPARE(fault, QString("content.xml in the zip file is larger than 1000000 bytes"));
    member.size = 1000;
    QVERIFY(!read(zipOf({member}), fault));
    QCOMPARE(fault, QString("content.xml in the zip file is damaged"));
}

void TestZipMember::everyBeginningIsRefused()
{
    Member member {"content.xml", "some text"};
    member.isDeflated = true;
    QByteArray const zip = zipOf({{"mimetype", "text"}, member});
    for (int size = 0; size < zip.size(); ++size) {
        QString fault;
        QVERIFY(!read(zip.left(size), fault));
        QVERIFY(!fault.isEmpty());
    }
}

void TestZipMember::noChangedByteDoesHarm()
{
    QRandomGenerator random = Testing::seededRandom(31);
    Member member {"content.xml", QByteArray("some text").repeated(30)};
    member.isDeflated = true;
    QByteArray const zip = zipOf({{"mimetype", "text"}, member});
    int read = 0;
    for (int i = 0; i < zip.size(); ++i) {
        for (int round = 0; round < 20; ++round) {
            QByteArray changed = zip;
            changed[i] = char(random.bounded(256));
            QString fault;
            auto const content = ::read(changed, fault);
            // Not all bytes count, but what is read is what was written.
            QVERIFY(content ? *content == member.content : !fault.isEmpty());
            read += content ? 1 : 0;
        }
    }
    QVERIFY(read > 0);
}

QTEST_GUILESS_MAIN(TestZipMember)

#include "tst_zipmember.moc"

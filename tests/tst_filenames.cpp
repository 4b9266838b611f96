// SPDX-License-Identifier: MIT
#include "process/filenames.h"
#include "testing.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <fcntl.h>
#include <unistd.h>

class TestFileNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { keepFileNamesExact(); }

    void validTextIsAsEver_data();
    void validTextIsAsEver();
    void strayBytesStandAlone_data();
    void strayBytesStandAlone();
    void everyShortNameComesBack();
    void randomNamesComeBack();
    void otherHalvesOfCharactersAreNoBytes();
    void foldersAreListedToTheByte();
    void noDocumentCanAskForIt();
};

namespace {

bool comesBack(QByteArray const& name)
{
    return QFile::encodeName(QFile::decodeName(name)) == name;
}

} // namespace

void TestFileNames::validTextIsAsEver_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QByteArray() << QString();
    QTest::newRow("ASCII") << QByteArray("a.xml") << "a.xml";
    QTest::newRow("two bytes") << QByteArray("\xc3\xa4") << QStringLiteral("\u00e4");
    QTest::newRow("four bytes") << QByteArray("\xf0\x9d\x94\xb8") << QStringLiteral("\U0001D538");
    QTest::newRow("replacement character")
        << QByteArray("\xef\xbf\xbd") << QStringLiteral("\ufffd");
    QTest::newRow("byte-order mark")
        << QByteArray("\xef\xbb\xbf") + "a" << QString(QChar(0xfeff)) + "a";
}

void TestFileNames::validTextIsAsEver()
{
    QFETCH(QByteArray, name);
    QFETCH(QString, text);
    QCOMPARE(QFile::decodeName(name), text);
    QCOMPARE(QFile::encodeName(text), name);
}

void TestFileNames::strayBytesStandAlone_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QVector<ushort>>("units");
    using Units = QVector<ushort>;
    QTest::newRow("one") << QByteArray("a\xff") << Units {'a', 0xdcff};
    QTest::newRow("after a character") << QByteArray("\xc3\xa4\xa4") << Units {0xe4, 0xdca4};
    QTest::newRow("after two units")
        << QByteArray("\xf0\x9d\x94\xb8\x80") << Units {0xd835, 0xdd38, 0xdc80};
    QTest::newRow("cut short") << QByteArray("\xe2\x82") << Units {0xdce2, 0xdc82};
    QTest::newRow("a surrogate") << QByteArray("\xed\xb3\xbf") << Units {0xdced, 0xdcb3, 0xdcbf};
    QTest::newRow("overlong") << QByteArray("\xc0\xaf") << Units {0xdcc0, 0xdcaf};
}

void TestFileNames::strayBytesStandAlone()
{
    QFETCH(QByteArray, name);
    QFETCH(QVector<ushort>, units);
    QCOMPARE(QFile::decodeName(name), QString::fromUtf16(units.constData(), units.size()));
    QVERIFY(comesBack(name));
}

void TestFileNames::everyShortNameComesBack()
{
    QByteArray name;
    for (int first = 1; first < 256; ++first) {
        name = QByteArray(1, char(first));
        QVERIFY2(comesBack(name), name.toHex());
        for (int second = 1; second < 256; ++second) {
            name = QByteArray(1, char(first)) + char(second);
            QVERIFY2(comesBack(name), name.toHex());
        }
    }
}

void TestFileNames::randomNamesComeBack()
{
    QRandomGenerator random = Testing::seededRandom(20240607);
    // Where the length of characters and their validity is decided.
    QByteArray const awkward("a\x7f\x80\x8f\x90\x9f\xa0\xbb\xbd\xbf\xc0\xc2\xc3\xe0\xe2\xed\xef\xf0"
                             "\xf4\xf5\xff");
    for (int i = 0; i < 100000; ++i) {
        QByteArray name;
        for (int size = random.bounded(1, 9); size > 0; --size)
            name += awkward.at(random.bounded(awkward.size()));
        QVERIFY2(comesBack(name), name.toHex());
    }
}

void TestFileNames::otherHalvesOfCharactersAreNoBytes()
{
    for (ushort const unit :
        std::initializer_list<ushort> {0xd800, 0xdbff, 0xdc00, 0xdc7f, 0xdd00, 0xdfff}) {
        QString const text = QString("a") + QChar(unit);
        QVERIFY(QFile::decodeName(QFile::encodeName(text)) != text);
    }
}

void TestFileNames::foldersAreListedToTheByte()
{
    QTemporaryDir const folder;
    QByteArray const path = QFile::encodeName(folder.path()) + "/\xff\xef\xbf\xbd";
    int const file = open(path.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
    QVERIFY(file >= 0);
    close(file);
    QStringList const names = QDir(folder.path()).entryList(QDir::Files);
    QCOMPARE(names, QStringList(QString(QChar(0xdcff)) + QChar(0xfffd)));
    QVERIFY(QFile::remove(folder.filePath(names.first())));
    QVERIFY(access(path.constData(), F_OK) != 0);
}

void TestFileNames::noDocumentCanAskForIt()
{
    for (char const* const encoding : {"/", "", "-", "x", "System"}) {
        QXmlStreamReader reader(
            QByteArray("<?xml version='1.0' encoding='") + encoding + "'?><D a='\xff'/>");
        while (!reader.atEnd())
            reader.readNext();
        QVERIFY2(reader.hasError(), encoding);
    }
}

QTEST_GUILESS_MAIN(TestFileNames)

#include "tst_filenames.moc"

// SPDX-License-Identifier: MIT
#include "document/contentkind.h"

#include <QTextCodec>
#include <QtTest>

class TestContentKind : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsEverySignature_data();
    void knowsEverySignature();
    void knowsNoneThatIsCutShort_data();
    void knowsNoneThatIsCutShort();
    void takesTheClosestKind_data();
    void takesTheClosestKind();
    void textIsNoBinary_data();
    void textIsNoBinary();
    void wideTextIsNoBinary_data();
    void wideTextIsNoBinary();
    void whatHoldsNullBytesIsBinary_data();
    void whatHoldsNullBytesIsBinary();
};

namespace {

/** A string literal with all its null bytes but the last. */
template <std::size_t size> QByteArray bytes(char const (&literal)[size])
{
    return QByteArray(literal, static_cast<int>(size) - 1);
}

/** A file's first bytes, up to the last that tells its kind. */
void addSignatures()
{
    QTest::addColumn<QByteArray>("signature");
    QTest::addColumn<QString>("kind");
    auto const row = [](char const* name, QByteArray const& signature, char const* kind) {
        QTest::newRow(name) << signature << QString::fromLatin1(kind);
    };
    QByteArray const member = bytes("PK\x03\x04") + QByteArray(26, 'x') + "mimetype";
    row("drawing", member + "application/vnd.oasis.opendocument.graphics",
        "an OpenDocument drawing");
    row("other OpenDocument", member + "application/vnd.oasis.opendocument.",
        "an OpenDocument file");
    row("zip", bytes("PK\x03\x04"), "a zip file");
    row("PNG", bytes("\x89PNG\r\n\x1a\n"), "a PNG picture");
    row("JPEG", bytes("\xff\xd8\xff"), "a JPEG picture");
    row("GIF", bytes("GIF8"), "a GIF picture");
    row("WebP", bytes("RIFF\x10\x20\x30\x40WEBP"), "a WebP picture");
    row("BMP", "BM" + QByteArray(12, 'x') + bytes("\x28\0\0\0"), "a BMP picture");
    row("TIFF, low bytes first", bytes("II*\0"), "a TIFF picture");
    row("TIFF, high bytes first", bytes("MM\0*"), "a TIFF picture");
    row("icon", bytes("\0\0\1\0"), "an icon");
    row("PDF", bytes("%PDF-"), "a PDF document");
    row("PostScript", bytes("%!PS"), "a PostScript document");
    row("gzip", bytes("\x1f\x8b"), "a compressed file (gzip)");
    row("TrueType", bytes("\0\1\0\0"), "a font");
    row("OpenType", bytes("OTTO"), "a font");
    row("font collection", bytes("ttcf"), "a font");
    row("web font", bytes("wOF"), "a font");
    row("ELF",
        bytes("\x7f"
              "ELF"),
        "a program or library");
}

} // namespace

void TestContentKind::knowsEverySignature_data()
{
    addSignatures();
}

void TestContentKind::knowsEverySignature()
{
    QFETCH(QByteArray, signature);
    QFETCH(QString, kind);
    QCOMPARE(kindOfContent(signature), kind);
    QCOMPARE(kindOfContent(signature + "more"), kind);
}

void TestContentKind::knowsNoneThatIsCutShort_data()
{
    addSignatures();
}

void TestContentKind::knowsNoneThatIsCutShort()
{
    QFETCH(QByteArray, signature);
    QFETCH(QString, kind);
    signature.chop(1);
    QVERIFY(kindOfContent(signature) != kind);
    // Nor when another byte stands in the place of the last.
    QVERIFY(kindOfContent(signature + '~') != kind);
}

void TestContentKind::takesTheClosestKind_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("kind");
    QByteArray const zip = bytes("PK\x03\x04") + QByteArray(26, '\0');
    QTest::newRow("OpenDocument text") << zip + "mimetypeapplication/vnd.oasis.opendocument.text"
                                       << "an OpenDocument file";
    QTest::newRow("zip file of another application") << zip + "mimetypeapplication/epub+zip"
                                                     << "a zip file";
    QTest::newRow("letters of a BMP picture")
        << QByteArray("BMW and others, in a longer text") << "";
    QTest::newRow("wave file") << bytes("RIFF\x10\x20\x30\x40WAVE") << "";
    QTest::newRow("WEBP elsewhere") << QByteArray("<!-- my WEBP drawing --><D/>") << "";
    QTest::newRow("media type elsewhere")
        << "<!--" + QByteArray(26, 'x') + "mimetypeapplication/vnd.oasis.opendocument.text--><D/>"
        << "";
}

void TestContentKind::takesTheClosestKind()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, kind);
    QCOMPARE(kindOfContent(content), kind);
}

void TestContentKind::textIsNoBinary_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("one letter") << QByteArray("a");
    QTest::newRow("UTF-8") << QByteArray("<D n=\"\xc3\xa4\"/>");
    QTest::newRow("UTF-8 with a mark") << QByteArray("\xef\xbb\xbf<D n=\"\xc3\xa4\"/>");
    QTest::newRow("Latin 1") << QByteArray("<D n=\"\xe4\xff\xfe\"/>");
    QTest::newRow("no markup") << QByteArray("d41d8cd98f00b204e9800998ecf8427e  file\n");
}

void TestContentKind::textIsNoBinary()
{
    QFETCH(QByteArray, content);
    QCOMPARE(kindOfContent(content), QString());
}

void TestContentKind::wideTextIsNoBinary_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<bool>("isMarked");
    for (char const* const codec : {"UTF-16LE", "UTF-16BE", "UTF-32LE", "UTF-32BE"}) {
        QTest::addRow("%s", codec) << QByteArray(codec) << false;
        QTest::addRow("%s with a mark", codec) << QByteArray(codec) << true;
    }
}

void TestContentKind::wideTextIsNoBinary()
{
    QFETCH(QByteArray, codec);
    QFETCH(bool, isMarked);
    QTextCodec::ConverterState state(
        isMarked ? QTextCodec::DefaultConversion : QTextCodec::IgnoreHeader);
    // Without a mark only markup is known as text.
    QString const text = isMarked ? QStringLiteral("any text") : QStringLiteral("<D/>");
    QByteArray const content =
        QTextCodec::codecForName(codec)->fromUnicode(text.constData(), text.size(), &state);
    QVERIFY(content.contains('\0'));
    QCOMPARE(content.size() % text.size(), isMarked ? content.size() / (text.size() + 1) : 0);
    QCOMPARE(kindOfContent(content), QString());
}

void TestContentKind::whatHoldsNullBytesIsBinary_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("kind");
    QString const binary = QStringLiteral("a binary file");
    QTest::newRow("null byte") << bytes("\0") << binary;
    QTest::newRow("numbers") << bytes("\5\0\0\0\xff\xff\1\0") << binary;
    QTest::newRow("last byte that is looked at") << QByteArray(1023, 'a') + '\0' << binary;
    QTest::newRow("first byte that is not") << QByteArray(1024, 'a') + '\0' << QString();
}

void TestContentKind::whatHoldsNullBytesIsBinary()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, kind);
    QCOMPARE(kindOfContent(content), kind);
}

QTEST_GUILESS_MAIN(TestContentKind)

#include "tst_contentkind.moc"

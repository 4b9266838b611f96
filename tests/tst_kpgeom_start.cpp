// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"

using namespace KpgeomTesting;

namespace {

QByteArray svgPicture(QByteArray const& content)
{
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"80\" height=\"40\">" + content
        + "</svg>";
}

} // namespace

/** What the tool makes before it works: an application only for what needs fonts or pixmaps. */
class TestKpgeomStart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void applicationIsMadeWhereItIsNeeded_data();
    void applicationIsMadeWhereItIsNeeded();
    void textOfPictureIsRead_data();
    void textOfPictureIsRead();
    void nothingIsSaidOfAnimations();
    void fileNamesAreTextInTheLocale();

private:
    std::unique_ptr<Workplace> m_place;
};

void TestKpgeomStart::init()
{
    m_place = std::make_unique<Workplace>();
    m_place->write("box.xml", "<Shape>" + boxGeometry() + "</Shape>");
    m_place->write("path.svg", svgPicture("<path d=\"M0 0H80V40z\"/>"));
    m_place->write("wide.svg",
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"160\" height=\"40\">"
        "<path d=\"M0 0H160V40z\"/></svg>");
    m_place->write("picture.ppm", "P3 1 1 255 0 0 0\n");
    m_place->write("text.svg", svgPicture("<text y=\"20\">I</text>"));
}

void TestKpgeomStart::applicationIsMadeWhereItIsNeeded_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("isNeeded");
    auto const row = [](char const* command, bool isNeeded) {
        QTest::newRow(command) << QString(command).split(' ') << isNeeded;
    };
    row("--help", false);
    row("info box.xml", false);
    row("resize box.xml --from 100x60 --to 200x60 -o -", false);
    row("convert path.svg -o -", false);
    row("fit path.svg wide.svg -o -", false);
    row("bind path.svg --slices 4,4,4,4 -o -", false);
    row("svg box.xml", false);
    row("check box.xml", false);
    row("diff box.xml box.xml", false);
    row("normalize box.xml", false);
    row("colour red", false);
    row("units 1 in mm", false);
    row("pages", false);
    row("digest box.xml", false);
    row("recent --config . add box.xml", false);
    row("render box.xml -o box.png", false);
    row("render box.xml -o box.pdf", false);
    row("render box.xml -o box.html", false);

    row("info --help", true);
    row("convert text.svg -o -", true);
    row("render box.xml -o box.svg", true);
    row("render box.xml --points -o box.png", true);
    row("render box.xml --sheet -o box.pdf", true);
    row("fit path.svg wide.svg -o - --report sheet.png", true);
    row("colour red --swatches table.png", true);
    row("blur picture.ppm -r 1 -o blurred.png", true);
}

void TestKpgeomStart::applicationIsMadeWhereItIsNeeded()
{
    QFETCH(QStringList, arguments);
    QFETCH(bool, isNeeded);
    Workplace::Start start;
    // The loader's own list of what it loads, in a file with the number of the process.
    start.variables = {{"LD_DEBUG", "files"}, {"LD_DEBUG_OUTPUT", m_place->path("loaded")}};
    Result const result = m_place->run(arguments, start);
    QVERIFY(result.exited);
    QVERIFY2(result.code == 0 || result.code == 3, result.err.constData());
    // Several if it starts other programs, as a sanitizer does.
    QByteArray loaded;
    for (QString const& list : m_place->entries().filter("loaded."))
        loaded += m_place->read(list);
    QVERIFY(loaded.contains("libQt5Gui.so"));
    QCOMPARE(loaded.contains("libqoffscreen.so"), isNeeded);
}

void TestKpgeomStart::textOfPictureIsRead_data()
{
    QTest::addColumn<QByteArray>("svg");
    QTest::newRow("plain") << svgPicture("<text y=\"20\">I</text>");
    QTest::newRow("a prefix") << QByteArray(
        "<s:svg xmlns:s=\"http://www.w3.org/2000/svg\" width=\"80\" height=\"40\">"
        "<s:g><s:text y=\"20\">I</s:text></s:g></s:svg>");
    QTest::newRow("an area") << svgPicture(
        "<textArea width=\"80\" height=\"40\">I</textArea><rect width=\"1\" height=\"1\"/>");
    QTest::newRow("used") << QByteArray(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
        "width=\"80\" height=\"40\"><defs><text id=\"t\" y=\"20\">I</text></defs>"
        "<use xlink:href=\"#t\"/></svg>");
    QTest::newRow("a symbol") << svgPicture(
        "<symbol id=\"s\" viewBox=\"0 0 9 9\"><text y=\"9\">I</text></symbol>");
    QTest::newRow("two bytes a character") << QByteArray("\xFF\xFE") + [](QString const& text) {
        return QByteArray(reinterpret_cast<char const*>(text.utf16()), 2 * text.size());
    }(QString(svgPicture("<text y=\"20\">I</text>")));
}

void TestKpgeomStart::textOfPictureIsRead()
{
    QFETCH(QByteArray, svg);
    m_place->write("in.svg", svg);
    Result const result = m_place->run({"convert", "in.svg", "-o", "-"});
    QVERIFY2(result.exited, result.err.constData());
    QVERIFY2(result.code == 0 || result.code == 3, result.err.constData());
    QVERIFY(result.out.contains("<LineTo>"));
}

void TestKpgeomStart::nothingIsSaidOfAnimations()
{
    m_place->write("in.svg",
        svgPicture("<rect width=\"80\" height=\"40\"><animateColor attributeName=\"fill\" "
                   "from=\"black\" to=\"black\" dur=\"2s\"/></rect>"));
    Result const result = m_place->run({"convert", "in.svg", "-o", "-"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray());
    QVERIFY(result.out.contains("<LineTo>"));
}

void TestKpgeomStart::fileNamesAreTextInTheLocale()
{
    QString const name = QString::fromUtf8("Gr\xC3\xB6\xC3\x9F"
                                           "e.xml");
    m_place->write(name, "<Shape>" + boxGeometry() + "</Shape>");
    Result const result = m_place->run({"svg", name});
    COMPARE_EXIT(result, 0);
    QVERIFY(result.out.contains("100"));
}

QTEST_GUILESS_MAIN(TestKpgeomStart)
#include "tst_kpgeom_start.moc"

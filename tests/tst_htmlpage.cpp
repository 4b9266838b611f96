// SPDX-License-Identifier: MIT
#include "export/htmlpage.h"
#include "outlinetesting.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

/** The text of a page; what it does is tested in a browser, by tst_draggedpage. */
class TestHtmlPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void holdsEveryFieldOfTheOutlines();
    void numbersAreExact();
    void whatIsNoNumberIsNull();
    void flagsAndFillRuleAreHeld_data();
    void flagsAndFillRuleAreHeld();
    void policyNamesStyleAndScript_data();
    void policyNamesStyleAndScript();
    void namesDoNotBreakOut_data();
    void namesDoNotBreakOut();
    void titleIsEscaped();
    void asksForNothingElse();
    void isTheSameEveryTime();
};

namespace {

Shape shapeOf(std::shared_ptr<KpPathSegList> const& list)
{
    return {"shape", QSizeF(), std::nullopt, list};
}

Shape pointOf(KpReal const& x)
{
    auto list = std::make_shared<KpPathSegList>();
    list->addTail(new KpPathSegMoveTo(KpPoint(x, KpReal()), nullptr));
    return shapeOf(list);
}

PageSettings settings()
{
    return {"page", QSizeF(240, 160), false, QColor()};
}

QByteArray between(QByteArray const& text, QByteArray const& before, QByteArray const& after)
{
    int const begin = text.indexOf(before) + before.size();
    return text.mid(begin, text.indexOf(after, begin) - begin);
}

QByteArray dataTextOf(QByteArray const& page)
{
    return between(page, "<script type=\"application/json\" id=\"data\">", "</script>");
}

QJsonObject dataOf(QByteArray const& page)
{
    return QJsonDocument::fromJson(dataTextOf(page)).object();
}

QJsonObject firstOutline(Shape const& shape)
{
    return dataOf(htmlPage({shape}, settings())).value("outlines").toArray().first().toObject();
}

/** Base, rate and value of the x of the first segment. */
QJsonArray firstReal(Shape const& shape)
{
    QJsonArray const segments = firstOutline(shape).value("segments").toArray();
    return segments.first().toArray().at(1).toArray();
}

} // namespace

void TestHtmlPage::holdsEveryFieldOfTheOutlines()
{
    auto list = std::make_shared<KpPathSegList>();
    auto const point = [](double first) {
        return KpPoint(KpReal(1, first, first + 1), KpReal(6, first + 2, first + 3));
    };
    list->addTail(new KpPathSegMoveTo(point(0), nullptr));
    list->addTail(new KpPathSegLineTo(point(10), nullptr));
    list->addTail(new KpPathSegCurveTo(point(20), point(30), point(40), nullptr));
    auto* const ellipse = new KpPathSegEllipse(point(50), KpReal(), KpReal(), nullptr);
    ellipse->a = KpReal(7, 60, 61);
    ellipse->b = KpReal(-5, 62, 63);
    list->addTail(ellipse);
    QByteArray const page = htmlPage({shapeOf(list)}, {"page", QSizeF(12.5, 8), true, QColor()});
    QVERIFY2(dataTextOf(page).contains(
                 R"("segments":[["M",[1,0,1],[6,2,3]],["L",[1,10,11],[6,12,13]],)"
                 R"(["C",[1,40,41],[6,42,43],[1,20,21],[6,22,23],[1,30,31],[6,32,33]],)"
                 R"(["E",[1,50,51],[6,52,53],[7,60,61],[-5,62,63]]])"),
        dataTextOf(page).constData());
    QVERIFY(dataTextOf(page).contains(R"("box":[12.5,8])"));
    QVERIFY(dataTextOf(page).contains(R"("points":true)"));
}

void TestHtmlPage::numbersAreExact()
{
    QRandomGenerator random = Testing::seededRandom(11);
    for (int round = 0; round < 2000; ++round) {
        double const rate = Testing::awkwardReal(random);
        double const value = Testing::awkwardReal(random);
        QJsonArray const real = firstReal(pointOf(KpReal(1, rate, value)));
        // There is but one NaN in the page, and no infinity.
        if (std::isfinite(rate))
            COMPARE_BITS(real.at(1).toDouble() + 0.0, rate + 0.0);
        else
            QVERIFY(real.at(1).isNull());
        if (std::isfinite(value))
            COMPARE_BITS(real.at(2).toDouble() + 0.0, value + 0.0);
        else
            QVERIFY(real.at(2).isNull());
    }
}

void TestHtmlPage::whatIsNoNumberIsNull()
{
    QCOMPARE(firstReal(pointOf(KpReal(3, Testing::notANumber, -Testing::infinite))),
        QJsonArray({3, QJsonValue(), QJsonValue()}));
}

void TestHtmlPage::flagsAndFillRuleAreHeld_data()
{
    QTest::addColumn<int>("flags");
    for (int flags = 0; flags < 16; ++flags)
        QTest::newRow(qPrintable(QString::number(flags))) << flags;
}

void TestHtmlPage::flagsAndFillRuleAreHeld()
{
    QFETCH(int, flags);
    Shape shape = pointOf(KpReal());
    shape.list->closed = flags & 1;
    shape.list->noFill = flags & 2;
    shape.list->noLine = flags & 4;
    if (flags & 8)
        shape.fillRule = Qt::OddEvenFill;
    QJsonObject const outline = firstOutline(shape);
    QCOMPARE(outline.value("closed"), QJsonValue(bool(flags & 1)));
    QCOMPARE(outline.value("noFill"), QJsonValue(bool(flags & 2)));
    QCOMPARE(outline.value("noLine"), QJsonValue(bool(flags & 4)));
    QCOMPARE(outline.value("fillRule"), QJsonValue(flags & 8 ? "evenodd" : "nonzero"));
}

void TestHtmlPage::policyNamesStyleAndScript_data()
{
    QTest::addColumn<QColor>("background");
    QTest::newRow("no ground") << QColor();
    QTest::newRow("ground") << QColor(1, 2, 3);
}

void TestHtmlPage::policyNamesStyleAndScript()
{
    QFETCH(QColor, background);
    QByteArray const page = htmlPage({}, {"page", QSizeF(1, 1), false, background});
    auto const hash = [](QByteArray const& text) {
        return QCryptographicHash::hash(text, QCryptographicHash::Sha256).toBase64();
    };
    QByteArray const style = between(page, "<style>", "</style>");
    QByteArray const script = between(page, "<script>", "</script>");
    QVERIFY(style.size() > 1000);
    QVERIFY(script.size() > 1000);
    QCOMPARE(between(page, "Content-Security-Policy\" content=\"", "\""),
        "default-src 'none'; style-src 'sha256-" + hash(style) + "'; script-src 'sha256-"
            + hash(script) + "'; base-uri 'none'; form-action 'none'");
}

void TestHtmlPage::namesDoNotBreakOut_data()
{
    QTest::addColumn<QString>("name");
    for (char const* const name : {"</script><script>alert(1)</script>", "<!--<script>", "]]>",
             "\"\\\n\t", "{{script}}", "&lt;/script&gt;", "\342\200\250\342\200\251", "\001"})
        QTest::newRow(name) << QString::fromUtf8(name);
    QTest::newRow("lone surrogate") << QString(QChar(0xD800));
    QTest::newRow("NUL") << QString(QChar(0));
}

void TestHtmlPage::namesDoNotBreakOut()
{
    QFETCH(QString, name);
    Shape shape = pointOf(KpReal());
    QByteArray const plain = htmlPage({shape}, settings());
    shape.name = name;
    QByteArray const page = htmlPage({shape}, settings());
    for (char const* const mark : {"<", ">", "&", "\342\200\250", "\342\200\251"})
        QCOMPARE(page.count(mark), plain.count(mark));
    QCOMPARE(firstOutline(shape).value("name").toString(), name);
}

void TestHtmlPage::titleIsEscaped()
{
    PageSettings hostile = settings();
    hostile.title = "</title>\"&{{data}}";
    QByteArray const page = htmlPage({}, hostile);
    QCOMPARE(between(page, "<title>", "</title>"), QByteArray("&lt;/title&gt;&quot;&amp;{{data}}"));
    QCOMPARE(page.count("id=\"data\""), htmlPage({}, settings()).count("id=\"data\""));
}

void TestHtmlPage::asksForNothingElse()
{
    QByteArray page = htmlPage({pointOf(KpReal())}, settings());
    QCOMPARE(page.count("http://www.w3.org/2000/svg"), 1); // a name, not an address
    page.replace("http://www.w3.org/2000/svg", "");
    for (char const* const sign : {"://", "src=", "href=", "url(", "@import", "fetch("})
        QVERIFY2(!page.contains(sign), sign);
    QCOMPARE(page.count("<script"), 2);
}

void TestHtmlPage::isTheSameEveryTime()
{
    QRandomGenerator random = Testing::seededRandom(12);
    auto list = std::make_shared<KpPathSegList>();
    OutlineTesting::fillRandomly(*list, 50, random);
    QCOMPARE(htmlPage({shapeOf(list)}, settings()), htmlPage({shapeOf(list)}, settings()));
}

QTEST_GUILESS_MAIN(TestHtmlPage)

#include "tst_htmlpage.moc"

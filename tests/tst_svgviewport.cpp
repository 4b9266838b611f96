// SPDX-License-Identifier: MIT
#include "import/svgviewport.h"
#include "testing.h"

using Testing::notANumber;

class TestSvgViewport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsLengths_data();
    void readsLengths();
    void readsBoxes_data();
    void readsBoxes();
    void fitsBoxes_data();
    void fitsBoxes();
};

void TestSvgViewport::readsLengths_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("whole");
    QTest::addColumn<double>("expected"); // NaN if it is none
    auto const row = [](char const* text, double expected, double whole = 200.0) {
        QTest::addRow("'%s' of %g", text, whole) << QString(text) << whole << expected;
    };
    row("0", 0.0);
    row("12", 12.0);
    row("-3.5", -3.5);
    row("+.25", 0.25);
    row(" 7 ", 7.0);
    row("1e2", 100.0);
    row("1E-2px", 0.01);
    row("2px", 2.0);
    row("8pt", 10.0);
    row("2pc", 30.0);
    row("10mm", 35.43307);
    row("1cm", 35.43307);
    row("0.5in", 45.0);
    row("50%", 100.0);
    row("-10%", -20.0);
    row("50%", notANumber, 0.0);
    row("50%", notANumber, -1.0);
    for (char const* const none : {"", "px", "auto", "-", ".", "1.e", "1e", "1em", "1ex", "1 px",
             "1px2", "nan", "inf", "0x10", "1e999", "--1", "1,5", "%", "\xd9\xa1"})
        row(none, notANumber);
}

void TestSvgViewport::readsLengths()
{
    QFETCH(QString, text);
    QFETCH(double, whole);
    QFETCH(double, expected);
    auto const length = SvgViewport::length(text, whole);
    QCOMPARE(length.has_value(), !std::isnan(expected));
    if (length)
        QCOMPARE(*length, expected);
}

void TestSvgViewport::readsBoxes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVector<double>>("expected");
    auto const row = [](char const* text, QVector<double> const& expected) {
        QTest::newRow(text) << QString(text) << expected;
    };
    row("0 0 24 12", {0.0, 0.0, 24.0, 12.0});
    row(" -1,2 , 3.5\n4e1 ", {-1.0, 2.0, 3.5, 40.0});
    row("0 0 0 -5", {0.0, 0.0, 0.0, -5.0});
    for (char const* const none : {"", "none", "0 0 24", "0 0 24 12 1", "0 0 24 12px", "0 0 nan 5",
             "0 0 1e999 5", "0 0 inf 5"})
        row(none, {});
}

void TestSvgViewport::readsBoxes()
{
    QFETCH(QString, text);
    QFETCH(QVector<double>, expected);
    QVector<double> read;
    if (auto const box = SvgViewport::box(text))
        read << box->x() << box->y() << box->width() << box->height();
    QCOMPARE(read, expected);
}

void TestSvgViewport::fitsBoxes_data()
{
    QTest::addColumn<QString>("aspect");
    QTest::addColumn<QSizeF>("place"); // at (100, 1000)
    QTest::addColumn<QRectF>("expected"); // of a box of 10 by 20 at (-1, -2)
    QTest::addColumn<bool>("isCut");
    auto const row = [](char const* aspect, QSizeF const& place, QRectF const& expected,
                         bool isCut = false) {
        QTest::addRow("'%s' in %g by %g", aspect, place.width(), place.height())
            << QString(aspect) << place << expected << isCut;
    };
    QSizeF const wide(40.0, 40.0);
    QSizeF const high(10.0, 60.0);
    row("", wide, {110.0, 1000.0, 20.0, 40.0});
    row("xMidYMid", wide, {110.0, 1000.0, 20.0, 40.0});
    row("xMidYMid meet", wide, {110.0, 1000.0, 20.0, 40.0});
    row("xMinYMid", wide, {100.0, 1000.0, 20.0, 40.0});
    row("xMaxYMin meet", wide, {120.0, 1000.0, 20.0, 40.0});
    row("defer xMaxYMax", wide, {120.0, 1000.0, 20.0, 40.0});
    row("", high, {100.0, 1020.0, 10.0, 20.0});
    row("xMaxYMin", high, {100.0, 1000.0, 10.0, 20.0});
    row("xMinYMax", high, {100.0, 1040.0, 10.0, 20.0});
    row("none", wide, {100.0, 1000.0, 40.0, 40.0});
    row("none slice", high, {100.0, 1000.0, 10.0, 60.0});
    row("xMidYMid slice", wide, {100.0, 980.0, 40.0, 80.0}, true);
    row("xMinYMin  slice", wide, {100.0, 1000.0, 40.0, 80.0}, true);
    row("xMaxYMax slice", high, {80.0, 1000.0, 30.0, 60.0}, true);
    row("xMinYMin slice", {5.0, 10.0}, {100.0, 1000.0, 5.0, 10.0});
    row("anything else", wide, {110.0, 1000.0, 20.0, 40.0});
}

void TestSvgViewport::fitsBoxes()
{
    QFETCH(QString, aspect);
    QFETCH(QSizeF, place);
    QFETCH(QRectF, expected);
    QFETCH(bool, isCut);
    QRectF const box(-1.0, -2.0, 10.0, 20.0);
    auto const fit = SvgViewport::fit(box, QRectF(QPointF(100.0, 1000.0), place), aspect);
    QCOMPARE(fit.transform.mapRect(box), expected);
    QCOMPARE(fit.isCut, isCut);
}

QTEST_APPLESS_MAIN(TestSvgViewport)
#include "tst_svgviewport.moc"

// SPDX-License-Identifier: MIT
#include "document/shortlines.h"
#include "outlinetesting.h"

using Testing::infinite;
using Testing::notANumber;

using Indices = QVector<int>;
/** Appends segments to an outline. */
using Draw = void (*)(KpPathSegList&);

Q_DECLARE_METATYPE(Draw)

namespace {

void move(KpPathSegList& list, double x, double y)
{
    list.segs.append(new KpPathSegMoveTo(QPointF(x, y), &list));
}

void line(KpPathSegList& list, double x, double y)
{
    list.segs.append(new KpPathSegLineTo(QPointF(x, y), &list));
}

void curve(KpPathSegList& list, double x, double y)
{
    list.segs.append(new KpPathSegCurveTo(QPointF(x, y), QPointF(x, y), QPointF(x, y), &list));
}

void ellipse(KpPathSegList& list, double x, double y, double a, double b)
{
    list.segs.append(new KpPathSegEllipse(QPointF(x, y), a, b, &list));
}

} // namespace

class TestShortLines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsLinesThatAreNotDrawn_data();
    void findsLinesThatAreNotDrawn();
};

void TestShortLines::findsLinesThatAreNotDrawn_data()
{
    QTest::addColumn<Draw>("draw");
    QTest::addColumn<Indices>("undrawn");
    QTest::addColumn<int>("lost");
    auto const row = [](char const* name, Draw draw, Indices const& undrawn, int lost) {
        QTest::newRow(name) << draw << undrawn << lost;
    };
    row(
        "no segments", [](KpPathSegList&) {}, {}, 0);
    row(
        "long lines",
        [](KpPathSegList& list) {
            move(list, 0, 0);
            line(list, 1, 0);
            line(list, 1, 1);
            line(list, 0.5, 2.5);
        },
        {}, 0);
    row(
        "shorter than a unit",
        [](KpPathSegList& list) {
            move(list, 5, 5);
            line(list, 5.999, 5);
            line(list, 5, 4.001);
            line(list, 5.999, 5.999);
        },
        {1, 2, 3}, 3);
    row(
        "a unit in one direction is enough",
        [](KpPathSegList& list) {
            move(list, 5, 5);
            line(list, 6, 5.1);
            line(list, 6.1, 4.1);
        },
        {}, 0);
    row(
        "measured from where the drawing stands",
        [](KpPathSegList& list) {
            move(list, 0, 0);
            line(list, 0.6, 0);
            line(list, 1.2, 0);
            line(list, 1.8, 0);
        },
        {1, 3}, 2);
    row(
        "no length is no loss",
        [](KpPathSegList& list) {
            move(list, 5, 5);
            line(list, 5, 5);
            line(list, 9, 5);
            line(list, 9, 5);
        },
        {1, 3}, 0);
    row(
        "back to where the drawing stands is no loss",
        [](KpPathSegList& list) {
            move(list, 5, 5);
            line(list, 5.5, 5);
            line(list, 5, 5);
        },
        {1, 2}, 1);
    row(
        "line at the very start", [](KpPathSegList& list) { line(list, 0, 0); }, {}, 0);
    row(
        "lines without a move",
        [](KpPathSegList& list) {
            line(list, 0.5, 0.5);
            line(list, 0.75, 0.75);
        },
        {1}, 1);
    row(
        "moves and curves are drawn however short",
        [](KpPathSegList& list) {
            move(list, 5, 5);
            move(list, 5, 5);
            curve(list, 5, 5);
            curve(list, 5.5, 5);
        },
        {}, 0);
    row(
        "after a curve",
        [](KpPathSegList& list) {
            move(list, 0, 0);
            curve(list, 50, 50);
            line(list, 50.5, 50);
            line(list, 0, 0.5);
        },
        {2}, 1);
    row(
        "an ellipse is drawn however small",
        [](KpPathSegList& list) {
            move(list, 5, 5);
            ellipse(list, 5, 5, 0.1, 0.1);
        },
        {}, 0);
    row(
        "after an ellipse the drawing stands at its right",
        [](KpPathSegList& list) {
            ellipse(list, 50, 50, 20, 10);
            line(list, 70.5, 50);
            line(list, 70, 50);
            line(list, 50, 50);
        },
        {1, 2}, 1);
    row(
        "a coordinate that is no number",
        [](KpPathSegList& list) {
            move(list, 5, 5);
            line(list, notANumber, 5);
            line(list, 5, notANumber);
        },
        {}, 0);
    row(
        "an infinite coordinate",
        [](KpPathSegList& list) {
            move(list, 5, 5);
            line(list, infinite, 5);
            line(list, infinite, 5.5);
        },
        {}, 0);
}

void TestShortLines::findsLinesThatAreNotDrawn()
{
    QFETCH(Draw, draw);
    QFETCH(Indices, undrawn);
    QFETCH(int, lost);
    KpPathSegList list;
    draw(list);
    QCOMPARE(undrawnLines(list), undrawn);
    QCOMPARE(countLostLines(list), lost);
}

QTEST_GUILESS_MAIN(TestShortLines)

#include "tst_shortlines.moc"

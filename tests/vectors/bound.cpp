// SPDX-License-Identifier: MIT
#include "kpbound.h"
#include "outlinesamples.h"
#include "themes.h"

namespace {

void addReals(Vectors::Theme& theme)
{
    theme.add("KpReal::KpReal()", {}, {{"real", KpReal()}});
    theme.add("KpReal::KpReal(qint16, double, double)",
        {{"rule", 6}, {"parameter", 0.75}, {"current", -2.5}}, {{"real", KpReal(6, 0.75, -2.5)}});
    for (KpReal const& before : Vectors::sampleReals()) {
        for (QSizeF const& box : Vectors::sampleBoxes()) {
            Vectors::Fields const inputs {
                {"real", before}, {"width", box.width()}, {"height", box.height()}};
            KpReal after = before;
            after.updateValue(box.width(), box.height());
            theme.add("KpReal::updateValue(double, double)", inputs, {{"real", after}});
            after = before;
            after.updateRate(box.width(), box.height());
            theme.add("KpReal::updateRate(double, double)", inputs, {{"real", after}});
        }
    }
}

void addRules(Vectors::Theme& theme)
{
    for (double const number : {0.0, 0.25, -12.5}) {
        Vectors::Fields const value {{"value", number}};
        Vectors::Fields const rate {{"rate", number}};
        Vectors::Fields const distance {{"distance", number}};
        theme.add("KpBound::absolute(double)", value, {{"real", KpBound::absolute(number)}});
        theme.add("KpBound::partOfWidth(double)", rate, {{"real", KpBound::partOfWidth(number)}});
        theme.add("KpBound::partOfHeight(double)", rate, {{"real", KpBound::partOfHeight(number)}});
        theme.add("KpBound::fromRight(double)", distance, {{"real", KpBound::fromRight(number)}});
        theme.add("KpBound::fromBottom(double)", distance, {{"real", KpBound::fromBottom(number)}});
        theme.add("KpBound::partOfSide(double)", rate, {{"real", KpBound::partOfSide(number)}});
        theme.add("KpBound::fromRightPartOfSide(double)", rate,
            {{"real", KpBound::fromRightPartOfSide(number)}});
        theme.add("KpBound::fromBottomPartOfSide(double)", rate,
            {{"real", KpBound::fromBottomPartOfSide(number)}});
    }
}

void addPoints(Vectors::Theme& theme)
{
    std::vector<KpReal> const reals = Vectors::sampleReals();
    theme.add("KpPoint::KpPoint()", {}, {{"point", KpPoint()}});
    for (std::size_t i = 0; i + 1 < reals.size(); i += 3) {
        KpReal const x = reals[i];
        KpReal const y = reals[i + 1];
        Vectors::Fields const coordinates {{"x", x}, {"y", y}};
        theme.add("KpPoint::KpPoint(KpReal const&, KpReal const&)", coordinates,
            {{"point", KpPoint(x, y)}});
        theme.add("KpBound::point(KpReal const&, KpReal const&)", coordinates,
            {{"point", KpBound::point(x, y)}});
        for (QSizeF const& box : {QSizeF(240, 160), QSizeF(0.001, 7)}) {
            Vectors::Fields const inputs {
                {"point", KpPoint(x, y)}, {"width", box.width()}, {"height", box.height()}};
            KpPoint after(x, y);
            after.updateValue(box.width(), box.height());
            theme.add("KpPoint::updateValue(double, double)", inputs, {{"point", after}});
            after = KpPoint(x, y);
            after.updateRate(box.width(), box.height());
            theme.add("KpPoint::updateRate(double, double)", inputs, {{"point", after}});
        }
    }
}

void addRecords(Vectors::Theme& theme)
{
    QVector<int> const ints {9, 1, 2, 70000, -1};
    QVector<double> const doubles {0.5, 10, 0.25, 20, 0.75, 30};
    struct Start
    {
        int ints;
        int doubles;
    };
    for (Start const start : {Start {0, 0}, {1, 1}, {2, 2}, {3, 4}, {4, 6}, {-1, -2}, {99, 99}}) {
        KpPoint point(KpBound::absolute(1), KpBound::absolute(2));
        int intPos = start.ints;
        int doublePos = start.doubles;
        point.fromUndoValue(ints, doubles, intPos, doublePos);
        theme.add("KpPoint::fromUndoValue(QVector<int>, QVector<double>, int&, int&)",
            {{"ints", ints}, {"doubles", doubles}, {"intPos", start.ints},
                {"doublePos", start.doubles}},
            {{"point", point}, {"intPos", intPos}, {"doublePos", doublePos}});
    }
}

} // namespace

void Vectors::addBound(Theme& theme)
{
    addReals(theme);
    addRules(theme);
    addPoints(theme);
    addRecords(theme);
}

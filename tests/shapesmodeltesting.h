// SPDX-License-Identifier: MIT
#ifndef SHAPESMODELTESTING_H
#define SHAPESMODELTESTING_H

#include "kppathseglineto.h"
#include "kppathsegmoveto.h"
#include "model/binding.h"
#include "model/handle.h"
#include "model/shapeitem.h"
#include "outlinetesting.h"

#include <memory>

/** Short texts for what the editor's model holds. */
namespace ShapesModelTesting {

/** Takes numbers from a list of words, in proportion to the box. */
class PointReader
{
public:
    PointReader(QStringList const& words, int at, QSizeF const& box)
        : m_words(words)
        , m_at(at)
        , m_box(box)
    {
    }

    KpReal real(qint16 rule)
    {
        KpReal real(rule, 0.0, m_words.at(m_at++).toDouble());
        bindInPlace(real, rule, m_box);
        return real;
    }
    KpPoint point()
    {
        KpReal const x = real(KpReal::PartOfWidth);
        return {x, real(KpReal::PartOfHeight)};
    }

private:
    QStringList const& m_words;
    int m_at;
    QSizeF m_box;
};

/**
 * A shape of the letters M, L, C and E with their numbers behind them: "M 0 0 C 1 1 2 2 3 3 E 5 5 2
 * 1", all in proportion to the box.
 */
inline WorkingShape shapeOf(QString const& text, bool isClosed = false, QSizeF box = {200.0, 100.0})
{
    WorkingShape shape = workingShapeOf({QString(), box, std::nullopt, {}, {}, -1});
    QStringList const words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (int i = 0; i < words.size();) {
        PointReader reader(words, i + 1, box);
        QString const letter = words.at(i);
        i += letter == "C" ? 7 : letter == "E" ? 5 : 3;
        KpPoint const first = reader.point();
        if (letter == "M") {
            shape.list->addTail(new KpPathSegMoveTo(first, nullptr));
        } else if (letter == "L") {
            shape.list->addTail(new KpPathSegLineTo(first, nullptr));
        } else if (letter == "C") {
            KpPoint const second = reader.point();
            shape.list->addTail(new KpPathSegCurveTo(first, second, reader.point(), nullptr));
        } else {
            KpPoint const radii = reader.point();
            shape.list->addTail(new KpPathSegEllipse(first, radii.x, radii.y, nullptr));
        }
    }
    shape.list->closed = isClosed;
    return shape;
}

/** The text that shapeOf() takes; six places of each number. */
inline QString textOf(KpPathSegList const& list)
{
    QStringList words;
    for (KpPathSeg* const segment : list.segs) {
        words << QStringLiteral("MLCE").mid(segment->type - KpPathSeg::SegMoveTo, 1);
        auto const add = [&words](KpReal const& real) {
            double const value = std::abs(real.value) < 1e-9 ? 0.0 : real.value;
            words << QString::number(value, 'g', 6);
        };
        auto const addPoint = [&add](KpPoint const& point) {
            add(point.x);
            add(point.y);
        };
        if (auto const* const curve = segment->toCurveTo()) {
            addPoint(curve->ctrl1);
            addPoint(curve->ctrl2);
        }
        addPoint(segment->pt);
        if (auto const* const ellipse = segment->toEllipse()) {
            add(ellipse->a);
            add(ellipse->b);
        }
    }
    return words.join(QLatin1Char(' '));
}

/** "0" names the point of segment 0, "1a" and "1b" its control points or radii. */
inline QVector<HandleId> handlesOf(QString const& text)
{
    QVector<HandleId> handles;
    for (QString word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        static QString const letters = QStringLiteral("abxy");
        int const letter = letters.indexOf(word.right(1));
        if (letter >= 0)
            word.chop(1);
        handles << HandleId {word.toInt(), static_cast<HandleKind>(letter + 1)};
    }
    return handles;
}

/** The text that handlesOf() takes: x and y name the radii. */
inline QString textOf(QVector<HandleId> const& handles)
{
    QStringList words;
    for (HandleId const id : handles) {
        QString const letter = QStringLiteral(" abxy").mid(static_cast<int>(id.kind), 1).trimmed();
        words << QString::number(id.segment) + letter;
    }
    return words.join(QLatin1Char(' '));
}

} // namespace ShapesModelTesting

#endif // SHAPESMODELTESTING_H

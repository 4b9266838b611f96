// SPDX-License-Identifier: MIT
#include "export/pathdata.h"

#include "common/text.h"
#include "segmentkind_p.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace {

/** A number that is written, and what of its digits stands behind the point. */
struct Decimal
{
    double value = 0.0;
    int decimals = 0;
};

/** The digits behind the point that it takes to write such a text without an exponent. */
int decimalsOf(QString const& text)
{
    int const exponentSign = text.indexOf(QLatin1Char('e'));
    int const exponent = exponentSign < 0 ? 0 : text.mid(exponentSign + 1).toInt();
    QString const mantissa = text.left(exponentSign);
    int const point = mantissa.indexOf(QLatin1Char('.'));
    int const digits = point < 0 ? 0 : mantissa.size() - point - 1;
    return std::max(0, digits - exponent);
}

QString withoutTrailingZeros(QString text)
{
    if (text.contains(QLatin1Char('.'))) {
        while (text.endsWith(QLatin1Char('0')))
            text.chop(1);
        if (text.endsWith(QLatin1Char('.')))
            text.chop(1);
    }
    return text == QLatin1String("-0") ? QStringLiteral("0") : text;
}

/** At most so many decimals, and no more digits than a double tells apart. */
QString decimalText(Decimal const& number)
{
    int const safeDigits = 15;
    QString const text = QString::number(number.value, 'g', safeDigits);
    return decimalsOf(text) <= number.decimals
        ? text
        : withoutTrailingZeros(QString::number(number.value, 'f', number.decimals));
}

Decimal sum(Decimal const& left, Decimal const& right)
{
    return {left.value + right.value, std::max(left.decimals, right.decimals)};
}

Decimal difference(Decimal const& left, Decimal const& right)
{
    return {left.value - right.value, std::max(left.decimals, right.decimals)};
}

struct Position
{
    Decimal x;
    Decimal y;
};

class PathDataWriter
{
public:
    explicit PathDataWriter(PathDataOptions const& options)
        : m_options(options)
    {
    }

    void write(KpPathSeg& seg)
    {
        switch (seg.type) {
        case KpPathSeg::SegMoveTo:
            move(rounded(seg.pt));
            break;
        case KpPathSeg::SegLineTo:
            beginIfNeeded();
            write('L', {rounded(seg.pt)});
            break;
        case KpPathSeg::SegCurveTo:
            if (KpPathSegCurveTo const* const curve = seg.toCurveTo()) {
                beginIfNeeded();
                write('C', {rounded(curve->ctrl1), rounded(curve->ctrl2), rounded(curve->pt)});
            }
            break;
        case KpPathSeg::SegEllipse:
            if (KpPathSegEllipse const* const ellipse = seg.toEllipse())
                write(*ellipse);
            break;
        }
    }

    void close()
    {
        if (m_commands.isEmpty() || m_commands.last() == closing())
            return;
        m_commands << closing();
        m_current = m_start;
    }

    /** Nothing if a number is too large to be written. */
    std::optional<QString> text() const
    {
        return m_isFinite ? std::optional(m_commands.join(QLatin1Char(' '))) : std::nullopt;
    }

private:
    /** A number as it is written when the place counts from the origin. */
    Decimal rounded(double number) const
    {
        QString const text =
            m_options.decimals ? decimalText({number, *m_options.decimals}) : numberText(number);
        return {text.toDouble(), decimalsOf(text)};
    }

    Position rounded(KpPoint const& point) const
    {
        return {rounded(point.x.value), rounded(point.y.value)};
    }

    static QString closing() { return QStringLiteral("Z"); }

    QChar letter(char command) const
    {
        return QLatin1Char(
            m_options.isRelative ? static_cast<char>(command + ('a' - 'A')) : command);
    }

    QString text(Position const& position)
    {
        Position const origin = m_options.isRelative ? m_current : Position();
        Decimal const x = difference(position.x, origin.x);
        Decimal const y = difference(position.y, origin.y);
        m_isFinite = m_isFinite && std::isfinite(x.value) && std::isfinite(y.value);
        return decimalText(x) + QLatin1Char(' ') + decimalText(y);
    }

    void move(Position const& to)
    {
        // The first place counts from the origin in either form: only M says so.
        QChar const command = m_commands.isEmpty() ? QLatin1Char('M') : letter('M');
        m_commands << command + text(to);
        m_current = m_start = to;
    }

    /** A line without a move before it begins at the origin, as drawing has it. */
    void beginIfNeeded()
    {
        if (m_commands.isEmpty())
            move(Position());
    }

    void write(char command, std::initializer_list<Position> positions)
    {
        QStringList numbers;
        for (Position const& position : positions)
            numbers << text(position);
        m_commands << letter(command) + numbers.join(QLatin1Char(' '));
        m_current = *(positions.end() - 1);
    }

    void write(KpPathSegEllipse const& ellipse)
    {
        Position const centre = rounded(ellipse.pt);
        Decimal const a = rounded(ellipse.a.value);
        Decimal const b = rounded(ellipse.b.value);
        Position const right {sum(centre.x, a), centre.y};
        Position const left {difference(centre.x, a), centre.y};
        // One negative radius mirrors the ellipse, and with it its direction.
        bool const isClockwise = (a.value < 0.0) == (b.value < 0.0);
        QString const form = QStringLiteral("%1%2 %3 0 0 %4 ")
                                 .arg(letter('A'))
                                 .arg(decimalText({std::abs(a.value), a.decimals}),
                                     decimalText({std::abs(b.value), b.decimals}),
                                     isClockwise ? QStringLiteral("1") : QStringLiteral("0"));
        move(right);
        for (Position const& end : {left, right}) {
            m_commands << form + text(end);
            m_current = end;
        }
        close();
    }

    PathDataOptions const& m_options;
    QStringList m_commands;
    Position m_current; ///< in numbers as they are written
    Position m_start; ///< of the subpath
    bool m_isFinite = true; ///< no number has become too large
};

bool isFinite(KpPathSeg& seg)
{
    bool result = true;
    SegmentKind::forEachReal(
        seg, [&result](KpReal const& real) { result = result && std::isfinite(real.value); });
    return result;
}

} // namespace

std::optional<QString> pathData(KpPathSegList const& list, PathDataOptions const& options)
{
    PathDataWriter writer(options);
    for (KpPathSeg* const seg : list.segs) {
        if (!seg)
            continue;
        if (!isFinite(*seg))
            return std::nullopt;
        writer.write(*seg);
    }
    if (list.closed)
        writer.close();
    return writer.text();
}

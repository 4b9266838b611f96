// SPDX-License-Identifier: MIT
#include "import/pathdataparser.h"

#include "common/samenumber.h"
#include "import/arccurves.h"
#include "kppathsegcurveto.h"
#include "kppathsegellipse.h"
#include "kppathseglineto.h"
#include "kppathsegmoveto.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <vector>

namespace {

/** To the bit: QPointF's own comparison takes places that are near for the same. */
bool isSame(QPointF const& left, QPointF const& right)
{
    return isSameNumber(left.x(), right.x()) && isSameNumber(left.y(), right.y());
}

/** What is drawn from one move to the next. */
class ParsedSubpath
{
public:
    explicit ParsedSubpath(QPointF const& start)
        : m_start(start)
        , m_current(start)
    {
    }

    QPointF start() const { return m_start; }
    /** Where the next command begins. */
    QPointF current() const { return m_current; }
    bool isClosed() const { return m_isClosed; }
    /** Whether all that has been added is. */
    bool isFinite() const { return m_isFinite; }
    /** Whether it draws nothing. */
    bool isEmpty() const { return m_segments.empty(); }

    void lineTo(QPointF const& to)
    {
        m_hasOnlyArcs = false;
        add<KpPathSegLineTo>(to);
    }

    void curveTo(Curve const& curve)
    {
        m_hasOnlyArcs = false;
        add(curve);
    }

    void arcTo(QPointF const& to, EllipticalArc const& arc)
    {
        m_arcs.push_back({m_current, to, arc});
        if (!isCurved(arc)) {
            add<KpPathSegLineTo>(to);
            return;
        }
        for (Curve const& curve : arcCurves(m_current, to, arc))
            add(curve);
    }

    void close()
    {
        m_isClosed = true;
        m_current = m_start;
    }

    /** Hands its segments to the list. */
    void appendTo(KpPathSegList& list, bool isLast)
    {
        list.closed = isLast && m_isClosed && !isEllipse();
        if (isEllipse()) {
            PlacedArc const& half = m_arcs.front();
            QSizeF const& radii = half.arc.radii;
            list.addTail(new KpPathSegEllipse(
                (half.from + half.to) / 2.0, radii.width(), radii.height(), nullptr));
            return;
        }
        KpPoint const& end = m_segments.back()->pt;
        if (m_isClosed && !isLast && !isSame({end.x.value, end.y.value}, m_start))
            add<KpPathSegLineTo>(m_start);
        list.addTail(new KpPathSegMoveTo(m_start, nullptr));
        for (std::unique_ptr<KpPathSeg>& segment : m_segments)
            list.addTail(segment.release());
    }

private:
    struct PlacedArc
    {
        QPointF from;
        QPointF to;
        EllipticalArc arc;
    };

    template <class Segment> void add(QPointF const& to)
    {
        m_segments.push_back(std::make_unique<Segment>(to, nullptr));
        m_current = to;
    }

    void add(Curve const& curve)
    {
        m_segments.push_back(
            std::make_unique<KpPathSegCurveTo>(curve.control1, curve.control2, curve.end, nullptr));
        m_current = curve.end;
        for (QPointF const& place : {curve.control1, curve.control2, curve.end})
            m_isFinite = m_isFinite && std::isfinite(place.x()) && std::isfinite(place.y());
    }

    /** Whether the arc is half of an upright ellipse, from one side to the other. */
    static bool isHalf(PlacedArc const& placed)
    {
        // What the difference of two decimal numbers may be off.
        double const rounding = 1e-9;
        EllipticalArc const& arc = placed.arc;
        double const width = std::abs(placed.from.x() - placed.to.x());
        return isCurved(arc) && arc.isClockwise && isSameNumber(arc.rotation, 0.0)
            && isSameNumber(placed.from.y(), placed.to.y())
            && std::abs(width - 2.0 * arc.radii.width()) <= rounding * arc.radii.width();
    }

    bool isEllipse() const
    {
        return m_isClosed && m_hasOnlyArcs && m_arcs.size() == 2 && isHalf(m_arcs.front())
            && isHalf(m_arcs.back()) && isSame(m_arcs.back().to, m_start)
            && isSameNumber(m_arcs.front().arc.radii.height(), m_arcs.back().arc.radii.height());
    }

    QPointF m_start;
    QPointF m_current;
    std::vector<std::unique_ptr<KpPathSeg>> m_segments; ///< those behind the move
    std::vector<PlacedArc> m_arcs;
    bool m_hasOnlyArcs = true;
    bool m_isFinite = true;
    bool m_isClosed = false;
};

/** What the commands of a text draw. */
class Drawing
{
public:
    /** Where the next command begins. */
    QPointF current() const { return m_subpaths.empty() ? QPointF() : m_subpaths.back().current(); }

    bool isEmpty() const { return m_subpaths.empty(); }
    /** Whether a curve has not become too large. */
    bool isFinite() const { return m_subpaths.back().isFinite(); }

    /**
     * Carries out a command; there must be a subpath, unless it is a move.
     *
     * @param letter its upper case
     * @param numbers its arguments, all places absolute
     */
    void execute(char letter, std::array<double, 7> const& numbers)
    {
        auto const point = [&numbers](
                               std::size_t i) { return QPointF(numbers.at(i), numbers.at(i + 1)); };
        switch (letter) {
        case 'M':
            m_subpaths.emplace_back(point(0));
            break;
        case 'L':
            open().lineTo(point(0));
            break;
        case 'H':
            open().lineTo({numbers.front(), current().y()});
            break;
        case 'V':
            open().lineTo({current().x(), numbers.front()});
            break;
        case 'C':
            cubicTo(point(0), point(2), point(4));
            break;
        case 'S':
            cubicTo(mirrored(m_cubicControl), point(0), point(2));
            break;
        case 'Q':
            quadraticTo(point(0), point(2));
            break;
        case 'T':
            quadraticTo(mirrored(m_quadraticControl), point(0));
            break;
        case 'A':
            open().arcTo(point(5),
                {QSizeF(std::abs(numbers[0]), std::abs(numbers[1])), numbers[2], numbers[3] > 0.0,
                    numbers[4] > 0.0});
            break;
        default:
            open().close();
            break;
        }
        if (letter != 'C' && letter != 'S')
            m_cubicControl.reset();
        if (letter != 'Q' && letter != 'T')
            m_quadraticControl.reset();
    }

    /** Hands all that draws something to the list. */
    void appendTo(KpPathSegList& list)
    {
        while (!m_subpaths.empty() && m_subpaths.back().isEmpty())
            m_subpaths.pop_back();
        for (ParsedSubpath& subpath : m_subpaths) {
            if (!subpath.isEmpty())
                subpath.appendTo(list, &subpath == &m_subpaths.back());
        }
    }

private:
    /** The subpath that is drawn on; behind a closed one, another from its start. */
    ParsedSubpath& open()
    {
        if (m_subpaths.back().isClosed())
            m_subpaths.emplace_back(m_subpaths.back().start());
        return m_subpaths.back();
    }

    /** The control point on the other side of where the drawing is; there if there was none. */
    QPointF mirrored(std::optional<QPointF> const& control) const
    {
        return control ? 2.0 * current() - *control : current();
    }

    void cubicTo(QPointF const& control1, QPointF const& control2, QPointF const& end)
    {
        open().curveTo({control1, control2, end});
        m_cubicControl = control2;
    }

    void quadraticTo(QPointF const& control, QPointF const& end)
    {
        auto const towards = [&control](QPointF const& from) {
            return from + (control - from) * (2.0 / 3.0);
        };
        open().curveTo({towards(current()), towards(end), end});
        m_quadraticControl = control;
    }

    std::vector<ParsedSubpath> m_subpaths;
    std::optional<QPointF> m_cubicControl; ///< the second one, if the last command was a curve
    std::optional<QPointF> m_quadraticControl; ///< likewise of a quadratic curve
};

/** Each argument of a command: x, y, a flag, or another number. */
struct CommandForm
{
    char letter;
    char const* arguments;
};

constexpr CommandForm commandForms[] = {
    {'M', "xy"},
    {'L', "xy"},
    {'H', "x"},
    {'V', "y"},
    {'C', "xyxyxy"},
    {'S', "xyxy"},
    {'Q', "xyxy"},
    {'T', "xy"},
    {'A', "nnnffxy"},
    {'Z', ""},
};

/** The form of a command in either case, or null. */
CommandForm const* formOf(QChar command)
{
    auto const* const found = std::find_if(
        std::begin(commandForms), std::end(commandForms), [command](CommandForm const& form) {
            // Not QChar::toUpper(), which knows the letters of all scripts.
            QLatin1Char const upper(form.letter);
            return command == upper || command.unicode() == upper.unicode() + ('a' - 'A');
        });
    return found == std::end(commandForms) ? nullptr : found;
}

class PathDataParser
{
public:
    explicit PathDataParser(QString const& text)
        : m_text(text)
    {
    }

    /** False, with fault(), if the text is no path data. */
    bool parse(Drawing& drawing)
    {
        skipBlanks();
        while (!isAtEnd()) {
            if (!parseCommand(drawing))
                return false;
        }
        return true;
    }

    PathDataFault const& fault() const { return m_fault; }

private:
    bool isAtEnd() const { return m_position >= m_text.size(); }

    /** The next character; null at the end. */
    QChar next(int offset = 0) const
    {
        int const position = m_position + offset;
        return position < m_text.size() ? m_text.at(position) : QChar();
    }

    bool isDigit(int offset = 0) const
    {
        // Not QChar::isDigit(), which knows the digits of all scripts.
        return next(offset) >= QLatin1Char('0') && next(offset) <= QLatin1Char('9');
    }

    bool isSign(int offset = 0) const
    {
        return next(offset) == QLatin1Char('+') || next(offset) == QLatin1Char('-');
    }

    bool isAtNumber() const { return isDigit() || isSign() || next() == QLatin1Char('.'); }

    void skipBlanks()
    {
        QString const blanks = QStringLiteral(" \t\n\r\f");
        while (!isAtEnd() && blanks.contains(next()))
            ++m_position;
    }

    void skipSeparator()
    {
        skipBlanks();
        if (next() == QLatin1Char(',')) {
            ++m_position;
            skipBlanks();
        }
    }

    void skipDigits()
    {
        while (isDigit())
            ++m_position;
    }

    bool fail(int position, QString const& what)
    {
        QStringRef const before = m_text.leftRef(position);
        int const lineStart = before.lastIndexOf(QLatin1Char('\n')) + 1;
        m_fault = {1 + before.count(QLatin1Char('\n')), 1 + position - lineStart, what};
        return false;
    }

    bool failAtNext(QString const& expected)
    {
        if (isAtEnd())
            return fail(m_position, QStringLiteral("%1 is missing at the end").arg(expected));
        QString const found = m_text.mid(m_position, next().isHighSurrogate() ? 2 : 1);
        return fail(m_position, QStringLiteral("%1 is expected, not '%2'").arg(expected, found));
    }

    bool parseNumber(double& number)
    {
        int const start = m_position;
        m_position += isSign() ? 1 : 0;
        bool const hasDigits = isDigit() || (next() == QLatin1Char('.') && isDigit(1));
        if (!hasDigits) {
            m_position = start;
            return failAtNext(QStringLiteral("a number"));
        }
        skipDigits();
        if (next() == QLatin1Char('.')) {
            ++m_position;
            skipDigits();
        }
        if (next().toLower() == QLatin1Char('e') && (isDigit(1) || (isSign(1) && isDigit(2)))) {
            m_position += 2;
            skipDigits();
        }
        // Too small a number is 0, although the conversion calls that a failure.
        number = m_text.midRef(start, m_position - start).toDouble();
        return std::isfinite(number) || fail(start, tooLarge());
    }

    bool parseFlag(double& number)
    {
        if (next() != QLatin1Char('0') && next() != QLatin1Char('1'))
            return failAtNext(QStringLiteral("a flag, 0 or 1,"));
        number = next() == QLatin1Char('1') ? 1.0 : 0.0;
        ++m_position;
        return true;
    }

    /** @param origin what the places of a command in lower case count from */
    bool parseArguments(
        CommandForm const& form, QPointF const& origin, std::array<double, 7>& numbers)
    {
        std::size_t count = 0;
        for (char const* argument = form.arguments; *argument != '\0'; ++argument) {
            if (count > 0)
                skipSeparator();
            int const start = m_position;
            double& number = numbers.at(count);
            if (!(*argument == 'f' ? parseFlag(number) : parseNumber(number)))
                return false;
            if (*argument == 'x')
                number += origin.x();
            else if (*argument == 'y')
                number += origin.y();
            if (!std::isfinite(number))
                return fail(start, tooLarge());
            ++count;
        }
        return true;
    }

    bool parseCommand(Drawing& drawing)
    {
        CommandForm const* form = formOf(next());
        if (!form)
            return failAtNext(QStringLiteral("a command"));
        if (drawing.isEmpty() && form->letter != 'M')
            return failAtNext(QStringLiteral("M or m"));
        bool const isRelative = next().isLower();
        ++m_position;
        skipBlanks();
        bool hasMore = true;
        while (hasMore) {
            int const start = m_position;
            std::array<double, 7> numbers {};
            QPointF const origin = isRelative ? drawing.current() : QPointF();
            if (!parseArguments(*form, origin, numbers))
                return false;
            drawing.execute(form->letter, numbers);
            if (!drawing.isFinite())
                return fail(start, QStringLiteral("it leads too far"));
            hasMore = skipToMore(*form);
            // Further places of a move are lines.
            if (form->letter == 'M')
                form = formOf(QLatin1Char('L'));
        }
        return true;
    }

    /** Whether further arguments follow those of a command. */
    bool skipToMore(CommandForm const& form)
    {
        skipBlanks();
        if (form.letter == 'Z' || (next() != QLatin1Char(',') && !isAtNumber()))
            return false;
        skipSeparator();
        return true;
    }

    static QString tooLarge() { return QStringLiteral("the number is too large"); }

    QString const& m_text;
    int m_position = 0;
    PathDataFault m_fault;
};

} // namespace

std::optional<PathDataFault> parsePathData(QString const& text, KpPathSegList& list)
{
    PathDataParser parser(text);
    Drawing drawing;
    bool const isPathData = parser.parse(drawing);
    drawing.appendTo(list);
    return isPathData ? std::nullopt : std::optional(parser.fault());
}

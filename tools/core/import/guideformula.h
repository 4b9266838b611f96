// SPDX-License-Identifier: MIT
#ifndef GUIDEFORMULA_H
#define GUIDEFORMULA_H

#include <QHash>
#include <QSizeF>
#include <QString>

#include <array>
#include <optional>
#include <vector>

/** Angles of DrawingML are counted in 60,000ths of a degree, clockwise on the screen. */
namespace GuideAngle {

constexpr double perDegree = 60000.0; ///< units of a degree
constexpr double wholeTurn = 360.0 * perDegree; ///< units of a whole turn

/** The same angle in radians. */
double toRadians(double angle);
/** The angle of that many radians. */
double fromRadians(double radians);

} // namespace GuideAngle

/// One of the seventeen operators of DrawingML's formulas.
///
/// | Formula      | Value                     | Formula      | Value                           |
/// |--------------|---------------------------|--------------|---------------------------------|
/// | `*/ x y z`   | x y / z                   | `min x y`    | the smaller one                 |
/// | `+- x y z`   | x + y - z                 | `mod x y z`  | the square root of x² + y² + z² |
/// | `+/ x y z`   | (x + y) / z               | `pin x y z`  | y, but from x to z              |
/// | `?: x y z`   | y if x is above 0, else z | `sat2 x y z` | x sin(at2 y z)                  |
/// | `abs x`      | x without its sign        | `sin x y`    | x sin y                         |
/// | `at2 x y`    | the angle of (x, y)       | `sqrt x`     | the square root                 |
/// | `cat2 x y z` | x cos(at2 y z)            | `tan x y`    | x tan y                         |
/// | `cos x y`    | x cos y                   | `val x`      | x                               |
/// | `max x y`    | the larger one            |              |                                 |
struct GuideOperator
{
    char const* name; ///< as formulas write it
    int operandCount; ///< from 1 to 3
    /** Its value; what it makes of a division by zero is not finite. */
    double (*apply)(std::array<double, 3> const& operands);
};

/** The operator of this name, or null. */
GuideOperator const* guideOperator(QString const& name);

/** A number in a formula or in a path: a literal, or the value of a guide. */
struct GuideNumber
{
    double literal = 0.0; ///< finite; counts if there is no guide
    int guide = -1; ///< an index into Guides::values(), or -1
};

/** The value of a number, among the values of the guides that it was read for. */
inline double valueOf(GuideNumber const& number, std::vector<double> const& values)
{
    return number.guide < 0 ? number.literal : values[static_cast<std::size_t>(number.guide)];
}

/** Other values of adjustments, by their names. */
using GuideAdjustments = QHash<QString, double>;

/**
 * The guides of one shape: named numbers that follow its box, each by a formula of those before it.
 *
 * Those that every shape has come first: the edges `l t r b`, the centre `hc vc`, the sides
 * `w h`, the shorter and the longer one `ss ls`, their parts such as `wd2 hd2 ssd2`, and the
 * parts of a turn `cd2 cd4 cd8 3cd4 3cd8 5cd8 7cd8`.
 */
class Guides
{
public:
    static constexpr int maximumCount = 20000; ///< of guides beside those that every shape has

    Guides();

    /**
     * Appends a guide. What is wrong with it, or nothing: an unknown operator or name, too few
     * operands (further ones do not count), or too many guides. With the name of an earlier one
     * it stands in its place for all that follows.
     *
     * @param isAdjustment whether values() may be given another value for it
     */
    QString add(QString const& name, QString const& formula, bool isAdjustment);

    /** The number or the guide that the text names; nothing if it names none. */
    std::optional<GuideNumber> number(QString const& text) const;

    /** How many there are beside those that every shape has. */
    int count() const { return static_cast<int>(m_formulas.size()); }
    /** The names of the adjustments, in their order. */
    QStringList adjustments() const;

    /** The guides of a shape at one box. */
    struct Values
    {
        std::vector<double> values; ///< of all guides, all finite
        QStringList undefined; ///< guides that have no finite value there, and count as 0
    };

    /**
     * The values in a box.
     *
     * @param box of any finite size
     * @param adjustments finite values that count instead of those of adjustments of these names
     */
    Values values(QSizeF const& box, GuideAdjustments const& adjustments) const;

private:
    struct Formula
    {
        QString name;
        bool isAdjustment;
        GuideOperator const* operation;
        std::array<GuideNumber, 3> operands;
    };

    QHash<QString, int> m_indices;
    std::vector<Formula> m_formulas;
};

#endif // GUIDEFORMULA_H

// SPDX-License-Identifier: MIT
#include "fit/boxproposal.h"

#include <QMap>

#include <algorithm>
#include <cmath>

namespace {

/** More boxes than this nobody draws before looking at what came of the first. */
constexpr int greatestBoxes = 3;

/** So many coordinates choose the box; all are counted in it. */
constexpr int greatestSample = 1000;

/** A length that somebody would draw: whole units, unless the drawings are small. */
double roundedLength(double side)
{
    constexpr double largeSide = 10.0;
    constexpr double fineness = 100.0;
    return side >= largeSide ? std::round(side) : std::round(side * fineness) / fineness;
}

/** Sides of the boxes, then their halves and doubles, without repetitions. */
QVector<double> sides(QVector<QSizeF> const& boxes)
{
    constexpr int greatestBoxesLookedAt = 4;
    QVector<double> found;
    for (double const factor : {1.0, 0.5, 2.0}) {
        for (QSizeF const& box : boxes.mid(0, greatestBoxesLookedAt)) {
            for (double const side : {box.width(), box.height()}) {
                double const length =
                    factor > 1.0 || factor < 1.0 ? roundedLength(factor * side) : side;
                if (length > 0.0 && !found.contains(length))
                    found.append(length);
            }
        }
    }
    return found;
}

/** Whether a value in the box tells the two rules apart. */
bool decides(QSizeF const& box, RuleChoice const& rule, RuleChoice const& rival, double tolerance)
{
    auto const ends = [&box](RuleChoice const& choice) {
        auto const valueOf = [&](double parameter) {
            return RuleChoice {choice.rule, parameter, parameter, parameter}.valueIn(box);
        };
        return std::minmax({valueOf(choice.least), valueOf(choice.greatest)});
    };
    std::pair<double, double> const a = ends(rule);
    std::pair<double, double> const b = ends(rival);
    return std::max(a.first, b.first) - std::min(a.second, b.second) > 2.0 * tolerance;
}

/** A rule that was taken and one of its rivals, for one coordinate. */
struct Contest
{
    RuleChoice rule;
    RuleChoice rival;
};

int countDecided(QVector<Contest> const& contests, int stride, QSizeF const& box, double tolerance)
{
    int count = 0;
    for (int i = 0; i < contests.size(); i += stride)
        count += decides(box, contests.at(i).rule, contests.at(i).rival, tolerance) ? 1 : 0;
    return count;
}

/** The box that decides most contests; an empty one if none decides any. */
QSizeF bestBox(QVector<Contest> const& contests, RuleFitter const& fitter)
{
    QVector<double> const lengths = sides(fitter.boxes());
    int const stride = 1 + contests.size() / greatestSample;
    QSizeF best;
    int mostDecided = 0;
    for (double const width : lengths) {
        for (double const height : lengths) {
            QSizeF const box(width, height);
            int const decided = countDecided(contests, stride, box, fitter.tolerance());
            if (decided > mostDecided) {
                mostDecided = decided;
                best = box;
            }
        }
    }
    return best;
}

/** Takes the contests that the box decides out of all, and appends what they were. */
void settle(QVector<Contest>& contests, QSizeF const& box, double tolerance,
    QVector<BoxProposal>& proposals)
{
    QMap<QPair<qint16, qint16>, int> counts;
    auto const isSettled = [&](Contest const& contest) {
        bool const isDecided = decides(box, contest.rule, contest.rival, tolerance);
        if (isDecided)
            ++counts[{contest.rule.rule, contest.rival.rule}];
        return isDecided;
    };
    contests.erase(std::remove_if(contests.begin(), contests.end(), isSettled), contests.end());
    for (auto it = counts.cbegin(); it != counts.cend(); ++it)
        proposals.append({box, it.key().first, it.key().second, it.value()});
}

} // namespace

QVector<BoxProposal> proposals(QVector<CoordinateFit> const& undecided, RuleFitter const& fitter)
{
    QVector<Contest> contests;
    for (CoordinateFit const& fit : undecided) {
        for (RuleChoice const& rival : fit.rivals)
            contests.append({fit.choice, rival});
    }
    QVector<BoxProposal> found;
    for (int i = 0; i < greatestBoxes && !contests.isEmpty(); ++i) {
        QSizeF const box = bestBox(contests, fitter);
        if (box.isEmpty())
            break;
        settle(contests, box, fitter.tolerance(), found);
    }
    return found;
}

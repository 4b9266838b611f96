// SPDX-License-Identifier: MIT
#include "fit/fitreport.h"

#include "common/text.h"
#include "document/bindingrule.h"
#include "document/exactcopy.h"
#include "document/shortlines.h"
#include "segmentkind_p.h"

#include <QJsonArray>
#include <QMap>

namespace {

/** So many coordinates are named on one line. */
constexpr int coordinatesALine = 20;

QString phrase(qint16 rule)
{
    return QString::fromUtf8(bindingRule(ruleOf(rule)).phrase);
}

QString callOf(FitResult const& result, int shape)
{
    QString const& name = result.shapes[static_cast<std::size_t>(shape)].name;
    QString const number = QStringLiteral("outline %1").arg(shape + 1);
    return name.isEmpty() ? number : QStringLiteral("%1 \"%2\"").arg(number, name);
}

KpPathSeg const& segmentOf(FitResult const& result, CoordinateFinding const& finding)
{
    return *result.shapes[static_cast<std::size_t>(finding.shape)].list->segs.at(finding.segment);
}

QString kindOf(KpPathSeg const& segment)
{
    return SegmentKind::find([&segment](auto const& kind) {
        return kind.type == segment.type;
    })->name();
}

/** "width, right or side" */
QString choiceText(CoordinateFit const& fit)
{
    QStringList rules {phrase(fit.choice.rule)};
    for (RuleChoice const& rival : fit.rivals)
        rules << phrase(rival.rule);
    QString const last = rules.takeLast();
    return QStringLiteral("%1 and %2").arg(rules.join(QStringLiteral(", ")), last);
}

/** What is not decided for many coordinates alike is said of all of them at once. */
void warnOfUndecided(FitResult const& result, QString const& file, Diagnostics& warnings)
{
    QMap<QPair<int, QString>, QStringList> coordinates;
    QMap<QPair<int, QString>, qint16> taken;
    for (CoordinateFinding const& finding : result.undecided) {
        QPair<int, QString> const key(finding.shape, choiceText(finding.fit));
        coordinates[key] << QStringLiteral("%1 %2").arg(
            QString::number(finding.segment + 1), finding.letter);
        taken[key] = finding.fit.choice.rule;
    }
    for (auto it = coordinates.cbegin(); it != coordinates.cend(); ++it) {
        for (int from = 0; from < it->size(); from += coordinatesALine) {
            QStringList const some = it->mid(from, coordinatesALine);
            warnings.warning(file,
                QStringLiteral("%1: not decided between %2, %3 is taken: %4 %5")
                    .arg(callOf(result, it.key().first), it.key().second, phrase(taken[it.key()]),
                        some.size() == 1 ? QStringLiteral("segment") : QStringLiteral("segments"),
                        some.join(QStringLiteral(", "))));
        }
    }
}

void warnOfInexact(FitResult const& result, QString const& file, Diagnostics& warnings)
{
    for (CoordinateFinding const& finding : result.inexact) {
        warnings.warning(file,
            QStringLiteral("%1, segment %2 (%3), %4: no rule expresses it; the nearest, %5, is off "
                           "by %6")
                .arg(callOf(result, finding.shape), QString::number(finding.segment + 1),
                    kindOf(segmentOf(result, finding)), finding.letter,
                    phrase(finding.fit.choice.rule), numberText(finding.fit.error)));
    }
}

/** A line a box: "a drawing at 160x400 would decide between width and smaller side for 12 ..." */
void warnOfProposals(FitResult const& result, QString const& file, Diagnostics& warnings)
{
    for (int i = 0; i < result.proposals.size();) {
        QSizeF const box = result.proposals.at(i).box;
        QStringList decisions;
        for (; i < result.proposals.size() && result.proposals.at(i).box == box; ++i) {
            BoxProposal const& proposal = result.proposals.at(i);
            decisions << QStringLiteral("between %1 and %2 for %3")
                             .arg(phrase(proposal.rule), phrase(proposal.rival),
                                 countText(proposal.coordinates, QStringLiteral("coordinate")));
        }
        warnings.warning(file,
            QStringLiteral("a drawing at %1x%2 would decide %3")
                .arg(numberText(box.width()), numberText(box.height()),
                    decisions.join(QStringLiteral(", "))));
    }
}

/** The lines that vanish in a box of the drawings, each in the first such box. */
void warnOfShortLines(FitResult const& result, std::vector<SizedDrawing> const& drawings,
    QString const& file, Diagnostics& warnings)
{
    for (std::size_t i = 0; i < result.shapes.size(); ++i) {
        for (SizedDrawing const& drawing : drawings) {
            auto const list = exactCopy(*result.shapes[i].list);
            list->updateValue(drawing.box.width(), drawing.box.height());
            if (countLostLines(*list) == 0)
                continue;
            QStringList lines;
            for (int const line : undrawnLines(*list))
                lines << QString::number(line + 1);
            warnings.warning(file,
                QStringLiteral("%1: in a box of %2, shorter than one unit and not drawn: %3 %4; a "
                               "larger --scale would help")
                    .arg(callOf(result, static_cast<int>(i)), sizeText(drawing.box),
                        lines.size() == 1 ? QStringLiteral("segment") : QStringLiteral("segments"),
                        lines.join(QStringLiteral(", "))));
            break;
        }
    }
}

QString keyOf(qint16 rule)
{
    return QString::fromUtf8(bindingRule(ruleOf(rule)).key);
}

QJsonObject toJson(FitResult const& result, CoordinateFinding const& finding)
{
    QJsonArray rivals;
    for (RuleChoice const& rival : finding.fit.rivals) {
        rivals.append(QJsonObject {{QStringLiteral("rule"), keyOf(rival.rule)},
            {QStringLiteral("rate"), rival.parameter}});
    }
    Shape const& shape = result.shapes[static_cast<std::size_t>(finding.shape)];
    return {{QStringLiteral("outline"), finding.shape + 1}, {QStringLiteral("name"), shape.name},
        {QStringLiteral("segment"), finding.segment + 1},
        {QStringLiteral("kind"), kindOf(segmentOf(result, finding))},
        {QStringLiteral("coordinate"), finding.letter},
        {QStringLiteral("rule"), keyOf(finding.fit.choice.rule)},
        {QStringLiteral("rate"), finding.fit.choice.parameter},
        {QStringLiteral("error"), finding.fit.error}, {QStringLiteral("rivals"), rivals}};
}

QJsonArray toJson(FitResult const& result, QVector<CoordinateFinding> const& findings)
{
    QJsonArray array;
    for (CoordinateFinding const& finding : findings)
        array.append(toJson(result, finding));
    return array;
}

QJsonObject toJson(QSizeF const& box)
{
    return {{QStringLiteral("width"), box.width()}, {QStringLiteral("height"), box.height()}};
}

} // namespace

Diagnostics fitWarnings(
    FitResult const& result, std::vector<SizedDrawing> const& drawings, QString const& file)
{
    Diagnostics warnings;
    warnOfInexact(result, file, warnings);
    warnOfUndecided(result, file, warnings);
    warnOfProposals(result, file, warnings);
    warnOfShortLines(result, drawings, file, warnings);
    return warnings;
}

QJsonObject fitJson(FitResult const& result, std::vector<SizedDrawing> const& drawings)
{
    QJsonArray sources;
    for (SizedDrawing const& drawing : drawings) {
        QJsonObject source = toJson(drawing.box);
        source.insert(QStringLiteral("file"), wellFormed(drawing.file));
        sources.append(source);
    }
    QJsonArray boxes;
    for (BoxProposal const& proposal : result.proposals) {
        QJsonObject box = toJson(proposal.box);
        box.insert(QStringLiteral("rule"), keyOf(proposal.rule));
        box.insert(QStringLiteral("rival"), keyOf(proposal.rival));
        box.insert(QStringLiteral("coordinates"), proposal.coordinates);
        boxes.append(box);
    }
    return {{QStringLiteral("drawings"), sources}, {QStringLiteral("tolerance"), result.tolerance},
        {QStringLiteral("outlines"), static_cast<int>(result.shapes.size())},
        {QStringLiteral("coordinates"), result.coordinates},
        {QStringLiteral("undecided"), toJson(result, result.undecided)},
        {QStringLiteral("inexact"), toJson(result, result.inexact)},
        {QStringLiteral("proposals"), boxes}};
}

// SPDX-License-Identifier: MIT
#include "panels/fitfindings.h"

#include "common/text.h"
#include "document/bindingrule.h"
#include "segmentkind_p.h"

#include <QFileInfo>

#include <algorithm>

namespace {

constexpr int greatestCount = 1000; ///< of lines of one sort
constexpr int longestText = 1000;
constexpr int longestName = 60;

QString phrase(qint16 rule)
{
    return QString::fromUtf8(bindingRule(ruleOf(rule)).phrase);
}

/** "Outline 1 “plate”, segment 3, X" */
QString placeText(FitResult const& result, CoordinateFinding const& finding)
{
    QString const name =
        printable(elided(result.shapes[static_cast<std::size_t>(finding.shape)].name, longestName));
    QString const quoted = name.isEmpty() ? QString() : QStringLiteral(" \u201c%1\u201d").arg(name);
    return QStringLiteral("Outline %1%2, segment %3, %4")
        .arg(QString::number(finding.shape + 1), quoted, QString::number(finding.segment + 1),
            finding.letter);
}

QString inexactText(FitResult const& result, CoordinateFinding const& finding)
{
    return QStringLiteral("%1: no rule expresses it; the nearest, %2, is off by %3")
        .arg(placeText(result, finding), phrase(finding.fit.choice.rule),
            numberText(finding.fit.error));
}

QString undecidedText(FitResult const& result, CoordinateFinding const& finding)
{
    QStringList rivals;
    for (RuleChoice const& rival : finding.fit.rivals)
        rivals << phrase(rival.rule);
    return QStringLiteral("%1: follows %2; %3 would do as well")
        .arg(placeText(result, finding), phrase(finding.fit.choice.rule),
            rivals.join(QStringLiteral(" or ")));
}

QString proposalText(BoxProposal const& proposal)
{
    return QStringLiteral("A drawing of %1 \u00d7 %2 would decide between %3 and %4 for %5")
        .arg(numberText(proposal.box.width()), numberText(proposal.box.height()),
            phrase(proposal.rule), phrase(proposal.rival),
            countText(proposal.coordinates, QStringLiteral("coordinate")));
}

template <class Text>
void append(QVector<FitFinding>& lines, FitResult const& result,
    QVector<CoordinateFinding> const& findings, bool isBad, Text text)
{
    int const shown = std::min(findings.size(), greatestCount);
    for (int i = 0; i < shown; ++i) {
        CoordinateFinding const& finding = findings.at(i);
        lines.append({text(result, finding),
            FitPlace {finding.shape, finding.segment, finding.letter}, isBad});
    }
    if (findings.size() > shown) {
        lines.append({QStringLiteral("\u2026 and %1 more").arg(findings.size() - shown),
            std::nullopt, isBad});
    }
}

} // namespace

HandleId handleOfLetter(KpPathSeg& segment, int index, QString const& letter)
{
    using namespace SegmentKind;
    bool const isFirst = letter == Letter::a() || letter == Letter::b();
    bool const isSecond = letter == Letter::c() || letter == Letter::d();
    if (segment.toCurveTo() && (isFirst || isSecond))
        return {index, isFirst ? HandleKind::Control1 : HandleKind::Control2};
    if (segment.toEllipse() && isFirst)
        return {index, letter == Letter::a() ? HandleKind::RadiusA : HandleKind::RadiusB};
    return {index, HandleKind::Point};
}

QVector<FitFinding> findingsOf(Diagnostics const& diagnostics)
{
    QVector<FitFinding> lines;
    for (Diagnostic const& diagnostic : diagnostics) {
        if (lines.size() == greatestCount) {
            lines.append(
                {QStringLiteral("\u2026 and %1 more").arg(diagnostics.size() - greatestCount),
                    std::nullopt, false});
            break;
        }
        QString where = QFileInfo(diagnostic.file).fileName();
        if (!where.isEmpty() && diagnostic.line > 0)
            where += QStringLiteral(":%1").arg(diagnostic.line);
        QString const text = where.isEmpty() ? diagnostic.text
                                             : QStringLiteral("%1: %2").arg(where, diagnostic.text);
        lines.append({printable(elided(text, longestText)), std::nullopt,
            diagnostic.severity == Diagnostic::Severity::Error});
    }
    return lines;
}

QVector<FitFinding> findingsOf(FitResult const& result)
{
    QVector<FitFinding> lines;
    append(lines, result, result.inexact, true, inexactText);
    append(lines, result, result.undecided, false, undecidedText);
    for (BoxProposal const& proposal : result.proposals)
        lines.append({proposalText(proposal), std::nullopt, false});
    return lines;
}

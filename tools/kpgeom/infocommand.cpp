#include "commandline.h"
#include "common/text.h"
#include "console.h"
#include "document/outlinesummary.h"
#include "documentinput.h"
#include "progress.h"
#include "texttable.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace {

/** Captions longer than this are cut in tables. */
constexpr int longestCaption = 40;

QString shortCaption(Outline const& outline)
{
    return elided(printable(caption(outline)), longestCaption);
}

QString flagsText(KpPathSegList const& list)
{
    QStringList flags;
    if (list.closed)
        flags << QStringLiteral("closed");
    if (list.noFill)
        flags << QStringLiteral("nofill");
    if (list.noLine)
        flags << QStringLiteral("noline");
    return flags.isEmpty() ? QStringLiteral("-") : flags.join(QLatin1Char(','));
}

QString boundsText(QRectF const& bounds)
{
    if (bounds.isNull())
        return QStringLiteral("-");
    return QStringLiteral("%1,%2 %3x%4")
        .arg(numberText(bounds.x()), numberText(bounds.y()), numberText(bounds.width()),
            numberText(bounds.height()));
}

QString rulesText(RuleCounts const& counts)
{
    QStringList parts;
    for (int rule = 0; rule < ruleCount; ++rule) {
        if (int const count = counts[static_cast<std::size_t>(rule)]; count > 0)
            parts << QStringLiteral("%1 %2").arg(QLatin1String(bindingRule(rule).name)).arg(count);
    }
    return parts.isEmpty() ? QStringLiteral("-") : parts.join(QStringLiteral(", "));
}

QString toText(OutlineDocument const& document)
{
    std::size_t const count = document.outlines().size();
    QString heading = QStringLiteral("%1: %2\n")
                          .arg(displayName(document.file()),
                              countText(static_cast<int>(count), QStringLiteral("outline")));
    if (count == 0)
        return heading;
    TextTable table({QStringLiteral(">#"), QStringLiteral("name"), QStringLiteral("flags"),
        QStringLiteral(">move"), QStringLiteral(">line"), QStringLiteral(">curve"),
        QStringLiteral(">ellipse"), QStringLiteral("bounds"), QStringLiteral("direction"),
        QStringLiteral("coordinates by rule")});
    for (Outline const& outline : document.outlines()) {
        OutlineSummary const facts = summaryOf(*outline.list);
        table.addRow({QString::number(outline.index), shortCaption(outline),
            flagsText(*outline.list), QString::number(facts.moves), QString::number(facts.lines),
            QString::number(facts.curves), QString::number(facts.ellipses),
            boundsText(facts.bounds), facts.direction, rulesText(facts.rules)});
    }
    return heading + table.toText();
}

QJsonValue toJson(QRectF const& bounds)
{
    if (bounds.isNull())
        return QJsonValue(QJsonValue::Null);
    return QJsonObject {{QStringLiteral("x"), bounds.x()}, {QStringLiteral("y"), bounds.y()},
        {QStringLiteral("width"), bounds.width()}, {QStringLiteral("height"), bounds.height()}};
}

QJsonObject toJson(Outline const& outline)
{
    OutlineSummary const facts = summaryOf(*outline.list);
    QJsonObject rules;
    for (int rule = 0; rule < ruleCount; ++rule)
        rules.insert(
            QLatin1String(bindingRule(rule).key), facts.rules[static_cast<std::size_t>(rule)]);
    return {{QStringLiteral("index"), outline.index}, {QStringLiteral("name"), outline.name},
        {QStringLiteral("closed"), outline.list->closed},
        {QStringLiteral("noFill"), outline.list->noFill},
        {QStringLiteral("noLine"), outline.list->noLine},
        {QStringLiteral("segments"),
            QJsonObject {{QStringLiteral("moveTo"), facts.moves},
                {QStringLiteral("lineTo"), facts.lines}, {QStringLiteral("curveTo"), facts.curves},
                {QStringLiteral("ellipse"), facts.ellipses}}},
        {QStringLiteral("bounds"), toJson(facts.bounds)},
        {QStringLiteral("direction"), facts.direction}, {QStringLiteral("rules"), rules}};
}

QJsonObject toJson(OutlineDocument const& document)
{
    QJsonArray outlines;
    for (Outline const& outline : document.outlines())
        outlines.append(toJson(outline));
    return {{QStringLiteral("file"), document.file()}, {QStringLiteral("outlines"), outlines}};
}

} // namespace

Outcome runInfo(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    line.addOption({QStringLiteral("json"), QStringLiteral("Print JSON instead of tables.")});
    if (auto const end = line.parse(arguments))
        return *end;
    if (line.operands().isEmpty())
        return line.misused(misuse(QStringLiteral("no file given")));

    Outcome outcome = Outcome::Done;
    QStringList texts;
    QJsonArray json;
    Progress progress(line.operands());
    for (QString const& file : line.operands()) {
        progress.step();
        auto const document = loadDocument(file, progress.ofStep());
        if (!document)
            outcome = Outcome::Failed;
        else if (line.isSet(QStringLiteral("json")))
            json.append(toJson(*document));
        else
            texts << toText(*document);
    }
    Progress::clear();
    QString const output = line.isSet(QStringLiteral("json"))
        ? QString::fromUtf8(QJsonDocument(json).toJson())
        : texts.join(QLatin1Char('\n'));
    return printOut(output) ? outcome : Outcome::Failed;
}

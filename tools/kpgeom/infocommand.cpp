// SPDX-License-Identifier: MIT
#include "batch.h"
#include "commandline.h"
#include "common/text.h"
#include "console.h"
#include "document/outlinesummary.h"
#include "documentinput.h"
#include "filereports.h"
#include "longjson.h"
#include "texttable.h"

#include <QFile>
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

TextTable emptyTable()
{
    return TextTable({QStringLiteral(">#"), QStringLiteral("name"), QStringLiteral("flags"),
        QStringLiteral(">move"), QStringLiteral(">line"), QStringLiteral(">curve"),
        QStringLiteral(">ellipse"), QStringLiteral("bounds"), QStringLiteral("direction"),
        QStringLiteral("coordinates by rule")});
}

void addRow(Outline const& outline, TextTable& table)
{
    OutlineSummary const facts = summaryOf(*outline.list);
    table.addRow({QString::number(outline.index), shortCaption(outline), flagsText(*outline.list),
        QString::number(facts.moves), QString::number(facts.lines), QString::number(facts.curves),
        QString::number(facts.ellipses), boundsText(facts.bounds), facts.direction,
        rulesText(facts.rules)});
}

/** What stands before, between and behind the outlines of a document. */
class Description
{
public:
    Description(QString const& operand, bool isJson, QIODevice& device)
        : m_operand(operand)
        , m_isJson(isJson)
        , m_device(device)
    {
    }

    void add(Outline const& outline)
    {
        if (!m_isJson) {
            addRow(outline, m_table);
            return;
        }
        m_outlines.add(toJson(outline));
    }

    /** Writes all. @param count how many outlines there were */
    void write(int count)
    {
        if (m_isJson) {
            m_outlines.writeTo(m_device, {{QStringLiteral("file"), wellFormed(m_operand)}});
            return;
        }
        m_device.write(QStringLiteral("%1: %2\n")
                           .arg(displayName(m_operand), countText(count, QStringLiteral("outline")))
                           .toUtf8());
        if (count > 0)
            m_table.writeTo(m_device);
    }

private:
    QString const m_operand;
    bool const m_isJson;
    QIODevice& m_device;
    TextTable m_table = emptyTable();
    LongJson m_outlines {"outlines", jsonOfFileIndentation};
};

/** Writes what is told of a document; false, after a message, if it cannot be read. */
bool describe(
    QString const& operand, bool isJson, QIODevice& device, ProgressFunction const& progress)
{
    Diagnostics diagnostics;
    QFile input;
    bool isRead = openInput(input, operand, diagnostics);
    if (isRead) {
        Description description(operand, isJson, device);
        OutlineReader reader(input, operand);
        reader.setProgress(progress);
        for (Outlines group = reader.next(); !group.empty(); group = reader.next()) {
            for (Outline const& outline : group)
                description.add(outline);
        }
        isRead = !reader.fault();
        if (isRead)
            description.write(reader.count());
        else
            diagnostics.add(*reader.fault());
        if (isRead && reader.isSvgPicture())
            reportSvgPicture(operand, Diagnostic::Severity::Warning);
    }
    report(diagnostics);
    if (input.isOpen() && !isRead)
        reportStencil(operand);
    return isRead;
}

Outcome runInfo(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    if (auto const end = line.parse(arguments))
        return *end;
    line.fallBackOnStandardInput();
    if (line.operands().isEmpty())
        return line.misused(misuse(QStringLiteral("no file given")));
    bool const isJson = line.isSet(QStringLiteral("json"));
    return tellOfEach(line, isJson ? ReportForm::Json : ReportForm::Text,
        [isJson](QString const& operand, QIODevice& device, ProgressFunction const& progress) {
            return describe(operand, isJson, device, progress) ? Outcome::Done : Outcome::Failed;
        });
}

constexpr CommandOption infoOptions[] = {
    {"", "json", {}, "Print JSON instead of tables."},
};

} // namespace

constexpr Command infoCommand {"info", "FILE...", fileHelp, {documentValue, documentValue},
    "Says what outlines the documents hold.", runInfo, {infoOptions, batchOptions}};

// SPDX-License-Identifier: MIT
#include "presetconversion.h"

#include "commandline.h"
#include "common/text.h"
#include "console.h"
#include "fit/presetfit.h"
#include "import/drawingmlimport.h"
#include "texttable.h"
#include "valuetext.h"

#include <QDir>
#include <QSet>

namespace {

/** Learns shapes one after the other, and sums up how exact they are. */
class PresetLearner
{
public:
    PresetLearner(QString file, GuideAdjustments adjustments)
        : m_file(std::move(file))
        , m_adjustments(std::move(adjustments))
    {
    }

    /** Nothing, with a message, if the shape has a fault or draws nothing. */
    std::optional<LearntPreset> learn(ShapeDefinition const& shape)
    {
        Diagnostics diagnostics;
        auto learnt = learntShape(shape, m_adjustments, m_file, diagnostics);
        if (learnt) {
            ++m_shapes;
            m_whole += learnt->isWhole() ? 1 : 0;
            m_coordinates += learnt->coordinates;
            m_inexact += learnt->inexact.size();
        }
        m_hasWarned = m_hasWarned || !diagnostics.isEmpty();
        report(diagnostics);
        return learnt;
    }

    bool hasWarned() const { return m_hasWarned; }

    /** "2 shapes, 1 whole; 60 coordinates, 52 exact" */
    QString summary() const
    {
        return QStringLiteral("%1, %2 whole; %3, %4 exact")
            .arg(countText(m_shapes, QStringLiteral("shape")))
            .arg(m_whole)
            .arg(countText(m_coordinates, QStringLiteral("coordinate")))
            .arg(m_coordinates - m_inexact);
    }

private:
    QString const m_file;
    GuideAdjustments const m_adjustments;
    int m_shapes = 0;
    int m_whole = 0;
    qint64 m_coordinates = 0;
    qint64 m_inexact = 0;
    bool m_hasWarned = false;
};

/** Warns of a name that stands for more than one shape, and of adjustments that none has. */
Diagnostics namingFaults(
    std::vector<ShapeDefinition> const& shapes, PresetConversion const& conversion)
{
    Diagnostics result;
    QSet<QString> names;
    QSet<QString> adjustments;
    for (ShapeDefinition const& shape : shapes) {
        if (names.contains(shape.name)) {
            result.add({Diagnostic::Severity::Warning, conversion.input, shape.line, shape.column,
                QStringLiteral("%1 is defined again: left out").arg(shape.name)});
        }
        names << shape.name;
        for (QString const& name : shape.guides.adjustments())
            adjustments << name;
    }
    QStringList given = conversion.adjustments.keys();
    given.sort();
    for (QString const& name : qAsConst(given)) {
        if (!adjustments.contains(name)) {
            result.warning(
                conversion.input, QStringLiteral("no shape has an adjustment '%1'").arg(name));
        }
    }
    return result;
}

/** The shapes in an input, or nothing after a message; `hasWarned` is set after any. */
template <class Read>
std::optional<std::vector<ShapeDefinition>> definitionsOf(
    QByteArray const& text, QString const& operand, Read read, bool& hasWarned)
{
    Diagnostics diagnostics;
    auto result = read(text, operand, diagnostics);
    report(diagnostics);
    hasWarned = !diagnostics.isEmpty();
    return result;
}

} // namespace

std::optional<GuideAdjustments> adjustmentsFromTexts(QStringList const& texts, Diagnostic& fault)
{
    GuideAdjustments result;
    for (QString const& text : texts) {
        int const separator = text.indexOf(QLatin1Char('='));
        auto const value = numberFromText(text.mid(separator + 1));
        if (separator < 1 || !value) {
            fault = misuse(QStringLiteral("--adjust takes NAME=VALUE, not '%1'").arg(text));
            return std::nullopt;
        }
        result.insert(text.left(separator), *value);
    }
    return result;
}

Outcome convertPresets(PresetConversion const& conversion)
{
    Diagnostics diagnostics;
    auto const text = readInput(conversion.input, diagnostics);
    report(diagnostics);
    if (!text)
        return Outcome::Failed;
    bool hasWarned = false;
    auto const shapes = definitionsOf(*text, conversion.input, readPresetShapes, hasWarned);
    if (!shapes)
        return Outcome::Failed;
    Diagnostics const faults = namingFaults(*shapes, conversion);
    report(faults);
    if (!QDir().mkpath(conversion.folder)) {
        report({Diagnostic::Severity::Error, conversion.folder, 0, 0,
            QStringLiteral("cannot be made a folder")});
        return Outcome::Failed;
    }

    TextTable table({QStringLiteral("shape"), QStringLiteral(">coordinates"),
        QStringLiteral(">exact"), QStringLiteral(">worst error")});
    PresetLearner learner(conversion.input, conversion.adjustments);
    QSet<QString> names;
    for (ShapeDefinition const& shape : *shapes) {
        if (names.contains(shape.name))
            continue;
        names << shape.name;
        auto const learnt = learner.learn(shape);
        if (!learnt)
            continue;
        if (!writeOutput(QDir(conversion.folder).filePath(shape.name + QStringLiteral(".xml")),
                shapesDocument(learnt->shapes)))
            return Outcome::Failed;
        table.addRow({shape.name, QString::number(learnt->coordinates),
            QString::number(learnt->coordinates - learnt->inexact.size()),
            QString::number(learnt->error, 'g', 2)});
    }
    if (!printOut(table.toText() + QLatin1Char('\n') + learner.summary() + QLatin1Char('\n')))
        return Outcome::Failed;
    return hasWarned || !faults.isEmpty() || learner.hasWarned() ? Outcome::Warned : Outcome::Done;
}

Outcome convertCustomShapes(QByteArray const& text, QString const& operand, QString const& output)
{
    bool hasWarned = false;
    auto const definitions = definitionsOf(text, operand, readCustomShapes, hasWarned);
    if (!definitions)
        return Outcome::Failed;
    PresetLearner learner(operand, {});
    Shapes shapes;
    for (ShapeDefinition const& definition : *definitions) {
        if (auto const learnt = learner.learn(definition))
            shapes.insert(shapes.end(), learnt->shapes.begin(), learnt->shapes.end());
    }
    if (shapes.empty()) {
        report({Diagnostic::Severity::Error, operand, 0, 0,
            QStringLiteral("nothing in it becomes an outline")});
        return Outcome::Failed;
    }
    if (!writeOutput(output, shapesDocument(shapes)))
        return Outcome::Failed;
    return hasWarned || learner.hasWarned() ? Outcome::Warned : Outcome::Done;
}

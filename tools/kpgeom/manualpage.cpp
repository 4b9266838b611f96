// SPDX-License-Identifier: MIT
#include "manualpage.h"

#include "batch.h"
#include "shelltext.h"
#include "tool.h"

#include <QStringList>

#include <algorithm>
#include <iterator>

namespace {

constexpr CommandOption notes[] = {quietOption};

/** A section that explains options which are of several commands, or of none. */
struct SharedSection
{
    char const* heading;
    Options options;
};

// What is in several of them is explained in the first.
constexpr SharedSection sharedSections[] = {
    {".SH OPTIONS", notes},
    {".SH OPTIONS", toolOptions},
    {".SH MANY FILES", batchOptions},
};

QString const commandHeading = QStringLiteral(".SS ");

/** Text of roff: a dash is what is typed. */
QString roff(QString text)
{
    return text.replace(QLatin1Char('-'), QLatin1String("\\-"));
}

/** The name of a value: its words in italics. */
QString valueText(QString const& name)
{
    QString text;
    bool isItalic = false;
    for (QChar const character : name) {
        if (character.isUpper() != isItalic)
            text += character.isUpper() ? QStringLiteral("\\fI") : QStringLiteral("\\fR");
        isItalic = character.isUpper();
        text += character;
    }
    return isItalic ? text + QStringLiteral("\\fR") : text;
}

/** How the explanation of an option begins. */
QString optionHeading(CommandOption const& option)
{
    QString const spellings = roff(ShellText::spellings(option).join(QStringLiteral(" \", \" ")));
    QString const value = option.value.name
        ? QStringLiteral(" \" %1\"").arg(valueText(QString::fromUtf8(option.value.name)))
        : QString();
    return QStringLiteral(".TP\n.BR %1%2").arg(spellings, value);
}

bool isSame(CommandOption const& left, CommandOption const& right)
{
    return qstrcmp(left.name, right.name) == 0 && qstrcmp(left.description, right.description) == 0;
}

/** Whether one of the shared sections before `end` explains the option. */
bool isShared(CommandOption const& option, SharedSection const* end)
{
    return std::any_of(std::begin(sharedSections), end, [&option](SharedSection const& section) {
        return std::any_of(section.options.begin(), section.options.end(),
            [&option](CommandOption const& other) { return isSame(option, other); });
    });
}

/** Goes through the lines of the form. */
class ManualWriter
{
public:
    ManualWriter(Form& form, Diagnostics& diagnostics)
        : m_form(form)
        , m_diagnostics(diagnostics)
    {
    }

    void write()
    {
        QStringList const lines = m_form.text.split(QLatin1Char('\n'));
        QStringList result;
        for (QString const& line : lines) {
            ++m_line;
            if (line.startsWith(QLatin1String(".SH ")) || line.startsWith(commandHeading))
                begin(line);
            result << (line.startsWith(QLatin1String("@--")) ? explained(line) : line);
        }
        begin(QString());
        for (SharedSection const& section : sharedSections) {
            if (!lines.contains(QString::fromUtf8(section.heading)))
                complain(QStringLiteral("there is no %1").arg(QString::fromUtf8(section.heading)));
        }
        if (m_command != std::end(commands))
            complain(QStringLiteral("the command %1 has no section")
                         .arg(QString::fromUtf8((*m_command)->name)));
        m_form.text = result.join(QLatin1Char('\n'));
    }

private:
    void complain(QString const& fault)
    {
        m_diagnostics.add({Diagnostic::Severity::Error, m_form.file, m_line, 1, fault});
    }

    /** Ends a section and begins another one. */
    void begin(QString const& heading)
    {
        for (CommandOption const* const option : qAsConst(m_awaited))
            complain(QStringLiteral("--%1 is not explained").arg(QString::fromUtf8(option->name)));
        m_awaited.clear();
        if (heading.startsWith(commandHeading))
            beginCommand(heading.mid(commandHeading.size()));
        for (SharedSection const& section : sharedSections) {
            if (heading == QString::fromUtf8(section.heading))
                await(section.options, &section);
        }
    }

    void beginCommand(QString const& name)
    {
        if (m_command == std::end(commands) || name != QString::fromUtf8((*m_command)->name)) {
            complain(QStringLiteral("%1 is not the next command").arg(name));
            return;
        }
        for (Options const& options : (*m_command)->options)
            await(options, std::end(sharedSections));
        ++m_command;
    }

    /** @param end behind the shared sections that may have explained them */
    void await(Options const& options, SharedSection const* end)
    {
        for (CommandOption const& option : options) {
            if (!isShared(option, end))
                m_awaited << &option;
        }
    }

    /** What a line with a mark becomes. */
    QString explained(QString const& line)
    {
        if (m_awaited.isEmpty()
            || line != QStringLiteral("@--%1@").arg(QString::fromUtf8(m_awaited.first()->name))) {
            complain(QStringLiteral("%1 is not the next option").arg(line));
            return line;
        }
        return optionHeading(*m_awaited.takeFirst());
    }

    Form& m_form;
    Diagnostics& m_diagnostics;
    qint64 m_line = 0;
    Command const* const* m_command = std::begin(commands); ///< the next one
    QVector<CommandOption const*> m_awaited; ///< what the section has to explain yet
};

} // namespace

void fillManual(Form& form, Diagnostics& diagnostics)
{
    form.fill(QStringLiteral("version"), QStringLiteral(KPGEOM_VERSION), diagnostics);
    ManualWriter(form, diagnostics).write();
}

// SPDX-License-Identifier: MIT
#ifndef COMMANDLINE_H
#define COMMANDLINE_H

#include "command.h"
#include "common/diagnostic.h"
#include "common/localfilename.h"

#include <QCommandLineParser>

#include <optional>

/** The arguments of one subcommand. */
class CommandLine
{
public:
    explicit CommandLine(Command const& command);

    /** Reads the arguments. An outcome means that the command ends here: help or misuse. */
    std::optional<Outcome> parse(QStringList const& arguments);

    bool isSet(QString const& option) const { return m_parser.isSet(option); }
    QString value(QString const& option) const { return m_parser.value(option); }
    QStringList values(QString const& option) const { return m_parser.values(option); }
    /** The file that an option names. */
    QString file(QString const& option) const { return localFileName(value(option)); }
    /**
     * From here on standard input is the only operand if none is given and something waits there, as
     * hasStandardInput() tells. For commands whose operands are files, and one is enough.
     */
    void fallBackOnStandardInput();

    /** Those of them that begin with a colon as files. */
    QStringList operands() const;
    /** Of the files that the command reads, without a dot; none for any. */
    QStringList suffixes() const;

    /** Tells the user how the command was misused. */
    Outcome misused(Diagnostic const& fault) const;

private:
    void addOption(CommandOption const& option);
    QString helpText() const;
    QString parsingFault() const;

    Command const& m_command;
    QCommandLineParser m_parser;
    bool m_takesStandardInput = false; ///< as its only operand
};

/** A wrong use of a command, about no file. */
Diagnostic misuse(QString const& what);

#endif // COMMANDLINE_H

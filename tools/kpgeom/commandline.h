// SPDX-License-Identifier: MIT
#ifndef COMMANDLINE_H
#define COMMANDLINE_H

#include "command.h"
#include "common/diagnostic.h"
#include "common/localfilename.h"

#include <QCommandLineParser>
#include <QSizeF>

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
};

/** A wrong use of a command, about no file. */
Diagnostic misuse(QString const& what);

/** The greatest size, scale, margin or density. */
constexpr double greatestFactor = 1e6;

/** A number, which is finite. */
std::optional<double> numberFromText(QString const& text);

/** A number from `least` to `greatest`. */
std::optional<double> numberFromText(QString const& text, double least, double greatest);

/** "WxH", both greater than 0 and at most a million units. */
std::optional<QSizeF> sizeFromText(QString const& text);

/** A number greater than 0 and at most greatestFactor. */
std::optional<double> factorFromText(QString const& text);

#endif // COMMANDLINE_H

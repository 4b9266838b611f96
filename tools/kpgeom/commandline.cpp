#include "commandline.h"

#include "inputoutput.h"

CommandLine::CommandLine(Command const& command)
    : m_command(command)
{
    m_parser.setApplicationDescription(QString::fromUtf8(command.summary));
    m_parser.addOption({{QStringLiteral("h"), QStringLiteral("help")},
        QStringLiteral("Print this help and exit.")});
    QString const syntax = QString::fromUtf8(command.syntax);
    m_parser.addPositionalArgument(syntax.section(QLatin1Char(' '), 0, 0),
        QStringLiteral("\"-\" is standard input."),
        QStringLiteral("%1 %2").arg(QString::fromUtf8(command.name), syntax));
}

std::optional<Outcome> CommandLine::parse(QStringList const& arguments)
{
    bool const understood =
        m_parser.parse(QStringList(QString::fromUtf8(m_command.name)) + arguments);
    if (m_parser.isSet(QStringLiteral("help")))
        return printOut(m_parser.helpText()) ? Outcome::Done : Outcome::Failed;
    if (!understood)
        return misused(m_parser.errorText());
    return std::nullopt;
}

Outcome CommandLine::misused(QString const& what) const
{
    printError(QStringLiteral("kpgeom %1: %2 (see kpgeom %1 --help)")
                   .arg(QString::fromUtf8(m_command.name), what));
    return Outcome::Misused;
}

std::optional<double> factorFromText(QString const& text)
{
    bool isNumber = false;
    double const factor = text.toDouble(&isNumber);
    // Written so that not-a-number fails.
    if (isNumber && factor > 0.0 && factor <= 1e6)
        return factor;
    return std::nullopt;
}

std::optional<QSizeF> sizeFromText(QString const& text)
{
    QStringList const sides = text.split(QLatin1Char('x'));
    if (sides.size() != 2)
        return std::nullopt;
    auto const width = factorFromText(sides.first());
    auto const height = factorFromText(sides.last());
    if (!width || !height)
        return std::nullopt;
    return QSizeF(*width, *height);
}

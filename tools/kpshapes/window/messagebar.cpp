// SPDX-License-Identifier: MIT
#include "window/messagebar.h"

#include "common/text.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QStyle>
#include <QToolButton>

namespace {

/** More would not be read, and take long to show. */
constexpr int mostLines = 1000;

/** "file:line:column: text" */
QString lineOf(Diagnostic const& diagnostic)
{
    QString line;
    if (!diagnostic.file.isEmpty())
        line += diagnostic.file + QStringLiteral(":");
    if (diagnostic.line > 0)
        line += QStringLiteral("%1:%2:").arg(diagnostic.line).arg(diagnostic.column);
    if (!line.isEmpty())
        line += QLatin1Char(' ');
    if (diagnostic.severity == Diagnostic::Severity::Warning)
        line += QStringLiteral("warning: ");
    return printable(line + diagnostic.text);
}

} // namespace

MessageBar::MessageBar(QWidget* parent)
    : QFrame(parent)
    , m_line(new QLabel(this))
    , m_more(new QToolButton(this))
    , m_details(new QPlainTextEdit(this))
{
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    m_line->setTextFormat(Qt::PlainText);
    m_line->setWordWrap(true);
    m_line->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_line->setAccessibleName(QStringLiteral("Message"));
    m_more->setText(QStringLiteral("Details"));
    m_more->setCheckable(true);
    m_more->setAccessibleName(QStringLiteral("Show all messages"));
    auto* const close = new QToolButton(this);
    close->setText(QStringLiteral("Close"));
    close->setAccessibleName(QStringLiteral("Close the message"));
    m_details->setReadOnly(true);
    m_details->setMaximumHeight(160);
    m_details->setAccessibleName(QStringLiteral("All messages"));
    auto* const row = new QHBoxLayout;
    row->addWidget(m_line, 1);
    row->addWidget(m_more);
    row->addWidget(close);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->addLayout(row);
    layout->addWidget(m_details);
    connect(m_more, &QToolButton::toggled, this, &MessageBar::setDetailsShown);
    connect(close, &QToolButton::clicked, this, &QWidget::hide);
    hide();
}

void MessageBar::show(Diagnostics const& diagnostics)
{
    if (diagnostics.isEmpty())
        return;
    QStringList lines;
    QString gravest;
    for (Diagnostic const& diagnostic : diagnostics) {
        QString const line = lineOf(diagnostic);
        if (gravest.isEmpty() && diagnostic.severity == Diagnostic::Severity::Error)
            gravest = line;
        if (lines.size() < mostLines)
            lines << line;
    }
    if (gravest.isEmpty())
        gravest = lines.first();
    if (diagnostics.size() > 1)
        gravest += QStringLiteral(" (1 of %1 messages)").arg(diagnostics.size());
    if (diagnostics.size() > mostLines)
        lines << QStringLiteral("and %1 more").arg(diagnostics.size() - mostLines);
    present(gravest, diagnostics.size() > 1 ? lines.join(QLatin1Char('\n')) : QString());
}

void MessageBar::show(QString const& hint)
{
    present(hint, {});
}

QString MessageBar::text() const
{
    return isHidden() ? QString() : m_line->text();
}

QString MessageBar::details() const
{
    return m_details->toPlainText();
}

void MessageBar::setDetailsShown(bool isShown)
{
    m_details->setVisible(isShown);
}

void MessageBar::present(QString const& line, QString const& details)
{
    m_line->setText(elided(line, 500));
    m_details->setPlainText(details);
    m_more->setVisible(!details.isEmpty());
    m_more->setChecked(false);
    m_details->hide();
    QFrame::show();
}

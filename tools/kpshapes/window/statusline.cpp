// SPDX-License-Identifier: MIT
#include "window/statusline.h"

#include "kpmath.h"
#include "model/lengthtext.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

#include <cmath>

StatusLine::StatusLine(ShapeDocument const& document, Selection const& selection,
    ViewSettings const& settings, QWidget* parent)
    : QWidget(parent)
    , m_document(document)
    , m_selection(selection)
    , m_settings(settings)
    , m_position(new QLabel(this))
    , m_command(new QLineEdit(this))
{
    m_position->setMinimumWidth(360);
    m_position->setAccessibleName(QStringLiteral("Position of the mouse"));
    m_command->setReadOnly(true);
    m_command->setFrame(false);
    m_command->setPlaceholderText(QStringLiteral("kpgeom has no command for the last step"));
    m_command->setAccessibleName(QStringLiteral("As a command"));
    m_command->setToolTip(QStringLiteral("The command that does what was just done"));
    auto* const label = new QLabel(QStringLiteral("As a &command:"), this);
    label->setBuddy(m_command);
    auto* const copy = new QToolButton(this);
    copy->setText(QStringLiteral("Copy"));
    copy->setAccessibleName(QStringLiteral("Copy the command"));
    connect(copy, &QToolButton::clicked, this, &StatusLine::copyCommand);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(6, 0, 6, 0);
    row->addWidget(m_position);
    row->addSpacing(12);
    row->addWidget(label);
    row->addWidget(m_command, 1);
    row->addWidget(copy);
}

QString StatusLine::lengthText(double length) const
{
    return measureText(length, m_settings.unit());
}

void StatusLine::setPosition(QPointF const& position)
{
    QString text =
        QStringLiteral("x %1  y %2").arg(lengthText(position.x()), lengthText(position.y()));
    auto const current = m_selection.current();
    auto const from = current ? handleOf(*m_document.working().list, *current) : std::nullopt;
    if (from) {
        QPointF const way = position - from->position;
        double const distance = std::sqrt(way.x() * way.x() + way.y() * way.y());
        text += QStringLiteral("  distance %1").arg(lengthText(distance));
        if (distance > 0.0) {
            double const angle = KpMath::kpAtan2(position, from->position);
            text += QStringLiteral("  angle %1\u00b0").arg(QString::number(angle, 'f', 1));
        }
    }
    m_position->setText(text);
}

void StatusLine::clearPosition()
{
    m_position->clear();
}

void StatusLine::setCommand(QString const& command)
{
    m_commandText = command;
    m_command->setText(command);
    m_command->setCursorPosition(0);
}

void StatusLine::copyCommand() const
{
    if (!m_commandText.isEmpty())
        QGuiApplication::clipboard()->setText(m_commandText);
}

QString StatusLine::positionText() const
{
    return m_position->text();
}

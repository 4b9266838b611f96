// SPDX-License-Identifier: MIT
#include "panels/boxpopup.h"
#include "document/shapebox.h"

#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

namespace {

QDoubleSpinBox* newSideBox(QWidget* parent, QString const& name)
{
    auto* const side = new QDoubleSpinBox(parent);
    side->setRange(1.0, greatestBoxSide);
    side->setDecimals(2);
    side->setAccessibleName(name);
    side->setObjectName(name);
    return side;
}

} // namespace

BoxPopup::BoxPopup(QWidget* parent)
    : QFrame(parent, Qt::Popup)
    , m_width(newSideBox(this, QStringLiteral("Width of the box")))
    , m_height(newSideBox(this, QStringLiteral("Height of the box")))
{
    setFrameShape(QFrame::StyledPanel);
    setFrameShadow(QFrame::Raised);
    setAccessibleName(QStringLiteral("Add a box"));
    auto* const add = new QPushButton(QStringLiteral("&Add"), this);
    auto* const row = new QHBoxLayout(this);
    row->addWidget(m_width);
    row->addWidget(new QLabel(QStringLiteral("\u00d7"), this));
    row->addWidget(m_height);
    row->addWidget(add);
    connect(add, &QPushButton::clicked, this, &BoxPopup::answer);
}

void BoxPopup::ask(QWidget const& beside, QSizeF const& box)
{
    m_width->setValue(box.width());
    m_height->setValue(box.height());
    adjustSize();
    move(beside.mapToGlobal(QPoint(0, -height())));
    show();
    m_width->setFocus();
    m_width->selectAll();
}

void BoxPopup::answer()
{
    m_width->interpretText();
    m_height->interpretText();
    hide();
    Q_EMIT answered(QSizeF(m_width->value(), m_height->value()));
}

void BoxPopup::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        answer();
    else
        QFrame::keyPressEvent(event);
}

// SPDX-License-Identifier: MIT
#include "model/viewsettings.h"

#include "unitcode_p.h"
#include "unitutil.h"

ViewSettings::ViewSettings(QObject* parent)
    : QObject(parent)
    , m_unit(UnitMillimetre)
{
}

template <class Value> void ViewSettings::change(Value& member, Value const& value)
{
    if (member == value)
        return;
    member = value;
    Q_EMIT changed();
}

void ViewSettings::setUnit(unsigned int unit)
{
    if (unit <= UnitCicero)
        change(m_unit, unit);
}

void ViewSettings::setPage(int page, bool isLandscape)
{
    if (m_page == page && m_isLandscape == isLandscape)
        return;
    m_isLandscape = isLandscape;
    m_page = page;
    Q_EMIT changed();
}

QSizeF ViewSettings::pageSize() const
{
    QSizeF pixels;
    QSizeF units;
    UnitUtil::preDefinedPage(m_page, pixels, units);
    return m_isLandscape ? pixels.transposed() : pixels;
}

void ViewSettings::setShowsHandles(bool isShown)
{
    change(m_showsHandles, isShown);
}

void ViewSettings::setShowsRulers(bool isShown)
{
    change(m_showsRulers, isShown);
}

void ViewSettings::setShowsPage(bool isShown)
{
    change(m_showsPage, isShown);
}

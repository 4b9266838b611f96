// SPDX-License-Identifier: MIT
#ifndef VIEWSETTINGS_H
#define VIEWSETTINGS_H

#include <QObject>
#include <QSizeF>

/** What a window shows beside the shape, and in which unit: remembered, never undone. */
class ViewSettings : public QObject
{
    Q_OBJECT

public:
    /** Millimetres, ISO A4 upright, everything shown. */
    explicit ViewSettings(QObject* parent = nullptr);

    /** The unit of rulers, numbers and the status line: a code of UnitUtil, 0 to 13. */
    unsigned int unit() const { return m_unit; }
    /** Any other number is ignored. */
    void setUnit(unsigned int unit);

    /** The page behind the shape: an index of UnitUtil::preDefinedPage(). */
    int page() const { return m_page; }
    /** Whether the page lies on its side. */
    bool isLandscape() const { return m_isLandscape; }
    /** @param page any number; an unknown one is ISO A4, as UnitUtil has it */
    void setPage(int page, bool isLandscape);
    /** In pixels of 96 an inch, as it lies. */
    QSizeF pageSize() const;

    /** Whether the points and control points of the outline are shown. */
    bool showsHandles() const { return m_showsHandles; }
    /** Shows them, or not. */
    void setShowsHandles(bool isShown);
    /** Whether the rulers are shown. */
    bool showsRulers() const { return m_showsRulers; }
    /** Shows them, or not. */
    void setShowsRulers(bool isShown);
    /** Whether the page is shown. */
    bool showsPage() const { return m_showsPage; }
    /** Shows it, or not. */
    void setShowsPage(bool isShown);

Q_SIGNALS:
    /** Any of it is different. */
    void changed();

private:
    template <class Value> void change(Value& member, Value const& value);

    unsigned int m_unit = 1;
    int m_page = 13; ///< ISO A4
    bool m_isLandscape = false;
    bool m_showsHandles = true;
    bool m_showsRulers = true;
    bool m_showsPage = true;
};

#endif // VIEWSETTINGS_H

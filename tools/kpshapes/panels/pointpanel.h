// SPDX-License-Identifier: MIT
#ifndef POINTPANEL_H
#define POINTPANEL_H

#include "fit/rulefit.h"
#include "model/selection.h"
#include "model/shapedocument.h"
#include "model/viewsettings.h"

#include <QTimer>
#include <QWidget>

class AxisEditor;
class NumberBox;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;

/**
 * Numbers of the selected points and of the outline: values in the unit of the view, binding rules
 * and their rates, the flags and the fill rule, and the box. Every entry is one step, for all points
 * that are selected; where they differ, fields are empty. Another rule keeps the place.
 */
class PointPanel : public QWidget
{
    Q_OBJECT

public:
    /** All that is given is not owned, and must outlive this. */
    PointPanel(ShapeDocument& document, Selection& selection, ViewSettings& settings,
        QWidget* parent = nullptr);

private:
    QGroupBox* newPointGroup();
    QGroupBox* newOutlineGroup();
    QGroupBox* newBoxGroup();
    QCheckBox* newFlag(QString const& text, bool KpPathSegList::*flag, QString const& stepToSet,
        QString const& stepToClear);
    NumberBox* newSide(QString const& name, bool isWidth);
    void connectAxis(Axis axis, AxisEditor& editor);
    void scheduleRefresh();
    void refresh();
    void showAxis(Axis axis, AxisEditor& editor);
    QString pointsText() const;
    template <class Change> void changeAxis(Axis axis, QString const& what, Change change);
    void resizeTo(QSizeF const& box);
    void enterSide(bool isWidth, double length);
    void chooseFillRule(int index);

    ShapeDocument& m_document;
    Selection& m_selection;
    ViewSettings& m_settings;
    QTimer m_timer;
    QLabel* m_points = nullptr;
    AxisEditor* m_x = nullptr;
    AxisEditor* m_y = nullptr;
    QCheckBox* m_closed = nullptr;
    QCheckBox* m_noFill = nullptr;
    QCheckBox* m_noLine = nullptr;
    QComboBox* m_fillRule = nullptr;
    NumberBox* m_width = nullptr;
    NumberBox* m_height = nullptr;
    QLabel* m_unitName = nullptr;
    QGroupBox* m_outlineGroup = nullptr;
    QGroupBox* m_boxGroup = nullptr;
};

#endif // POINTPANEL_H

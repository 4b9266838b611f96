// SPDX-License-Identifier: MIT
#ifndef APPEARANCEPANELTESTING_H
#define APPEARANCEPANELTESTING_H

#include "document/colourtheme.h"
#include "kpshapestesting.h"
#include "outlinetesting.h"
#include "panels/appearancepanel.h"

#include <QAbstractButton>
#include <QMouseEvent>
#include <QTabWidget>

/** What the tests of the panel of how a shape looks share: a panel of a small document. */
namespace AppearancePanelTesting {

inline ItemPointer item(QString const& name)
{
    KpPathSegList list;
    list.closed = true;
    list.addTail(new KpPathSegMoveTo(QPointF(0, 0), nullptr));
    list.addTail(new KpPathSegLineTo(QPointF(100, 60), nullptr));
    list.addTail(new KpPathSegLineTo(QPointF(0, 60), nullptr));
    return std::make_shared<ShapeItem const>(
        ShapeItem {name, QSizeF(100, 60), std::nullopt, recordOf(list), {}, -1});
}

/** A panel of a document of three outlines, on the screen. */
class Bench
{
public:
    Bench()
        : panel(document)
    {
        document.reset({item("one"), item("two"), item("three")});
        panel.resize(300, 420);
        panel.show();
        if (!QTest::qWaitForWindowExposed(&panel))
            qFatal("the panel is not shown");
        showTab(0);
    }

    void showTab(int index)
    {
        auto* const tabs = panel.findChild<QTabWidget*>();
        tabs->setCurrentIndex(index);
        section = tabs->currentWidget();
    }

    /** The widget of the tab that is shown, by its accessible name. */
    template <class Widget> Widget* find(QString const& name) const
    {
        for (Widget* const widget : section->findChildren<Widget*>()) {
            if (widget->accessibleName() == name)
                return widget;
        }
        qFatal("there is no %s", qPrintable(name));
    }

    void click(QString const& name) const
    {
        QTest::mouseClick(find<QAbstractButton>(name), Qt::LeftButton);
    }

    Appearance& appearance() { return document.working().appearance; }
    /** The appearance as the last step has left it. */
    Appearance const& kept() const { return document.at(document.current()).appearance; }

    /** The texts of the steps, the last one last. */
    QStringList steps()
    {
        QStringList texts;
        for (int i = 0; i < document.undoStack().count(); ++i)
            texts << document.undoStack().text(i);
        return texts;
    }

    ShapeDocument document;
    AppearancePanel panel;
    QWidget* section = nullptr;
};

inline QColor harbour(int slot)
{
    return themeOf("Harbour")->colour(slot);
}

inline QStringList names(QVector<ColourTransform> const& transforms)
{
    QStringList all;
    for (ColourTransform const& transform : transforms)
        all << transform.name;
    return all;
}

/** A move with the left button down, which QTest::mouseMove() leaves out. */
inline void drag(QWidget* widget, QPoint const& to)
{
    QMouseEvent event(QEvent::MouseMove, to, widget->mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
        Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

/** A fill with the transforms inv, gray and lum. */
inline void addTransforms(Bench& bench)
{
    bench.appearance().fill =
        ShapeColour {KpColor(QColor(200, 40, 10)), {{"inv", 0}, {"gray", 0}, {"lum", 0.25}}};
    bench.document.commit("Prepare");
    bench.document.touch();
}

} // namespace AppearancePanelTesting

#endif // APPEARANCEPANELTESTING_H

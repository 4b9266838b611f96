// SPDX-License-Identifier: MIT
#ifndef APPEARANCEPANEL_H
#define APPEARANCEPANEL_H

#include "document/appearance.h"
#include "document/colourtheme.h"
#include "model/shapedocument.h"

#include <QWidget>

class PaintSection;
class QComboBox;
class QTabWidget;
class ShadowSection;

/**
 * How the current outline looks: its filling, its line and its shadow; and the theme of all
 * outlines. What is dragged is one step of undo.
 */
class AppearancePanel : public QWidget
{
    Q_OBJECT

public:
    /** @param document not owned, must outlive this */
    explicit AppearancePanel(ShapeDocument& document, QWidget* parent = nullptr);

protected:
    /** Draws the swatches anew for another palette. */
    void changeEvent(QEvent* event) override;

private:
    void addPart(PaintSection& section, std::optional<ShapeColour> Appearance::*part);
    void addShadow();
    void changePart(PaintSection const& section, std::optional<ShapeColour> Appearance::*part);
    void changeTheme(int index);
    void refresh();
    void showAll();
    void refreshTheme();
    void refreshTabs();
    ColourTheme const& theme() const;
    Appearance& appearance() { return m_document.working().appearance; }
    Appearance const& appearance() const { return m_document.working().appearance; }

    ShapeDocument& m_document;
    Appearance m_shown;
    QComboBox* m_theme;
    QTabWidget* m_tabs;
    PaintSection* m_fill;
    PaintSection* m_line;
    ShadowSection* m_shadow;
};

#endif // APPEARANCEPANEL_H

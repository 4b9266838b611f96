// SPDX-License-Identifier: MIT
#ifndef COLOURSLOTS_H
#define COLOURSLOTS_H

#include "document/colourtheme.h"

#include <QVector>
#include <QWidget>

class QAbstractButton;
class QButtonGroup;

/**
 * The slots of a theme beside one another, after one for the usual colour. By keyboard the arrows
 * choose, as in any group of buttons.
 */
class ColourSlots : public QWidget
{
    Q_OBJECT

public:
    /** What is chosen if it is no slot. */
    enum { Plain = -1, Usual = 0 };

    /** @param noun what the colour is of, in accessible names: "Fill" */
    explicit ColourSlots(QString const& noun, QWidget* parent = nullptr);

    /** Shows the colours of another theme. */
    void setTheme(ColourTheme const& theme);
    /** @param slot from 1 to themeSlotCount, Usual or Plain: none of them */
    void setCurrentSlot(int slot);
    /** The one that is shown as chosen. */
    int currentSlot() const;
    /** The button of a slot, or of Usual. @param slot as in setCurrentSlot(), but not Plain */
    QAbstractButton* button(int slot) const;

Q_SIGNALS:
    /** The user chose a slot, or Usual. */
    void slotChosen(int slot);

private:
    QString m_noun;
    QButtonGroup* m_group; ///< the slot is the id
};

#endif // COLOURSLOTS_H

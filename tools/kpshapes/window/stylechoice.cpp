// SPDX-License-Identifier: MIT
#include "window/stylechoice.h"

#include "window/plainstyle.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>

namespace {

/** The colours of which a palette is made, and how strong the edges of controls are. */
struct Look
{
    QRgb window;
    QRgb base;
    QRgb button;
    QRgb text;
    QRgb disabled;
    QRgb accent;
    QRgb onAccent;
    QRgb link;
    double edges;
};

constexpr Look light {0xfff3f4f6, 0xffffffff, 0xffe7e9ed, 0xff1c2430, 0xff6b7480, 0xff2f6db5,
    0xffffffff, 0xff1f5a9e, 0.0};
constexpr Look dark {0xff23272e, 0xff1b1e24, 0xff2f353e, 0xffe4e8ee, 0xff8d96a2, 0xff4f8fd9,
    0xff101318, 0xff8ab8ee, 0.45};
constexpr Look highContrast {0xff000000, 0xff000000, 0xff000000, 0xffffffff, 0xffb0b0b0, 0xffffe000,
    0xff000000, 0xff66ccff, 1.0};

QPalette paletteOf(Look const& look)
{
    QPalette palette(QColor::fromRgb(look.button), QColor::fromRgb(look.window));
    auto const set = [&palette](std::initializer_list<QPalette::ColorRole> roles, QRgb colour) {
        for (QPalette::ColorRole const role : roles)
            palette.setColor(role, QColor::fromRgb(colour));
    };
    set({QPalette::Window, QPalette::AlternateBase, QPalette::ToolTipBase}, look.window);
    set({QPalette::Base}, look.base);
    set({QPalette::Button}, look.button);
    set({QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText,
            QPalette::BrightText},
        look.text);
    set({QPalette::Highlight}, look.accent);
    set({QPalette::HighlightedText}, look.onAccent);
    set({QPalette::Link, QPalette::LinkVisited}, look.link);
    set({QPalette::PlaceholderText}, look.disabled);
    for (QPalette::ColorRole const role :
        {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor::fromRgb(look.disabled));
    return palette;
}

} // namespace

std::array<StyleName, 4> const& styleNames()
{
    static constexpr std::array<StyleName, 4> all {{
        {StyleChoice::System, "system", "As the &System"},
        {StyleChoice::Light, "light", "&Light"},
        {StyleChoice::Dark, "dark", "&Dark"},
        {StyleChoice::HighContrast, "high-contrast", "&High Contrast"},
    }};
    return all;
}

std::optional<StyleChoice> styleOf(QString const& id)
{
    for (StyleName const& name : styleNames()) {
        if (id == QLatin1String(name.id))
            return name.choice;
    }
    return std::nullopt;
}

void applyStyle(StyleChoice choice)
{
    static QString const ofSystem = QApplication::style()->objectName();
    static bool isOfSystem = true;
    if (choice == StyleChoice::System) {
        // Untouched, it goes on to follow the desktop.
        if (!isOfSystem) {
            QApplication::setStyle(QStyleFactory::create(ofSystem));
            QApplication::setPalette(QPalette());
        }
        isOfSystem = true;
        return;
    }
    isOfSystem = false;
    Look const& look = choice == StyleChoice::Light ? light
        : choice == StyleChoice::Dark               ? dark
                                                    : highContrast;
    QApplication::setStyle(PlainStyle::create(look.edges));
    QApplication::setPalette(paletteOf(look));
}

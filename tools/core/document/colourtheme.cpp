// SPDX-License-Identifier: MIT
#include "document/colourtheme.h"

#include <QStringList>

#include <algorithm>

namespace {

ColourTheme theme(QString const& name, std::initializer_list<QRgb> colours)
{
    ColourTheme made {name, {}};
    for (QRgb const colour : colours)
        made.colours.append(QColor::fromRgb(colour));
    return made;
}

void adapt(std::optional<ShapeColour>& part, ColourTheme const& theme)
{
    if (!part)
        return;
    QColor const reference = theme.colour(part->colour.themeIndex());
    if (reference.isValid())
        part->colour.setRefColor(reference, -1);
}

} // namespace

std::vector<ColourTheme> const& colourThemes()
{
    // Dark 1, light 1, dark 2, light 2, then six accents that can be told apart.
    static std::vector<ColourTheme> const themes {
        theme(QStringLiteral("Harbour"),
            {0x1b2733, 0xffffff, 0x1f3a5f, 0xe6edf5, 0x2f6fb3, 0x1f9e9a, 0xe0a030, 0xd0593c,
                0x7a5fb0, 0x6b8794}),
        theme(QStringLiteral("Meadow"),
            {0x22301f, 0xffffff, 0x2f4f34, 0xeef4e6, 0x4b9b4e, 0x9bbf3b, 0xd9b53a, 0xc7743c,
                0x3d8f8a, 0x7d8c62}),
        theme(QStringLiteral("Clay"),
            {0x33241d, 0xffffff, 0x5a3527, 0xf7eee6, 0xb5532f, 0xd98b3e, 0x8a9a4a, 0x4f7f86,
                0x9c5a74, 0x8c7361}),
        theme(QStringLiteral("Dusk"),
            {0x251f33, 0xffffff, 0x3f2f63, 0xf0ecf7, 0x6f55b5, 0xb0569b, 0x4f7fc7, 0x3aa39a,
                0xe0956a, 0x857d96}),
        theme(QStringLiteral("Citrus"),
            {0x2b2a14, 0xffffff, 0x57501a, 0xfbf7df, 0xe6b800, 0xf0862b, 0x9ebf2e, 0x3fa06a,
                0x2b93c0, 0xc94f4f}),
        theme(QStringLiteral("Graphite"),
            {0x1e1e1e, 0xffffff, 0x3c4043, 0xf1f1f1, 0x5f6a73, 0x8a949c, 0x4a7aa8, 0xa88a4a,
                0xa3504f, 0x62a368}),
    };
    return themes;
}

ColourTheme const* themeOf(QString const& name)
{
    std::vector<ColourTheme> const& themes = colourThemes();
    auto const found = std::find_if(
        themes.begin(), themes.end(), [&name](auto const& theme) { return theme.name == name; });
    return found != themes.end() ? &*found : nullptr;
}

QString themeSlotName(int slot)
{
    static QStringList const names {QStringLiteral("Dark 1"), QStringLiteral("Light 1"),
        QStringLiteral("Dark 2"), QStringLiteral("Light 2"), QStringLiteral("Accent 1"),
        QStringLiteral("Accent 2"), QStringLiteral("Accent 3"), QStringLiteral("Accent 4"),
        QStringLiteral("Accent 5"), QStringLiteral("Accent 6")};
    return names.value(slot - 1);
}

Appearance withTheme(Appearance appearance, ColourTheme const& theme)
{
    appearance.theme = theme.name;
    adapt(appearance.fill, theme);
    adapt(appearance.line, theme);
    return appearance;
}

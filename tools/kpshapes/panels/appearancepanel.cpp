// SPDX-License-Identifier: MIT
#include "panels/appearancepanel.h"

#include "panels/paintsection.h"
#include "panels/shadowsection.h"
#include "panels/swatch.h"

#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPixmap>
#include <QTabWidget>

namespace {

constexpr QSize tabSwatch(14, 14);
constexpr QSize themeSwatch(11, 11);

/** The accents of a theme beside one another. */
QIcon themeIcon(ColourTheme const& theme, QPalette const& palette, double ratio)
{
    constexpr int firstAccent = 5;
    constexpr int shown = 6;
    QSize const size(shown * themeSwatch.width(), themeSwatch.height());
    QPixmap pixmap(size * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    {
        QPainter painter(&pixmap);
        QRectF place(QPointF(), themeSwatch);
        for (int slot = firstAccent; slot < firstAccent + shown; ++slot) {
            paintSwatch(painter, place.adjusted(0.0, 0.0, -1.0, 0.0), theme.colour(slot), palette);
            place.translate(themeSwatch.width(), 0.0);
        }
    }
    return QIcon(pixmap);
}

} // namespace

AppearancePanel::AppearancePanel(ShapeDocument& document, QWidget* parent)
    : QWidget(parent)
    , m_document(document)
    , m_theme(new QComboBox(this))
    , m_tabs(new QTabWidget(this))
    , m_fill(new PaintSection(QStringLiteral("fill"), this))
    , m_line(new PaintSection(QStringLiteral("line"), this))
    , m_shadow(new ShadowSection(this))
{
    auto* const column = new QVBoxLayout(this);
    auto* const row = new QHBoxLayout;
    auto* const label = new QLabel(QStringLiteral("T&heme"), this);
    label->setBuddy(m_theme);
    row->addWidget(label);
    row->addWidget(m_theme, 1);
    column->addLayout(row);
    column->addWidget(m_tabs, 1);
    m_tabs->addTab(m_fill, QStringLiteral("Fill"));
    m_tabs->addTab(m_line, QStringLiteral("Line"));
    m_tabs->addTab(m_shadow, QStringLiteral("Shadow"));
    m_tabs->setIconSize(tabSwatch);
    m_tabs->setAccessibleName(QStringLiteral("Parts of the appearance"));
    m_theme->setAccessibleName(QStringLiteral("Theme of all outlines"));
    for (ColourTheme const& theme : colourThemes())
        m_theme->addItem(theme.name);
    addPart(*m_fill, &Appearance::fill);
    addPart(*m_line, &Appearance::line);
    addShadow();
    connect(m_theme, qOverload<int>(&QComboBox::activated), this, &AppearancePanel::changeTheme);
    connect(&m_document, &ShapeDocument::workingChanged, this, &AppearancePanel::refresh);
    connect(&m_document, &ShapeDocument::itemsReplaced, this, &AppearancePanel::refresh);
    showAll();
}

void AppearancePanel::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        showAll();
}

void AppearancePanel::addPart(PaintSection& section, std::optional<ShapeColour> Appearance::*part)
{
    connect(&section, &PaintSection::edited, this,
        [this, &section, part] { changePart(section, part); });
    connect(&section, &PaintSection::finished, &m_document, &ShapeDocument::commit);
    connect(&section, &PaintSection::cancelled, &m_document, &ShapeDocument::revert);
}

void AppearancePanel::addShadow()
{
    connect(m_shadow, &ShadowSection::edited, this, [this] {
        appearance().shadow = m_shadow->shadow();
        m_document.touch();
    });
    connect(m_shadow, &ShadowSection::finished, &m_document, &ShapeDocument::commit);
    connect(m_shadow, &ShadowSection::cancelled, &m_document, &ShapeDocument::revert);
}

void AppearancePanel::changePart(
    PaintSection const& section, std::optional<ShapeColour> Appearance::*part)
{
    std::optional<ShapeColour> const& colour = section.colour();
    appearance().*part = colour;
    // A slot says nothing without the theme that it is of.
    if (colour && colour->colour.themeIndex() > 0)
        appearance().theme = theme().name;
    m_document.touch();
}

void AppearancePanel::changeTheme(int index)
{
    ColourTheme const* const chosen = themeOf(m_theme->itemText(index));
    if (!chosen)
        return;
    std::vector<std::pair<int, ItemPointer>> changed;
    for (int i = 0; i < m_document.count(); ++i) {
        ShapeItem item = m_document.at(i);
        item.appearance = withTheme(item.appearance, *chosen);
        changed.emplace_back(i, std::make_shared<ShapeItem const>(std::move(item)));
    }
    int const current = m_document.current();
    m_document.replace(changed, QStringLiteral("Change theme"));
    m_document.setCurrent(current);
}

/** Points are dragged far more often than colours change. */
void AppearancePanel::refresh()
{
    if (isEnabledTo(parentWidget()) != m_document.hasCurrent() || !(m_shown == appearance()))
        showAll();
}

void AppearancePanel::showAll()
{
    m_shown = appearance();
    setEnabled(m_document.hasCurrent());
    refreshTheme();
    m_fill->setColour(appearance().fill, theme());
    m_line->setColour(appearance().line, theme());
    m_shadow->setShadow(appearance().shadow);
    refreshTabs();
}

void AppearancePanel::refreshTheme()
{
    double const ratio = devicePixelRatioF();
    m_theme->setIconSize(QSize(6 * themeSwatch.width(), themeSwatch.height()));
    for (int i = 0; i < m_theme->count(); ++i)
        m_theme->setItemIcon(i, themeIcon(*themeOf(m_theme->itemText(i)), palette(), ratio));
    // One that is not known has no item, and is named all the same.
    m_theme->setPlaceholderText(appearance().theme);
    m_theme->setCurrentIndex(appearance().theme.isEmpty()
            ? 0
            : m_theme->findText(appearance().theme, Qt::MatchExactly | Qt::MatchCaseSensitive));
}

void AppearancePanel::refreshTabs()
{
    auto const icon = [this](QColor const& colour) {
        return swatchIcon(colour, tabSwatch, palette(), devicePixelRatioF());
    };
    auto const shown = [](auto const& part) { return part ? part->shown() : QColor(); };
    m_tabs->setTabIcon(0, icon(shown(appearance().fill)));
    m_tabs->setTabIcon(1, icon(shown(appearance().line)));
    m_tabs->setTabIcon(2, icon(appearance().shadow ? appearance().shadow->colour : QColor()));
}

/** That the slots are of; the usual one for a theme that is not known. */
ColourTheme const& AppearancePanel::theme() const
{
    ColourTheme const* const known = themeOf(appearance().theme);
    return known ? *known : colourThemes().front();
}

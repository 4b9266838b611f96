// SPDX-License-Identifier: MIT
#include "colorutil.h"
#include "kpcolor.h"
#include "sequence.h"
#include "themes.h"

using namespace ColorUtil;

namespace {

/** What the power may differ by, with what is computed from it. */
constexpr int powerUlps = 4;

QVector<QColor> colours()
{
    return {{255, 0, 0}, {10, 20, 30, 100}, {68, 114, 196}, {0, 0, 255, 7}, {200, 200, 200},
        {0, 0, 0}, {255, 255, 255, 128}, {13, 240, 101}};
}

QVector<double> fractions()
{
    return {0.0, 0.5, 1.0, 0.25, -0.75, 1.5};
}

void addVariables(Vectors::Theme& theme)
{
    struct Variable
    {
        char const* name;
        QColor const& value;
    };
    for (Variable const& variable :
        {Variable {"s_reversible", s_reversible}, {"s_alignBox", s_alignBox},
            {"s_subAlignBox", s_subAlignBox}, {"s_anchorDock", s_anchorDock},
            {"s_mouseDot", s_mouseDot}, {"s_virLine", s_virLine}, {"s_adisLine", s_adisLine},
            {"s_editText", s_editText}, {"s_editTextGray", s_editTextGray},
            {"s_selectMMRefShape", s_selectMMRefShape}, {"s_selectMMShape", s_selectMMShape},
            {"s_hoverMMShape", s_hoverMMShape}, {"s_hoverMarkLine", s_hoverMarkLine},
            {"s_hoverFloatBtn", s_hoverFloatBtn}, {"s_hoverDarkFloatBtn", s_hoverDarkFloatBtn}})
        theme.add(QString("ColorUtil::") + variable.name, {}, {{"value", variable.value}});
}

void addTable(Vectors::Theme& theme)
{
    initColorFunctionMap();
    theme.add("ColorUtil::initColorFunctionMap()", {},
        {{"names", mapColorFuncs.keys().toVector()}, {"initedColorFuncMap", initedColorFuncMap}});
    for (QString const& name : mapColorFuncs.keys() + QStringList {"Tint", "", "no"})
        theme.add("ColorUtil::getColorFunc(QString)", {{"name", name}},
            {{"isThere", getColorFunc(name) != nullptr}});
}

void addTransform(Vectors::Theme& theme, QString const& name, QColor const& before, double value)
{
    KpColor after(before);
    getColorFunc(name)(after, value);
    theme.add("ColorUtil::" + name + "(KpColor&, double)", {{"colour", before}, {"value", value}},
        {{"colour", static_cast<QColor const&>(after)}});
}

void addTransforms(Vectors::Theme& theme)
{
    QVector<QColor> const all = colours();
    QVector<double> const values = fractions();
    for (QString const& name : mapColorFuncs.keys()) {
        // Each value meets half of the colours, each colour half of the values.
        for (int i = 0; i < all.count(); ++i) {
            for (int k = i % 2; k < values.count(); k += 2)
                addTransform(theme, name, all.at(i), values.at(k));
        }
    }
    // Of a colour that a transform left in hue, saturation and lightness.
    KpColor light(QColor(68, 114, 196, 200));
    lumMod(light, 0.4);
    for (QString const name :
        {"lumOff", "sat", "alpha", "alphaOff", "red", "inv", "hueOff", "tint"})
        addTransform(theme, name, light, 0.25);
    Vectors::Sequence sequence(30);
    for (int i = 0; i < 60; ++i) {
        QString const name = mapColorFuncs.keys().at(sequence.below(mapColorFuncs.count()));
        QColor const translucent = QColor::fromRgba(QRgb(sequence.bits()));
        addTransform(theme, name, translucent, sequence.real(-0.2, 1.2));
        KpColor saturated(translucent);
        sat(saturated, sequence.fraction());
        addTransform(theme, name, saturated, sequence.real(-0.2, 1.2));
    }
}

void addLinearLight(Vectors::Theme& theme)
{
    Vectors::Sequence sequence(31);
    QVector<double> values {
        -1.0, -0.0, 0.0, 0.04045, 0.040450001, 0.0031308, 0.003130801, 1.0, 0.9999999, 1.5, 0.5};
    for (int i = 0; i < 16; ++i)
        values.append(sequence.fraction());
    for (double const v : qAsConst(values)) {
        theme.addNear(powerUlps, "ColorUtil::SRGB_To_SCRGB(double)", {{"v", v}},
            {{"result", SRGB_To_SCRGB(v)}});
        theme.addNear(powerUlps, "ColorUtil::SCRGB_To_SRGB(double)", {{"v", v}},
            {{"result", SCRGB_To_SRGB(v)}});
    }
    for (QColor const& colour : colours()) {
        SCRGB const plain(colour);
        SCRGB const document {KpColor(colour)};
        theme.addNear(powerUlps, "ColorUtil::SCRGB::SCRGB(QColor)", {{"colour", colour}},
            {{"red", plain.red}, {"green", plain.green}, {"blue", plain.blue}});
        theme.addNear(powerUlps, "ColorUtil::SCRGB::SCRGB(KpColor)", {{"colour", colour}},
            {{"red", document.red}, {"green", document.green}, {"blue", document.blue}});
    }
    for (int i = 0; i < 12; ++i) {
        SCRGB light {QColor()};
        light.red = i == 0 ? -0.5 : sequence.fraction();
        light.green = i == 1 ? 1.5 : sequence.fraction();
        light.blue = sequence.fraction() * 0.01;
        Vectors::Fields const inputs {{"red", light.red}, {"green", light.green},
            {"blue", light.blue}, {"colour", QColor(1, 2, 3, 77)}};
        QColor plain(1, 2, 3, 77);
        light.toColor(plain);
        theme.add("ColorUtil::SCRGB::toColor(QColor&)", inputs, {{"colour", plain}});
        KpColor document(QColor(1, 2, 3, 77));
        light.toSRGB(document);
        theme.add("ColorUtil::SCRGB::toSRGB(KpColor&)", inputs,
            {{"colour", static_cast<QColor const&>(document)}});
    }
}

void addTints(Vectors::Theme& theme)
{
    Vectors::Sequence sequence(32);
    QVector<double> values = fractions() + QVector<double> {0.01, 0.4, 0.99};
    values.append(sequence.fraction());
    for (QColor const& colour : colours()) {
        for (double const value : qAsConst(values)) {
            Vectors::Fields const inputs {{"colour", colour}, {"value", value}};
            theme.add("ColorUtil::tint(QColor const&, double)", inputs,
                {{"result", tint(colour, value)}});
            theme.add("ColorUtil::shade(QColor const&, double)", inputs,
                {{"result", shade(colour, value)}});
            theme.add("ColorUtil::invertTint(QColor, double)", inputs,
                {{"result", invertTint(colour, value)}});
            theme.add("ColorUtil::invertShade(QColor, double)", inputs,
                {{"result", invertShade(colour, value)}});
        }
    }
}

void addTexts(Vectors::Theme& theme)
{
    QVector<QColor> const all = colours() + QVector<QColor> {{1, 2, 3, 4}, {255, 0, 16}, QColor()};
    for (QColor const& colour : all) {
        Vectors::Fields const inputs {{"colour", colour}};
        theme.add("ColorUtil::toGray(QColor)", inputs, {{"result", toGray(colour)}});
        theme.add("ColorUtil::RGBToString(QColor)", inputs, {{"result", RGBToString(colour)}});
        theme.add(
            "ColorUtil::RGBToStringPPT(QColor)", inputs, {{"result", RGBToStringPPT(colour)}});
        theme.add("ColorUtil::RGBToString4(QColor)", inputs, {{"result", RGBToString4(colour)}});
    }
}

} // namespace

void Vectors::addColour(Theme& theme)
{
    addVariables(theme);
    addTable(theme);
    addTransforms(theme);
    addLinearLight(theme);
    addTints(theme);
    addTexts(theme);
}

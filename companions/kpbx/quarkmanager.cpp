#include "quarkmanager.h"

#include <QString>

#include <string_view>

namespace {

struct Quark
{
    int number;
    std::string_view name;
};

constexpr Quark quarks[] = {
    {0, "px"},
    {1, "mm"},
    {2, "cm"},
    {3, "m"},
    {4, "km"},
    {5, "in"},
    {6, "ft"},
    {7, "ft-in"},
    {8, "yd"},
    {9, "mi"},
    {10, "pt"},
    {11, "pc"},
    {12, "dd"},
    {13, "cc"},
    {52, "MoveTo"},
    {53, "LineTo"},
    {54, "CurveTo"},
    {55, "Ellipse"},
    {56, "X"},
    {57, "Y"},
    {58, "A"},
    {59, "B"},
    {60, "C"},
    {61, "D"},
};

QLatin1String nameOf(Quark const& quark)
{
    return QLatin1String(quark.name.data(), static_cast<int>(quark.name.size()));
}

} // namespace

int QuarkManager::quarkFromString(QString const& name)
{
    for (Quark const& quark : quarks) {
        if (name == nameOf(quark))
            return quark.number;
    }
    return -1;
}

QString QuarkManager::quarkToString(int quark)
{
    for (Quark const& known : quarks) {
        if (known.number == quark)
            return nameOf(known);
    }
    return QString();
}

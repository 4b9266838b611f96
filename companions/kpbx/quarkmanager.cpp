// SPDX-License-Identifier: MIT
#include "quarkmanager.h"

#include <QString>
#include <QStringView>

#include <array>

namespace {

struct Quark
{
    int number;
    QStringView name;
};

constexpr Quark quarks[] = {
    {0, u"px"},
    {1, u"mm"},
    {2, u"cm"},
    {3, u"m"},
    {4, u"km"},
    {5, u"in"},
    {6, u"ft"},
    {7, u"ft-in"},
    {8, u"yd"},
    {9, u"mi"},
    {10, u"pt"},
    {11, u"pc"},
    {12, u"dd"},
    {13, u"cc"},
    {52, u"MoveTo"},
    {53, u"LineTo"},
    {54, u"CurveTo"},
    {55, u"Ellipse"},
    {56, u"X"},
    {57, u"Y"},
    {58, u"A"},
    {59, u"B"},
    {60, u"C"},
    {61, u"D"},
};

/** A name's characters as one number, led by a one that tells their count; 0 for no such name. */
constexpr quint64 keyOf(QStringView name)
{
    if (name.size() >= static_cast<qsizetype>(sizeof(quint64)))
        return 0;
    quint64 key = 1;
    for (qsizetype i = 0; i < name.size(); ++i) {
        quint64 const code = name.utf16()[i];
        if (code > 0x7F)
            return 0;
        key = key << 8U | code;
    }
    return key;
}

struct Slot
{
    quint64 key = 0;
    int number = -1;
};

/** The table by the remainder of the keys, of which no two are the same. */
constexpr auto slotTable = [] {
    std::array<Slot, 103> filled {};
    for (Quark const& quark : quarks) {
        quint64 const key = keyOf(quark.name);
        Slot& slot = filled.at(key % filled.size());
        if (slot.key != 0)
            throw "two names in one slot";
        slot = {key, quark.number};
    }
    return filled;
}();

} // namespace

int QuarkManager::quarkFromString(QString const& name)
{
    quint64 const key = keyOf(name);
    Slot const& slot = slotTable[key % slotTable.size()];
    return slot.key == key ? slot.number : -1;
}

QString QuarkManager::quarkToString(int quark)
{
    for (Quark const& known : quarks) {
        if (known.number == quark)
            return known.name.toString();
    }
    return QString();
}

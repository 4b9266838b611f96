// SPDX-License-Identifier: MIT
#ifndef UNITCODE_P_H
#define UNITCODE_P_H

/** The codes of the units of length: the numbers that QuarkManager gives to their names. */
enum UnitCode : unsigned int {
    UnitPixel = 0,
    UnitMillimetre = 1,
    UnitCentimetre = 2,
    UnitMetre = 3,
    UnitKilometre = 4,
    UnitInch = 5,
    UnitFoot = 6,
    UnitFeetAndInches = 7, ///< a foot; shown as feet and inches
    UnitYard = 8,
    UnitMile = 9,
    UnitPoint = 10,
    UnitPica = 11,
    UnitDidot = 12, ///< 0.375 mm
    UnitCicero = 13
};

/** How many units there are: their codes count from 0. */
constexpr unsigned int unitCount = UnitCicero + 1;

/** How many pages UnitUtil::preDefinedPage() knows: their indices count from 0. */
constexpr int predefinedPageCount = 61;

#endif // UNITCODE_P_H

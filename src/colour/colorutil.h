// SPDX-License-Identifier: MIT
#ifndef COLORUTIL_H
#define COLORUTIL_H

#include "kpgeometry_export.h"

#include <QColor>
#include <QMap>
#include <QString>

class KpColor;

/**
 * The named colour transforms of documents, tint and shade in linear light, colour texts, and the
 * colours of the editor's aids.
 *
 * The transforms have the names of the DrawingML colour transforms (ECMA-376) and take plain
 * fractions: 1 is 100 %, or a full channel. They change the QColor part of a KpColor only. None
 * fails or logs: a channel is clamped to 0...255, and a hue, saturation or lightness that QColor
 * would refuse leaves the colour as it is. A number too large for an int counts as the nearest
 * one, and NaN as 0.
 *
 * Everything here belongs to the GUI thread.
 */
namespace ColorUtil {

/** A named transform. */
using ColorFunc = void (*)(KpColor& colour, double value);

/**
 * Towards white in linear light: each intensity x becomes x * (1 - value) + value. 0 leaves the
 * colour and 1 gives white; a DrawingML `val` runs the other way, value = 1 - val / 100000. Alpha
 * stays.
 */
KPGEOMETRY_EXPORT void tint(KpColor& colour, double value);
/** Towards black in linear light, as tint(): each intensity x becomes x * (1 - value). */
KPGEOMETRY_EXPORT void shade(KpColor& colour, double value);

/**
 * Complement. Leaves every colour as it is, deliberately: it adds 180 degrees to a hue that
 * counts from 0 to 1, which QColor refuses, and documents are drawn so.
 */
KPGEOMETRY_EXPORT void comp(KpColor& colour, double value);
/** Each channel becomes 255 less it; `value` is not used. */
KPGEOMETRY_EXPORT void inv(KpColor& colour, double value);
/** As toGray(); `value` is not used. */
KPGEOMETRY_EXPORT void gray(KpColor& colour, double value);

/** Alpha becomes `value`, clamped to 0...1. */
KPGEOMETRY_EXPORT void alpha(KpColor& colour, double value);
/**
 * `value` is added to alpha, 1 being opaque. Rounded to a channel of 0...255, while the colour
 * channels below are truncated: deliberate.
 */
KPGEOMETRY_EXPORT void alphaOff(KpColor& colour, double value);
/** Alpha is multiplied; rounded as in alphaOff(). */
KPGEOMETRY_EXPORT void alphaMod(KpColor& colour, double value);

/**
 * The HSL hue becomes `value`, a fraction of the circle; -1 and less is no hue. Nothing wraps:
 * beyond 1 the colour stays as it is. Alpha stays.
 */
KPGEOMETRY_EXPORT void hue(KpColor& colour, double value);
/** `value` is added to the HSL hue; as hue() otherwise. */
KPGEOMETRY_EXPORT void hueOff(KpColor& colour, double value);
/** The HSL hue is multiplied, and is 0 at least; beyond 1 the colour stays as it is. */
KPGEOMETRY_EXPORT void hueMod(KpColor& colour, double value);

/** The HSL saturation becomes `value`, clamped to 0...1. Alpha stays. */
KPGEOMETRY_EXPORT void sat(KpColor& colour, double value);
/** `value` is added to the HSL saturation, clamped to 0...1. Alpha stays. */
KPGEOMETRY_EXPORT void satOff(KpColor& colour, double value);
/** The HSL saturation is multiplied, clamped to 0...1. Alpha stays. */
KPGEOMETRY_EXPORT void satMod(KpColor& colour, double value);

/** The HSL lightness becomes `value`, clamped to 0...1. Alpha stays. */
KPGEOMETRY_EXPORT void lum(KpColor& colour, double value);
/** `value` is added to the HSL lightness, clamped to 0...1. Alpha stays. */
KPGEOMETRY_EXPORT void lumOff(KpColor& colour, double value);
/** The HSL lightness is multiplied, clamped to 0...1. Alpha stays. */
KPGEOMETRY_EXPORT void lumMod(KpColor& colour, double value);

/** The red channel becomes `value`, 1 being 255; truncated and clamped. */
KPGEOMETRY_EXPORT void red(KpColor& colour, double value);
/** `value` is added to the red channel, 1 being 255; truncated and clamped. */
KPGEOMETRY_EXPORT void redOff(KpColor& colour, double value);
/** The red channel is multiplied; truncated and clamped. */
KPGEOMETRY_EXPORT void redMod(KpColor& colour, double value);
/** The green channel becomes `value`, 1 being 255; truncated and clamped. */
KPGEOMETRY_EXPORT void green(KpColor& colour, double value);
/** `value` is added to the green channel, 1 being 255; truncated and clamped. */
KPGEOMETRY_EXPORT void greenOff(KpColor& colour, double value);
/** The green channel is multiplied; truncated and clamped. */
KPGEOMETRY_EXPORT void greenMod(KpColor& colour, double value);
/** The blue channel becomes `value`, 1 being 255; truncated and clamped. */
KPGEOMETRY_EXPORT void blue(KpColor& colour, double value);
/** `value` is added to the blue channel, 1 being 255; truncated and clamped. */
KPGEOMETRY_EXPORT void blueOff(KpColor& colour, double value);
/** The blue channel is multiplied; truncated and clamped. */
KPGEOMETRY_EXPORT void blueMod(KpColor& colour, double value);

/** Changes nothing; it has an entry of its own, so that documents naming it are read. */
KPGEOMETRY_EXPORT void gamma(KpColor& colour, double value);
/** Changes nothing, as gamma(). */
KPGEOMETRY_EXPORT void invGamma(KpColor& colour, double value);

/** The transforms by name. Empty until initColorFunctionMap(). */
extern KPGEOMETRY_EXPORT QMap<QString, ColorFunc> mapColorFuncs;
/** Whether mapColorFuncs is filled. */
extern KPGEOMETRY_EXPORT bool initedColorFuncMap;

/** Fills mapColorFuncs, once. */
KPGEOMETRY_EXPORT void initColorFunctionMap();
/** The transform called `name` (case-sensitive), or null. Fills the table if need be. */
KPGEOMETRY_EXPORT ColorFunc getColorFunc(QString name);

/**
 * One channel from gamma-encoded sRGB to linear light, both 0...1 (IEC 61966-2-1); beyond, the
 * nearer end.
 */
KPGEOMETRY_EXPORT double SRGB_To_SCRGB(double v);
/** The inverse of SRGB_To_SCRGB(). */
KPGEOMETRY_EXPORT double SCRGB_To_SRGB(double v);

/** A colour as intensities of linear light, each 0...1; without alpha. */
struct SCRGB
{
    double red; ///< 0...1
    double green; ///< 0...1
    double blue; ///< 0...1

    /** The intensities of the concrete colour. */
    KPGEOMETRY_EXPORT SCRGB(KpColor colour);
    /** The intensities of any colour; an invalid one has none. */
    KPGEOMETRY_EXPORT SCRGB(QColor colour);

    /** Writes the intensities into the channels of `c`, rounded and clamped. Its alpha stays. */
    KPGEOMETRY_EXPORT void toSRGB(KpColor& c);
    /** As toSRGB(). */
    KPGEOMETRY_EXPORT void toColor(QColor& c);
};

/**
 * Tint as of a KpColor. A `value` of 0 returns `c`; any other returns an opaque colour whatever
 * the alpha of `c` was, deliberately: who needs it restores it.
 */
KPGEOMETRY_EXPORT QColor tint(QColor const& c, double value);
/** Shade as of a KpColor, and as tint() what is opaque. */
KPGEOMETRY_EXPORT QColor shade(QColor const& c, double value);

/**
 * The colour that a tint by `value` has made `c` of, as far as 8 bits a channel tell; dark levels
 * may come back some off. Alpha stays. A `value` of 1 divides by zero: each channel becomes 0.
 */
KPGEOMETRY_EXPORT QColor invertTint(QColor c, double value);
/**
 * The colour that a shade by `value` has made `c` of. Alpha stays. A `value` of 1 divides by zero:
 * each channel becomes 255, or 0 if it was 0.
 */
KPGEOMETRY_EXPORT QColor invertShade(QColor c, double value);

/** 0.3 red + 0.59 green + 0.11 blue, truncated, in all three channels. Alpha stays. */
KPGEOMETRY_EXPORT QColor toGray(QColor c);

/** "#RRGGBB", upper case. */
KPGEOMETRY_EXPORT QString RGBToString(QColor c);
/** "RRGGBB", upper case. */
KPGEOMETRY_EXPORT QString RGBToStringPPT(QColor c);
/** "#AARRGGBB", upper case: alpha comes first. */
KPGEOMETRY_EXPORT QString RGBToString4(QColor c);

// The editor's aids. Ordinary variables: the application may change them, the library does not,
// nor does it draw with them. What each is for is the application's to know; the words are as much
// as the names say, and quoted where they do not explain themselves.
extern KPGEOMETRY_EXPORT QColor s_reversible; ///< what is "reversible": 71, 142, 222
extern KPGEOMETRY_EXPORT QColor s_alignBox; ///< a box to align with: 0, 220, 0
extern KPGEOMETRY_EXPORT QColor s_subAlignBox; ///< a part of such a box: 255, 0, 255
extern KPGEOMETRY_EXPORT QColor s_anchorDock; ///< an anchor to dock to: 254, 80, 79
extern KPGEOMETRY_EXPORT QColor s_mouseDot; ///< a dot at the mouse: 71, 142, 222
extern KPGEOMETRY_EXPORT QColor s_virLine; ///< a "vir" line, perhaps virtual: 98, 98, 98
extern KPGEOMETRY_EXPORT QColor s_adisLine; ///< an "adis" line: 71, 142, 222
extern KPGEOMETRY_EXPORT QColor s_editText; ///< text in editing: 255, 255, 255
extern KPGEOMETRY_EXPORT QColor s_editTextGray; ///< the same in grey: 181, 181, 181
extern KPGEOMETRY_EXPORT QColor s_selectMMRefShape; ///< a selected "MM" reference: 100, 130, 255
extern KPGEOMETRY_EXPORT QColor s_selectMMShape; ///< a selected "MM" shape: 140, 175, 245
extern KPGEOMETRY_EXPORT QColor s_hoverMMShape; ///< an "MM" shape under the mouse: 200, 220, 245
extern KPGEOMETRY_EXPORT QColor s_hoverMarkLine; ///< a marking line under the mouse: 80, 0, 255
/** A floating button under the mouse: 0, 0, 255, alpha 30. */
extern KPGEOMETRY_EXPORT QColor s_hoverFloatBtn;
/** A dark floating button under the mouse: 200, 200, 255, alpha 60. */
extern KPGEOMETRY_EXPORT QColor s_hoverDarkFloatBtn;

} // namespace ColorUtil

#endif // COLORUTIL_H

// SPDX-License-Identifier: MIT
#ifndef PICTUREOUTPUT_H
#define PICTUREOUTPUT_H

#include "paint/picture.h"

/**
 * Writes the picture to an operand, "-" being standard output, with the date that the environment
 * asks for (SOURCE_DATE_EPOCH) or none. False, after a message, on failure.
 *
 * @param source what is drawn, in messages
 */
bool writePicture(Picture const& picture, PictureSettings settings, QString const& source,
    QString const& operand);

#endif // PICTUREOUTPUT_H

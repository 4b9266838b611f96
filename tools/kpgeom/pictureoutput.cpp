// SPDX-License-Identifier: MIT
#include "pictureoutput.h"

#include "console.h"

namespace {

/** The end of the year 9999: a date has four digits for the year. */
constexpr qint64 lastSecond = 253402300799;

/** The time for which results are made that are to be the same again, if one is set. */
QDateTime sourceDate()
{
    bool isNumber = false;
    qint64 const seconds = qEnvironmentVariable("SOURCE_DATE_EPOCH").toLongLong(&isNumber);
    return isNumber && seconds >= 0 && seconds <= lastSecond
        ? QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC)
        : QDateTime();
}

} // namespace

bool writePicture(
    Picture const& picture, PictureSettings settings, QString const& source, QString const& operand)
{
    settings.date = sourceDate();
    Diagnostics diagnostics;
    auto const content = toFile(picture, settings, source, diagnostics);
    report(diagnostics);
    return content && writeOutput(operand, *content);
}

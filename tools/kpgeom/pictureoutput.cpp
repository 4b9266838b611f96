#include "pictureoutput.h"

#include "console.h"

namespace {

/** The time for which results are made that are to be the same again, if one is set. */
QDateTime sourceDate()
{
    bool isNumber = false;
    qint64 const seconds = qEnvironmentVariable("SOURCE_DATE_EPOCH").toLongLong(&isNumber);
    return isNumber ? QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC) : QDateTime();
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

// SPDX-License-Identifier: MIT
#ifndef FILEREPLACEMENT_P_H
#define FILEREPLACEMENT_P_H

#include <QFileDevice>
#include <QFileInfo>

/** What replacing a file takes beside SavedFile. */
namespace FileReplacement {

/** Whether there is something in the file's place that a file must not replace: a device, say. */
inline bool isDeviceOrPipe(QFileInfo const& present)
{
    return present.exists() && !present.isFile();
}

/** Writes all of `content`. */
inline bool write(QFileDevice& device, QByteArray const& content)
{
    return device.write(content) == content.size() && device.flush()
        && device.error() == QFileDevice::NoError;
}

} // namespace FileReplacement

#endif // FILEREPLACEMENT_P_H

// SPDX-License-Identifier: MIT
#ifndef ZIPMEMBER_H
#define ZIPMEMBER_H

#include <QByteArray>
#include <QString>

#include <optional>

/** Whether the bytes begin as a zip file with a member does. */
bool isZip(QByteArray const& bytes);

/**
 * A member of a zip file, unpacked. Its directory counts, as for all programs that read zip files;
 * of two members of one name the first is taken. Checked are the member's size and checksum.
 *
 * Nothing, with `fault` saying why, if there is no such member, it is encrypted, packed otherwise
 * than by "deflate" or not at all, larger than `mostBytes`, or the file is damaged. Files of more
 * than 4 GiB or 65,535 members (Zip64), or in several parts, are not read.
 */
std::optional<QByteArray> zipMember(
    QByteArray const& zip, QByteArray const& name, qint64 mostBytes, QString& fault);

#endif // ZIPMEMBER_H

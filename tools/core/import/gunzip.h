// SPDX-License-Identifier: MIT
#ifndef GUNZIP_H
#define GUNZIP_H

#include <QByteArray>

#include <optional>

/** Whether the bytes begin as a gzip file does (RFC 1952). */
bool isGzip(QByteArray const& bytes);

/** What a gzip file holds. */
struct Gunzipped
{
    QByteArray content; ///< of all its members, one behind the other
    bool
        hasMore; ///< whether something follows them that is no member, and no filling of null bytes
};

/**
 * What the gzip file holds. Nothing if it is damaged, incomplete or unpacks to more than `mostBytes`.
 */
std::optional<Gunzipped> gunzip(QByteArray const& bytes, qint64 mostBytes);

#endif // GUNZIP_H

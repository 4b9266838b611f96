// SPDX-License-Identifier: MIT
#ifndef INFLATE_H
#define INFLATE_H

#include <QByteArray>

#include <optional>

/** What stands around deflated data. */
enum class Wrapping {
    None, ///< nothing (RFC 1951), as in zip files
    Gzip ///< head and checksum of a gzip file (RFC 1952)
};

/** What deflated bytes held. */
struct Inflated
{
    QByteArray content; ///< unpacked
    int size; ///< how many of the bytes were taken for it, with what stands around them
};

/**
 * What the deflated bytes hold; what follows them is left alone. Nothing if they are damaged,
 * incomplete or unpack to more than `mostBytes`.
 */
std::optional<Inflated> inflated(QByteArray const& bytes, Wrapping wrapping, qint64 mostBytes);

#endif // INFLATE_H

#ifndef GUNZIP_H
#define GUNZIP_H

#include <QByteArray>

#include <optional>

/** Whether the bytes begin as a gzip file does (RFC 1952). */
bool isGzip(QByteArray const& bytes);

/**
 * What the gzip file holds; what follows its first member is ignored. Nothing if it is damaged,
 * incomplete or unpacks to more than `mostBytes`.
 */
std::optional<QByteArray> gunzip(QByteArray const& bytes, qint64 mostBytes);

#endif // GUNZIP_H

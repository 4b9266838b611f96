#include "import/gunzip.h"

#include "import/inflate.h"

bool isGzip(QByteArray const& bytes)
{
    return bytes.startsWith("\x1f\x8b");
}

std::optional<QByteArray> gunzip(QByteArray const& bytes, qint64 mostBytes)
{
    return inflated(bytes, Wrapping::Gzip, mostBytes);
}

// SPDX-License-Identifier: MIT
#include "import/gunzip.h"

#include "import/inflate.h"

#include <algorithm>

bool isGzip(QByteArray const& bytes)
{
    return bytes.startsWith("\x1f\x8b");
}

std::optional<Gunzipped> gunzip(QByteArray const& bytes, qint64 mostBytes)
{
    Gunzipped result {QByteArray(), false};
    int done = 0;
    auto const rest = [&bytes, &done] {
        return QByteArray::fromRawData(bytes.constData() + done, bytes.size() - done);
    };
    do {
        auto const member = inflated(rest(), Wrapping::Gzip, mostBytes - result.content.size());
        if (!member)
            return std::nullopt;
        result.content += member->content;
        done += member->size;
    } while (isGzip(rest()));
    QByteArray const more = rest();
    result.hasMore = std::any_of(more.begin(), more.end(), [](char byte) { return byte != '\0'; });
    return result;
}

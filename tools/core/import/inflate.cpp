// SPDX-License-Identifier: MIT
#include "import/inflate.h"

#include <array>
#include <memory>

// The input is not written to, and declared so on demand only.
#define ZLIB_CONST
#include <zlib.h>

std::optional<Inflated> inflated(QByteArray const& bytes, Wrapping wrapping, qint64 mostBytes)
{
    z_stream stream {};
    stream.next_in = reinterpret_cast<Bytef const*>(bytes.constData());
    stream.avail_in = static_cast<uInt>(bytes.size());
    int const gzipOnly = 16;
    if (inflateInit2(&stream, wrapping == Wrapping::Gzip ? gzipOnly + MAX_WBITS : -MAX_WBITS)
        != Z_OK)
        return std::nullopt;
    auto const end = [](z_stream* started) { inflateEnd(started); };
    std::unique_ptr<z_stream, decltype(end)> const guard(&stream, end);

    QByteArray result;
    std::array<char, 65536> chunk;
    for (;;) {
        stream.next_out = reinterpret_cast<Bytef*>(chunk.data());
        stream.avail_out = static_cast<uInt>(chunk.size());
        int const outcome = inflate(&stream, Z_NO_FLUSH);
        int const size = static_cast<int>(chunk.size() - stream.avail_out);
        if ((outcome != Z_OK && outcome != Z_STREAM_END) || result.size() + size > mostBytes)
            return std::nullopt;
        result.append(chunk.data(), size);
        if (outcome == Z_STREAM_END)
            return Inflated {result, static_cast<int>(stream.total_in)};
    }
}

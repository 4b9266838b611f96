// SPDX-License-Identifier: MIT
#include "document/contentkind.h"

#include <algorithm>
#include <string_view>

namespace {

/** The bytes that tell a format, each from its own definition. */
struct Signature
{
    std::string_view start; ///< of the file
    std::size_t offset; ///< of what must follow
    std::string_view bytes;
    char const* kind;
};

constexpr std::string_view zip = "PK\x03\x04";

// More bytes before fewer: the first that fits counts.
constexpr Signature signatures[] = {
    // A zip file that begins with the member "mimetype", not compressed (OpenDocument 1.2, part 3).
    {zip, 30, "mimetypeapplication/vnd.oasis.opendocument.graphics", "an OpenDocument drawing"},
    {zip, 30, "mimetypeapplication/vnd.oasis.opendocument.", "an OpenDocument file"},
    {zip, 0, "", "a zip file"},
    {"\x89PNG\r\n\x1a\n", 0, "", "a PNG picture"},
    {"\xff\xd8\xff", 0, "", "a JPEG picture"},
    {"GIF8", 0, "", "a GIF picture"},
    {"RIFF", 8, "WEBP", "a WebP picture"},
    // Behind the first byte of the header's size, which is below 256.
    {"BM", 15, std::string_view("\0\0\0", 3), "a BMP picture"},
    {std::string_view("II*\0", 4), 0, "", "a TIFF picture"},
    {std::string_view("MM\0*", 4), 0, "", "a TIFF picture"},
    {std::string_view("\0\0\1\0", 4), 0, "", "an icon"},
    {"%PDF-", 0, "", "a PDF document"},
    {"%!PS", 0, "", "a PostScript document"},
    {"\x1f\x8b", 0, "", "a compressed file (gzip)"},
    {std::string_view("\0\1\0\0", 4), 0, "", "a font"},
    {"OTTO", 0, "", "a font"},
    {"ttcf", 0, "", "a font"},
    {"wOF", 0, "", "a font"},
    {"\x7f"
     "ELF",
        0, "", "a program or library"},
};

bool startsWith(std::string_view text, std::string_view start)
{
    return text.substr(0, start.size()) == start;
}

bool holds(QByteArray const& content, Signature const& signature)
{
    std::string_view const all(content.constData(), static_cast<std::size_t>(content.size()));
    return startsWith(all, signature.start) && all.size() >= signature.offset
        && startsWith(all.substr(signature.offset), signature.bytes);
}

} // namespace

QString kindOfContent(QByteArray const& content)
{
    auto const* const found = std::find_if(std::begin(signatures), std::end(signatures),
        [&content](Signature const& signature) { return holds(content, signature); });
    if (found != std::end(signatures))
        return QString::fromLatin1(found->kind);
    // In UTF-16 and UTF-32 every other byte of ordinary text is null; they begin with a mark.
    bool const isWide = content.startsWith("\xff\xfe") || content.startsWith("\xfe\xff")
        || content.startsWith(QByteArray::fromRawData("\0\0\xfe\xff", 4));
    bool const hasNull = content.left(1024).contains('\0');
    bool const mayBeMarkup = content.left(4).contains('<');
    return hasNull && !isWide && !mayBeMarkup ? QStringLiteral("a binary file") : QString();
}

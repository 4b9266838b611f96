#include "document/contentkind.h"

#include <algorithm>
#include <string_view>

namespace {

/** The bytes that tell a format, each from its own definition. */
struct Signature
{
    int offset;
    std::string_view bytes;
    char const* kind;
};

// More bytes before fewer: the first that fits counts.
constexpr Signature signatures[] = {
    // A zip file that begins with the member "mimetype", not compressed (OpenDocument 1.2, part 3).
    {30, "mimetypeapplication/vnd.oasis.opendocument.graphics", "an OpenDocument drawing"},
    {30, "mimetypeapplication/vnd.oasis.opendocument.", "an OpenDocument file"},
    {0, "PK\x03\x04", "a zip file"},
    {0, "\x89PNG\r\n\x1a\n", "a PNG picture"},
    {0, "\xff\xd8\xff", "a JPEG picture"},
    {0, "GIF8", "a GIF picture"},
    {8, "WEBP", "a WebP picture"},
    {0, "BM", "a BMP picture"},
    {0, std::string_view("II*\0", 4), "a TIFF picture"},
    {0, std::string_view("MM\0*", 4), "a TIFF picture"},
    {0, std::string_view("\0\0\1\0", 4), "an icon"},
    {0, "%PDF-", "a PDF document"},
    {0, "%!PS", "a PostScript document"},
    {0, "\x1f\x8b", "a compressed file (gzip)"},
    {0, std::string_view("\0\1\0\0", 4), "a font"},
    {0, "OTTO", "a font"},
    {0, "ttcf", "a font"},
    {0, "wOF", "a font"},
    {0,
        "\x7f"
        "ELF",
        "a program or library"},
};

bool holds(QByteArray const& content, Signature const& signature)
{
    int const size = static_cast<int>(signature.bytes.size());
    return content.size() >= signature.offset + size
        && std::equal(
            signature.bytes.begin(), signature.bytes.end(), content.constData() + signature.offset);
}

} // namespace

QString kindOfContent(QByteArray const& content)
{
    auto const* const found = std::find_if(std::begin(signatures), std::end(signatures),
        [&content](Signature const& signature) { return holds(content, signature); });
    if (found != std::end(signatures))
        return QString::fromLatin1(found->kind);
    // In UTF-16 and UTF-32 every other byte of ordinary text is null; they begin with a mark.
    bool const isWide = content.startsWith("\xff\xfe") || content.startsWith("\xfe\xff");
    bool const hasNull = content.left(1024).contains('\0');
    bool const mayBeMarkup = content.left(4).contains('<');
    return hasNull && !isWide && !mayBeMarkup ? QStringLiteral("a binary file") : QString();
}

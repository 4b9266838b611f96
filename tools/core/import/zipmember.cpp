// SPDX-License-Identifier: MIT
#include "import/zipmember.h"

#include "import/inflate.h"

#include <QtEndian>

#include <algorithm>

// See inflate.cpp.
#define ZLIB_CONST
#include <zlib.h>

namespace {

/** The fields of a member in the directory. */
struct Entry
{
    quint16 flags;
    quint16 method;
    quint32 checksum;
    quint32 packedSize;
    quint32 size;
    QByteArray name;
    quint32 offset; ///< of its own header
};

constexpr quint16 encrypted = 1;
constexpr quint16 storedMethod = 0;
constexpr quint16 deflateMethod = 8;

/** Reads the numbers of a zip file, which are little-endian; those beyond its end are 0. */
class ZipBytes
{
public:
    explicit ZipBytes(QByteArray const& bytes)
        : m_bytes(bytes)
    {
    }

    bool hasSignature(qint64 offset, QByteArray const& signature) const
    {
        return slice(offset, signature.size()) == signature;
    }

    quint16 number16(qint64 offset) const { return number<quint16>(offset); }
    quint32 number32(qint64 offset) const { return number<quint32>(offset); }

    /** Those of the bytes that there are. */
    QByteArray slice(qint64 offset, qint64 size) const
    {
        if (offset < 0 || offset >= m_bytes.size())
            return QByteArray();
        qint64 const there = std::min<qint64>(size, m_bytes.size() - offset);
        return m_bytes.mid(static_cast<int>(offset), static_cast<int>(there));
    }

private:
    template <class Number> Number number(qint64 offset) const
    {
        QByteArray const bytes = slice(offset, sizeof(Number));
        return bytes.size() == static_cast<int>(sizeof(Number))
            ? qFromLittleEndian<Number>(bytes.constData())
            : Number(0);
    }

    QByteArray const& m_bytes;
};

// The layout of the three headers: APPNOTE.TXT 6.3, 4.3.7, 4.3.12 and 4.3.16.

/** Where the record at the end of the directory begins; negative without one. */
qint64 endRecordOf(QByteArray const& zip)
{
    int const recordSize = 22;
    int const longestComment = 65535;
    ZipBytes const bytes(zip);
    qint64 const last = zip.size() - recordSize;
    for (qint64 at = last; at >= std::max<qint64>(0, last - longestComment); --at) {
        // A comment may hold what looks like the record, but not with the right length of itself.
        if (bytes.hasSignature(at, "PK\5\6")
            && at + recordSize + bytes.number16(at + 20) == zip.size())
            return at;
    }
    return -1;
}

/** The entry of a member in the directory; none, too, if the directory is damaged. */
std::optional<Entry> entryOf(QByteArray const& zip, qint64 endRecord, QByteArray const& name)
{
    ZipBytes const bytes(zip);
    int const count = bytes.number16(endRecord + 10);
    qint64 at = bytes.number32(endRecord + 16);
    for (int i = 0; i < count && bytes.hasSignature(at, "PK\1\2"); ++i) {
        int const nameSize = bytes.number16(at + 28);
        int const headerSize = 46;
        Entry const entry {bytes.number16(at + 8), bytes.number16(at + 10), bytes.number32(at + 16),
            bytes.number32(at + 20), bytes.number32(at + 24),
            bytes.slice(at + headerSize, nameSize), bytes.number32(at + 42)};
        if (entry.name == name)
            return entry;
        at += headerSize + nameSize + bytes.number16(at + 30) + bytes.number16(at + 32);
    }
    return std::nullopt;
}

/** The bytes of the member as they stand in the file; fewer if it ends before. */
QByteArray packed(QByteArray const& zip, Entry const& entry)
{
    ZipBytes const bytes(zip);
    if (!bytes.hasSignature(entry.offset, "PK\3\4"))
        return QByteArray();
    int const headerSize = 30;
    qint64 const start = qint64(entry.offset) + headerSize + bytes.number16(entry.offset + 26)
        + bytes.number16(entry.offset + 28);
    return bytes.slice(start, entry.packedSize);
}

std::optional<QByteArray> deflated(QByteArray const& bytes, qint64 mostBytes)
{
    auto inner = inflated(bytes, Wrapping::None, mostBytes);
    return inner ? std::optional(std::move(inner->content)) : std::nullopt;
}

std::optional<QByteArray> unpacked(QByteArray const& bytes, Entry const& entry)
{
    if (bytes.size() != qint64(entry.packedSize))
        return std::nullopt;
    auto content =
        entry.method == storedMethod ? std::optional(bytes) : deflated(bytes, entry.size);
    if (!content || content->size() != qint64(entry.size))
        return std::nullopt;
    auto const checksum = crc32(0, reinterpret_cast<Bytef const*>(content->constData()),
        static_cast<uInt>(content->size()));
    return checksum == entry.checksum ? content : std::nullopt;
}

} // namespace

bool isZip(QByteArray const& bytes)
{
    return bytes.startsWith("PK\3\4");
}

std::optional<QByteArray> zipMember(
    QByteArray const& zip, QByteArray const& name, qint64 mostBytes, QString& fault)
{
    QString const member = QString::fromUtf8(name);
    auto const fail = [&fault](QString const& what) {
        fault = what;
        return std::nullopt;
    };
    qint64 const endRecord = endRecordOf(zip);
    if (endRecord < 0)
        return fail(QStringLiteral("the zip file is damaged or incomplete"));
    auto const entry = entryOf(zip, endRecord, name);
    if (!entry)
        return fail(QStringLiteral("there is no %1 in the zip file").arg(member));
    if (entry->flags & encrypted)
        return fail(QStringLiteral("%1 in the zip file is encrypted").arg(member));
    if (entry->method != storedMethod && entry->method != deflateMethod)
        return fail(QStringLiteral("%1 in the zip file is packed in an unknown way").arg(member));
    if (qint64(entry->size) > mostBytes) {
        return fail(QStringLiteral("%1 in the zip file is larger than %2 bytes")
                        .arg(member)
                        .arg(mostBytes));
    }
    auto content = unpacked(packed(zip, *entry), *entry);
    if (!content)
        return fail(QStringLiteral("%1 in the zip file is damaged").arg(member));
    return content;
}

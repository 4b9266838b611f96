// SPDX-License-Identifier: MIT
#ifndef ZIPTESTING_H
#define ZIPTESTING_H

#include <QByteArray>
#include <QVector>
#include <QtEndian>

#include <optional>

/** Zip files, and damaged ones, made by hand. */
namespace ZipTesting {

/** A member; what is set here stands in the file, whatever is true. */
struct Member
{
    QByteArray name;
    QByteArray content;
    bool isDeflated = false;
    quint16 flags = 0;
    std::optional<quint16> method {};
    std::optional<quint32> checksum {};
    std::optional<quint32> packedSize {};
    std::optional<quint32> size {};
    std::optional<quint32> offset {};
};

template <class Number> QByteArray littleEndian(Number number)
{
    QByteArray bytes(int(sizeof number), '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}

/** CRC-32, bit by bit. */
inline quint32 checksumOf(QByteArray const& bytes)
{
    quint32 sum = 0xffffffff;
    for (char const byte : bytes) {
        sum ^= quint8(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = sum & 1 ? (sum >> 1) ^ 0xedb88320 : sum >> 1;
    }
    return ~sum;
}

/** Raw deflated data. */
inline QByteArray deflated(QByteArray const& bytes)
{
    // Qt puts a length of four bytes before the data of zlib, which have two more before them and
    // four behind. Of nothing Qt makes nothing but the length.
    QByteArray const packed = qCompress(bytes, 9);
    return bytes.isEmpty() ? QByteArray("\3\0", 2) : packed.mid(6, packed.size() - 10);
}

/** A zip file of these members. */
inline QByteArray zipOf(QVector<Member> const& members)
{
    QByteArray zip;
    QByteArray directory;
    for (Member const& member : members) {
        QByteArray const packed = member.isDeflated ? deflated(member.content) : member.content;
        quint16 const method = member.method.value_or(member.isDeflated ? 8 : 0);
        QByteArray const common = littleEndian(quint16(20)) + littleEndian(member.flags)
            + littleEndian(method) + littleEndian(quint32(0))
            + littleEndian(member.checksum.value_or(checksumOf(member.content)))
            + littleEndian(member.packedSize.value_or(quint32(packed.size())))
            + littleEndian(member.size.value_or(quint32(member.content.size())))
            + littleEndian(quint16(member.name.size())) + littleEndian(quint16(0));
        directory += "PK\1\2" + littleEndian(quint16(20)) + common + littleEndian(quint16(0))
            + littleEndian(quint16(0)) + littleEndian(quint16(0)) + littleEndian(quint32(0))
            + littleEndian(member.offset.value_or(quint32(zip.size()))) + member.name;
        zip += "PK\3\4" + common + member.name + packed;
    }
    quint16 const count = quint16(members.size());
    return zip + directory + "PK\5\6" + littleEndian(quint32(0)) + littleEndian(count)
        + littleEndian(count) + littleEndian(quint32(directory.size()))
        + littleEndian(quint32(zip.size())) + littleEndian(quint16(0));
}

} // namespace ZipTesting

#endif // ZIPTESTING_H

// SPDX-License-Identifier: MIT
#include "md5.h"
#include "sequence.h"
#include "themes.h"

#include <QTemporaryDir>

#include <fstream>
#include <iterator>

namespace {

std::string message(int length)
{
    std::string text;
    for (int i = 0; i < length; ++i)
        text += char('a' + i % 26);
    return text;
}

QVector<std::string> messages()
{
    QVector<std::string> all {"", "abc", "The quick brown fox jumps over the lazy dog"};
    for (int const length : {1, 55, 56, 57, 63, 64, 65, 119, 120, 127, 128, 129, 200})
        all.append(message(length));
    Vectors::Sequence sequence(60);
    for (int const length : {16, 64, 100}) {
        std::string bytes;
        for (int i = 0; i < length; ++i)
            bytes += char(sequence.below(256));
        all.append(bytes);
    }
    return all;
}

QByteArray bytesOf(std::string const& text)
{
    return QByteArray::fromStdString(text);
}

unsigned char const* unsignedBytes(std::string const& text)
{
    return reinterpret_cast<unsigned char const*>(text.data());
}

void addConstants(Vectors::Theme& theme)
{
    theme.add("MD5::PADDING", {},
        {{"value", QByteArray(reinterpret_cast<char const*>(MD5::PADDING), sizeof MD5::PADDING)}});
    theme.add("MD5::HEX", {}, {{"value", QString::fromLatin1(MD5::HEX, sizeof MD5::HEX)}});
}

/** The message as the rest of a file. */
std::string digestOfFile(QString const& path, std::string const& text, bool isConstructed)
{
    std::ofstream(path.toStdString(), std::ios::binary) << text;
    std::ifstream in(path.toStdString(), std::ios::binary);
    if (isConstructed)
        return MD5(in).toString();
    MD5 digest;
    digest.update(in);
    return digest.toString();
}

void addMessages(Vectors::Theme& theme)
{
    QTemporaryDir const folder;
    QString const path = folder.filePath("message");
    theme.add("MD5::MD5()", {}, {{"digest", MD5().toString()}});
    for (std::string const& text : messages()) {
        Vectors::Fields const inputs {{"message", bytesOf(text)}};
        MD5 ofAddress;
        ofAddress.update(static_cast<void const*>(text.data()), text.size());
        MD5 ofBytes;
        ofBytes.update(unsignedBytes(text), text.size());
        MD5 ofText;
        ofText.update(text);
        theme.add("MD5::MD5(void const*, unsigned long)", inputs,
            {{"digest", MD5(text.data(), text.size()).toString()}});
        theme.add("MD5::MD5(std::string const&)", inputs, {{"digest", MD5(text).toString()}});
        theme.add("MD5::MD5(std::ifstream&)", inputs, {{"digest", digestOfFile(path, text, true)}});
        theme.add(
            "MD5::update(void const*, unsigned long)", inputs, {{"digest", ofAddress.toString()}});
        theme.add("MD5::update(unsigned char const*, unsigned long)", inputs,
            {{"digest", ofBytes.toString()}});
        theme.add("MD5::update(std::string const&)", inputs, {{"digest", ofText.toString()}});
        theme.add(
            "MD5::update(std::ifstream&)", inputs, {{"digest", digestOfFile(path, text, false)}});
    }
}

/** In pieces, and past a digest that was asked for on the way. */
void addSteps(Vectors::Theme& theme)
{
    QVector<std::string> const texts = messages();
    for (int i = 0; i + 1 < texts.count(); i += 2) {
        std::string const& first = texts.at(i);
        std::string const& second = texts.at(i + 1);
        Vectors::Fields const inputs {{"first", bytesOf(first)}, {"second", bytesOf(second)}};
        MD5 whole(first);
        whole.update(second);
        theme.add("MD5::toString()", inputs, {{"digest", whole.toString()}});

        MD5 interrupted(first);
        QByteArray const bytes(reinterpret_cast<char const*>(interrupted.digest()), 16);
        interrupted.update(second);
        theme.add("MD5::digest()", inputs,
            {{"first", bytes},
                {"both", QByteArray(reinterpret_cast<char const*>(interrupted.digest()), 16)}});

        MD5 ended(first);
        ended.final();
        ended.update(second);
        theme.add("MD5::final()", inputs, {{"digest", ended.toString()}});

        MD5 begunAgain(first);
        begunAgain.reset();
        begunAgain.update(second);
        theme.add("MD5::reset()", inputs, {{"digest", begunAgain.toString()}});
    }
}

void addParts(Vectors::Theme& theme)
{
    Vectors::Sequence sequence(61);
    for (int length : {0, 4, 8, 16}) {
        std::string bytes;
        for (int i = 0; i < length; ++i)
            bytes += char(sequence.below(256));
        MD5 digest;
        theme.add("MD5::bytesToHexString(unsigned char const*, unsigned long)",
            {{"bytes", bytesOf(bytes)}},
            {{"result", digest.bytesToHexString(unsignedBytes(bytes), bytes.size())}});

        unsigned long words[4] = {};
        digest.decode(unsignedBytes(bytes), words, bytes.size());
        QVector<QString> texts;
        QVector<QString> larger;
        for (int i = 0; i < length / 4; ++i) {
            texts.append(QString::number(words[i], 16));
            words[i] |= 0xABCDEF01UL << 32;
            larger.append(QString::number(words[i], 16));
        }
        theme.add("MD5::decode(unsigned char const*, unsigned long*, unsigned long)",
            {{"bytes", bytesOf(bytes)}}, {{"words", texts}});
        unsigned char encoded[16] = {};
        digest.encode(words, encoded, bytes.size());
        theme.add("MD5::encode(unsigned long const*, unsigned char*, unsigned long)",
            {{"words", larger}},
            {{"bytes", QByteArray(reinterpret_cast<char const*>(encoded), length)}});
    }
    for (int i = 0; i < 4; ++i) {
        std::string block;
        while (block.size() < 64)
            block += char(i == 0 ? 0 : sequence.below(256));
        MD5 digest;
        digest.transform(unsignedBytes(block));
        theme.add("MD5::transform(unsigned char const*)", {{"block", bytesOf(block)}},
            {{"digest", digest.toString()}});
    }
}

} // namespace

void Vectors::addDigest(Theme& theme)
{
    addConstants(theme);
    addMessages(theme);
    addSteps(theme);
    addParts(theme);
}

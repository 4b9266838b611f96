// SPDX-License-Identifier: MIT
#ifndef KINDS_H
#define KINDS_H

#include <QByteArray>
#include <QByteArrayList>

#include <string_view>
#include <vector>

/** What is between the brackets of a document type, and what is in the root element. */
struct Parts
{
    QByteArray subset;
    QByteArray body;
};

/** One kind of content, of which there can be any amount. */
struct Kind
{
    char const* name;
    /** @param size in bytes, roughly, in all */
    Parts (*make)(int size);
};

/** Those of any XML. */
std::vector<Kind> const& markupKinds();
/** Those of SVG pictures. */
std::vector<Kind> const& pictureKinds();
/** Those of documents with outlines. */
std::vector<Kind> const& outlineKinds();
/** Those of shapes in DrawingML. */
std::vector<Kind> const& drawingKinds();
/** Those of lists of shapes in DrawingML, in the first of which the body begins and ends. */
std::vector<Kind> const& presetKinds();
/** Those of OpenDocument drawings. */
std::vector<Kind> const& odfKinds();
/** Those of the data of a path; the body is all that there is. */
std::vector<Kind> const& pathKinds();

/** All of it in the root element. */
Parts body(QByteArray const& text);

/** As many times `pattern`, each with its number in the place of %1, as fill `size` bytes. */
QByteArray filled(int size, QByteArray const& pattern);

#endif // KINDS_H

// SPDX-License-Identifier: MIT
#ifndef OUTLINEDOCUMENT_H
#define OUTLINEDOCUMENT_H

#include "document/outlinereader.h"

/** All outlines of an XML document, wherever they stand. */
class OutlineDocument
{
public:
    /**
     * Reads a document, of which only the outlines are kept. Nothing, with a diagnostic, when it is
     * no well-formed XML or goes beyond BoundedXml's bounds.
     *
     * @param device open for reading
     * @param file its name in diagnostics
     * @param progress called now and then; may be empty
     */
    static std::optional<OutlineDocument> read(QIODevice& device, QString const& file,
        Diagnostics& diagnostics, ProgressFunction const& progress = {});
    /** The same for a text. */
    static std::optional<OutlineDocument> read(
        QByteArray const& text, QString const& file, Diagnostics& diagnostics);

    /** The name that it was read under. */
    QString const& file() const { return m_file; }
    /** In document order. */
    Outlines& outlines() { return m_outlines; }
    /** In document order. */
    Outlines const& outlines() const { return m_outlines; }
    /** Whether it is an SVG picture, which importSvg() reads, rather than a document of outlines. */
    bool isSvgPicture() const { return m_isSvgPicture; }

private:
    OutlineDocument() = default;

    QString m_file;
    Outlines m_outlines;
    bool m_isSvgPicture = false;
};

#endif // OUTLINEDOCUMENT_H

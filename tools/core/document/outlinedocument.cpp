#include "document/outlinedocument.h"

#include <QBuffer>

std::optional<OutlineDocument> OutlineDocument::read(QIODevice& device, QString const& file,
    Diagnostics& diagnostics, ProgressFunction const& progress)
{
    OutlineDocument document;
    document.m_file = file;
    OutlineReader reader(device, file);
    reader.setProgress(progress);
    for (Outlines group = reader.next(); !group.empty(); group = reader.next()) {
        for (Outline& outline : group)
            document.m_outlines.push_back(std::move(outline));
    }
    if (reader.fault()) {
        diagnostics.add(*reader.fault());
        return std::nullopt;
    }
    document.m_isSvgPicture = reader.isSvgPicture();
    return document;
}

std::optional<OutlineDocument> OutlineDocument::read(
    QByteArray const& text, QString const& file, Diagnostics& diagnostics)
{
    QBuffer buffer;
    buffer.setData(text);
    buffer.open(QIODevice::ReadOnly);
    return read(buffer, file, diagnostics);
}

// SPDX-License-Identifier: MIT
#include "document/outlinedocument.h"

#include "document/followingappearance.h"

#include <QBuffer>

std::optional<OutlineDocument> OutlineDocument::read(QIODevice& device, QString const& file,
    Diagnostics& diagnostics, ProgressFunction const& progress)
{
    OutlineDocument document;
    document.m_file = file;
    OutlineReader reader(device, file);
    reader.setProgress(progress);
    FollowingAppearance following;
    std::size_t outermost = 0;
    reader.setVisitor([&](QXmlStreamReader const& token) {
        if (auto const appearance = following.visit(token))
            document.m_outlines[outermost].appearance = *appearance;
    });
    for (Outlines group = reader.next(); !group.empty(); group = reader.next()) {
        following.expect();
        outermost = document.m_outlines.size();
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

// SPDX-License-Identifier: MIT
#include "import/anyimport.h"

#include "boundedxml_p.h"
#include "import/diaimport.h"
#include "import/odfimport.h"
#include "import/odfstyles.h"
#include "import/zipmember.h"

#include <QXmlStreamReader>

namespace {

std::optional<ImportedPictures> alone(std::optional<ImportedOutlines> picture)
{
    if (!picture)
        return std::nullopt;
    ImportedPictures pictures;
    pictures.push_back(std::move(*picture));
    return pictures;
}

} // namespace

std::optional<ImportedPictures> importAny(
    QByteArray const& content, SvgImportOptions const& options, Diagnostics& diagnostics)
{
    // Of what is no XML nothing is known but the reason, which the reader of SVG tells.
    QXmlStreamReader root(BoundedXml::bounded(content));
    root.readNextStartElement();
    bool const isFlatOdf =
        root.namespaceUri() == OdfNamespace::office() && root.name() == QLatin1String("document");
    if (isZip(content) || isFlatOdf)
        return importOdf(content, {options.file, options.scale}, diagnostics);
    bool const isDia =
        root.namespaceUri() == diaNamespace() && root.name() == QLatin1String("shape");
    return isDia ? alone(importDia(content, options, diagnostics))
                 : importSvg(content, options, diagnostics);
}

#include "boundedxml_p.h"

#include <QDomDocument>
#include <QIODevice>
#include <QXmlStreamReader>

#include <array>

namespace BoundedXml {

namespace {

void setError(Error& error, QXmlStreamReader const& reader, QString const& message)
{
    error = {reader.lineNumber(), reader.columnNumber() + 1, message};
}

} // namespace

QByteArray read(QIODevice& device, Error& error)
{
    QByteArray text;
    std::array<char, 65536> chunk;
    for (;;) {
        qint64 const size = device.read(chunk.data(), static_cast<qint64>(chunk.size()));
        if (size == 0)
            return text;
        if (size < 0) {
            error.message = device.errorString();
            return QByteArray();
        }
        if (text.size() + size > maximumBytes) {
            error.message = QStringLiteral("larger than %1 bytes").arg(maximumBytes);
            return QByteArray();
        }
        text.append(chunk.data(), static_cast<int>(size));
    }
}

bool check(QByteArray const& text, Error& error)
{
    QXmlStreamReader reader(text);
    // An undeclared prefix is no fault of well-formedness.
    reader.setNamespaceProcessing(false);
    int depth = 0;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            if (++depth > maximumDepth) {
                setError(error, reader,
                    QStringLiteral("more than %1 nested elements").arg(maximumDepth));
                return false;
            }
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        default:
            break;
        }
    }
    if (reader.hasError())
        setError(error, reader, reader.errorString());
    return !reader.hasError();
}

bool parse(QByteArray const& text, QDomDocument& document, Error& error)
{
    document.clear();
    if (!check(text, error))
        return false;
    QXmlStreamReader reader(text);
    reader.setNamespaceProcessing(false);
    if (document.setContent(&reader, false))
        return true;
    setError(error, reader, QStringLiteral("the document tree could not be built"));
    document.clear();
    return false;
}

} // namespace BoundedXml

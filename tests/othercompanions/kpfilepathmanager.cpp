// SPDX-License-Identifier: MIT
#include "kpfilepathmanager.h"

#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QStandardPaths>
#include <QXmlStreamReader>

#include <algorithm>

namespace {

constexpr int deepestElement = 500;
constexpr qint64 largestFile = 64 * 1024 * 1024;

/** Whether the document is well-formed, not too deep for a tree, and declares no entities. */
bool isHarmless(QString const& text)
{
    QXmlStreamReader reader(text);
    reader.setNamespaceProcessing(false);
    int depth = 0;
    while (!reader.atEnd() && depth <= deepestElement) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            ++depth;
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        case QXmlStreamReader::DTD:
            if (!reader.entityDeclarations().isEmpty())
                return false;
            break;
        default:
            break;
        }
    }
    return reader.atEnd() && !reader.hasError();
}

bool isForbiddenControl(QChar character)
{
    return character.unicode() < 0x20 && character != QLatin1Char('\t')
        && character != QLatin1Char('\n') && character != QLatin1Char('\r') && !character.isNull();
}

/** Carries control characters, which no reader takes, through one as characters of private use. */
class ControlDisguise
{
public:
    /** Uses characters that `text` does not have. */
    explicit ControlDisguise(QString const& text)
    {
        while (m_first < lastBlock && usesBlock(text))
            m_first = ushort(m_first + blockSize);
    }

    QString hidden(QString text) const
    {
        for (QChar& character : text) {
            if (isForbiddenControl(character))
                character = QChar(ushort(m_first + character.unicode()));
        }
        return text;
    }

    QString shown(QString text) const
    {
        for (QChar& character : text) {
            if (isInBlock(character))
                character = QChar(ushort(character.unicode() - m_first));
        }
        return text;
    }

    void showIn(QDomElement element) const
    {
        QDomNamedNodeMap const attributes = element.attributes();
        for (int i = 0; i < attributes.count(); ++i) {
            QDomAttr attribute = attributes.item(i).toAttr();
            attribute.setValue(shown(attribute.value()));
        }
        for (QDomElement child = element.firstChildElement(); !child.isNull();
             child = child.nextSiblingElement())
            showIn(child);
    }

private:
    static constexpr ushort blockSize = 0x20;
    static constexpr ushort lastBlock = 0xF8E0;

    bool isInBlock(QChar character) const
    {
        return character.unicode() >= m_first && character.unicode() < m_first + blockSize;
    }
    bool usesBlock(QString const& text) const
    {
        return std::any_of(
            text.begin(), text.end(), [this](QChar character) { return isInBlock(character); });
    }

    ushort m_first = 0xE000;
};

} // namespace

QString KpFilePathManager::configPath(QString const& name)
{
    QDir const directory(QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation));
    directory.mkpath(QStringLiteral("."));
    return directory.filePath(name);
}

bool KpFilePathManager::loadXmlFile(QDomDocument& document, QString const& path)
{
    document = QDomDocument();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > largestFile)
        return false;
    QString const text = QString::fromUtf8(file.readAll());
    ControlDisguise const disguise(text);
    QString const harmless = disguise.hidden(text);
    QDomDocument read;
    if (!isHarmless(harmless) || !read.setContent(harmless))
        return false;
    disguise.showIn(read.documentElement());
    document = read;
    return true;
}

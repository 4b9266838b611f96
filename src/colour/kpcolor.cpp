// SPDX-License-Identifier: MIT
#include "kpcolor.h"

#include "colorutil.h"
#include "conversion_p.h"
#include "undovalue_p.h"
#include "xmlattribute_p.h"
#include "xmlelement_p.h"
#include "xmlstreamwriter.h"

#include <QDataStream>
#include <QDomElement>
#include <QXmlStreamReader>

#include <cstring>
#include <optional>

bool KpColor::s_genPreTheme = false;

namespace {

constexpr int wholeTint = 100; ///< percent; also the code of the strongest tint

int channelOf(qint32 packed, int shift)
{
    return (packed >> shift) & 0xFF;
}

qint32 pack(QColor const& colour)
{
    return colour.red() * 65536 + colour.green() * 256 + colour.blue();
}

qint16 encodedTint(int tint)
{
    int const percent = qBound(-wholeTint, tint, wholeTint);
    return static_cast<qint16>(percent < 0 ? wholeTint - percent : percent);
}

qint16 encodedTheme(int themeIndex)
{
    return Conversion::lowSixteenBits(qMax(themeIndex, 0));
}

double fraction(int percent)
{
    return percent * 0.01;
}

/** What a tint code has made of a colour, by one of two functions. */
template <class Tint, class Shade>
QColor tintedByCode(QColor const& colour, int code, Tint tint, Shade shade)
{
    if (code >= 1 && code <= wholeTint)
        return tint(colour, fraction(code));
    if (code > wholeTint && code <= 2 * wholeTint)
        return shade(colour, fraction(code - wholeTint));
    return colour;
}

QString elementName(QString const& name)
{
    return name.isEmpty() ? QStringLiteral("Color") : name;
}

/** One digit for a channel below 16, deliberately: documents hold such texts. */
QString referenceText(QColor const& reference)
{
    QString text = QStringLiteral("#%1%2%3");
    for (int const channel : {reference.red(), reference.green(), reference.blue()})
        text = text.arg(channel, 0, 16, QLatin1Char(' '));
    return text;
}

/** @param setAttribute takes a name and an int or a text */
template <class SetAttribute> void writeAttributes(KpColor& colour, SetAttribute setAttribute)
{
    int const tint = colour.tint();
    bool const isTheme = colour.themeIndex() != 0;
    if (isTheme)
        setAttribute(QStringLiteral("ThemeColor"), colour.themeIndex());
    if (tint > 0)
        setAttribute(QStringLiteral("Tint"), tint);
    else if (tint < 0)
        setAttribute(QStringLiteral("Shade"), -tint);

    bool const themeTellsIt = KpColor::s_genPreTheme && isTheme;
    if (!themeTellsIt || colour.alpha() != 255)
        setAttribute(QStringLiteral("V"), colour.name(QColor::HexArgb));
    if (!themeTellsIt && tint != 0)
        setAttribute(QStringLiteral("Ref"), referenceText(colour.refColor()));
}

QColor namedColor(QString const& text)
{
    QColor colour;
    colour.setNamedColor(text);
    return colour;
}

/** An invalid colour in place of one that, read from a stream, no QColor can be. */
QColor ofKnownKind(QColor const& colour)
{
    // The kind must not be asked of such a colour: no enumerator has its number.
    int kind = QColor::Invalid;
    std::memcpy(&kind, static_cast<void const*>(&colour), sizeof kind);
    if (kind < QColor::Invalid || kind > QColor::ExtendedRgb)
        return QColor();
    // An extended colour holds its alpha as a number of any size, which alpha() does not clamp
    // and setRgb() refuses.
    double const alpha = colour.alphaF();
    return alpha >= 0.0 && alpha <= 1.0 ? colour : QColor();
}

} // namespace

/** The attributes of a colour's element, as far as they are given. */
struct KpColor::Attributes
{
    std::optional<QString> v;
    std::optional<QString> themeColor;
    std::optional<QString> tint;
    std::optional<QString> shade;
    std::optional<QString> ref;

    /** @param attribute gives the text of an attribute by its name */
    template <class Attribute>
    explicit Attributes(Attribute attribute)
        : v(given(attribute(QStringLiteral("V"))))
        , themeColor(given(attribute(QStringLiteral("ThemeColor"))))
        , tint(given(attribute(QStringLiteral("Tint"))))
        , shade(given(attribute(QStringLiteral("Shade"))))
        , ref(given(attribute(QStringLiteral("Ref"))))
    {
    }

private:
    template <class Text> static std::optional<QString> given(Text const& text)
    {
        if (!XmlAttribute::isGiven(text))
            return std::nullopt;
        return QString(text.constData(), text.size());
    }
};

KpColor::KpColor()
    : m_reference(0)
    , m_themeIndex(0)
    , m_tintCode(0)
{
}

KpColor::KpColor(QColor const& colour)
    : KpColor()
{
    setColor(colour);
}

KpColor::KpColor(KpColor const& other) = default;

KpColor& KpColor::operator=(KpColor const& other) = default;

bool KpColor::operator==(KpColor const& other) const
{
    return isSameInTheme(other) && QColor::operator==(other) && m_reference == other.m_reference;
}

bool KpColor::operator!=(KpColor const& other) const
{
    return !(*this == other);
}

bool KpColor::isSameInTheme(KpColor const& other) const
{
    return m_themeIndex == other.m_themeIndex && m_tintCode == other.m_tintCode;
}

void KpColor::setRefColor(QColor ref, int themeIndex)
{
    compute(ref);
    m_reference = pack(ref);
    if (themeIndex != -1)
        m_themeIndex = encodedTheme(themeIndex);
}

QColor KpColor::refColor()
{
    return QColor(channelOf(m_reference, 16), channelOf(m_reference, 8), channelOf(m_reference, 0));
}

void KpColor::setColorValues(QColor ref, QColor colour, int tint, int themeIndex)
{
    m_tintCode = encodedTint(tint);
    m_reference = pack(ref);
    QColor::operator=(colour);
    m_themeIndex = encodedTheme(themeIndex);
}

void KpColor::setTintColor(QColor ref, int tint, int themeIndex)
{
    m_tintCode = encodedTint(tint);
    m_reference = pack(ref);
    compute(ref);
    m_themeIndex = encodedTheme(themeIndex);
}

void KpColor::modifyTint(int tint)
{
    m_tintCode = encodedTint(tint);
    compute(refColor());
}

void KpColor::setTint(int tint)
{
    m_tintCode = encodedTint(tint);
}

int KpColor::tint()
{
    return m_tintCode <= wholeTint ? m_tintCode : wholeTint - m_tintCode;
}

int KpColor::themeIndex() const
{
    return m_themeIndex;
}

void KpColor::setColor(QColor colour)
{
    m_themeIndex = 0;
    m_tintCode = 0;
    QColor::operator=(colour);
    m_reference = pack(colour);
}

void KpColor::assignNoAlpha(KpColor& other)
{
    m_themeIndex = other.m_themeIndex;
    m_tintCode = other.m_tintCode;
    setRgb(other.red(), other.green(), other.blue(), alpha());
    m_reference = other.m_reference;
}

/** Makes the concrete colour of `ref` and the tint; alpha stays. */
void KpColor::compute(QColor const& ref)
{
    QColor const colour = tintedByCode(
        ref, m_tintCode, [](QColor const& c, double value) { return ColorUtil::tint(c, value); },
        [](QColor const& c, double value) { return ColorUtil::shade(c, value); });
    setRgb(colour.red(), colour.green(), colour.blue(), alpha());
}

QDataStream& KpColor::read(QDataStream& stream)
{
    QColor colour;
    stream >> m_themeIndex >> m_tintCode >> colour >> m_reference;
    QColor::operator=(ofKnownKind(colour));
    return stream;
}

QDataStream& KpColor::write(QDataStream& stream) const
{
    return stream << m_themeIndex << m_tintCode << static_cast<QColor const&>(*this) << m_reference;
}

void KpColor::toUndoValue(QVector<int>& values)
{
    QRgb const rgba = (static_cast<QRgb>(red()) << 24U) | (static_cast<QRgb>(green()) << 16U)
        | (static_cast<QRgb>(blue()) << 8U) | static_cast<QRgb>(alpha());
    values << m_themeIndex << m_tintCode << m_reference << static_cast<int>(rgba);
}

void KpColor::fromUndoValue(QVector<int>& values, int& index)
{
    m_themeIndex = Conversion::lowSixteenBits(UndoValue::take(values, index));
    m_tintCode = Conversion::lowSixteenBits(UndoValue::take(values, index));
    m_reference = UndoValue::take(values, index);
    auto const rgba = static_cast<QRgb>(UndoValue::take(values, index));
    setAlpha(static_cast<int>(rgba & 0xFFU));
    setBlue(static_cast<int>((rgba >> 8U) & 0xFFU));
    setGreen(static_cast<int>((rgba >> 16U) & 0xFFU));
    setRed(static_cast<int>(rgba >> 24U));
}

void KpColor::saveTo(QDomElement& parent, QString const& name)
{
    QDomElement element = XmlElement::append(parent, elementName(name));
    writeAttributes(*this, [&element](QString const& attribute, auto const& value) {
        element.setAttribute(attribute, value);
    });
}

void KpColor::saveTo(XmlStreamWriter& writer, QString const& name)
{
    writer.writeStartElement(elementName(name));
    writeAttributes(*this, [&writer](QString const& attribute, auto const& value) {
        writer.writeAttribute(attribute, value);
    });
    writer.writeEndElement();
}

void KpColor::parse(QDomElement const& element)
{
    if (element.isNull())
        return;
    Attributes const attributes(
        [&element](QString const& name) { return element.attribute(name); });
    m_themeIndex = 0;
    take(attributes);
}

void KpColor::parse(QXmlStreamReader& reader)
{
    QXmlStreamAttributes const given = reader.attributes();
    if (given.isEmpty())
        return;
    take(Attributes([&given](QString const& name) { return given.value(name); }));
}

/** Takes over the attributes; without a theme colour the theme index stays. */
void KpColor::take(Attributes const& attributes)
{
    if (attributes.v)
        QColor::operator=(namedColor(*attributes.v));
    if (attributes.themeColor)
        m_themeIndex = Conversion::lowSixteenBits(attributes.themeColor->toInt());
    m_tintCode = 0;
    if (attributes.tint)
        setTint(attributes.tint->toInt());
    else if (attributes.shade)
        setTint(-qBound(-wholeTint, attributes.shade->toInt(), wholeTint));
    m_reference = pack(attributes.ref
            ? namedColor(*attributes.ref)
            : tintedByCode(*this, m_tintCode, ColorUtil::invertTint, ColorUtil::invertShade));
}

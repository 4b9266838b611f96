// SPDX-License-Identifier: MIT
// Any sequence of operations on two colours of a document, beside a model: the four things that
// each consists of, and the formulas by which they change. In the end the colours must come back
// from an undo record, a data stream and both forms of XML as far as these hold them. Nothing is
// logged.

#include "colorutil.h"
#include "fuzzing.h"
#include "kpcolorio.h"
#include "xmlstreamwriter.h"

#include <QDataStream>
#include <QDomDocument>
#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>

using Fuzzing::awkwardReal;
using Fuzzing::require;

namespace {

int channel(double real)
{
    // Written so that NaN is 0.
    return real >= 255.0 ? 255 : real >= 1.0 ? static_cast<int>(real) : 0;
}

/** An integer, which no number that is none can become: that is 0. */
double rounded(double real)
{
    return std::isnan(real) ? 0.0 : std::floor(real + 0.5);
}

double linear(int level)
{
    double const v = level / 255.0;
    return v <= 0.04045 ? v / 12.92 : v >= 1.0 ? 1.0 : std::pow((v + 0.055) / 1.055, 2.4);
}

int encoded(double light)
{
    double v = light;
    if (light < 0.0)
        v = 0.0;
    else if (light <= 0.0031308)
        v = light * 12.92;
    else if (light >= 1.0)
        v = 1.0;
    else
        v = 1.055 * std::pow(light, 0.4166666666666667) - 0.055;
    return channel(rounded(v * 255.0));
}

/** Red, green and blue with each intensity changed. */
template <class Change> QRgb withLight(QColor const& colour, Change change)
{
    return qRgb(encoded(change(linear(colour.red()))), encoded(change(linear(colour.green()))),
        encoded(change(linear(colour.blue()))));
}

QRgb tinted(QColor const& colour, double value)
{
    return withLight(colour, [value](double x) { return x * (1.0 - value) + value; });
}

QRgb shaded(QColor const& colour, double value)
{
    return withLight(colour, [value](double x) { return x * (1.0 - value); });
}

int packed(QColor const& colour)
{
    return colour.red() * 65536 + colour.green() * 256 + colour.blue();
}

int clampedTint(int tint)
{
    return std::clamp(tint, -100, 100);
}

int theme(int index)
{
    return static_cast<qint16>(std::max(index, 0));
}

struct Model
{
    QColor concrete;
    int theme = 0;
    int tint = 0;
    int reference = 0;

    /** The concrete colour of a reference colour and the tint. */
    void compute(QColor const& from)
    {
        QRgb channels = from.rgb();
        if (tint > 0)
            channels = tinted(from, tint * 0.01);
        if (tint < 0)
            channels = shaded(from, -tint * 0.01);
        concrete.setRgb(qRed(channels), qGreen(channels), qBlue(channels), concrete.alpha());
    }

    QColor referenceColour() const { return QColor(0xFF000000U | QRgb(reference)); }
};

void check(KpColor const& colour, Model const& model)
{
    KpColor copy(colour);
    require(
        static_cast<QColor const&>(colour) == model.concrete, "the concrete colour as modelled");
    require(colour.themeIndex() == model.theme && copy.tint() == model.tint, "theme and tint, too");
    require(packed(copy.refColor()) == model.reference, "and the reference colour");
    require(copy == colour && !(copy != colour) && copy.isSameInTheme(colour), "a copy is equal");
}

QByteArray streamed(KpColor const& colour)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << colour;
    return bytes;
}

void checkRecords(KpColor colour)
{
    QVector<int> ints {1};
    colour.toUndoValue(ints);
    int position = 1;
    KpColor undone(QColor(1, 2, 3, 4));
    undone.fromUndoValue(ints, position);
    require(position == 5 && ints.size() == 5, "a record has four ints");
    require(undone.rgba() == colour.rgba() && undone.isSameInTheme(colour)
            && undone.refColor() == colour.refColor(),
        "a record holds all but the kind of the concrete colour");

    QByteArray const bytes = streamed(colour);
    QDataStream in(bytes);
    KpColor read;
    in >> read;
    require(streamed(read) == bytes && in.atEnd(), "a stream holds all");
}

/** What was written in one of the two forms, read by the reader of the other. */
void checkXml(KpColor colour, Model const& model)
{
    QByteArray text;
    XmlStreamWriter writer(&text);
    colour.saveTo(writer, QString());
    QDomDocument document;
    require(document.setContent(text), "what is written is well-formed");
    KpColor fromStream;
    fromStream.parse(document.documentElement());

    QDomDocument tree;
    QDomElement root = tree.createElement(QStringLiteral("Root"));
    tree.appendChild(root);
    colour.saveTo(root, QStringLiteral("Fill"));
    QXmlStreamReader reader(tree.toByteArray());
    reader.readNextStartElement();
    require(reader.readNextStartElement() && reader.name() == QLatin1String("Fill"), "named so");
    KpColor fromTree;
    fromTree.parse(reader);

    require(fromStream == fromTree, "both forms hold the same");
    bool const isThemeTelling = KpColor::s_genPreTheme && model.theme != 0;
    require(fromStream.themeIndex() == model.theme && fromStream.tint() == model.tint,
        "theme and tint come back");
    require(isThemeTelling || fromStream.rgba() == colour.rgba(), "so does the concrete colour");
}

QColor anyColour(FuzzedDataProvider& input)
{
    auto const rgba = input.ConsumeIntegral<QRgb>();
    auto const fraction = [&input] { return input.ConsumeIntegral<quint16>() / 65535.0; };
    switch (input.ConsumeIntegralInRange(0, 5)) {
    case 0:
        return QColor();
    case 1: {
        double const first = fraction();
        double const second = fraction();
        double const third = fraction();
        return QColor::fromHsvF(first, second, third, fraction());
    }
    case 2: {
        double const first = fraction();
        double const second = fraction();
        double const third = fraction();
        return QColor::fromHslF(first, second, third, fraction());
    }
    case 3:
        return QColor::fromCmyk(qRed(rgba), qGreen(rgba), qBlue(rgba), qAlpha(rgba));
    case 4:
        // Beyond the usual range, and so extended.
        return QColor::fromRgbF(2.0 * fraction() - 0.5, fraction(), 1.5 * fraction(), fraction());
    default:
        return QColor::fromRgba(rgba);
    }
}

void changeChannel(QColor& colour, QString const& name, double value)
{
    int const levels[] = {colour.red(), colour.green(), colour.blue()};
    int const index = name.startsWith(QLatin1Char('r')) ? 0
        : name.startsWith(QLatin1Char('g'))             ? 1
                                                        : 2;
    double level = value * 255.0;
    if (name.endsWith(QLatin1String("Off")))
        level = levels[index] + value * 255.0;
    else if (name.endsWith(QLatin1String("Mod")))
        level = levels[index] * value;
    if (index == 0)
        colour.setRed(channel(level));
    else if (index == 1)
        colour.setGreen(channel(level));
    else
        colour.setBlue(channel(level));
}

void setChannels(QColor& colour, QRgb channels)
{
    colour.setRed(qRed(channels));
    colour.setGreen(qGreen(channels));
    colour.setBlue(qBlue(channels));
}

/** What a transform makes of a colour, where a plain formula says it. */
bool transform(QColor& colour, QString const& name, double value)
{
    static QStringList const channels {
        QStringLiteral("red"), QStringLiteral("green"), QStringLiteral("blue")};
    for (QString const& channel : channels) {
        if (name.startsWith(channel)) {
            changeChannel(colour, name, value);
            return true;
        }
    }
    if (name == QLatin1String("tint") && value != 0.0)
        setChannels(colour, tinted(colour, value));
    else if (name == QLatin1String("shade") && value != 0.0)
        setChannels(colour, shaded(colour, value));
    else if (name == QLatin1String("inv"))
        setChannels(colour, ~colour.rgb());
    else if (name == QLatin1String("gray")) {
        int const level =
            channel(colour.red() * 0.3 + colour.green() * 0.59 + colour.blue() * 0.11);
        setChannels(colour, qRgb(level, level, level));
    } else if (name == QLatin1String("alphaOff"))
        colour.setAlpha(channel(colour.alpha() + rounded(value * 255.0)));
    else if (name == QLatin1String("alphaMod"))
        colour.setAlpha(channel(rounded(colour.alpha() * value)));
    else
        return false;
    return true;
}

class Session
{
public:
    explicit Session(FuzzedDataProvider& input)
        : m_input(input)
    {
    }

    void run()
    {
        ColorUtil::initColorFunctionMap();
        KpColor::s_genPreTheme = m_input.ConsumeBool();
        for (int i = 0; i < 16 && m_input.remaining_bytes() > 0; ++i) {
            std::size_t const changed = m_input.ConsumeBool() ? 1 : 0;
            step(m_colours[changed], m_models[changed]);
            check(m_colours[changed], m_models[changed]);
            KpColor const other = m_colours[1 - changed];
            require((m_colours[changed] == other) == (other == m_colours[changed]), "== both ways");
        }
        for (std::size_t i = 0; i < 2; ++i) {
            checkRecords(m_colours[i]);
            checkXml(m_colours[i], m_models[i]);
        }
    }

private:
    void step(KpColor& colour, Model& model)
    {
        QColor const reference = anyColour(m_input);
        int const index = m_input.ConsumeIntegralInRange(-2, 40000);
        int const tint = m_input.ConsumeIntegralInRange(-120, 120);
        switch (m_input.ConsumeIntegralInRange(0, 8)) {
        case 0:
            colour.setRefColor(reference, index);
            model.compute(reference);
            model.reference = packed(reference);
            model.theme = index == -1 ? model.theme : theme(index);
            break;
        case 1: {
            QColor const concrete = anyColour(m_input);
            colour.setColorValues(reference, concrete, tint, index);
            model = {concrete, theme(index), clampedTint(tint), packed(reference)};
            break;
        }
        case 2:
            colour.setTintColor(reference, tint, index);
            model.tint = clampedTint(tint);
            model.compute(reference);
            model.reference = packed(reference);
            model.theme = theme(index);
            break;
        case 3:
            colour.modifyTint(tint);
            model.tint = clampedTint(tint);
            model.compute(model.referenceColour());
            break;
        case 4:
            colour.setTint(tint);
            model.tint = clampedTint(tint);
            break;
        case 5:
            colour.setColor(reference);
            model = {reference, 0, 0, packed(reference)};
            break;
        case 6: {
            std::size_t const source = m_input.ConsumeBool() ? 1 : 0;
            colour.assignNoAlpha(m_colours[source]);
            QColor const from = m_models[source].concrete;
            int const alpha = model.concrete.alpha();
            model = m_models[source];
            model.concrete.setRgb(from.red(), from.green(), from.blue(), alpha);
            break;
        }
        case 7: {
            std::size_t const source = m_input.ConsumeBool() ? 1 : 0;
            colour = m_colours[source];
            model = m_models[source];
            break;
        }
        default:
            applyTransform(colour, model);
        }
    }

    void applyTransform(KpColor& colour, Model& model)
    {
        auto const names = ColorUtil::mapColorFuncs.keys();
        QString const name = names.at(m_input.ConsumeIntegralInRange(0, int(names.size()) - 1));
        double const value = awkwardReal(m_input);
        int const alpha = colour.alpha();
        ColorUtil::getColorFunc(name)(colour, value);
        if (!transform(model.concrete, name, value)) {
            require(colour.alpha() == alpha || name == QLatin1String("alpha"), "alpha stays");
            model.concrete = colour;
        }
    }

    FuzzedDataProvider& m_input;
    KpColor m_colours[2];
    Model m_models[2];
};

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    Fuzzing::forbidLog();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    Session(input).run();
    return 0;
}

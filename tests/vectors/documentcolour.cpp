// SPDX-License-Identifier: MIT
#include "kpcolorio.h"
#include "sequence.h"
#include "themes.h"
#include "xmlsources.h"

namespace {

KpColor colourOf(QColor const& ref, QColor const& concrete, int tint, int themeIndex)
{
    KpColor colour;
    colour.setColorValues(ref, concrete, tint, themeIndex);
    return colour;
}

QVector<KpColor> colours()
{
    QVector<KpColor> all {KpColor(QColor(255, 0, 0)), KpColor(QColor(1, 2, 3, 4)),
        colourOf(QColor(255, 128, 64), QColor(179, 90, 45), -30, 4),
        colourOf(QColor(1, 2, 3), QColor(180, 180, 180, 128), 50, 2),
        colourOf(QColor(255, 0, 16), QColor(255, 200, 200), 100, 7),
        colourOf(QColor(68, 114, 196), QColor(0, 0, 0), -100, 1),
        colourOf(QColor(68, 114, 196), QColor(68, 114, 196), 0, 32767)};
    Vectors::Sequence sequence(40);
    for (int i = 0; i < 4; ++i) {
        QColor const ref = QRgb(sequence.below(0x1000000));
        int const tint = sequence.between(-100, 100);
        KpColor colour;
        colour.setTintColor(ref, tint, sequence.below(12));
        all.append(colour);
    }
    return all;
}

QByteArray written(KpColor const& colour)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_15);
    colour.write(stream);
    return bytes;
}

void addConstruction(Vectors::Theme& theme)
{
    theme.add("KpColor::s_genPreTheme", {}, {{"value", KpColor::s_genPreTheme}});
    theme.add("KpColor::KpColor()", {}, {{"colour", KpColor()}});
    for (KpColor const& colour : colours()) {
        QColor const plain = colour;
        theme.add(
            "KpColor::KpColor(QColor const&)", {{"plain", plain}}, {{"colour", KpColor(plain)}});
        theme.add(
            "KpColor::KpColor(KpColor const&)", {{"other", colour}}, {{"colour", KpColor(colour)}});
        KpColor assigned(QColor(9, 9, 9));
        assigned = colour;
        theme.add("KpColor::operator=(KpColor const&)",
            {{"colour", KpColor(QColor(9, 9, 9))}, {"other", colour}}, {{"colour", assigned}});
    }
}

void addQuestions(Vectors::Theme& theme)
{
    QVector<KpColor> const all = colours();
    for (int i = 0; i < all.count(); ++i) {
        KpColor colour = all.at(i);
        theme.add("KpColor::tint()", {{"colour", colour}}, {{"result", colour.tint()}});
        theme.add(
            "KpColor::themeIndex() const", {{"colour", colour}}, {{"result", colour.themeIndex()}});
        theme.add("KpColor::refColor()", {{"colour", colour}}, {{"result", colour.refColor()}});
        KpColor otherTint = colour;
        otherTint.setTint(colour.tint() + 1);
        for (KpColor const& other : {colour, all.at((i + 1) % all.count()), otherTint}) {
            Vectors::Fields const inputs {{"colour", colour}, {"other", other}};
            theme.add(
                "KpColor::operator==(KpColor const&) const", inputs, {{"result", colour == other}});
            theme.add(
                "KpColor::operator!=(KpColor const&) const", inputs, {{"result", colour != other}});
            theme.add("KpColor::isSameInTheme(KpColor const&) const", inputs,
                {{"result", colour.isSameInTheme(other)}});
        }
        QColor const plain = colour;
        Vectors::Fields const inputs {{"colour", colour}, {"plain", plain}};
        theme.add(
            "operator==(KpColor const&, QColor const&)", inputs, {{"result", colour == plain}});
        theme.add(
            "operator==(QColor const&, KpColor const&)", inputs, {{"result", plain == colour}});
        theme.add(
            "operator!=(KpColor const&, QColor const&)", inputs, {{"result", colour != plain}});
        theme.add(
            "operator!=(QColor const&, KpColor const&)", inputs, {{"result", plain != colour}});
    }
}

void addChanges(Vectors::Theme& theme)
{
    Vectors::Sequence sequence(41);
    QVector<int> const tints {0, 1, 50, 100, 250, -1, -30, -100, -250};
    QVector<int> const themes {3, 0, -1, -5, 70000};
    QVector<KpColor> const all = colours();
    for (int i = 0; i < all.count(); ++i) {
        KpColor const before = all.at(i);
        QColor const ref = QColor::fromRgba(QRgb(sequence.bits()));
        for (int k = i % 2; k < tints.count(); k += 2) {
            int const tint = tints.at(k);
            int const themeIndex = themes.at((i + k) % themes.count());
            KpColor after = before;
            after.setTint(tint);
            theme.add(
                "KpColor::setTint(int)", {{"colour", before}, {"tint", tint}}, {{"colour", after}});
            after = before;
            after.modifyTint(tint);
            theme.add("KpColor::modifyTint(int)", {{"colour", before}, {"tint", tint}},
                {{"colour", after}});
            Vectors::Fields const inputs {
                {"colour", before}, {"ref", ref}, {"tint", tint}, {"themeIndex", themeIndex}};
            after = before;
            after.setTintColor(ref, tint, themeIndex);
            theme.add("KpColor::setTintColor(QColor, int, int)", inputs, {{"colour", after}});
            after = before;
            after.setColorValues(ref, QColor(1, 2, 3, 4), tint, themeIndex);
            Vectors::Fields more = inputs;
            more.push_back({"concrete", QColor(1, 2, 3, 4)});
            theme.add(
                "KpColor::setColorValues(QColor, QColor, int, int)", more, {{"colour", after}});
        }
        for (int const themeIndex : themes) {
            KpColor after = before;
            after.setRefColor(ref, themeIndex);
            theme.add("KpColor::setRefColor(QColor, int)",
                {{"colour", before}, {"ref", ref}, {"themeIndex", themeIndex}},
                {{"colour", after}});
        }
        KpColor after = before;
        after.setColor(ref);
        theme.add(
            "KpColor::setColor(QColor)", {{"colour", before}, {"plain", ref}}, {{"colour", after}});
        KpColor other = all.at((i + 3) % all.count());
        after = before;
        after.assignNoAlpha(other);
        theme.add("KpColor::assignNoAlpha(KpColor&)", {{"colour", before}, {"other", other}},
            {{"colour", after}});
    }
}

/** Those of kpcolorio.h. */
void addOperators(Vectors::Theme& theme, KpColor const& colour)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_5_15);
    out << colour << colour;
    theme.add(
        "operator<<(QDataStream&, KpColor const&)", {{"colour", colour}}, {{"bytesOfTwo", bytes}});
    QDataStream in(bytes);
    in.setVersion(QDataStream::Qt_5_15);
    KpColor first;
    KpColor second;
    in >> first >> second;
    theme.add("operator>>(QDataStream&, KpColor&)", {{"bytesOfTwo", bytes}},
        {{"first", first}, {"second", second}});
}

void addRecords(Vectors::Theme& theme)
{
    for (KpColor colour : colours()) {
        QVector<int> values {7};
        colour.toUndoValue(values);
        theme.add("KpColor::toUndoValue(QVector<int>&)",
            {{"colour", colour}, {"values", QVector<int> {7}}}, {{"values", values}});
        theme.add("KpColor::write(QDataStream&) const", {{"colour", colour}},
            {{"bytes", written(colour)}});
        QByteArray const bytes = written(colour);
        QDataStream stream(bytes);
        stream.setVersion(QDataStream::Qt_5_15);
        KpColor read;
        read.read(stream);
        theme.add("KpColor::read(QDataStream&)", {{"bytes", bytes}}, {{"colour", read}});
        addOperators(theme, colour);
    }
    QVector<QVector<int>> const records {{0, 0, 0x102030, 0x01020304}, {65537, 130, 255, -1},
        {-1, 65636, 0xFFFFFF, int(0x80FF0010U)}, {9, 3, 100, 0x00FF00, 0x11223344}, {3, 101, 5},
        {}};
    for (QVector<int> const& record : records) {
        for (int const start : {0, 1, -1}) {
            QVector<int> values = record;
            int index = start;
            KpColor colour(QColor(1, 1, 1));
            colour.fromUndoValue(values, index);
            theme.add("KpColor::fromUndoValue(QVector<int>&, int&)",
                {{"colour", KpColor(QColor(1, 1, 1))}, {"values", record}, {"index", start}},
                {{"colour", colour}, {"index", index}});
        }
    }
}

void addWritten(Vectors::Theme& theme, KpColor colour, QString const& name)
{
    Vectors::Fields const inputs {
        {"colour", colour}, {"name", name}, {"s_genPreTheme", KpColor::s_genPreTheme}};
    QString text;
    XmlStreamWriter writer(&text);
    colour.saveTo(writer, name);
    theme.add("KpColor::saveTo(XmlStreamWriter&, QString const&)", inputs, {{"xml", text}});
    QDomDocument document;
    QDomElement parent = document.createElement("Style");
    colour.saveTo(parent, name);
    theme.add("KpColor::saveTo(QDomElement&, QString const&)", inputs, {{"parent", parent}});
}

void addWriting(Vectors::Theme& theme)
{
    addWritten(theme, QColor(255, 0, 0), "");
    for (bool const isGenerated : {false, true}) {
        KpColor::s_genPreTheme = isGenerated;
        for (KpColor const& colour : colours())
            addWritten(theme, colour, "Fill");
    }
    KpColor::s_genPreTheme = false;
}

void addReading(Vectors::Theme& theme)
{
    KpColor const before = colourOf(QColor(9, 8, 7), QColor(70, 80, 90, 100), 25, 5);
    for (QString const xml :
        {"<Color/>", "<Color V=\"#ffff0000\"/>", "<Color V=\"#80102030\" ThemeColor=\"4\"/>",
            "<Color V=\"#ff808080\" Tint=\"20\" Shade=\"40\"/>",
            "<Color V=\"#ff808080\" Tint=\"0\" Shade=\"40\"/>",
            "<Color V=\"#ff102030\" Shade=\"30\" ThemeColor=\"2\"/>", "<Color Tint=\"30\"/>",
            "<Color V=\"#bcdeff\" Tint=\"100\" Ref=\"#123\"/>",
            "<Color V=\"#ffbcdeff\" Tint=\"50\" Ref=\"#ff010\"/>", "<Color V=\"#fff\" Tint=\"x\"/>",
            "<Color V=\"\" Ref=\"\"/>", "<Color V=\"\" Tint=\"\" Shade=\"50\"/>",
            "<Color V=\"no colour\"/>", "<Color ThemeColor=\"70000\" V=\"#ff010203\"/>",
            "<Color ThemeColor=\"\" Tint=\"500\" Ref=\"#445566\"/>",
            "<Color Shade=\"-20\" V=\"#ff778899\" Ref=\"#abc\"/>", "<Color other=\"1\"/>",
            "<Color V=\"#ffd9e2f3\" Tint=\"80\"/>", "<Color V=\"Steel Blue\" Ref=\"RED\"/>",
            "<Color V=\"transparent\" Ref=\"#12g\"/>", "<Color V=\"#+12345\" ThemeColor=\"-5\"/>",
            "<Color V=\"#ff010203\" Tint=\"\u22125\"/>"}) {
        Vectors::Fields const inputs {{"colour", before}, {"xml", xml}};
        KpColor fromTree = before;
        QDomDocument const document = Vectors::treeOf(xml);
        fromTree.parse(document.documentElement());
        theme.add("KpColor::parse(QDomElement const&)", inputs, {{"colour", fromTree}});
        KpColor fromStream = before;
        QXmlStreamReader reader(xml);
        reader.readNextStartElement();
        fromStream.parse(reader);
        theme.add("KpColor::parse(QXmlStreamReader&)", inputs, {{"colour", fromStream}});
    }
}

} // namespace

void Vectors::addDocumentColour(Theme& theme)
{
    addConstruction(theme);
    addQuestions(theme);
    addChanges(theme);
    addRecords(theme);
    addWriting(theme);
    addReading(theme);
}

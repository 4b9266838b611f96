// SPDX-License-Identifier: MIT
#include "colourtesting.h"
#include "kpcolorio.h"

using ColourTesting::colourOf;

namespace {

QByteArray const streamed = QByteArray::fromHex("000600960128280a0a14141e1e000000010203");

KpColor themeColour()
{
    return colourOf(QColor(1, 2, 3), QColor(10, 20, 30, 40), -50, 6);
}

template <class Value> QByteArray written(Value const& value)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << value;
    return bytes;
}

template <class Value> Value readFrom(QByteArray const& bytes)
{
    Value value;
    QDataStream in(bytes);
    in >> value;
    return value;
}

QString shown(KpColor const& colour)
{
    QString text;
    QDebug(&text) << colour;
    return text.trimmed();
}

} // namespace

class TestKpColorIo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void streamsTheWholeColour();
    void streamsFollowEachOther();
    void streamsContainers();
    void variantKeepsTheTheme();
    void variantOfTheColourItselfLosesTheTheme();
    void variantIsStreamed();
    void showsTheWholeColour_data();
    void showsTheWholeColour();
    void showingKeepsTheSpaces();
};

void TestKpColorIo::streamsTheWholeColour()
{
    QCOMPARE(written(themeColour()).toHex(), streamed.toHex());
    KpColor const read = readFrom<KpColor>(streamed);
    QVERIFY(read == themeColour());
    // A colour is still written as what it is seen as.
    QCOMPARE(written<QColor>(themeColour()).toHex(), QByteArray("0128280a0a14141e1e0000"));
}

void TestKpColorIo::streamsFollowEachOther()
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << themeColour() << qint32(77);
    KpColor colour;
    qint32 number = 0;
    QDataStream in(bytes);
    in >> colour >> number;
    QVERIFY(colour == themeColour());
    QCOMPARE(number, 77);
    QVERIFY(in.atEnd());
}

void TestKpColorIo::streamsContainers()
{
    KpColor const plain = QColor(7, 8, 9);
    QVector<KpColor> const colours {themeColour(), plain, KpColor()};
    QByteArray const bytes = written(colours);
    QCOMPARE(bytes.size(), 4 + 3 * streamed.size());
    QVERIFY(readFrom<QVector<KpColor>>(bytes) == colours);
    QMap<QString, KpColor> const byName {{"fill", themeColour()}, {"line", plain}};
    QVERIFY((readFrom<QMap<QString, KpColor>>(written(byName)) == byName));
}

void TestKpColorIo::variantKeepsTheTheme()
{
    QVariant const variant = QVariant::fromValue(themeColour());
    QCOMPARE(variant.userType(), qMetaTypeId<KpColor>());
    QVERIFY(variant.value<KpColor>() == themeColour());
}

void TestKpColorIo::variantOfTheColourItselfLosesTheTheme()
{
    QVariant const variant = themeColour();
    QCOMPARE(variant.userType(), int(QMetaType::QColor));
    QCOMPARE(variant.value<QColor>(), QColor(10, 20, 30, 40));
    QVERIFY(!variant.canConvert<KpColor>());
}

void TestKpColorIo::variantIsStreamed()
{
    qRegisterMetaTypeStreamOperators<KpColor>("KpColor");
    QVariant const read = readFrom<QVariant>(written(QVariant::fromValue(themeColour())));
    QVERIFY(read.value<KpColor>() == themeColour());
}

void TestKpColorIo::showsTheWholeColour_data()
{
    QTest::addColumn<KpColor>("colour");
    QTest::addColumn<QString>("text");
    QTest::newRow("shaded theme colour") << colourOf(QColor(255, 128, 64), QColor(255, 0, 0), -30,
        4) << "KpColor(QColor(ARGB 1, 1, 0, 0), theme 4, tint -30, reference #ff8040)";
    QTest::newRow("tint without a theme") << colourOf(QColor(1, 2, 3), QColor(255, 255, 255, 0),
        100, 0) << "KpColor(QColor(ARGB 0, 1, 1, 1), theme 0, tint 100, reference #010203)";
    QTest::newRow("plain") << KpColor(QColor(
        0, 255, 0)) << "KpColor(QColor(ARGB 1, 0, 1, 0), theme 0, tint 0, reference #00ff00)";
    QTest::newRow("invalid") << KpColor()
                             << "KpColor(QColor(Invalid), theme 0, tint 0, reference #000000)";
}

void TestKpColorIo::showsTheWholeColour()
{
    QFETCH(KpColor, colour);
    QFETCH(QString, text);
    QCOMPARE(shown(colour), text);
}

void TestKpColorIo::showingKeepsTheSpaces()
{
    QString text;
    QDebug(&text) << KpColor() << 1 << 2;
    QCOMPARE(text.trimmed(),
        QString("KpColor(QColor(Invalid), theme 0, tint 0, reference #000000) 1 2"));
    text.clear();
    QDebug(&text).nospace() << 1 << KpColor() << 2;
    QCOMPARE(text, QString("1KpColor(QColor(Invalid), theme 0, tint 0, reference #000000)2"));
}

QTEST_APPLESS_MAIN(TestKpColorIo)
#include "tst_kpcolorio.moc"

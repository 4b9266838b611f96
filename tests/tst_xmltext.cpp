// SPDX-License-Identifier: MIT
#include "xmltext_p.h"

#include <QtTest>

/** What a text of XML can hold. */
class TestXmlText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void controlsAreReplacedOrKept()
    {
        for (ushort code = 0; code < 0x100; ++code) {
            QString const text = 'x' + QString(QChar(code)) + 'y';
            QString const replaced = 'x' + QString(QChar(0xFFFD)) + 'y';
            bool const isHeld = code == 0x09 || code == 0x0A || code == 0x0D || code >= 0x20;
            QCOMPARE(XmlText::isRefusedControl(code), !isHeld && code != 0);
            QCOMPARE(
                XmlText::readable(text, XmlText::Controls::AreReplaced), isHeld ? text : replaced);
            QCOMPARE(
                XmlText::readable(text, XmlText::Controls::AreKept), code != 0 ? text : replaced);
        }
    }

    void whatNoReaderTakesIsReplaced_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        auto const row = [](char const* name, char16_t const* text, char16_t const* expected) {
            QTest::newRow(name) << QString::fromUtf16(text) << QString::fromUtf16(expected);
        };
        row("empty", u"", u"");
        row("pair", u"a\xD83D\xDE00z", u"a\xD83D\xDE00z");
        row("two pairs", u"\xD83D\xDE00\xD83D\xDE00", u"\xD83D\xDE00\xD83D\xDE00");
        row("first half", u"a\xD83Dz", u"a\xFFFDz");
        row("first half at the end", u"a\xD83D", u"a\xFFFD");
        row("second half", u"\xDE00z", u"\xFFFDz");
        row("halves in the wrong order", u"\xDE00\xD83D", u"\xFFFD\xFFFD");
        row("first half before a pair", u"\xD83D\xD83D\xDE00", u"\xFFFD\xD83D\xDE00");
        row("last before the surrogates", u"\xD7FF", u"\xD7FF");
        row("first behind the surrogates", u"\xE000", u"\xE000");
        row("U+FFFD", u"\xFFFD", u"\xFFFD");
        row("U+FFFE", u"a\xFFFE", u"a\xFFFD");
        row("U+FFFF", u"a\xFFFF", u"a\xFFFD");
    }

    void whatNoReaderTakesIsReplaced()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(XmlText::readable(text, XmlText::Controls::AreReplaced), expected);
        QCOMPARE(XmlText::readable(text, XmlText::Controls::AreKept), expected);
    }
};

QTEST_APPLESS_MAIN(TestXmlText)

#include "tst_xmltext.moc"

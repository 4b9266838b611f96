// SPDX-License-Identifier: MIT
#include "xmlelement_p.h"

#include <QtTest>

/** Making DOM elements. */
class TestXmlElement : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void elementBelongsToTheDocument()
    {
        QDomDocument document;
        QDomElement root = XmlElement::append(document, document, "a");
        QDomElement const child = XmlElement::append(root, "b");
        QDomElement const sibling = XmlElement::append(document, root, "c");
        QDomElement const behind = XmlElement::append(document, "d");
        QCOMPARE(document.toString(-1), QString("<a><b/><c/></a><d/>"));
        for (QDomElement const& element : {root, child, sibling, behind})
            QVERIFY(element.ownerDocument() == document);
        QVERIFY(document.firstChild() == root);
        QVERIFY(root.firstChild() == child);
        QVERIFY(root.lastChild() == sibling);
        QVERIFY(document.lastChild() == behind);
    }

    void nothingIsAppendedToNothing()
    {
        QDomNode none;
        QVERIFY(XmlElement::append(none, "a").isNull());
        QVERIFY(none.isNull());
    }
};

QTEST_APPLESS_MAIN(TestXmlElement)

#include "tst_xmlelement.moc"

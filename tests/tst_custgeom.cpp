// SPDX-License-Identifier: MIT
#include "document/exactcopy.h"
#include "export/custgeom.h"
#include "outlinetesting.h"

#include <QDomDocument>

Q_DECLARE_METATYPE(KpReal)
Q_DECLARE_METATYPE(std::shared_ptr<KpPathSegList>)

/** DrawingML out: its guides, its paths, and what both come to in any box. */
class TestCustGeom : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachRuleBecomesGuides_data();
    void eachRuleBecomesGuides();
    void factorsAreFractions_data();
    void factorsAreFractions();
    void equalGuidesAreShared();
    void eachKindBecomesSteps_data();
    void eachKindBecomesSteps();
    void radiiLoseTheirSigns_data();
    void radiiLoseTheirSigns();
    void flagsBecomeAttributes_data();
    void flagsBecomeAttributes();
    void documentIsAShapeTree();
    void namesAreHarmless_data();
    void namesAreHarmless();
    void unitsFollowTheBox_data();
    void unitsFollowTheBox();
    void whatIsNoCoordinateIsAnError_data();
    void whatIsNoCoordinateIsAnError();
    void guidesFollowTheOutline_data();
    void guidesFollowTheOutline();
};

namespace {

QString const drawingNamespace = "http://schemas.openxmlformats.org/drawingml/2006/main";
QString const presentationNamespace = "http://schemas.openxmlformats.org/presentationml/2006/main";

std::shared_ptr<KpPathSegList> listOf(std::initializer_list<KpPathSeg*> const& segs)
{
    auto list = std::make_shared<KpPathSegList>();
    for (KpPathSeg* const seg : segs)
        list->addTail(seg);
    return list;
}

KpReal fixed(double value)
{
    return KpReal(KpReal::Absolute, 0, value);
}

KpPoint at(double x, double y)
{
    return KpPoint(fixed(x), fixed(y));
}

KpPathSeg* move(KpPoint const& point)
{
    return new KpPathSegMoveTo(point, nullptr);
}

KpPathSeg* line(KpPoint const& point)
{
    return new KpPathSegLineTo(point, nullptr);
}

KpPathSeg* ellipse(KpPoint const& centre, KpReal const& a, KpReal const& b)
{
    auto* const seg = new KpPathSegEllipse(centre, KpReal(), KpReal(), nullptr);
    seg->a = a;
    seg->b = b;
    return seg;
}

CustomShape customShape(
    std::shared_ptr<KpPathSegList> const& list, QSizeF const& box = QSizeF(240, 160))
{
    return {"shape", "a.xml", box, {{"", QSizeF(), std::nullopt, list}}};
}

QByteArray written(CustomShape const& shape)
{
    Diagnostics diagnostics;
    return custGeomDocument({shape}, diagnostics).value_or(QByteArray());
}

/** All elements with this name in document order. */
QVector<QDomElement> elements(QDomDocument document, QString const& name)
{
    QVector<QDomElement> found;
    QDomNodeList const nodes = document.elementsByTagNameNS(drawingNamespace, name);
    for (int i = 0; i < nodes.size(); ++i)
        found << nodes.at(i).toElement();
    return found;
}

QDomDocument parsed(QByteArray const& xml)
{
    QDomDocument document;
    document.setContent(xml, true);
    return document;
}

/** "name = formula", one for each guide. */
QStringList guides(QByteArray const& xml)
{
    QStringList texts;
    for (QDomElement const& guide : elements(parsed(xml), "gd"))
        texts << guide.attribute("name") + " = " + guide.attribute("fmla");
    return texts;
}

/** The steps of the first path: name, attributes and points of each. */
QStringList steps(QByteArray const& xml)
{
    QStringList texts;
    QDomElement const path = elements(parsed(xml), "path").value(0);
    for (QDomElement step = path.firstChildElement(); !step.isNull();
         step = step.nextSiblingElement()) {
        QString text = step.localName();
        for (char const* const attribute : {"wR", "hR", "stAng", "swAng"}) {
            if (step.hasAttribute(attribute))
                text += ' ' + step.attribute(attribute);
        }
        for (QDomElement point = step.firstChildElement(); !point.isNull();
             point = point.nextSiblingElement())
            text += ' ' + point.attribute("x") + ',' + point.attribute("y");
        texts << text;
    }
    return texts;
}

/** Computes guides as a program does that rounds each of them to a whole number. */
class Evaluator
{
public:
    Evaluator(QDomDocument const& document, qint64 width, qint64 height)
        : m_values {{"l", 0}, {"t", 0}, {"r", width}, {"b", height}, {"w", width}, {"h", height},
            {"ss", std::min(width, height)}}
    {
        for (QDomElement const& guide : elements(document, "gd")) {
            m_values.insert(guide.attribute("name"), resultOf(guide.attribute("fmla").split(' ')));
        }
    }

    /** Of a number or a name; NaN for a name that no guide before has. */
    double valueOf(QString const& text) const
    {
        bool isNumber = false;
        qint64 const number = text.toLongLong(&isNumber);
        return isNumber ? double(number) : m_values.value(text, Testing::notANumber);
    }

private:
    double resultOf(QStringList const& formula) const
    {
        QString const operation = formula.value(0);
        double const x = valueOf(formula.value(1));
        if (operation == "abs")
            return std::abs(x);
        double const y = valueOf(formula.value(2));
        double const z = valueOf(formula.value(3));
        if (operation == "*/")
            return std::round(x * y / z);
        return operation == "+-" ? x + y - z : Testing::notANumber;
    }

    QMap<QString, double> m_values;
};

/** Where the points of all paths lie, and the radii of arcs, in the order of the document. */
QVector<double> evaluated(QDomDocument const& document, qint64 width, qint64 height)
{
    Evaluator const evaluator(document, width, height);
    QVector<double> numbers;
    for (QDomElement const& path : elements(document, "path")) {
        for (QDomElement step = path.firstChildElement(); !step.isNull();
             step = step.nextSiblingElement()) {
            if (step.localName() == "arcTo") {
                numbers << evaluator.valueOf(step.attribute("wR"))
                        << evaluator.valueOf(step.attribute("hR"));
            }
            for (QDomElement point = step.firstChildElement(); !point.isNull();
                 point = point.nextSiblingElement()) {
                numbers << evaluator.valueOf(point.attribute("x"))
                        << evaluator.valueOf(point.attribute("y"));
            }
        }
    }
    return numbers;
}

/** The same of an outline whose values are those for the box, in its units. */
QVector<double> expectedNumbers(KpPathSegList const& list)
{
    QVector<double> numbers;
    QPointF start(0, 0);
    bool isOpen = false;
    auto const add = [&numbers](
                         KpPoint const& point) { numbers << point.x.value << point.y.value; };
    for (KpPathSeg* const seg : list.segs) {
        if (KpPathSegEllipse const* const round = seg->toEllipse()) {
            start = {round->pt.x.value + std::abs(round->a.value), round->pt.y.value};
            numbers << start.x() << start.y() << std::abs(round->a.value)
                    << std::abs(round->b.value);
            isOpen = false;
            continue;
        }
        if (seg->type == KpPathSeg::SegMoveTo)
            start = {seg->pt.x.value, seg->pt.y.value};
        else if (!isOpen)
            numbers << start.x() << start.y(); // the drawing goes on from there
        isOpen = true;
        if (KpPathSegCurveTo const* const curve = seg->toCurveTo()) {
            add(curve->ctrl1);
            add(curve->ctrl2);
        }
        add(seg->pt);
    }
    return numbers;
}

KpReal tameReal(QRandomGenerator& random)
{
    auto const base = qint16(random.bounded(9)); // 8 is no rule
    bool const isLength = base == KpReal::FromRight || base == KpReal::FromBottom;
    double const rate = isLength ? random.bounded(300.0) - 50 : random.bounded(3.0) - 1;
    return KpReal(base, rate, random.bounded(500.0) - 100);
}

KpPoint tamePoint(QRandomGenerator& random)
{
    return KpPoint(tameReal(random), tameReal(random));
}

std::shared_ptr<KpPathSegList> tameList(QRandomGenerator& random, double scale)
{
    auto list = std::make_shared<KpPathSegList>();
    list->closed = random.bounded(2) == 1;
    for (int i = 0; i < 12; ++i) {
        switch (random.bounded(4)) {
        case 0:
            list->addTail(move(tamePoint(random)));
            break;
        case 1:
            list->addTail(line(tamePoint(random)));
            break;
        case 2:
            list->addTail(new KpPathSegCurveTo(
                tamePoint(random), tamePoint(random), tamePoint(random), nullptr));
            break;
        default:
            list->addTail(ellipse(tamePoint(random), tameReal(random), tameReal(random)));
            break;
        }
    }
    // Lengths suit the box, as they do in documents.
    auto const fit = [scale](KpReal& real) {
        real.value *= scale;
        if (real.base == KpReal::FromRight || real.base == KpReal::FromBottom)
            real.rate *= scale;
    };
    for (KpPathSeg* const seg : list->segs) {
        fit(seg->pt.x);
        fit(seg->pt.y);
        if (KpPathSegCurveTo* const curve = seg->toCurveTo()) {
            for (KpReal* const real :
                {&curve->ctrl1.x, &curve->ctrl1.y, &curve->ctrl2.x, &curve->ctrl2.y})
                fit(*real);
        } else if (KpPathSegEllipse* const round = seg->toEllipse()) {
            fit(round->a);
            fit(round->b);
        }
    }
    return list;
}

} // namespace

void TestCustGeom::eachRuleBecomesGuides_data()
{
    QTest::addColumn<int>("base");
    QTest::addColumn<double>("rate");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<QString>("x");
    QTest::newRow("absolute") << 0 << 0.25 << QStringList() << "95250";
    QTest::newRow("part of the width")
        << 1 << 0.25 << QStringList {"x1 = */ w 25000 100000"} << "x1";
    QTest::newRow("part of the height")
        << 2 << 0.25 << QStringList {"y1 = */ h 25000 100000"} << "y1";
    QTest::newRow("from the right") << 3 << 4.0 << QStringList {"x1 = +- r 0 38100"} << "x1";
    QTest::newRow("from the bottom") << 4 << -4.0 << QStringList {"y1 = +- b 0 -38100"} << "y1";
    QTest::newRow("part of the side")
        << 5 << 0.5 << QStringList {"s1 = */ ss 50000 100000"} << "s1";
    QTest::newRow("side from the right")
        << 6 << 0.5 << QStringList {"s1 = */ ss 50000 100000", "x1 = +- r 0 s1"} << "x1";
    QTest::newRow("side from the bottom")
        << 7 << 0.5 << QStringList {"s1 = */ ss 50000 100000", "y1 = +- b 0 s1"} << "y1";
    QTest::newRow("no rule") << 8 << 0.25 << QStringList() << "95250";
    QTest::newRow("no rule, negative") << -1 << 0.25 << QStringList() << "95250";
}

void TestCustGeom::eachRuleBecomesGuides()
{
    QFETCH(int, base);
    QFETCH(double, rate);
    QFETCH(QStringList, expected);
    QFETCH(QString, x);
    QByteArray const xml =
        written(customShape(listOf({move(KpPoint(KpReal(qint16(base), rate, 10), fixed(0)))})));
    QCOMPARE(guides(xml), expected);
    QCOMPARE(steps(xml), QStringList {"moveTo " + x + ",0"});
}

void TestCustGeom::factorsAreFractions_data()
{
    QTest::addColumn<double>("rate");
    QTest::addColumn<QString>("expected");
    QTest::newRow("nothing") << 0.0 << "0 100000";
    QTest::newRow("whole") << 1.0 << "100000 100000";
    QTest::newRow("negative") << -0.5 << "-50000 100000";
    QTest::newRow("beyond the box") << 2.5 << "250000 100000";
    QTest::newRow("five digits") << 0.12345 << "12345 100000";
    QTest::newRow("a third") << 1.0 / 3.0 << "1 3";
    QTest::newRow("minus two thirds") << -2.0 / 3.0 << "-2 3";
    QTest::newRow("a third in six digits") << 0.333333 << "333333 1000000";
    QTest::newRow("six digits") << 0.123457 << "123457 1000000";
    QTest::newRow("a circle's") << 0.55228474983079340 << "195025 353124";
    QTest::newRow("too small") << 1e-9 << "0 1";
    QTest::newRow("nearly whole") << 0.9999999 << "1 1";
}

void TestCustGeom::factorsAreFractions()
{
    QFETCH(double, rate);
    QFETCH(QString, expected);
    QByteArray const xml =
        written(customShape(listOf({move(KpPoint(KpReal(1, rate, 0), fixed(0)))})));
    QCOMPARE(guides(xml), QStringList {"x1 = */ w " + expected});
}

void TestCustGeom::equalGuidesAreShared()
{
    KpReal const half(6, 0.5, 0);
    CustomShape shape = customShape(
        listOf({move(KpPoint(half, KpReal(5, 0.5, 0))), line(KpPoint(half, KpReal(7, 0.5, 0)))}));
    shape.outlines.push_back(
        {"", QSizeF(), std::nullopt, listOf({move(KpPoint(half, KpReal(7, 0.5, 1)))})});
    QByteArray const xml = written(shape);
    QCOMPARE(
        guides(xml), QStringList({"s1 = */ ss 50000 100000", "x1 = +- r 0 s1", "y1 = +- b 0 s1"}));
    QCOMPARE(steps(xml), QStringList({"moveTo x1,s1", "lnTo x1,y1"}));
    QCOMPARE(elements(parsed(xml), "path").size(), 2);
}

void TestCustGeom::eachKindBecomesSteps_data()
{
    QTest::addColumn<std::shared_ptr<KpPathSegList>>("list");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("lines") << listOf({move(at(1, 2)), line(at(3, 4))})
                           << QStringList {"moveTo 9525,19050", "lnTo 28575,38100"};
    QTest::newRow("short line") << listOf({move(at(1, 2)), line(at(1.5, 2))})
                                << QStringList {"moveTo 9525,19050", "lnTo 14288,19050"};
    QTest::newRow("curve") << listOf(
        {move(at(0, 0)), new KpPathSegCurveTo(at(1, 2), at(3, 4), at(5, 6), nullptr)})
                           << QStringList {
                                  "moveTo 0,0", "cubicBezTo 9525,19050 28575,38100 47625,57150"};
    QTest::newRow("no move") << listOf({line(at(1, 2))})
                             << QStringList {"moveTo 0,0", "lnTo 9525,19050"};
    QTest::newRow("ellipse") << listOf({ellipse(at(4, 5), fixed(2), fixed(3))})
                             << QStringList {
                                    "moveTo x1,47625", "arcTo 19050 28575 0 21600000", "close"};
    QTest::newRow("on from an ellipse")
        << listOf({ellipse(at(4, 5), fixed(2), fixed(3)), line(at(0, 0))})
        << QStringList {"moveTo x1,47625", "arcTo 19050 28575 0 21600000", "close",
               "moveTo x1,47625", "lnTo 0,0"};
    auto closed = listOf({move(at(1, 2)), line(at(3, 4))});
    closed->closed = true;
    QTest::newRow("closed") << closed
                            << QStringList {"moveTo 9525,19050", "lnTo 28575,38100", "close"};
    auto closedEllipse = listOf({ellipse(at(4, 5), fixed(2), fixed(3))});
    closedEllipse->closed = true;
    QTest::newRow("closed ellipse")
        << closedEllipse
        << QStringList {"moveTo x1,47625", "arcTo 19050 28575 0 21600000", "close"};
    QTest::newRow("nothing") << listOf({}) << QStringList();
}

void TestCustGeom::eachKindBecomesSteps()
{
    QFETCH(std::shared_ptr<KpPathSegList>, list);
    QFETCH(QStringList, expected);
    QByteArray const xml = written(customShape(list));
    QCOMPARE(steps(xml), expected);
    if (xml.contains("x1"))
        QCOMPARE(guides(xml), QStringList {"x1 = +- 38100 19050 0"});
}

void TestCustGeom::radiiLoseTheirSigns_data()
{
    QTest::addColumn<int>("base");
    QTest::addColumn<double>("rate");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("absolute") << 0 << 0.0 << QStringList {"x1 = +- 0 66675 0"};
    QTest::newRow("part of the width")
        << 1 << -0.25 << QStringList {"x1 = */ w 25000 100000", "x2 = +- 0 x1 0"};
    QTest::newRow("part of the side")
        << 5 << -0.25 << QStringList {"s1 = */ ss 25000 100000", "x1 = +- 0 s1 0"};
    QTest::newRow("from the right")
        << 3 << 4.0 << QStringList {"x1 = +- r 0 38100", "a1 = abs x1", "x2 = +- 0 a1 0"};
    QTest::newRow("side from the bottom") << 7 << 2.0
                                          << QStringList {"s1 = */ ss 200000 100000",
                                                 "y1 = +- b 0 s1", "a1 = abs y1", "x1 = +- 0 a1 0"};
}

void TestCustGeom::radiiLoseTheirSigns()
{
    QFETCH(int, base);
    QFETCH(double, rate);
    QFETCH(QStringList, expected);
    QCOMPARE(guides(written(customShape(
                 listOf({ellipse(at(0, 0), KpReal(qint16(base), rate, -7), fixed(-1))})))),
        expected);
}

void TestCustGeom::flagsBecomeAttributes_data()
{
    QTest::addColumn<bool>("noFill");
    QTest::addColumn<bool>("noLine");
    for (int flags = 0; flags < 4; ++flags)
        QTest::newRow(qPrintable(QString::number(flags))) << bool(flags & 1) << bool(flags & 2);
}

void TestCustGeom::flagsBecomeAttributes()
{
    QFETCH(bool, noFill);
    QFETCH(bool, noLine);
    auto list = listOf({move(at(0, 0))});
    list->noFill = noFill;
    list->noLine = noLine;
    QDomElement const path = elements(parsed(written(customShape(list))), "path").value(0);
    QCOMPARE(path.attribute("fill", "-"), QString(noFill ? "none" : "-"));
    QCOMPARE(path.attribute("stroke", "-"), QString(noLine ? "0" : "-"));
}

void TestCustGeom::documentIsAShapeTree()
{
    CustomShape shape = customShape(listOf({move(at(0, 0))}));
    shape.outlines.front().name = "rim";
    QByteArray const expected = R"(<?xml version="1.0" encoding="UTF-8"?>
<p:spTree xmlns:p="http://schemas.openxmlformats.org/presentationml/2006/main" xmlns:a="http://schemas.openxmlformats.org/drawingml/2006/main">
 <p:nvGrpSpPr>
  <p:cNvPr id="1" name=""/>
  <p:cNvGrpSpPr/>
  <p:nvPr/>
 </p:nvGrpSpPr>
 <p:grpSpPr/>
 <p:sp>
  <p:nvSpPr>
   <p:cNvPr id="2" name="shape"/>
   <p:cNvSpPr/>
   <p:nvPr/>
  </p:nvSpPr>
  <p:spPr>
   <a:xfrm>
    <a:off x="0" y="0"/>
    <a:ext cx="2286000" cy="1524000"/>
   </a:xfrm>
   <a:custGeom>
    <a:avLst/>
    <a:gdLst/>
    <a:ahLst/>
    <a:cxnLst/>
    <a:rect l="l" t="t" r="r" b="b"/>
    <a:pathLst>
     <!-- rim -->
     <a:path>
      <a:moveTo>
       <a:pt x="0" y="0"/>
      </a:moveTo>
     </a:path>
    </a:pathLst>
   </a:custGeom>
  </p:spPr>
 </p:sp>
</p:spTree>
)";
    QCOMPARE(written(shape), expected);
}

void TestCustGeom::namesAreHarmless_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("comment");
    QTest::newRow("plain") << "Body"
                           << " Body ";
    QTest::newRow("hyphens") << "a--b---c-"
                             << " a- -b- - -c- ";
    QTest::newRow("end of a comment") << "-->"
                                      << " - -> ";
    QTest::newRow("markup") << "<a:path/>&amp;"
                            << " <a:path/>&amp; ";
    QTest::newRow("control") << QString("a") + QChar(1) << QString(" a") + QChar(0xFFFD) + ' ';
    QTest::newRow("lone surrogate") << QString(QChar(0xD800)) << QString(" ") + QChar(0xFFFD) + ' ';
}

void TestCustGeom::namesAreHarmless()
{
    QFETCH(QString, name);
    QFETCH(QString, comment);
    CustomShape shape = customShape(listOf({move(at(0, 0))}));
    shape.outlines.front().name = name;
    QDomDocument const document = parsed(written(shape));
    QDomElement const path = elements(document, "path").value(0);
    QCOMPARE(path.previousSibling().toComment().data(), comment);
    shape.outlines.front().name.clear();
    shape.name = name;
    QByteArray const xml = written(shape);
    QVERIFY(!xml.contains("<!--"));
    QDomDocument named = parsed(xml);
    QCOMPARE(named.elementsByTagNameNS(presentationNamespace, "cNvPr")
                 .at(1)
                 .toElement()
                 .attribute("name"),
        comment.contains(QChar(0xFFFD)) ? comment.trimmed() : name);
}

void TestCustGeom::unitsFollowTheBox_data()
{
    QTest::addColumn<QSizeF>("box");
    QTest::addColumn<double>("expected");
    QTest::newRow("usual") << QSizeF(240, 160) << 9525.0;
    QTest::newRow("smallest usual") << QSizeF(21, 1000) << 9525.0;
    QTest::newRow("small") << QSizeF(20, 1000) << 95250.0;
    QTest::newRow("one unit") << QSizeF(1, 1) << 952500.0;
    QTest::newRow("picture") << QSizeF(10000, 5000) << 9525.0;
    QTest::newRow("large") << QSizeF(1e6, 1e6) << 952.5;
    QTest::newRow("large and thin") << QSizeF(1e6, 10) << 95250.0;
    QTest::newRow("as far as DrawingML goes") << QSizeF(1e6, 1e-6) << 9525000.0;
    QTest::newRow("no side at all") << QSizeF(1e-200, 1) << 9.525e12;
}

void TestCustGeom::unitsFollowTheBox()
{
    QFETCH(QSizeF, box);
    QFETCH(double, expected);
    QCOMPARE(unitScale(box), expected);
}

void TestCustGeom::whatIsNoCoordinateIsAnError_data()
{
    QTest::addColumn<KpReal>("real");
    QTest::addColumn<bool>("isWritten");
    using Testing::infinite;
    using Testing::notANumber;
    QTest::newRow("largest length") << fixed(2863311529.0) << true;
    QTest::newRow("too large a length") << fixed(2863311530.0) << false;
    QTest::newRow("largest rate") << KpReal(1, 1e7, 0) << true;
    QTest::newRow("too large a rate") << KpReal(1, 1e8, 0) << false;
    QTest::newRow("endless rate") << KpReal(5, infinite, 0) << false;
    QTest::newRow("value that is no number") << fixed(notANumber) << false;
    QTest::newRow("value that no rule asks for") << KpReal(1, 0.5, notANumber) << true;
    for (qint16 base = 1; base <= 7; ++base) {
        QTest::newRow(qPrintable(QString("rate that is no number, rule %1").arg(base)))
            << KpReal(base, notANumber, 0) << false;
    }
}

void TestCustGeom::whatIsNoCoordinateIsAnError()
{
    QFETCH(KpReal, real);
    QFETCH(bool, isWritten);
    for (auto const& list :
        {listOf({move(KpPoint(fixed(0), real))}), listOf({ellipse(at(0, 0), fixed(1), real)})}) {
        Diagnostics diagnostics;
        QCOMPARE(custGeomDocument({customShape(list)}, diagnostics).has_value(), isWritten);
        QCOMPARE(diagnostics.size(), isWritten ? 0 : 1);
        if (!isWritten) {
            QCOMPARE(diagnostics.at(0).file, QString("a.xml"));
            QCOMPARE(diagnostics.at(0).text,
                QString("a coordinate is not a number or too large for DrawingML"));
        }
    }
}

void TestCustGeom::guidesFollowTheOutline_data()
{
    QTest::addColumn<QSizeF>("box");
    QTest::newRow("usual") << QSizeF(240, 160);
    QTest::newRow("tiny") << QSizeF(1, 3);
    QTest::newRow("parts of units") << QSizeF(21.3, 99.7);
    QTest::newRow("picture") << QSizeF(10000, 7000);
    QTest::newRow("large") << QSizeF(1e6, 9e5);
    QTest::newRow("thin") << QSizeF(2e4, 3);
}

/** In the shape's own box and as it is made larger, each coordinate is within 1e-5 of a side. */
void TestCustGeom::guidesFollowTheOutline()
{
    QFETCH(QSizeF, box);
    QRandomGenerator random = Testing::seededRandom(21);
    int compared = 0;
    for (int round = 0; round < 40; ++round) {
        auto const list = tameList(random, std::min(box.width(), box.height()) / 200);
        QDomDocument const document = parsed(written(customShape(list, box)));
        QDomElement const ext = elements(document, "ext").value(0);
        for (QSizeF const& factor :
            {QSizeF(1, 1), QSizeF(1.37, 1), QSizeF(1, 2.81), QSizeF(7, 3)}) {
            auto const width = std::llround(ext.attribute("cx").toDouble() * factor.width());
            auto const height = std::llround(ext.attribute("cy").toDouble() * factor.height());
            double const scale = unitScale(box);
            auto const resized = exactCopy(*list);
            resized->updateValue(double(width) / scale, double(height) / scale);
            QVector<double> const actual = evaluated(document, width, height);
            QVector<double> const expected = expectedNumbers(*resized);
            QCOMPARE(actual.size(), expected.size());
            double const tolerance = 1e-5 * double(std::min(width, height));
            for (int i = 0; i < actual.size(); ++i) {
                double const off = std::abs(actual.at(i) - expected.at(i) * scale);
                // Written so that NaN fails.
                QVERIFY2(off <= tolerance,
                    qPrintable(QString("number %1 of round %2 is off by %3 of %4")
                                   .arg(i)
                                   .arg(round)
                                   .arg(off)
                                   .arg(tolerance)));
                ++compared;
            }
        }
    }
    QVERIFY(compared > 3000);
}

QTEST_GUILESS_MAIN(TestCustGeom)

#include "tst_custgeom.moc"

// SPDX-License-Identifier: MIT
#include "check/outlinediff.h"
#include "documenttesting.h"

using namespace DocumentTesting;

namespace {

/** The differences of two documents, a line each; "B: " is before what only the second holds. */
QStringList differences(QByteArray const& before, QByteArray const& after,
    std::optional<double> tolerance = std::nullopt)
{
    QStringList lines;
    reportDifferences(documentOf(before), documentOf(after), tolerance,
        [&lines](OutlineDifference const& difference) {
            bool const isAfter = difference.side == OutlineDifference::Side::After;
            lines << (isAfter ? "B: " : "") + differenceText(difference);
            return true;
        });
    return lines;
}

QByteArray document(QByteArray const& shapes)
{
    return "<D>" + shapes + "</D>";
}

/** A document with one move to a point whose x has these attributes. */
QByteArray withX(QByteArray const& attributes)
{
    return document(shape("", "<MoveTo><X " + attributes + "/><Y V=\"0\" B=\"0\"/></MoveTo>"));
}

QByteArray geometry(QByteArray const& attributes)
{
    return document("<Geometry " + attributes + "/>");
}

} // namespace

class TestOutlineDiff : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void otherSpellingsAreTheSame_data();
    void otherSpellingsAreTheSame();
    void differencesAreNamed_data();
    void differencesAreNamed();
    void toleranceIsForValues_data();
    void toleranceIsForValues();
    void segmentsAreMatched_data();
    void segmentsAreMatched();
    void outlinesAreMatched_data();
    void outlinesAreMatched();
    void effortIsBounded_data();
    void effortIsBounded();
    void longNamesAreCut_data();
    void longNamesAreCut();
    void reportMayEndIt();
    void everyChangeIsFound();
    void whatIsOnlyThereIsSoFromBothSides();
};

void TestOutlineDiff::otherSpellingsAreTheSame_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    auto const row = [](char const* name, QByteArray const& before, QByteArray const& after) {
        QTest::newRow(name) << before << after;
    };
    row("nothing in both", "<D/>", "<E a=\"1\">text</E>");
    row("notation", withX("V=\"30\" B=\"1\" P=\"0.5\""),
        withX("P=\" 5e-1 \" V=\"3.0E1\" B=\"+01\""));
    row("seventh digit of a value", withX("V=\"1.23456789\" B=\"0\""),
        withX("V=\"1.23457\" B=\"0\""));
    row("sixth digit of a rate", withX("V=\"1\" B=\"1\" P=\"0.333333\""),
        withX("V=\"1\" B=\"1\" P=\"0.333334\""));
    row("sixth digit of a long rate", withX("V=\"1\" B=\"3\" P=\"1.0000049\""),
        withX("V=\"1\" B=\"3\" P=\"1\""));
    row("not a number", withX("V=\"nan\" B=\"1\" P=\"nan\""), withX("V=\"nan\" B=\"1\" P=\"nan\""));
    row("infinite", withX("V=\"-inf\" B=\"1\" P=\"inf\""), withX("V=\"-inf\" B=\"1\" P=\"inf\""));
    row("zero with a sign", withX("V=\"-0\" B=\"0\""), withX("V=\"0\" B=\"0\""));
    row("rate of an absolute coordinate", withX("V=\"1\" B=\"0\" P=\"7\""),
        withX("V=\"1\" B=\"0\""));
    row("rule of a new segment", withX("V=\"1\""), withX("V=\"1\" B=\"1\" P=\"0\""));
    row("missing coordinate", document(shape("", "<LineTo/>")),
        document(shape("", "<LineTo><Y V=\"0\"/><X V=\"0\"/></LineTo>")));
    row("flags", geometry("Closed=\"TRUE\" NoFill=\"0\""), geometry("Closed=\"1\""));
    row("what is foreign",
        document("<S Name=\"a\" Width=\"3\"><!-- c -->" + geometry("Closed=\"1\"") + "</S>"),
        document("<T><U Name=\"b\"/>" + geometry("Closed=\"1\"") + "</T>"));
    row("white space in names", document(shape(" a \n b", "")), document(shape("a b", "")));
    row("fill rule without a meaning", "<S FillRule=\"odd\"><Geometry Closed=\"1\"/></S>",
        "<S><Geometry Closed=\"1\"/></S>");
}

void TestOutlineDiff::otherSpellingsAreTheSame()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QCOMPARE(differences(before, after), QStringList());
    QCOMPARE(differences(after, before), QStringList());
}

void TestOutlineDiff::differencesAreNamed_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<QString>("line");
    auto const row = [](char const* name, QByteArray const& before, QByteArray const& after,
                         char const* line) { QTest::newRow(name) << before << after << line; };
    auto const rowOfX = [&row](char const* name, QByteArray const& before, QByteArray const& after,
                            QByteArray const& what) {
        row(name, withX(before), withX(after), "outline 1, segment 1 (MoveTo), X: " + what);
    };
    rowOfX("value", "V=\"10\" B=\"0\"", "V=\"12.5\" B=\"0\"", "value 10 -> 12.5");
    rowOfX("sixth digit of a value", "V=\"100000\" B=\"0\"", "V=\"100001\" B=\"0\"",
        "value 100000 -> 100001");
    rowOfX("rule and rate", "V=\"10\" B=\"1\" P=\"0.5\"", "V=\"10\" B=\"3\" P=\"10\"",
        "rule width -> right, rate 0.5 -> 10");
    rowOfX("rules without a name", "V=\"0\" B=\"8\"", "V=\"0\" B=\"-1\"", "rule 8 -> -1");
    rowOfX("rule only", "V=\"0\" B=\"0\" P=\"7\"", "V=\"0\" B=\"6\" P=\"7\"",
        "rule absolute -> right-side");
    rowOfX("rate", "V=\"0\" B=\"3\" P=\"250\"", "V=\"0\" B=\"3\" P=\"250.001\"",
        "rate 250 -> 250.001");
    rowOfX("two in the sixth digit of a rate", "V=\"0\" B=\"1\" P=\"0.333333\"",
        "V=\"0\" B=\"1\" P=\"0.333335\"", "rate 0.333333 -> 0.333335");
    rowOfX("not a number any more", "V=\"nan\" B=\"0\"", "V=\"0\" B=\"0\"", "value nan -> 0");
    rowOfX("the other infinity", "V=\"inf\" B=\"0\"", "V=\"-inf\" B=\"0\"", "value inf -> -inf");
    rowOfX("infinite rate", "V=\"0\" B=\"1\" P=\"inf\"", "V=\"0\" B=\"1\" P=\"1e308\"",
        "rate inf -> 1e+308");
    row("flags", geometry("Closed=\"1\" NoLine=\"1\""), geometry("Closed=\"0\" NoFill=\"1\""),
        "outline 1: Closed 1 -> 0, NoFill 0 -> 1, NoLine 1 -> 0");
    row("fill rule", "<S FillRule=\"evenodd\"><Geometry Closed=\"1\"/></S>",
        "<S FillRule=\"nonzero\"><Geometry Closed=\"1\"/></S>",
        "outline 1: fill rule evenodd -> nonzero");
    row("fill rule left out", "<S FillRule=\"evenodd\" Name=\"a\"><Geometry Closed=\"1\"/></S>",
        "<S Name=\"a\"><Geometry Closed=\"1\"/></S>", "outline 1 \"a\": fill rule evenodd -> none");
    row("name", document(shape("a", line(1, 2))), document(shape("b", line(1, 2))),
        "outline 1 \"a\": name \"a\" -> \"b\"");
    row("kind", document(shape("a", "<MoveTo/>")), document(shape("a", "<LineTo/>")),
        "outline 1 \"a\", segment 1 (MoveTo): kind MoveTo -> LineTo");
    row("radius", document(shape("a", "<Ellipse/>")),
        document(shape("a", "<Ellipse><B V=\"1\" B=\"2\" P=\"0\"/></Ellipse>")),
        "outline 1 \"a\", segment 1 (Ellipse), B: value 0 -> 1");
    row("name with a line break", document("<S Name=\"a&#x85;b\"><Geometry Closed=\"1\"/></S>"),
        document("<S Name=\"a&#x85;b\"><Geometry Closed=\"0\"/></S>"),
        "outline 1 \"a b\": Closed 1 -> 0");
}

void TestOutlineDiff::differencesAreNamed()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QFETCH(QString, line);
    QCOMPARE(differences(before, after), QStringList(line));
}

void TestOutlineDiff::toleranceIsForValues_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<double>("tolerance");
    QTest::addColumn<QString>("what"); // empty: they are the same
    auto const row = [](char const* name, char const* before, char const* after, double tolerance,
                         char const* what) {
        QTest::newRow(name) << withX(before) << withX(after) << tolerance << what;
    };
    row("as far as allowed", "V=\"10\" B=\"0\"", "V=\"10.5\" B=\"0\"", 0.5, "");
    row("farther", "V=\"10\" B=\"0\"", "V=\"10.5\" B=\"0\"", 0.49, "value 10 -> 10.5");
    row("none, and equal", "V=\"0.1\" B=\"0\"", "V=\"1e-1\" B=\"0\"", 0.0, "");
    row("none, and the eighth digit", "V=\"1.2345678\" B=\"0\"", "V=\"1.2345679\" B=\"0\"", 0.0,
        "value 1.2345678 -> 1.2345679");
    row("less than six digits", "V=\"123456.1\" B=\"0\"", "V=\"123456.2\" B=\"0\"", 0.05,
        "value 123456.1 -> 123456.2");
    row("not a number", "V=\"nan\" B=\"0\"", "V=\"nan\" B=\"0\"", 1.0, "");
    row("one not a number", "V=\"nan\" B=\"0\"", "V=\"1\" B=\"0\"", 1e300, "value nan -> 1");
    row("infinite", "V=\"inf\" B=\"0\"", "V=\"inf\" B=\"0\"", 0.0, "");
    row("rate", "V=\"0\" B=\"1\" P=\"1\"", "V=\"0\" B=\"1\" P=\"1.1\"", 10.0, "rate 1 -> 1.1");
    row("rule", "V=\"0\" B=\"5\" P=\"1\"", "V=\"0\" B=\"1\" P=\"1\"", 10.0, "rule side -> width");
}

void TestOutlineDiff::toleranceIsForValues()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QFETCH(double, tolerance);
    QFETCH(QString, what);
    QStringList expected;
    if (!what.isEmpty())
        expected << "outline 1, segment 1 (MoveTo), X: " + what;
    QCOMPARE(differences(before, after, tolerance), expected);
}

void TestOutlineDiff::segmentsAreMatched_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<QStringList>("lines");
    QByteArray const start = "<MoveTo><X V=\"0\" B=\"0\"/><Y V=\"0\" B=\"0\"/></MoveTo>";
    auto const row = [](char const* name, QByteArray const& before, QByteArray const& after,
                         QStringList const& lines) {
        QStringList whole;
        for (QString const& text : lines) {
            bool const isAfter = text.startsWith("B: ");
            whole << (isAfter ? "B: " : "") + QString("outline 1 \"a\", ")
                    + text.mid(isAfter ? 3 : 0);
        }
        QTest::newRow(name) << document(shape("a", before)) << document(shape("a", after)) << whole;
    };
    row("inserted", start + line(1, 1) + line(2, 2), start + line(9, 9) + line(1, 1) + line(2, 2),
        {"B: segment 2 (LineTo): only here"});
    row("removed", start + line(1, 1) + line(2, 2), start + line(2, 2),
        {"segment 2 (LineTo): only here"});
    row("appended", start, start + "<Ellipse/>", {"B: segment 2 (Ellipse): only here"});
    row("all removed", start + line(1, 1), "",
        {"segment 1 (MoveTo): only here", "segment 2 (LineTo): only here"});
    row("moved and another inserted", start + line(1, 1) + line(2, 2) + line(3, 3),
        start + line(1, 1) + "<CurveTo/>" + line(2, 5) + line(3, 3),
        {"B: segment 3 (CurveTo): only here",
            "segment 3 (LineTo), Y: rate 0.02 -> 0.05, value 2 -> 5"});
    row("far apart", start + line(1, 1) + line(2, 2) + line(3, 3),
        start + line(1, 4) + line(2, 2) + line(3, 6),
        {"segment 2 (LineTo), Y: rate 0.01 -> 0.04, value 1 -> 4",
            "segment 4 (LineTo), Y: rate 0.03 -> 0.06, value 3 -> 6"});
}

void TestOutlineDiff::segmentsAreMatched()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QFETCH(QStringList, lines);
    QCOMPARE(differences(before, after), lines);
}

void TestOutlineDiff::outlinesAreMatched_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<QStringList>("lines");
    QByteArray const a = shape("a", line(1, 1));
    QByteArray const b = shape("b", line(2, 2));
    QByteArray const c = shape("c", line(3, 3));
    QByteArray const one = shape("", line(1, 1) + line(5, 1));
    QByteArray const two = shape("", line(2, 2) + line(5, 2));
    QByteArray const three = shape("", line(3, 3) + line(5, 3));
    auto const row = [](char const* name, QByteArray const& before, QByteArray const& after,
                         QStringList const& lines) {
        QTest::newRow(name) << document(before) << document(after) << lines;
    };
    row("named one inserted", a + c, a + b + c, {"B: outline 2 \"b\": only here"});
    row("named one removed", a + b + c, a + c, {"outline 2 \"b\": only here"});
    row("one without a name inserted", one + three, one + two + three, {"B: outline 2: only here"});
    row("one without a name removed", one + two + three, two + three, {"outline 1: only here"});
    row("order", a + b + c, b + c + a, {"outline 1 \"a\": moved, outline 3 there"});
    row("order, and one inserted", a + b, shape("x", "") + b + a,
        {"outline 1 \"a\": moved, outline 3 there", "B: outline 1 \"x\": only here"});
    row("inserted and another changed", one + two, one + three + shape("", line(2, 2) + line(5, 7)),
        {"outline 2, segment 2 (LineTo), Y: rate 0.02 -> 0.07, value 2 -> 7",
            "B: outline 2: only here"});
    row("renamed", a + b, a + shape("x", line(2, 2)), {"outline 2 \"b\": name \"b\" -> \"x\""});
    row("one name for several", a + a + b, a + a + a + b, {"B: outline 3 \"a\": only here"});
    row("all removed", a + one, "", {"outline 1 \"a\": only here", "outline 2: only here"});
    row("within another", "<Geometry Closed=\"1\">" + a + "</Geometry>", "<Geometry Closed=\"1\"/>",
        {"outline 2 \"a\": only here"});
}

void TestOutlineDiff::outlinesAreMatched()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QFETCH(QStringList, lines);
    QCOMPARE(differences(before, after), lines);
}

void TestOutlineDiff::effortIsBounded_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<bool>("isEnough");
    // Nothing is the same: 501,501 comparisons tell that, and then each is compared with each. Of
    // the 20 million, four outlines of 2,000 and 1,999 segments leave 2,001,996 to the fifth.
    QTest::newRow("most comparisons") << 2505 << true;
    QTest::newRow("more comparisons") << 2506 << false;
}

void TestOutlineDiff::effortIsBounded()
{
    QFETCH(int, columns);
    QFETCH(bool, isEnough);
    auto const shapes = [](QByteArray const& kind, int count, QByteArray const& last) {
        QByteArray text;
        for (char const* const name : {"a", "b", "c", "d"})
            text += shape(name, kind.repeated(count));
        return document(text + shape("e", last));
    };
    // The one move that is nearer than the lines, unless there is no effort left to look for it.
    QByteArray const move = "<MoveTo/>";
    QByteArray const line = "<LineTo/>";
    QByteArray const other = "<MoveTo><X V=\"1\"/></MoveTo>";
    QStringList const lines = differences(shapes(move, 2000, move.repeated(599)),
        shapes(line, 1999, line.repeated(columns - 1) + other));
    QString const alone =
        QString("B: outline 5 \"e\", segment %1 (MoveTo): only here").arg(columns);
    QCOMPARE(lines.contains(alone), !isEnough);
}

void TestOutlineDiff::longNamesAreCut_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("shown");
    QTest::newRow("longest") << QByteArray(60, 'n') << QString(60, 'n');
    QTest::newRow("longer") << QByteArray(61, 'n') << QString(59, 'n') + QChar(0x2026);
}

void TestOutlineDiff::longNamesAreCut()
{
    QFETCH(QByteArray, name);
    QFETCH(QString, shown);
    QCOMPARE(differences(
                 document(shape(name, "<MoveTo/>")), document(shape(name, "<MoveTo/><LineTo/>"))),
        QStringList("B: outline 1 \"" + shown + "\", segment 2 (LineTo): only here"));
}

void TestOutlineDiff::reportMayEndIt()
{
    OutlineDocument const before =
        documentOf(document(shape("a", line(1, 1) + line(2, 2)) + shape("b", "")));
    OutlineDocument const after =
        documentOf(document(shape("a", line(3, 1) + line(4, 2)) + shape("c", line(1, 1))));
    int count = 0;
    auto const wanting = [&](int most) {
        count = 0;
        reportDifferences(before, after, std::nullopt,
            [&count, most](OutlineDifference const&) { return ++count < most; });
        return count;
    };
    QCOMPARE(wanting(100), 4);
    QCOMPARE(wanting(3), 3);
    QCOMPARE(wanting(1), 1);
}

namespace {

/** A random outline in which every number has its own six digits. */
std::unique_ptr<KpPathSegList> randomOutline(QRandomGenerator& random)
{
    auto list = std::make_unique<KpPathSegList>();
    OutlineTesting::fillRandomly(*list, 1 + random.bounded(12), random);
    return list;
}

/** Changes one number, rule or flag of the outline, so that it is written otherwise. */
void changeOne(KpPathSegList& list, QRandomGenerator& random)
{
    if (random.bounded(8) == 0) {
        list.noFill = !list.noFill;
        return;
    }
    KpReal& real = list.segs.at(random.bounded(list.segs.count()))->pt.y;
    switch (random.bounded(3)) {
    case 0:
        real.base = real.base == 4 ? 3 : 4;
        break;
    case 1:
        real.value =
            std::isfinite(real.value) && std::abs(real.value) < 1e300 ? real.value * 2 + 1 : 5.0;
        break;
    default:
        real.base = 1;
        real.rate =
            std::isfinite(real.rate) && std::abs(real.rate) < 1e300 ? real.rate * 2 + 1 : 5.0;
        break;
    }
}

QByteArray documentWith(std::vector<std::unique_ptr<KpPathSegList>> const& lists)
{
    QByteArray shapes;
    for (auto const& list : lists) {
        QByteArray const xml = OutlineTesting::streamXml(*list);
        shapes += "<S>" + xml + "</S>";
    }
    return document(shapes);
}

} // namespace

void TestOutlineDiff::everyChangeIsFound()
{
    QRandomGenerator random = Testing::seededRandom(21);
    for (int round = 0; round < 300; ++round) {
        std::vector<std::unique_ptr<KpPathSegList>> lists;
        for (int i = random.bounded(4); i >= 0; --i)
            lists.push_back(randomOutline(random));
        QByteArray const before = documentWith(lists);
        QCOMPARE(differences(before, before), QStringList());
        changeOne(*lists[random.bounded(static_cast<quint32>(lists.size()))], random);
        QByteArray const after = documentWith(lists);
        if (after == before)
            continue; // a rule that the writers leave out
        QVERIFY2(!differences(before, after).isEmpty(), (before + '\n' + after).constData());
        QVERIFY2(!differences(after, before).isEmpty(), (before + '\n' + after).constData());
    }
}

void TestOutlineDiff::whatIsOnlyThereIsSoFromBothSides()
{
    QRandomGenerator random = Testing::seededRandom(22);
    for (int round = 0; round < 100; ++round) {
        std::vector<std::unique_ptr<KpPathSegList>> lists;
        for (int i = 0; i < 4; ++i)
            lists.push_back(randomOutline(random));
        QByteArray const before = documentWith(lists);
        int const removed = random.bounded(4);
        lists.erase(lists.begin() + removed);
        QByteArray const after = documentWith(lists);
        QString const line = QString("outline %1: only here").arg(removed + 1);
        QCOMPARE(differences(before, after), QStringList(line));
        QCOMPARE(differences(after, before), QStringList("B: " + line));
    }
}

QTEST_GUILESS_MAIN(TestOutlineDiff)

#include "tst_outlinediff.moc"

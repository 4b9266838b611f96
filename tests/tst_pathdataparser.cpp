// SPDX-License-Identifier: MIT
#include "document/exactpath.h"
#include "export/pathdata.h"
#include "import/pathdataparser.h"
#include "outlinetesting.h"

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

class TestPathDataParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsCommands_data();
    void readsCommands();
    void readsNumbers_data();
    void readsNumbers();
    void readsArcs_data();
    void readsArcs();
    void recognisesEllipses_data();
    void recognisesEllipses();
    void bindsInProportion();
    void tellsTheFirstFault_data();
    void tellsTheFirstFault();
    void keepsWhatStandsBeforeAFault();
    void everyBeginningIsReadOrRefused();
    void isReadAsWritten_data();
    void isReadAsWritten();
    void isDrawnAsBySvg();
    void anythingIsReadOrRefused();
    void readsLongDataInTime();
};

namespace {

/** The data again, absolute and in six digits; the fault if there is one. */
QString read(QString const& data)
{
    KpPathSegList list;
    if (auto const fault = parsePathData(data, list))
        return QString("%1:%2: %3").arg(fault->line).arg(fault->column).arg(fault->what);
    return pathData(list, {}).value_or("not finite");
}

} // namespace

void TestPathDataParser::readsCommands_data()
{
    QTest::addColumn<QString>("data");
    QTest::addColumn<QString>("absolute");

    auto const row = [](char const* data, char const* absolute) {
        QTest::newRow(data) << QString(data) << QString(absolute);
    };
    row("", "");
    row(" \t\r\n\f", "");
    row("M1 2", "");
    row("M1 2Z", "");
    row("M1 2M3 4L5 6", "M3 4 L5 6");
    row("M1 2L3 4M5 6", "M1 2 L3 4");
    row("M1 2L3 4ZM5 6", "M1 2 L3 4 Z");
    row("M1 2 3 4 5 6", "M1 2 L3 4 L5 6");
    row("m1 2 3 4 5 6", "M1 2 L4 6 L9 12");
    row("M1,2L3,4", "M1 2 L3 4");
    row(" M 1 , 2 L 3 , 4 , 5 6 ", "M1 2 L3 4 L5 6");
    row("M1 2l3 4-5-6", "M1 2 L4 6 L-1 0");
    row("M1 2H5 7V9 8", "M1 2 L5 2 L7 2 L7 9 L7 8");
    row("M1 2h5 7v9 8", "M1 2 L6 2 L13 2 L13 11 L13 19");
    row("M1 2C3 4 5 6 7 8", "M1 2 C3 4 5 6 7 8");
    row("M1 2c3 4 5 6 7 8 1 1 2 2 3 3", "M1 2 C4 6 6 8 8 10 C9 11 10 12 11 13");
    row("M1 2C3 4 5 6 7 8S1 1 2 2", "M1 2 C3 4 5 6 7 8 C9 10 1 1 2 2");
    row("M1 2c3 4 5 6 7 8s1 1 2 2", "M1 2 C4 6 6 8 8 10 C10 12 9 11 10 12");
    row("M1 2S1 1 2 2", "M1 2 C1 2 1 1 2 2");
    row("M1 2Q4 5 7 2", "M1 2 C3 4 5 4 7 2");
    row("M1 2q3 3 6 0t6 0", "M1 2 C3 4 5 4 7 2 C9 0 11 0 13 2");
    row("M1 2Q4 5 7 2T13 2T19 2", "M1 2 C3 4 5 4 7 2 C9 0 11 0 13 2 C15 4 17 4 19 2");
    row("M1 2T7 2", "M1 2 C1 2 3 2 7 2");
    row("M1 2C3 4 5 6 7 8T10 8", "M1 2 C3 4 5 6 7 8 C7 8 8 8 10 8");
    row("M1 2Q4 5 7 2S1 1 2 2", "M1 2 C3 4 5 4 7 2 C7 2 1 1 2 2");
    row("M1 2L3 4L5 9Z", "M1 2 L3 4 L5 9 Z");
    row("M1 2L3 4L5 9z", "M1 2 L3 4 L5 9 Z");
    row("M1 2L3 4L5 9L1 2Z", "M1 2 L3 4 L5 9 L1 2 Z");
    row("M1 2L3 4L5 9ZM7 7L8 8", "M1 2 L3 4 L5 9 L1 2 M7 7 L8 8");
    row("M1 2L3 4L1 2ZM7 7L8 8Z", "M1 2 L3 4 L1 2 M7 7 L8 8 Z");
    row("M1 2L3 4L5 9Zl1 1", "M1 2 L3 4 L5 9 L1 2 M1 2 L2 3");
    row("M1 2L3 4L5 9Zm1 1l1 1", "M1 2 L3 4 L5 9 L1 2 M2 3 L3 4");
    row("M1 2L3 4ZZ", "M1 2 L3 4 Z");
    row("M1 2L1 2", "M1 2 L1 2");
}

void TestPathDataParser::readsCommands()
{
    QFETCH(QString, data);
    QFETCH(QString, absolute);

    QCOMPARE(read(data), absolute);
}

void TestPathDataParser::readsNumbers_data()
{
    QTest::addColumn<QString>("numbers");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");

    auto const row = [](char const* numbers, double x, double y) {
        QTest::newRow(numbers) << QString(numbers) << x << y;
    };
    row("0.1 -.5", 0.1, -0.5);
    row(".5.25", 0.5, 0.25);
    row("1.5.25", 1.5, 0.25);
    row("1-2", 1, -2);
    row("+1+2", 1, 2);
    row("5.,6.", 5, 6);
    row("007 1", 7, 1);
    row("1e3 1E-3", 1000, 0.001);
    row("1e+3.5", 1000, 0.5);
    row("1e-999 -0", 0, 0);
    row("1e308 4.9e-324", 1e308, 4.9e-324);
    row("0.30000000000000004 123456789.123456789", 0.1 + 0.2, 123456789.123456789);
    row("3.14159265358979323846264338327950288419716939937510 1", 3.141592653589793, 1);
}

void TestPathDataParser::readsNumbers()
{
    QFETCH(QString, numbers);
    QFETCH(double, x);
    QFETCH(double, y);

    KpPathSegList list;
    QVERIFY(!parsePathData("M0 0L" + numbers, list));
    QCOMPARE(list.segs.count(), 2);
    COMPARE_BITS(list.segs.at(1)->pt.x.value, x);
    COMPARE_BITS(list.segs.at(1)->pt.y.value, y);
}

void TestPathDataParser::readsArcs_data()
{
    QTest::addColumn<QString>("data");
    QTest::addColumn<QString>("absolute");

    auto const row = [](char const* name, char const* data, char const* absolute) {
        QTest::newRow(name) << QString(data) << QString(absolute);
    };
    row("a quarter", "M0 0A100 100 0 0 1 100 100", "M0 0 C55.2285 0 100 44.7715 100 100");
    row("half, two curves", "M100 0A100 50 0 0 1 -100 0",
        "M100 0 C100 27.6142 55.2285 50 6.12323e-15 50 C-55.2285 50 -100 27.6142 -100 0");
    row("flags without separators", "M0 100a100 100 0 01100-100",
        read("M0 100A100 100 0 0 1 100 0").toLatin1());
    row("flags without separators, and another arc", "M0 0a5 5 0 1110 10 5 5 0 00-10-10",
        read("M0 0a5 5 0 1 1 10 10a5 5 0 0 0 -10 -10").toLatin1());
    row("no width", "M0 0A0 5 0 0 1 10 10", "M0 0 L10 10");
    row("no height", "M0 0A5 0 0 0 1 10 10", "M0 0 L10 10");
    row("to where it is", "M1 1A5 5 0 1 1 1 1L2 2", "M1 1 L2 2");
    row("negative radii", "M0 0A-100 -100 0 0 1 100 100", "M0 0 C55.2285 0 100 44.7715 100 100");
    row("radii too small grow", "M100 0A1 .5 0 0 1 -100 0",
        "M100 0 C100 27.6142 55.2285 50 6.12323e-15 50 C-55.2285 50 -100 27.6142 -100 0");
    row("endless radii", "M0 0A1e200 1e200 0 0 1 10 10", "M0 0 C0 0 10 10 10 10");
}

void TestPathDataParser::readsArcs()
{
    QFETCH(QString, data);
    QFETCH(QString, absolute);

    QCOMPARE(read(data), absolute);
}

void TestPathDataParser::recognisesEllipses_data()
{
    QTest::addColumn<QString>("data");
    QTest::addColumn<int>("ellipses");

    QString const right = "M15 20A5 7 0 0 1 5 20A5 7 0 0 1 15 20";
    QTest::newRow("from the right") << right + 'Z' << 1;
    QTest::newRow("from the left") << "M5 20a5 7 0 1 1 10 0a5 7 0 1 1 -10 0z" << 1;
    QTest::newRow("two") << right + 'Z' + right + 'Z' << 2;
    QTest::newRow("decimal radius") << "M0.3 0A0.1 0.1 0 0 1 0.1 0A0.1 0.1 0 0 1 0.3 0Z" << 1;
    QTest::newRow("open") << right << 0;
    QTest::newRow("counterclockwise") << "M15 20A5 7 0 0 0 5 20A5 7 0 0 0 15 20Z" << 0;
    QTest::newRow("turned") << "M15 20A5 7 45 0 1 5 20A5 7 45 0 1 15 20Z" << 0;
    QTest::newRow("with a line") << right + "L30 30Z" << 0;
    QTest::newRow("three arcs") << right + "A5 7 0 0 1 5 20Z" << 0;
    QTest::newRow("two heights") << "M15 20A5 7 0 0 1 5 20A5 8 0 0 1 15 20Z" << 0;
    QTest::newRow("half") << "M15 20A5 7 0 0 1 5 20Z" << 0;
    QTest::newRow("wider than the ends") << "M15 20A6 7 0 0 1 5 20A6 7 0 0 1 15 20Z" << 0;
}

void TestPathDataParser::recognisesEllipses()
{
    QFETCH(QString, data);
    QFETCH(int, ellipses);

    KpPathSegList list;
    QVERIFY(!parsePathData(data, list));
    int count = 0;
    for (KpPathSeg* const seg : list.segs)
        count += seg->type == KpPathSeg::SegEllipse;
    QCOMPARE(count, ellipses);
    if (ellipses > 0) {
        QVERIFY(!list.closed);
        QCOMPARE(list.segs.count(), ellipses);
    }
}

void TestPathDataParser::bindsInProportion()
{
    KpPathSegList list;
    QVERIFY(!parsePathData("M10 20L30 40", list));
    QCOMPARE(OutlineTesting::exact(*list.segs.at(1)),
        OutlineTesting::exact(*std::make_unique<KpPathSegLineTo>(QPointF(30, 40), nullptr)));
}

void TestPathDataParser::tellsTheFirstFault_data()
{
    QTest::addColumn<QString>("data");
    QTest::addColumn<QString>("fault");

    auto const row = [](char const* data, char const* fault) {
        QTest::newRow(data) << QString(data) << QString(fault);
    };
    row("L1 2", "1:1: M or m is expected, not 'L'");
    row(" Z", "1:2: M or m is expected, not 'Z'");
    row("1 2", "1:1: a command is expected, not '1'");
    row("M", "1:2: a number is missing at the end");
    row("M1", "1:3: a number is missing at the end");
    row("M1 2L", "1:6: a number is missing at the end");
    row("M1 2L3 4,", "1:10: a number is missing at the end");
    row("M1 2 3", "1:7: a number is missing at the end");
    row("M1 2X", "1:5: a command is expected, not 'X'");
    row("M1 2Z3", "1:6: a command is expected, not '3'");
    row("M1 2,L3 4", "1:6: a number is expected, not 'L'");
    row("M1,,2", "1:4: a number is expected, not ','");
    row("M,1 2", "1:2: a number is expected, not ','");
    row("M1 2L3 -", "1:8: a number is expected, not '-'");
    row("M1 2L3 --4", "1:8: a number is expected, not '-'");
    row("M1 2L3 .", "1:8: a number is expected, not '.'");
    row("M1 2L3 4e", "1:9: a command is expected, not 'e'");
    row("M1 2L3 4e+", "1:9: a command is expected, not 'e'");
    row("M1 2L0x10 1", "1:7: a number is expected, not 'x'");
    row("M1 2Lnan inf", "1:6: a number is expected, not 'n'");
    row("M1 2L1e309 1", "1:6: the number is too large");
    row("M1e308 0l1e308 0", "1:10: the number is too large");
    row("M1 2A1 1 0 2 0 3 3", "1:12: a flag, 0 or 1, is expected, not '2'");
    row("M1 2A1 1 0 0", "1:13: a flag, 0 or 1, is missing at the end");
    row("M1 2A1 1 0 1.0 1 3 3", "1:13: a flag, 0 or 1, is expected, not '.'");
    row("M1e308 0C1 1 -1e308 1 1e308 0S5 5 5 5", "1:31: it leads too far");
    row("M0 0\nL1 1\n L2 x", "3:5: a number is expected, not 'x'");
    row("M1 2\xc5\xbf 3 4", "1:5: a command is expected, not '\xc5\xbf'");
    row("M\xd9\xa1 2", "1:2: a number is expected, not '\xd9\xa1'");
    row("M1 2\xf0\x9f\x98\x80", "1:5: a command is expected, not '\xf0\x9f\x98\x80'");
}

void TestPathDataParser::tellsTheFirstFault()
{
    QFETCH(QString, data);
    QFETCH(QString, fault);

    QCOMPARE(read(data), fault);
}

void TestPathDataParser::keepsWhatStandsBeforeAFault()
{
    KpPathSegList list;
    QVERIFY(parsePathData("M1 2L3 4L5 x", list));
    QCOMPARE(pathData(list, {}).value(), QString("M1 2 L3 4"));
}

void TestPathDataParser::everyBeginningIsReadOrRefused()
{
    QString const data = "m1-2l3e1,4h-.5v6zc1 2 3 4 5 6s1 2 3 4q1 2 3 4t5 6a1 2 30 01-3 4Z";
    for (int size = 0; size <= data.size(); ++size) {
        KpPathSegList list;
        auto const fault = parsePathData(data.left(size), list);
        QVERIFY(!fault || (fault->line == 1 && fault->column == size + 1)
            || data.at(fault->column - 1) == '-' || data.at(fault->column - 1) == '.'
            || data.at(fault->column - 1) == 'e');
    }
}

void TestPathDataParser::isReadAsWritten_data()
{
    QTest::addColumn<bool>("isRelative");

    QTest::newRow("absolute") << false;
    QTest::newRow("relative") << true;
}

void TestPathDataParser::isReadAsWritten()
{
    QFETCH(bool, isRelative);

    QRandomGenerator random = Testing::seededRandom(12);
    // Eighths, whose sums and differences are exact.
    auto const place = [&random] {
        return QPointF(random.bounded(-8000, 8000) / 8.0, random.bounded(-8000, 8000) / 8.0);
    };
    for (int round = 0; round < 500; ++round) {
        KpPathSegList list;
        list.addTail(new KpPathSegMoveTo(place(), nullptr));
        list.addTail(new KpPathSegLineTo(place(), nullptr));
        int const count = random.bounded(10);
        bool endsWithEllipse = false;
        for (int i = 0; i < count; ++i) {
            endsWithEllipse = false;
            switch (random.bounded(4)) {
            case 0:
                list.addTail(new KpPathSegMoveTo(place(), nullptr));
                list.addTail(new KpPathSegLineTo(place(), nullptr));
                break;
            case 1:
                list.addTail(new KpPathSegCurveTo(place(), place(), place(), nullptr));
                break;
            case 2:
                list.addTail(new KpPathSegEllipse(place(), 1 + random.bounded(800) / 8.0,
                    1 + random.bounded(800) / 8.0, nullptr));
                endsWithEllipse = i + 1 == count;
                if (!endsWithEllipse) {
                    list.addTail(new KpPathSegMoveTo(place(), nullptr));
                    list.addTail(new KpPathSegLineTo(place(), nullptr));
                }
                break;
            default:
                list.addTail(new KpPathSegLineTo(place(), nullptr));
                break;
            }
        }
        list.closed = !endsWithEllipse && random.bounded(2) == 1;
        QString const data = pathData(list, {isRelative, 9}).value();
        KpPathSegList again;
        QVERIFY2(!parsePathData(data, again), qPrintable(data));
        QCOMPARE(OutlineTesting::exact(again), OutlineTesting::exact(list));
    }
}

namespace {

QImage canvas()
{
    QImage image(200, 200, QImage::Format_Grayscale8);
    image.fill(Qt::white);
    return image;
}

QImage drawnBySvg(QString const& data)
{
    QSvgRenderer renderer(("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 200 200'><path d='"
        + data + "'/></svg>")
                              .toUtf8());
    QImage image = canvas();
    QPainter painter(&image);
    renderer.render(&painter, QRectF(0, 0, 200, 200));
    return image;
}

QImage drawn(KpPathSegList const& list)
{
    QImage image = canvas();
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath path = exactPath(list);
    path.setFillRule(Qt::WindingFill);
    painter.fillPath(path, Qt::black);
    return image;
}

int greatestDifference(QImage const& left, QImage const& right)
{
    int greatest = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (int x = 0; x < left.width(); ++x)
            greatest = qMax(greatest, qAbs(qGray(left.pixel(x, y)) - qGray(right.pixel(x, y))));
    }
    return greatest;
}

/** Random path data that stays near a canvas of 200 by 200. */
QString randomData(QRandomGenerator& random)
{
    auto const number = [&random](int least, int most) {
        return QString::number(least + random.generateDouble() * (most - least), 'f', 3);
    };
    auto const flag = [&random] { return QString::number(random.bounded(2)); };
    auto const numbers = [&](int count, bool isRelative) {
        QStringList list;
        for (int i = 0; i < count; ++i)
            list << (isRelative ? number(-50, 50) : number(20, 180));
        return list.join(' ');
    };
    QString data = "M" + numbers(2, false);
    int const count = random.bounded(1, 8);
    for (int i = 0; i < count; ++i) {
        QChar letter = QString("LHVCSQTAZM").at(random.bounded(10));
        bool const isRelative = random.bounded(2) == 1;
        static QMap<QChar, int> const counts {{'L', 2}, {'H', 1}, {'V', 1}, {'C', 6}, {'S', 4},
            {'Q', 4}, {'T', 2}, {'Z', 0}, {'M', 2}};
        data += isRelative ? letter.toLower() : letter;
        if (letter == 'A') {
            data += number(1, 80) + ' ' + number(1, 80) + ' ' + number(-200, 200) + ' ' + flag()
                + ' ' + flag() + ' ' + numbers(2, isRelative);
        } else {
            data += numbers(counts.value(letter), isRelative);
        }
    }
    return data;
}

} // namespace

void TestPathDataParser::isDrawnAsBySvg()
{
    QRandomGenerator random = Testing::seededRandom(13);
    int painted = 0;
    for (int round = 0; round < 400; ++round) {
        QString const data = randomData(random);
        KpPathSegList list;
        QVERIFY2(!parsePathData(data, list), qPrintable(data));
        QImage const expected = drawnBySvg(data);
        painted += greatestDifference(expected, canvas()) > 128;
        // Curves for an arc differ by a few hundredths of a pixel, at most 17 levels of grey here.
        int const difference = greatestDifference(drawn(list), expected);
        QVERIFY2(difference <= 24, qPrintable(data + ": " + QString::number(difference)));
    }
    QVERIFY2(painted > 300, qPrintable(QString::number(painted)));
}

void TestPathDataParser::anythingIsReadOrRefused()
{
    QRandomGenerator random = Testing::seededRandom(14);
    QString const characters = "MmLlHhVvCcSsQqTtAaZz0123456789.-+eE, \n";
    for (int round = 0; round < 20000; ++round) {
        QString data = "M1 2";
        int const size = random.bounded(30);
        for (int i = 0; i < size; ++i)
            data += characters.at(random.bounded(characters.size()));
        KpPathSegList list;
        parsePathData(data, list);
        // Whatever has been read is finite.
        QVERIFY2(pathData(list, {}), qPrintable(data));
    }
}

void TestPathDataParser::readsLongDataInTime()
{
    QString data = "M0 0";
    for (int i = 0; i < 200000; ++i)
        data += "l1 1z";
    KpPathSegList list;
    QVERIFY(!parsePathData(data, list));
    // A move, a line, and a line back but for the last one.
    QCOMPARE(list.segs.count(), 200000 * 3 - 1);
}

QTEST_MAIN(TestPathDataParser)

#include "tst_pathdataparser.moc"

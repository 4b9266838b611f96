// SPDX-License-Identifier: MIT
#include "document/bindingrule.h"
#include "document/exactcopy.h"
#include "export/htmlpage.h"
#include "outlinetesting.h"
#include "webdriver.h"

#include <QRegularExpression>

using OutlineTesting::fillRandomly;

namespace {

/** Of most pages. */
QSizeF const firstBox(240, 160);

} // namespace

/** The page of htmlPage() as a browser shows it, dragged by mouse, touch and keys. */
class TestDraggedPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void firstSizeIsTheBox_data();
    void firstSizeIsTheBox();
    void shapeFollowsEveryDrag_data();
    void shapeFollowsEveryDrag();
    void edgesMoveOneSide();
    void sizeStaysWithinTheStage();
    void keysMoveStepByStep();
    void tabReachesTheHandles();
    void shortLinesAreLeftOut();
    void ellipseWithLinesIsPartOfThePath();
    void restoreGivesTheFirstSize();
    void pointsAreShownOnRequest();
    void pointsFollowTheBox();
    void namesAreText();
    void policyStopsOtherScripts();
    void darkScreenGetsADarkPage();
    void groundChoosesTheInk_data();
    void groundChoosesTheInk();
    void narrowScreenNeedsNoScrolling();
    void handlesSpeakToAssistiveTechnology();

private:
    void open(Shapes const& shapes, PageSettings const& settings);
    void open(Shapes const& shapes) { open(shapes, {"page", firstBox, false, QColor()}); }
    QPointF centreOf(QString const& id);
    void drag(QString const& id, QString const& pointer, QPoint const& by);
    void press(QString const& id, QString const& keys);
    QString sizeText();
    QSizeF shownSize();
    QString difference(Shapes const& shapes);

    Browser m_browser;
    QTemporaryDir m_folder;
};

namespace {

/** Beyond this, the page leaves out what it would draw. */
bool isDrawable(double number)
{
    return std::abs(number) < 1e5 * firstBox.width();
}

Shape shapeOf(std::shared_ptr<KpPathSegList> const& list, QString const& name = "shape")
{
    return {name, QSizeF(), std::nullopt, list};
}

/** A step of a path with its numbers. */
struct Step
{
    QChar letter;
    QVector<double> numbers;
};

/** The steps of the `d` of a path. */
QVector<Step> parsed(QString const& d)
{
    QVector<Step> steps;
    static QRegularExpression const step("([MLCZ])([^MLCZ]*)");
    for (auto matches = step.globalMatch(d); matches.hasNext();) {
        QRegularExpressionMatch const match = matches.next();
        Step next {match.captured(1).at(0), {}};
        for (QString const& number : match.captured(2).split(' ', Qt::SkipEmptyParts))
            next.numbers << number.toDouble();
        steps << next;
    }
    return steps;
}

/** The steps of a whole painter path from this element on. */
void appendSteps(QVector<KpPath::KpElement> const& elements, QVector<Step>& steps)
{
    for (int i = 0; i < elements.size(); ++i) {
        KpPath::KpElement const& element = elements.at(i);
        switch (element.type) {
        case QPainterPath::MoveToElement:
            steps << Step {'M', {element.x, element.y}};
            break;
        case QPainterPath::LineToElement:
            steps << Step {'L', {element.x, element.y}};
            break;
        case QPainterPath::CurveToElement:
            steps << Step {'C',
                {element.x, element.y, elements.at(i + 1).x, elements.at(i + 1).y,
                    elements.at(i + 2).x, elements.at(i + 2).y}};
            i += 2;
            break;
        default:
            steps << Step {'Z', {}};
            break;
        }
    }
}

bool areDrawable(QVector<double> const& numbers)
{
    return std::all_of(numbers.begin(), numbers.end(), isDrawable);
}

/** What the library draws, without what a page leaves out; nothing closed that is not open. */
QVector<Step> expectedSteps(KpPathSegList const& list)
{
    QVector<Step> all;
    KpPath path;
    for (KpPathSeg* const seg : list.segs) {
        int const before = path.count();
        seg->addToPath(path);
        QVector<Step> added;
        appendSteps(path.elements.mid(before), added);
        auto const isDrawn = [](Step const& step) { return areDrawable(step.numbers); };
        if (!seg->toEllipse() || std::all_of(added.begin(), added.end(), isDrawn))
            all += added;
    }
    if (list.closed)
        all << Step {'Z', {}};
    QVector<Step> drawn;
    bool isOpen = false;
    for (Step const& step : qAsConst(all)) {
        if (!areDrawable(step.numbers) || (step.letter == 'Z' && !isOpen))
            continue;
        if (drawn.isEmpty() && step.letter != 'M')
            drawn << Step {'M', {0, 0}};
        drawn << step;
        isOpen = step.letter == 'L' || step.letter == 'C';
    }
    return drawn;
}

QString textOf(QVector<Step> const& steps)
{
    QString text;
    for (Step const& step : steps) {
        text += step.letter;
        for (double const number : step.numbers)
            text += ' ' + QString::number(number + 0.0, 'g', 17); // -0 is 0
    }
    return text;
}

/** An outline of nothing but one ellipse, and moves, is an element of its own. */
KpPathSegEllipse const* onlyEllipse(KpPathSegList const& list)
{
    KpPathSegEllipse const* found = nullptr;
    for (KpPathSeg* const seg : list.segs) {
        if (seg->type == KpPathSeg::SegMoveTo)
            continue;
        if (found || !seg->toEllipse())
            return nullptr;
        found = seg->toEllipse();
    }
    return found;
}

/** What the element of an outline should say, in one text. */
QString expectedText(KpPathSegList const& list)
{
    KpPathSegEllipse const* const ellipse = onlyEllipse(list);
    if (!ellipse)
        return "path " + textOf(expectedSteps(list));
    QVector<double> numbers {
        ellipse->pt.x.value, ellipse->pt.y.value, ellipse->a.value, ellipse->b.value};
    if (!areDrawable(numbers))
        numbers = {0, 0, 0, 0};
    return "ellipse "
        + textOf(
            {Step {'E', {numbers[0], numbers[1], std::abs(numbers[2]), std::abs(numbers[3])}}});
}

/** What it says, likewise. */
QString shownText(QJsonObject const& element)
{
    QString const name = element.value("name").toString();
    if (name == "path")
        return "path " + textOf(parsed(element.value("d").toString()));
    Step step {'E', {}};
    for (char const* const attribute : {"cx", "cy", "rx", "ry"})
        step.numbers << element.value(attribute).toString().toDouble();
    return name + ' ' + textOf({step});
}

KpReal tameReal(QRandomGenerator& random)
{
    auto const base = qint16(random.bounded(8));
    bool const isLength = base == KpReal::FromRight || base == KpReal::FromBottom;
    double const rate = isLength ? random.bounded(100.0) : random.bounded(1.2) - 0.1;
    return KpReal(base, rate, random.bounded(200.0));
}

KpPoint tamePoint(QRandomGenerator& random)
{
    return KpPoint(tameReal(random), tameReal(random));
}

/** All kinds and rules, with numbers as shapes have them; some lines are short. */
std::shared_ptr<KpPathSegList> tameList(QRandomGenerator& random)
{
    auto list = std::make_shared<KpPathSegList>();
    list->closed = random.bounded(2) == 1;
    for (int i = 0; i < 8; ++i) {
        switch (random.bounded(5)) {
        case 0:
            list->addTail(new KpPathSegMoveTo(tamePoint(random), nullptr));
            break;
        case 1:
            list->addTail(new KpPathSegCurveTo(
                tamePoint(random), tamePoint(random), tamePoint(random), nullptr));
            break;
        case 2: {
            auto* const ellipse =
                new KpPathSegEllipse(tamePoint(random), KpReal(), KpReal(), nullptr);
            ellipse->a = tameReal(random);
            ellipse->b = tameReal(random);
            list->addTail(ellipse);
            break;
        }
        default: {
            KpPoint const point = tamePoint(random);
            list->addTail(new KpPathSegLineTo(point, nullptr));
            KpPoint near = point;
            near.x.rate += 0.002;
            near.y.value += 0.5;
            list->addTail(new KpPathSegLineTo(near, nullptr));
            break;
        }
        }
    }
    return list;
}

std::shared_ptr<KpPathSegList> ellipseList(KpReal const& a, KpReal const& b)
{
    auto list = std::make_shared<KpPathSegList>();
    auto* const ellipse = new KpPathSegEllipse(
        KpPoint(KpReal(1, 0.5, 0), KpReal(2, 0.5, 0)), KpReal(), KpReal(), nullptr);
    ellipse->a = a;
    ellipse->b = b;
    list->addTail(ellipse);
    return list;
}

/** A line over the whole width at half the height. */
Shapes oneLine()
{
    auto list = std::make_shared<KpPathSegList>();
    list->addTail(new KpPathSegMoveTo(KpPoint(KpReal(0, 0, 0), KpReal(2, 0.5, 0)), nullptr));
    list->addTail(new KpPathSegLineTo(KpPoint(KpReal(3, 0, 0), KpReal(2, 0.5, 0)), nullptr));
    return {shapeOf(list)};
}

QJsonObject pointerMove(QJsonValue const& origin, QPoint const& to)
{
    return {{"type", "pointerMove"}, {"duration", 20}, {"origin", origin}, {"x", to.x()},
        {"y", to.y()}};
}

QJsonObject button(char const* way)
{
    return {{"type", way}, {"button", 0}};
}

} // namespace

void TestDraggedPage::initTestCase()
{
    QString const fault = m_browser.start();
    QVERIFY2(fault.isEmpty(), qPrintable(fault));
}

/** Whatever a page is asked to show: no error, and nothing that its policy had to stop. */
void TestDraggedPage::cleanup()
{
    QCOMPARE(m_browser.complaints(), QStringList());
}

void TestDraggedPage::open(Shapes const& shapes, PageSettings const& settings)
{
    QFile file(m_folder.filePath("page.html"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(htmlPage(shapes, settings));
    file.close();
    Browser::Answer const answer =
        m_browser.post("/url", {{"url", QUrl::fromLocalFile(file.fileName()).toString()}});
    QVERIFY2(answer.isGood, qPrintable(Browser::text(answer.value)));
}

QPointF TestDraggedPage::centreOf(QString const& id)
{
    QJsonObject const rect = m_browser.get(m_browser.pathTo(id) + "/rect").value.toObject();
    return {rect.value("x").toDouble() + rect.value("width").toDouble() / 2,
        rect.value("y").toDouble() + rect.value("height").toDouble() / 2};
}

/** By way of a point half-way. */
void TestDraggedPage::drag(QString const& id, QString const& pointer, QPoint const& by)
{
    QJsonArray const actions {pointerMove(m_browser.element(id), {0, 0}), button("pointerDown"),
        pointerMove("pointer", by / 2), pointerMove("pointer", by - by / 2), button("pointerUp")};
    QJsonObject const device {{"type", "pointer"}, {"id", pointer},
        {"parameters", QJsonObject {{"pointerType", pointer}}}, {"actions", actions}};
    Browser::Answer const answer = m_browser.post("/actions", {{"actions", QJsonArray {device}}});
    QVERIFY2(answer.isGood, qPrintable(Browser::text(answer.value)));
}

/** @param keys characters, or those that WebDriver takes for keys without one */
void TestDraggedPage::press(QString const& id, QString const& keys)
{
    Browser::Answer const answer =
        m_browser.post(m_browser.pathTo(id) + "/value", {{"text", keys}});
    QVERIFY2(answer.isGood, qPrintable(Browser::text(answer.value)));
}

QString TestDraggedPage::sizeText()
{
    return m_browser.run("return document.getElementById('size').textContent").toString();
}

QSizeF TestDraggedPage::shownSize()
{
    QStringList const sides = sizeText().split(QString::fromUtf8(" \303\227 "));
    return sides.size() == 2 ? QSizeF(sides.at(0).toDouble(), sides.at(1).toDouble()) : QSizeF();
}

/** Where the outlines differ from the library's for the size that is shown; or empty. */
QString TestDraggedPage::difference(Shapes const& shapes)
{
    QSizeF const size = shownSize();
    QJsonArray const shown = m_browser
                                 .run("return [...document.querySelectorAll('#outlines > *')].map("
                                      "e => Object.fromEntries([['name', e.tagName], "
                                      "...[...e.attributes].map(a => [a.name, a.value])]))")
                                 .toArray();
    if (shown.size() != int(shapes.size()))
        return QString("%1 elements").arg(shown.size());
    for (int i = 0; i < shown.size(); ++i) {
        auto const list = exactCopy(*shapes[size_t(i)].list);
        list->updateValue(size.width(), size.height());
        QString const actual = shownText(shown.at(i).toObject());
        QString const expected = expectedText(*list);
        if (actual != expected)
            return QString("at %1 outline %2 is\n%3\nnot\n%4")
                .arg(sizeText())
                .arg(i)
                .arg(actual, expected);
    }
    return QString();
}

void TestDraggedPage::firstSizeIsTheBox_data()
{
    QTest::addColumn<QSizeF>("box");
    QTest::addColumn<QString>("expected");
    QTest::newRow("whole") << firstBox << QString::fromUtf8("240 \303\227 160");
    QTest::newRow("parts") << QSizeF(12.5, 0.25) << QString::fromUtf8("12.5 \303\227 0.25");
    QTest::newRow("large") << QSizeF(1e6, 10000) << QString::fromUtf8("1000000 \303\227 10000");
    QTest::newRow("tiny") << QSizeF(1e-200, 1) << QString::fromUtf8("0.001 \303\227 1");
    QTest::newRow("collapsed") << QSizeF(0, 0) << QString::fromUtf8("0.001 \303\227 0.001");
}

void TestDraggedPage::firstSizeIsTheBox()
{
    QFETCH(QSizeF, box);
    QFETCH(QString, expected);
    Shapes const shapes = oneLine();
    open(shapes, {"page", box, false, QColor()});
    QCOMPARE(sizeText(), expected);
    QCOMPARE(difference(shapes), QString());
}

void TestDraggedPage::shapeFollowsEveryDrag_data()
{
    QTest::addColumn<QString>("pointer");
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<bool>("isTame");
    QTest::newRow("mouse") << "mouse" << 1U << true;
    QTest::newRow("mouse, any numbers") << "mouse" << 2U << false;
    QTest::newRow("touch") << "touch" << 3U << true;
    QTest::newRow("touch, any numbers") << "touch" << 4U << false;
}

void TestDraggedPage::shapeFollowsEveryDrag()
{
    QFETCH(QString, pointer);
    QFETCH(quint32, seed);
    QFETCH(bool, isTame);
    QRandomGenerator random = Testing::seededRandom(seed);
    Shapes shapes;
    for (int i = 0; i < 12; ++i) {
        if (isTame) {
            shapes.push_back(shapeOf(tameList(random)));
            shapes.push_back(shapeOf(ellipseList(tameReal(random), tameReal(random))));
        } else {
            auto list = std::make_shared<KpPathSegList>();
            fillRandomly(*list, random.bounded(8), random);
            shapes.push_back(shapeOf(list));
            shapes.push_back(shapeOf(ellipseList(
                OutlineTesting::randomReal(random), OutlineTesting::randomReal(random))));
        }
    }
    open(shapes);
    QCOMPARE(difference(shapes), QString());
    for (QPoint const& by : {QPoint(80, 20), QPoint(-150, 60), QPoint(200, -180)}) {
        QPointF const before = centreOf("corner");
        QSizeF const sizeBefore = shownSize();
        drag("corner", pointer, by);
        QPointF const moved = centreOf("corner") - before;
        // As far as the pointer, but for a step, which is less than three pixels here.
        QVERIFY2((moved - by).manhattanLength() < 6,
            qPrintable(QString("%1, %2").arg(moved.x()).arg(moved.y())));
        QVERIFY(shownSize() != sizeBefore);
        QCOMPARE(difference(shapes), QString());
    }
}

void TestDraggedPage::edgesMoveOneSide()
{
    Shapes const shapes = oneLine();
    open(shapes);
    drag("width", "mouse", {60, 40});
    QVERIFY(shownSize().width() > 250);
    QCOMPARE(shownSize().height(), 160.0);
    drag("height", "touch", {60, 40});
    QVERIFY(shownSize().height() > 165);
    QVERIFY(shownSize().width() > 250);
    QCOMPARE(difference(shapes), QString());
}

void TestDraggedPage::sizeStaysWithinTheStage()
{
    Shapes const shapes = oneLine();
    open(shapes);
    drag("corner", "mouse", QPoint(5, 5) - centreOf("corner").toPoint()); // of the window
    QCOMPARE(sizeText(), QString::fromUtf8("1 \303\227 1"));
    QCOMPARE(difference(shapes), QString());
    QJsonObject const stage = m_browser.get(m_browser.pathTo("stage") + "/rect").value.toObject();
    drag("corner", "mouse",
        QPoint(stage.value("width").toInt() - 60, stage.value("height").toInt() - 60));
    QPointF const corner = centreOf("corner");
    QVERIFY(corner.x() < stage.value("x").toDouble() + stage.value("width").toDouble());
    QVERIFY(corner.y() < stage.value("y").toDouble() + stage.value("height").toDouble());
    QVERIFY(shownSize().width() > 240);
    QCOMPARE(difference(shapes), QString());
}

void TestDraggedPage::keysMoveStepByStep()
{
    QString const left = QChar(0xE012);
    QString const up = QChar(0xE013);
    QString const right = QChar(0xE014);
    QString const down = QChar(0xE015);
    QString const shift = QChar(0xE008);
    Shapes const shapes = oneLine();
    open(shapes);
    press("corner", right);
    QCOMPARE(sizeText(), QString::fromUtf8("241 \303\227 160"));
    press("corner", down + down + left);
    QCOMPARE(sizeText(), QString::fromUtf8("240 \303\227 162"));
    press("corner", shift + right + up);
    QCOMPARE(sizeText(), QString::fromUtf8("250 \303\227 152"));
    press("width", left + down); // down is not its way
    QCOMPARE(sizeText(), QString::fromUtf8("249 \303\227 152"));
    press("height", shift + down + right);
    QCOMPARE(sizeText(), QString::fromUtf8("249 \303\227 162"));
    QCOMPARE(difference(shapes), QString());

    open(shapes, {"page", QSizeF(3, 2), false, QColor()});
    press("corner", right + right + right);
    QCOMPARE(sizeText(), QString::fromUtf8("3.03 \303\227 2"));
}

void TestDraggedPage::tabReachesTheHandles()
{
    open(oneLine());
    QString const tab = QChar(0xE004);
    QStringList reached;
    press("restore", QString());
    m_browser.run("document.getElementById('restore').focus()");
    for (int i = 0; i < 4; ++i) {
        QJsonArray const keys {QJsonObject {{"type", "keyDown"}, {"value", tab}},
            QJsonObject {{"type", "keyUp"}, {"value", tab}}};
        m_browser.post("/actions",
            {{"actions",
                QJsonArray {QJsonObject {{"type", "key"}, {"id", "keys"}, {"actions", keys}}}}});
        QJsonValue const active =
            m_browser.run("const e = document.activeElement; return e.id + ' ' + "
                          "(getComputedStyle(e).outlineStyle !== 'none')");
        reached << active.toString();
    }
    QCOMPARE(reached, QStringList({"width true", "height true", "corner true", "points true"}));
}

void TestDraggedPage::shortLinesAreLeftOut()
{
    auto list = std::make_shared<KpPathSegList>();
    auto const line = [&list](double x, double y) {
        list->addTail(new KpPathSegLineTo(KpPoint(KpReal(0, 0, x), KpReal(0, 0, y)), nullptr));
    };
    line(0.5, 0.5); // the first of all is drawn whatever its length
    line(1.499, -0.499);
    line(1.5, 0.5); // one unit is enough
    line(0.501, 1.499);
    open({shapeOf(list)});
    QCOMPARE(m_browser.run("return document.querySelector('#outlines path').getAttribute('d')")
                 .toString(),
        QString("M0 0L0.5 0.5L1.5 0.5"));
}

/** Else its fill rule would not see it: a hole would be filled. */
void TestDraggedPage::ellipseWithLinesIsPartOfThePath()
{
    auto list = ellipseList(KpReal(0, 0, 20), KpReal(0, 0, -10));
    list->addTail(new KpPathSegLineTo(KpPoint(KpReal(0, 0, 0), KpReal(0, 0, 0)), nullptr));
    Shape shape = shapeOf(list);
    shape.fillRule = Qt::OddEvenFill;
    Shapes const shapes {shape, shapeOf(ellipseList(KpReal(0, 0, 20), KpReal(0, 0, -10)))};
    open(shapes);
    QCOMPARE(difference(shapes), QString());
    QCOMPARE(m_browser.run("return [...document.querySelectorAll('#outlines > *')].map("
                           "e => e.tagName + ' ' + getComputedStyle(e).fillRule)"),
        QJsonValue(QJsonArray {"path evenodd", "ellipse nonzero"}));
    QCOMPARE(m_browser.run("return document.querySelector('#outlines ellipse').getAttribute('ry')"),
        QJsonValue("10"));
}

void TestDraggedPage::restoreGivesTheFirstSize()
{
    Shapes const shapes = oneLine();
    open(shapes);
    drag("corner", "mouse", {50, 50});
    QVERIFY(shownSize() != firstBox);
    m_browser.post(m_browser.pathTo("restore") + "/click", {});
    QCOMPARE(sizeText(), QString::fromUtf8("240 \303\227 160"));
    QCOMPARE(difference(shapes), QString());
}

void TestDraggedPage::pointsAreShownOnRequest()
{
    Shapes const shapes {shapeOf(ellipseList(KpReal(5, 0.25, 0), KpReal(7, 0.5, 0)))};
    QString const legend =
        "return [...document.querySelectorAll('#rules li')].filter(e => e.checkVisibility())"
        ".map(e => e.textContent + ' ' + e.querySelector('path').getAttribute('fill'))";
    open(shapes);
    QCOMPARE(m_browser.run(legend), QJsonValue(QJsonArray()));
    m_browser.post(m_browser.pathTo("points") + "/click", {});
    QJsonArray rules;
    for (int rule = 0; rule < ruleCount; ++rule) {
        BindingRule const& known = bindingRule(rule);
        rules << QString("%1: %2 %3")
                     .arg(QString::fromUtf8(known.name), QString::fromUtf8(known.meaning),
                         QColor::fromRgb(known.colour).name());
    }
    QCOMPARE(m_browser.run(legend), QJsonValue(rules));
    QCOMPARE(m_browser.run("return [...document.querySelectorAll('#marks > g')].map(e => "
                           "[...e.querySelectorAll('path')].map(p => p.getAttribute('fill'))"
                           ".concat(e.querySelector('title').textContent).join(' '))"),
        QJsonValue(QJsonArray {
            QString::fromUtf8("#2ca02c #2ca02c radius: rate \303\227 smaller side, rate 0.25"),
            QString::fromUtf8("#8c564b #8c564b radius: height \342\210\222 rate \303\227 smaller "
                              "side, rate 0.5"),
            QString::fromUtf8("#d62728 #1f77b4 x: rate \303\227 width, rate 0.5\n"
                              "y: rate \303\227 height, rate 0.5")}));
    m_browser.post(m_browser.pathTo("points") + "/click", {});
    QCOMPARE(m_browser.run(legend), QJsonValue(QJsonArray()));

    open(shapes, {"page", firstBox, true, QColor()});
    QCOMPARE(m_browser.run(legend), QJsonValue(rules));
}

/** The mark of the line's end stands at the right edge: beside the handle of the width. */
void TestDraggedPage::pointsFollowTheBox()
{
    open(oneLine(), {"page", firstBox, true, QColor()});
    drag("corner", "mouse", {70, 30});
    QJsonArray const at = m_browser
                              .run("const r = document.querySelectorAll('#marks > g')[1]"
                                   ".getBoundingClientRect(); "
                                   "return [r.x + r.width / 2, r.y + r.height / 2]")
                              .toArray();
    QPointF const handle = centreOf("width");
    QVERIFY(std::abs(at.at(0).toDouble() - handle.x()) < 1);
    QVERIFY(std::abs(at.at(1).toDouble() - handle.y()) < 1);
}

void TestDraggedPage::namesAreText()
{
    QString const name = QString("</script><script>document.title='taken'</script><!--&lt;\"'\\")
        + QChar(0x2028) + QChar(0x2029) + QString::fromUtf8("\360\237\223\220{{script}}");
    Shapes shapes = oneLine();
    shapes.front().name = name;
    open(shapes, {name, firstBox, false, QColor()});
    QCOMPARE(m_browser.run("return document.querySelector('#outlines title').textContent"),
        QJsonValue(name));
    QCOMPARE(m_browser.run("return document.querySelector('h1').textContent"), QJsonValue(name));
    QCOMPARE(m_browser.run("return document.getElementById('drawing').getAttribute('aria-label')"),
        QJsonValue(name));
    QCOMPARE(m_browser.run("return document.scripts.length"), QJsonValue(2));
    QCOMPARE(difference(shapes), QString());
}

void TestDraggedPage::policyStopsOtherScripts()
{
    open(oneLine());
    m_browser.run("const s = document.createElement('script'); s.textContent = 'window.taken = 1';"
                  "document.head.append(s)");
    QCOMPARE(m_browser.run("return window.taken"), QJsonValue());
    QStringList const complaints = m_browser.complaints();
    QCOMPARE(complaints.size(), 1);
    QVERIFY2(
        complaints.first().contains("Content Security Policy"), qPrintable(complaints.first()));
}

namespace {

QString const colours = "const c = (id, p) => getComputedStyle(document.querySelector(id))[p];"
                        "return [c('body', 'backgroundColor'), c('#stage', 'backgroundColor'), "
                        "c('#outlines path', 'stroke')]";
QJsonArray const lightColours {"rgb(243, 245, 248)", "rgb(255, 255, 255)", "rgb(31, 58, 95)"};

} // namespace

void TestDraggedPage::darkScreenGetsADarkPage()
{
    auto const prefer = [this](QString const& scheme) {
        m_browser.post("/goog/cdp/execute",
            {{"cmd", "Emulation.setEmulatedMedia"},
                {"params",
                    QJsonObject {{"features",
                        QJsonArray {
                            QJsonObject {{"name", "prefers-color-scheme"}, {"value", scheme}}}}}}});
    };
    open(oneLine());
    prefer("light");
    QCOMPARE(m_browser.run(colours), QJsonValue(lightColours));
    prefer("dark");
    QCOMPARE(m_browser.run(colours),
        QJsonValue(QJsonArray {"rgb(17, 21, 27)", "rgb(25, 31, 40)", "rgb(169, 200, 238)"}));
    prefer("light");
}

void TestDraggedPage::groundChoosesTheInk_data()
{
    QTest::addColumn<QColor>("background");
    QTest::addColumn<QString>("ground");
    QTest::addColumn<QString>("ink");
    QString const light = "rgb(31, 58, 95)";
    QString const dark = "rgb(169, 200, 238)";
    QTest::newRow("white") << QColor(Qt::white) << "rgb(255, 255, 255)" << light;
    QTest::newRow("navy") << QColor(0, 0, 64) << "rgb(0, 0, 64)" << dark;
    QTest::newRow("translucent") << QColor(255, 224, 0, 128) << "rgba(255, 224, 0, 0.5" << light;
    QTest::newRow("none") << QColor(Qt::transparent) << "rgb(255, 255, 255)" << light;
}

void TestDraggedPage::groundChoosesTheInk()
{
    QFETCH(QColor, background);
    QFETCH(QString, ground);
    QFETCH(QString, ink);
    open(oneLine(), {"page", firstBox, false, background});
    QJsonArray const shown = m_browser.run(colours).toArray();
    QVERIFY2(shown.at(1).toString().startsWith(ground), qPrintable(shown.at(1).toString()));
    QCOMPARE(shown.at(2).toString(), ink);
}

void TestDraggedPage::narrowScreenNeedsNoScrolling()
{
    auto const device = [this](QString const& command, QJsonObject const& parameters) {
        m_browser.post("/goog/cdp/execute", {{"cmd", command}, {"params", parameters}});
    };
    device("Emulation.setDeviceMetricsOverride",
        {{"width", 320}, {"height", 640}, {"deviceScaleFactor", 2}, {"mobile", true}});
    Shapes const shapes = oneLine();
    open(shapes,
        {"a-name-without-a-single-blank-that-is-longer-than-the-screen-is-wide", QSizeF(1000, 20),
            true, QColor()});
    QCOMPARE(m_browser.run("return [innerWidth, document.documentElement.scrollWidth]"),
        QJsonValue(QJsonArray {320, 320}));
    drag("corner", "touch", {40, 60});
    QVERIFY(shownSize().width() > 1100);
    QCOMPARE(difference(shapes), QString());
    device("Emulation.clearDeviceMetricsOverride", {});
}

void TestDraggedPage::handlesSpeakToAssistiveTechnology()
{
    open(oneLine());
    press("corner", QChar(0xE014));
    QString const spoken =
        "return ['width', 'height', 'corner'].map(id => { const e = document.getElementById(id);"
        "return ['role', 'aria-label', 'aria-valuemin', 'aria-valuenow', 'aria-valuetext']"
        ".map(a => e.getAttribute(a)).join(', ') })";
    QCOMPARE(m_browser.run(spoken),
        QJsonValue(QJsonArray {"slider, Width, 1, 241, 241", "slider, Height, 1, 160, 160",
            QString::fromUtf8("slider, Width and height, 1, 241, 241 \303\227 160")}));
    QString const largest = "return ['width', 'height'].every(id => { const e = "
                            "document.getElementById(id); return "
                            "Number(e.getAttribute('aria-valuemax')) >= "
                            "Number(e.getAttribute('aria-valuenow')) })";
    QCOMPARE(m_browser.run(largest), QJsonValue(true));
}

QTEST_GUILESS_MAIN(TestDraggedPage)

#include "tst_draggedpage.moc"

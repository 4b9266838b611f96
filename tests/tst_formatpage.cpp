// SPDX-License-Identifier: MIT
#include "testing.h"

#include <kpcolor.h>
#include <kppathsegcurveto.h>
#include <kppathseglineto.h>
#include <kppathseglist.h>
#include <kprecentfilemanager.h>
#include <xmlstreamwriter.h>

#include <QDomDocument>
#include <QFile>
#include <QRegularExpression>
#include <QXmlStreamReader>

namespace {

/** What stands between the readings of the tree and of the stream. */
QString const between = QStringLiteral(" | ");

QString told(KpReal const& real)
{
    return QStringLiteral("%1, rule %2, rate %3").arg(real.value).arg(real.base).arg(real.rate);
}

template <class Source> QString coordinate(Source& source)
{
    KpPathSegLineTo line(
        KpPoint(KpReal(KpReal::FromRight, 5, 7), KpReal(KpReal::Absolute, 0, 0)), nullptr);
    line.parse(source, 0);
    return told(line.pt.x);
}

template <class Source> QString outline(Source& source)
{
    KpPathSegList list;
    list.closed = list.noFill = list.noLine = true;
    if (!list.parse(source, 0))
        return QStringLiteral("not read");
    QStringList told {list.closed ? "closed" : "open"};
    if (list.noFill)
        told.append("not filled");
    if (list.noLine)
        told.append("not stroked");
    for (KpPathSeg const* segment : qAsConst(list.segs)) {
        static char const* const names[] = {"move", "line", "curve", "ellipse"};
        told.append(names[segment->type - KpPathSeg::SegMoveTo]);
    }
    return told.join(", ");
}

template <class Source> QString colour(Source& source)
{
    KpColor read;
    read.setTintColor(QColor(0x10, 0x20, 0x30), 0, 4);
    read.parse(source);
    return QStringLiteral("%1, slot %2, tint %3, reference %4")
        .arg(read.isValid() ? read.name(QColor::HexArgb) : "invalid")
        .arg(read.themeIndex())
        .arg(read.tint())
        .arg(read.refColor().name());
}

QString entry(QDomElement& root)
{
    KpRecentFileManager manager;
    manager.parse(root);
    if (manager.m_files.isEmpty())
        return QStringLiteral("left out");
    KpRecentFileManager::RecFile const& file = manager.m_files.first();
    QStringList told {file.path, QStringLiteral("type %1").arg(file.type)};
    if (!file.teamName.isEmpty())
        told.append("of " + file.teamName);
    if (file.isTop)
        told.append("pinned");
    return told.join(", ");
}

/** A document around a piece that does not stand alone. */
QString documentOf(QString const& piece)
{
    if (piece.startsWith("<X") || piece.startsWith("<Y"))
        return "<LineTo>" + piece + "</LineTo>";
    if (piece.startsWith("<Geometry") || piece.startsWith("<Fill"))
        return piece;
    return "<RecentFiles><RecentFiles>" + piece + "</RecentFiles></RecentFiles>";
}

/** What the readers make of it: from the tree, and from the stream if there is such a reader. */
QStringList readings(QString const& piece)
{
    QString const text = documentOf(piece);
    QDomDocument document;
    document.setContent(text);
    QDomElement tree = document.documentElement();
    QXmlStreamReader stream(text);
    stream.readNextStartElement();
    if (tree.tagName() == "LineTo")
        return {coordinate(tree), coordinate(stream)};
    if (tree.tagName() == "Geometry")
        return {outline(tree), outline(stream)};
    if (tree.tagName() == "Fill")
        return {colour(tree), colour(stream)};
    return {entry(tree)};
}

} // namespace

/** The rows of docs/format.md that show a piece of a document and what the readers make of it. */
class TestFormatPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pieceIsReadAsThePageSays_data();
    void pieceIsReadAsThePageSays();
    void exampleIsWrittenAsThePageShows();
};

void TestFormatPage::pieceIsReadAsThePageSays_data()
{
    QTest::addColumn<QString>("piece");
    QTest::addColumn<QString>("told");
    QFile page(KPGEOMETRY_SOURCE "/docs/format.md");
    QVERIFY(page.open(QIODevice::ReadOnly));
    QRegularExpression const code("`([^`]*)`");
    int rows = 0;
    for (QString const& line : QString::fromUtf8(page.readAll()).split('\n')) {
        if (!line.startsWith("| `<"))
            continue;
        QStringList cells;
        for (auto match = code.globalMatch(line); match.hasNext();)
            cells.append(match.next().captured(1));
        QTest::addRow("%s", qPrintable(cells.first()))
            << cells.first() << QStringList(cells.mid(1)).join(between);
        ++rows;
    }
    // A page that is written in another way must not leave the test without rows.
    QVERIFY(rows >= 50);
}

void TestFormatPage::pieceIsReadAsThePageSays()
{
    QFETCH(QString, piece);
    QFETCH(QString, told);
    QCOMPARE(readings(piece).join(between), told);
}

void TestFormatPage::exampleIsWrittenAsThePageShows()
{
    QFile file(KPGEOMETRY_SOURCE "/examples/format/geometry.xml");
    QVERIFY(file.open(QIODevice::ReadOnly));
    QByteArray const shown = file.readAll();
    KpPathSegList list;
    QXmlStreamReader reader(shown);
    reader.readNextStartElement();
    QVERIFY(list.parse(reader, 0));
    // What is written without a rule is read as a part of the height, and has its rule from then on.
    for (KpPathSeg* const segment : qAsConst(list.segs)) {
        if (KpPathSegCurveTo* const curve = segment->toCurveTo())
            curve->pt.y.base = curve->ctrl2.y.base = KpReal::Absolute;
    }
    QByteArray written;
    XmlStreamWriter writer(&written);
    writer.setAutoFormatting(true);
    list.saveTo(writer);
    QCOMPARE(written.trimmed(), shown.trimmed());
}

QTEST_APPLESS_MAIN(TestFormatPage)
#include "tst_formatpage.moc"

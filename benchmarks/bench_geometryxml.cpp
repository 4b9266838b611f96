// SPDX-License-Identifier: MIT
// The XML of an outline beside Qt's own reader, writer and tree on the same elements, at 10,000
// and at 100,000 segments, and the numbers of names beside a hash.

#include "kppathsegellipse.h"
#include "kppathseglist.h"
#include "quarkmanager.h"
#include "xmlstreamwriter.h"

#include <QDomDocument>
#include <QHash>
#include <QRandomGenerator>
#include <QSet>
#include <QStringList>
#include <QXmlStreamReader>

#include <benchmark/benchmark.h>

#include <map>
#include <vector>

namespace {

/** A point of a glyph that was drawn in 2048 units and is shown at 1000. */
QPointF glyphPoint(QRandomGenerator& random)
{
    double const scale = 1000.0 / 2048.0;
    return {random.bounded(-200, 2048) * scale, random.bounded(-400, 2048) * scale};
}

/** Lines and curves by turns, and in every twentieth place an ellipse. */
void fill(KpPathSegList& list, qint64 count)
{
    QRandomGenerator random(20210);
    list.moveTo(glyphPoint(random));
    for (qint64 i = 1; i < count; ++i) {
        QPointF const end = glyphPoint(random);
        QPointF const control1 = glyphPoint(random);
        QPointF const control2 = glyphPoint(random);
        if (i % 20 == 0)
            list.addTail(new KpPathSegEllipse(end, control1.x(), control1.y(), nullptr));
        else if (i % 2 == 0)
            list.lineTo(end);
        else
            list.curveTo(control1, control2, end);
    }
    list.updateRate(996.582, 1367.19);
}

QByteArray saved(KpPathSegList& list)
{
    QByteArray text;
    XmlStreamWriter writer(&text);
    list.saveTo(writer);
    return text;
}

void segments(benchmark::State& state)
{
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/** An attribute whose text is at hand. */
struct ReadyAttribute
{
    QString name;
    QString text;
};

/** A start tag whose texts are at hand, or an end tag if it has no name. */
struct ReadyTag
{
    QString name;
    std::vector<ReadyAttribute> attributes;
};

std::vector<ReadyTag> readyTags(QByteArray const& text)
{
    // As names are in a program, each is one text.
    QSet<QString> names;
    auto const shared = [&names](QStringRef const& name) { return *names.insert(name.toString()); };
    std::vector<ReadyTag> tags;
    QXmlStreamReader reader(text);
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement()) {
            tags.push_back({shared(reader.name()), {}});
            QXmlStreamAttributes const attributes = reader.attributes();
            for (QXmlStreamAttribute const& attribute : attributes) {
                tags.back().attributes.push_back(
                    {shared(attribute.name()), attribute.value().toString()});
            }
        } else if (reader.isEndElement()) {
            tags.emplace_back();
        }
    }
    return tags;
}

/** One outline in all its forms. */
struct Forms
{
    explicit Forms(qint64 count)
    {
        fill(outline, count);
        text = saved(outline);
        tags = readyTags(text);
        document.setContent(text);
    }

    KpPathSegList outline;
    QByteArray text;
    std::vector<ReadyTag> tags;
    QDomDocument document;
};

/** The outline of that many segments. Kept until the end, for ours and peers to find one heap. */
Forms& formsFor(benchmark::State const& state)
{
    static std::map<qint64, Forms> forms;
    return forms.try_emplace(state.range(0), state.range(0)).first->second;
}

/**
 * Has the allocator put together what was freed before, which it otherwise does in the middle of
 * whatever comes next: that takes up to twice as long then.
 */
void settleHeap(benchmark::State& state)
{
    state.PauseTiming();
    std::vector<char> const large(100000);
    benchmark::DoNotOptimize(large.data());
    state.ResumeTiming();
}

void saveStream(benchmark::State& state)
{
    KpPathSegList& outline = formsFor(state).outline;
    for (auto _ : state) {
        settleHeap(state);
        benchmark::DoNotOptimize(saved(outline));
    }
    segments(state);
}

/** The same elements through the same writer, their texts being at hand. */
void saveStreamPeerReadyTexts(benchmark::State& state)
{
    std::vector<ReadyTag> const& tags = formsFor(state).tags;
    for (auto _ : state) {
        settleHeap(state);
        QByteArray text;
        XmlStreamWriter writer(&text);
        for (ReadyTag const& tag : tags) {
            if (tag.name.isEmpty()) {
                writer.writeEndElement();
                continue;
            }
            writer.writeStartElement(tag.name);
            for (ReadyAttribute const& attribute : tag.attributes)
                writer.writeAttribute(attribute.name, attribute.text);
        }
        benchmark::DoNotOptimize(text);
    }
    segments(state);
}

void parseStream(benchmark::State& state)
{
    QByteArray const& text = formsFor(state).text;
    for (auto _ : state) {
        settleHeap(state);
        QXmlStreamReader reader(text);
        reader.readNextStartElement();
        KpPathSegList list;
        list.parse(reader, 0);
        benchmark::DoNotOptimize(list.segs.data());
    }
    segments(state);
}

/** The reader alone: every token, and the attributes of every start tag, nothing kept. */
void parseStreamPeerBareReader(benchmark::State& state)
{
    QByteArray const& text = formsFor(state).text;
    for (auto _ : state) {
        settleHeap(state);
        QXmlStreamReader reader(text);
        while (!reader.atEnd()) {
            if (reader.readNext() == QXmlStreamReader::StartElement)
                benchmark::DoNotOptimize(reader.attributes());
        }
    }
    segments(state);
}

void saveDom(benchmark::State& state)
{
    KpPathSegList& outline = formsFor(state).outline;
    for (auto _ : state) {
        settleHeap(state);
        QDomDocument document;
        QDomElement root = document.createElement(QStringLiteral("Root"));
        document.appendChild(root);
        outline.saveTo(root);
        benchmark::DoNotOptimize(root.firstChildElement());
    }
    segments(state);
}

/** The same tree, its texts being at hand. */
void saveDomPeerReadyTexts(benchmark::State& state)
{
    std::vector<ReadyTag> const& tags = formsFor(state).tags;
    for (auto _ : state) {
        settleHeap(state);
        QDomDocument document;
        QDomElement root = document.createElement(QStringLiteral("Root"));
        document.appendChild(root);
        QDomNode parent = root;
        for (ReadyTag const& tag : tags) {
            if (tag.name.isEmpty()) {
                parent = parent.parentNode();
                continue;
            }
            QDomElement element = document.createElement(tag.name);
            for (ReadyAttribute const& attribute : tag.attributes)
                element.setAttribute(attribute.name, attribute.text);
            parent.appendChild(element);
            parent = element;
        }
        benchmark::DoNotOptimize(root.firstChildElement());
    }
    segments(state);
}

void parseDom(benchmark::State& state)
{
    QDomDocument const& document = formsFor(state).document;
    for (auto _ : state) {
        settleHeap(state);
        KpPathSegList list;
        list.parse(document.documentElement(), 0);
        benchmark::DoNotOptimize(list.segs.data());
    }
    segments(state);
}

/** A walk through the same tree that asks for the same attributes, nothing kept. */
void parseDomPeerWalk(benchmark::State& state)
{
    QDomDocument const& document = formsFor(state).document;
    QString const names[] = {QStringLiteral("V"), QStringLiteral("B"), QStringLiteral("P")};
    for (auto _ : state) {
        settleHeap(state);
        for (QDomElement segment = document.documentElement().firstChildElement();
             !segment.isNull(); segment = segment.nextSiblingElement()) {
            for (QDomElement coordinate = segment.firstChildElement(); !coordinate.isNull();
                 coordinate = coordinate.nextSiblingElement()) {
                for (QString const& name : names)
                    benchmark::DoNotOptimize(coordinate.attribute(name));
            }
        }
    }
    segments(state);
}

QStringList documentNames()
{
    return {QStringLiteral("MoveTo"), QStringLiteral("LineTo"), QStringLiteral("CurveTo"),
        QStringLiteral("Ellipse"), QStringLiteral("X"), QStringLiteral("Y"), QStringLiteral("A"),
        QStringLiteral("B"), QStringLiteral("C"), QStringLiteral("D")};
}

void quarkFromString(benchmark::State& state)
{
    QStringList const names = documentNames();
    for (auto _ : state) {
        for (QString const& name : names)
            benchmark::DoNotOptimize(QuarkManager::quarkFromString(name));
    }
}

void quarkFromStringPeerHash(benchmark::State& state)
{
    QStringList const names = documentNames();
    QHash<QString, int> numbers;
    for (int number = 0; number < 62; ++number) {
        QString const name = QuarkManager::quarkToString(number);
        if (!name.isEmpty())
            numbers.insert(name, number);
    }
    for (auto _ : state) {
        for (QString const& name : names)
            benchmark::DoNotOptimize(numbers.value(name));
    }
}

} // namespace

#define OUTLINE_BENCHMARK(function)                                                                \
    BENCHMARK(function)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond)

OUTLINE_BENCHMARK(saveStream);
OUTLINE_BENCHMARK(saveStreamPeerReadyTexts);
OUTLINE_BENCHMARK(parseStream);
OUTLINE_BENCHMARK(parseStreamPeerBareReader);
OUTLINE_BENCHMARK(saveDom);
OUTLINE_BENCHMARK(saveDomPeerReadyTexts);
OUTLINE_BENCHMARK(parseDom);
OUTLINE_BENCHMARK(parseDomPeerWalk);
BENCHMARK(quarkFromString);
BENCHMARK(quarkFromStringPeerHash);

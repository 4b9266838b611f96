// SPDX-License-Identifier: MIT
// Uses all three libraries as a client does: draws an outline, resizes it, saves and reads it.
#include <kpgeometryversion.h>
#include <kppath.h>
#include <kppathsegellipse.h>
#include <kppathseglist.h>
#include <quarkmanager.h>
#include <xmlstreamwriter.h>

#include <QByteArray>
#include <QDomDocument>
#include <QXmlStreamReader>

#include <cstdio>

namespace {

int failures = 0;

void expect(bool holds, char const* what)
{
    if (!holds) {
        std::fprintf(stderr, "not so: %s\n", what);
        ++failures;
    }
}

} // namespace

#if KPGEOMETRY_VERSION < KPGEOMETRY_VERSION_CHECK(1, 0, 0)                                         \
    || KPGEOMETRY_VERSION >= KPGEOMETRY_VERSION_CHECK(2, 0, 0)
#error "the preprocessor takes the version for another one"
#endif

int main()
{
    expect(KPGEOMETRY_VERSION_CHECK(1, 2, 3) == 0x010203, "each part of a version has its byte");
    std::printf("version %s\n", KPGEOMETRY_VERSION_STRING);

    KpPathSegList list;
    list.moveTo(QPointF(0.0, 0.0));
    list.lineTo(QPointF(100.0, 0.0));
    list.lineTo(QPointF(100.0, 50.0));
    list.closed = true;
    list.updateRate(100.0, 50.0);
    list.updateValue(200.0, 50.0);
    expect(list.segs.at(1)->pt.x.value == 200.0, "the outline follows its box");
    expect(list.isClockwise(), "the outline runs clockwise");

    KpPath path;
    list.toPath(path);
    expect(path.count() == 4 && path.last().type == 4, "the drawing is closed");

    list.addTail(new KpPathSegEllipse(QPointF(10.0, 10.0), 5.0, 3.0, nullptr));
    QByteArray xml;
    XmlStreamWriter writer(&xml);
    list.saveTo(writer);
    expect(xml.startsWith("<Geometry Closed=\"1\"><MoveTo><X V=\"0\" B=\"1\" P=\"0\"/>"),
        "the stream form is written");

    QXmlStreamReader reader(xml);
    reader.readNextStartElement();
    KpPathSegList fromStream;
    expect(fromStream.parse(reader, 0U) && fromStream.segs.count() == 4,
        "the stream form is read back");

    QDomDocument document;
    document.setContent(xml);
    KpPathSegList fromDom;
    expect(fromDom.parse(document.documentElement(), 0U) && fromDom.segs.count() == 4
            && fromDom.segs.at(3)->toEllipse(),
        "the same text is read as a tree");

    expect(QuarkManager::quarkToString(55) == QLatin1String("Ellipse"), "names have numbers");
    if (failures == 0)
        std::puts("consumer: all is well");
    return failures == 0 ? 0 : 1;
}

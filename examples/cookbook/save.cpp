// SPDX-License-Identifier: MIT
// Writes an outline into a document of one's own.

#include <kpbound.h>
#include <kppathseglineto.h>
#include <kppathseglist.h>
#include <kppathsegmoveto.h>
#include <xmlstreamwriter.h>

#include <QByteArray>

#include <cstdio>

//! [save]
QByteArray save(KpPathSegList& outline, QString const& name, int width, int height)
{
    QByteArray document;
    XmlStreamWriter writer(&document); // or a QIODevice that is open for writing
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeStartElement(QStringLiteral("Shapes"));
    writer.writeStartElement(QStringLiteral("Shape"));
    writer.writeAttribute(QStringLiteral("Name"), name);
    writer.writeAttribute(QStringLiteral("Width"), width); // kpgeom takes the box from here
    writer.writeAttribute(QStringLiteral("Height"), height);
    outline.updateValue(width, height);
    outline.saveTo(writer);
    writer.writeEndDocument();
    return document;
}
//! [save]

int main()
{
    KpPathSegList outline;
    outline.addTail(new KpPathSegMoveTo(
        KpBound::point(KpBound::partOfWidth(0), KpBound::partOfHeight(0.5)), nullptr));
    // Written without its rule, and so read back in proportion to the box, with the rate 0.
    outline.addTail(new KpPathSegLineTo(
        KpBound::point(KpBound::absolute(12), KpBound::fromBottom(8)), nullptr));
    std::fputs(save(outline, QStringLiteral("Mark"), 120, 80).constData(), stdout);
}

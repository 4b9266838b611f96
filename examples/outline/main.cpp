// SPDX-License-Identifier: MIT
#include <kppath.h>
#include <kppathseglist.h>
#include <xmlstreamwriter.h>

#include <QTextStream>

int main()
{
    KpPathSegList outline; // a barn in a box of 120 by 80
    outline.moveTo({0, 80});
    outline.lineTo({0, 40});
    outline.curveTo({20, 0}, {100, 0}, {120, 40});
    outline.lineTo({120, 80});
    outline.closed = true;
    outline.updateRate(120, 80); // from here on the coordinates follow the box
    outline.updateValue(240, 80); // the same barn, twice as wide

    KpPath path; // for QPainter: path.toPainterPath()
    outline.toPath(path);

    QString xml;
    XmlStreamWriter writer(&xml);
    outline.saveTo(writer);
    QTextStream(stdout) << path.count() << " elements\n" << xml << '\n';
}

// SPDX-License-Identifier: MIT
// Reads the same text from a tree and from a stream, and shows where the two readers differ.

#include <kppathseglist.h>

#include <QDomDocument>
#include <QXmlStreamReader>

#include <cstdio>

//! [readers]
bool readTree(KpPathSegList& outline, QString const& text)
{
    QDomDocument document;
    document.setContent(text);
    return outline.parse(document.documentElement(), 0); // the Geometry itself, not its parent
}

bool readStream(KpPathSegList& outline, QString const& text)
{
    QXmlStreamReader reader(text);
    reader.readNextStartElement(); // onto the start tag of the Geometry
    return outline.parse(reader, 0) && !reader.hasError();
}
//! [readers]

void print(char const* reader, bool read, KpPathSegList const& outline)
{
    std::printf("  %-6s", reader);
    if (!read)
        std::fputs(" not read", stdout);
    for (KpPathSeg const* segment : outline.segs)
        std::printf(
            " x %g, rule %d, rate %g", segment->pt.x.value, segment->pt.x.base, segment->pt.x.rate);
    std::putchar('\n');
}

int main()
{
    //! [texts]
    char const* const texts[] = {
        "<Geometry Closed='0'><LineTo><X V='6' B='3' P='4'/></LineTo></Geometry>", // alike
        "<Geometry><LineTo><X V='6'/></LineTo></Geometry>",
        "<Geometry Closed='0'><LineTo><X V='6' B='' P=''/></LineTo></Geometry>",
        "<Geometry Closed='0'><LineTo><X V='1'/><X V='2'/></LineTo></Geometry>",
    };
    for (char const* const text : texts) {
        std::puts(text);
        KpPathSegList fromTree;
        print("tree", readTree(fromTree, QString::fromLatin1(text)), fromTree);
        KpPathSegList fromStream;
        print("stream", readStream(fromStream, QString::fromLatin1(text)), fromStream);
    }
    //! [texts]
}

// SPDX-License-Identifier: MIT
// Has each reader read each kind of input, in a function of its own, for a tool that counts the
// instructions from when that function is entered to when it is left.
//
// usage: growth --count READER SIZE   reads each kind, SIZE bytes and four times as many; prints a
//                                     line each, the kind
//        growth --readers             prints the names of all readers, a line each
//        growth READER KIND SIZE      reads that, and prints how many bytes it was, and "refused" if
//                                     the reader has refused it

#include "check/outlinecheck.h"
#include "document/documentnormalizer.h"
#include "document/documentrewriter.h"
#include "document/outlinedocument.h"
#include "import/anyimport.h"
#include "import/drawingmlimport.h"
#include "import/pathimport.h"
#include "kinds.h"
#include "kpfilepathmanager.h"
#include "kppathseglist.h"

#include <QBuffer>
#include <QDomDocument>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QXmlStreamReader>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iterator>

/** What is counted, under a name that is the same with every compiler. */
extern "C" [[gnu::noinline]] void counted(std::function<void()> const& operation);

void counted(std::function<void()> const& operation)
{
    operation();
    // Not called last, lest the compiler leaves the function before.
    asm volatile("" ::: "memory");
}

namespace {

using Kinds = std::vector<Kind>;

QString const file = QStringLiteral("in");

struct Reader
{
    char const* name;
    std::vector<Kinds const* (*)()> kinds;
    QByteArray start; ///< of the root element
    QByteArray end;
    bool (*read)(QByteArray const& text); ///< false if it is refused
};

/** In a document type and a root element, in the encoding that the parts ask for. */
QByteArray documentOf(Reader const& reader, Parts const& parts)
{
    if (reader.start.isEmpty())
        return parts.body;
    QByteArray const root = reader.start + parts.body + reader.end;
    if (parts.subset == "utf-16")
        return QTextCodec::codecForName("UTF-16")->fromUnicode(QString::fromUtf8(root));
    if (parts.subset == "latin-1")
        return "<?xml version='1.0' encoding='ISO-8859-1'?>" + root;
    QByteArray const type =
        parts.subset.isEmpty() ? QByteArray() : "<!DOCTYPE a [" + parts.subset + "]>";
    return type + root;
}

bool load(QByteArray const& text)
{
    static QTemporaryDir const folder;
    QFile document(folder.filePath(QStringLiteral("a.xml")));
    if (!document.open(QIODevice::WriteOnly) || document.write(text) != text.size())
        std::exit(EXIT_FAILURE);
    document.close();
    QDomDocument tree;
    return KpFilePathManager::loadXmlFile(tree, document.fileName());
}

bool readOutlines(QByteArray const& text)
{
    Diagnostics diagnostics;
    return OutlineDocument::read(text, file, diagnostics).has_value();
}

bool check(QByteArray const& text)
{
    Diagnostics diagnostics;
    return checkOutlines(
        repeatableInput(text), file, CheckScope::Everything, [](Diagnostic const& /*found*/) {},
        diagnostics)
        .has_value();
}

bool normalize(QByteArray const& text)
{
    Diagnostics diagnostics;
    QBuffer output;
    output.open(QIODevice::WriteOnly);
    return normalizeDocument(repeatableInput(text), file, output, diagnostics);
}

bool rewrite(QByteArray const& text)
{
    Diagnostics diagnostics;
    QBuffer output;
    output.open(QIODevice::WriteOnly);
    return rewriteDocument(
        *repeatableInput(text)(), file, output, [](Outline& /*outline*/) { return true; },
        diagnostics);
}

bool import(QByteArray const& text)
{
    Diagnostics diagnostics;
    return importAny(text, {file, 0.0, [] { return QStringList(); }}, diagnostics).has_value();
}

bool readPresets(QByteArray const& text)
{
    Diagnostics diagnostics;
    return readPresetShapes(text, file, diagnostics).has_value();
}

bool readCustom(QByteArray const& text)
{
    Diagnostics diagnostics;
    return holdsCustomShapes(text) && readCustomShapes(text, file, diagnostics).has_value();
}

bool readPath(QByteArray const& text)
{
    Diagnostics diagnostics;
    return importPath(QString::fromUtf8(text), {file, {}, 1.0}, diagnostics).has_value();
}

/** The library's two readers, of what is well-formed. */
bool parse(QByteArray const& text)
{
    QDomDocument tree;
    if (tree.setContent(text)) {
        KpPathSegList list;
        list.parse(tree.documentElement(), 0);
    }
    QXmlStreamReader stream(text);
    stream.readNextStartElement();
    KpPathSegList list;
    list.parse(stream, 0);
    return !tree.isNull();
}

std::vector<Reader> const& readers()
{
    static QByteArray const odf =
        "<office:document xmlns:office='urn:oasis:names:tc:opendocument:xmlns:office:1.0'"
        " xmlns:draw='urn:oasis:names:tc:opendocument:xmlns:drawing:1.0'"
        " xmlns:svg='urn:oasis:names:tc:opendocument:xmlns:svg-compatible:1.0'"
        " xmlns:style='urn:oasis:names:tc:opendocument:xmlns:style:1.0'"
        " xmlns:text='urn:oasis:names:tc:opendocument:xmlns:text:1.0'><office:body><draw:page>";
    auto const shapes = [] { return &outlineKinds(); };
    auto const markup = [] { return &markupKinds(); };
    static std::vector<Reader> const all {
        {"load", {markup}, "<a>", "</a>", load},
        {"outlines", {markup, shapes}, "<Shapes>", "</Shapes>", readOutlines},
        {"check", {shapes}, "<Shapes>", "</Shapes>", check},
        {"normalize", {shapes}, "<Shapes>", "</Shapes>", normalize},
        {"rewrite", {shapes}, "<Shapes>", "</Shapes>", rewrite},
        {"geometry", {shapes}, "<Geometry>", "</Geometry>", parse},
        {"svg", {[] { return &pictureKinds(); }},
            "<svg xmlns='http://www.w3.org/2000/svg' width='100' height='100'>", "</svg>", import},
        {"stencil", {[] { return &pictureKinds(); }},
            "<shape xmlns='http://www.daa.com.au/~james/dia-shape-ns'"
            " xmlns:svg='http://www.w3.org/2000/svg'><name>n</name>"
            "<svg:svg xmlns='http://www.w3.org/2000/svg'>",
            "</svg:svg></shape>", import},
        {"odf", {[] { return &odfKinds(); }}, odf, "</draw:page></office:body></office:document>",
            import},
        {"presets", {[] { return &drawingKinds(); }, [] { return &presetKinds(); }}, "<p><shape>",
            "</shape></p>", readPresets},
        {"custom", {[] { return &drawingKinds(); }},
            "<spPr><xfrm><ext cx='9' cy='9'/></xfrm><custGeom>", "</custGeom></spPr>", readCustom},
        {"path", {[] { return &pathKinds(); }}, {}, {}, readPath},
    };
    return all;
}

Reader const* readerOf(std::string_view name)
{
    for (Reader const& reader : readers()) {
        if (name == reader.name)
            return &reader;
    }
    return nullptr;
}

Kind const* kindOf(Reader const& reader, std::string_view name)
{
    for (auto const kinds : reader.kinds) {
        for (Kind const& kind : *kinds()) {
            if (name == kind.name)
                return &kind;
        }
    }
    return nullptr;
}

void countAll(Reader const& reader, int size)
{
    // What is done once, as to open a font, is no part of the first.
    reader.read(documentOf(reader, Parts()));
    for (auto const kinds : reader.kinds) {
        for (Kind const& kind : *kinds()) {
            for (int const factor : {1, 4}) {
                QByteArray const text = documentOf(reader, kind.make(size * factor));
                counted([&] { reader.read(text); });
            }
            std::puts(kind.name);
        }
    }
}

} // namespace

int main(int argc, char* argv[])
{
    QGuiApplication const application(argc, argv);
    std::string_view const first = argc > 1 ? argv[1] : "";
    if (first == "--readers") {
        for (Reader const& reader : readers())
            std::puts(reader.name);
        return EXIT_SUCCESS;
    }
    bool const isCount = first == "--count";
    Reader const* const reader = argc == 4 ? readerOf(argv[isCount ? 2 : 1]) : nullptr;
    int const size = argc == 4 ? std::atoi(argv[3]) : 0;
    Kind const* const kind = reader && !isCount ? kindOf(*reader, argv[2]) : nullptr;
    if (!reader || size <= 0 || (!isCount && !kind)) {
        std::fputs("usage: growth --readers | --count READER SIZE | READER KIND SIZE\n", stderr);
        return EXIT_FAILURE;
    }
    if (isCount) {
        countAll(*reader, size);
    } else {
        QByteArray const text = documentOf(*reader, kind->make(size));
        bool const isRead = reader->read(text);
        std::printf("%d%s\n", text.size(), isRead ? "" : " refused");
    }
    return EXIT_SUCCESS;
}

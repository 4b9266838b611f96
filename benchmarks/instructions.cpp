// SPDX-License-Identifier: MIT
// Does one operation of the library twice, each time in a function of its own, for a tool that
// counts the instructions from when that function is entered to when it is left.
//
// usage: instructions NAME    does the operation
//        instructions --names  prints the names of all, a line each
//        instructions --built  prints with what this is built and runs

#include "colorutil.h"
#include "gaussianblur.h"
#include "kppath.h"
#include "kppathseglist.h"
#include "kprecentfilemanager.h"
#include "md5.h"
#include "quarkmanager.h"
#include "xmlstreamwriter.h"

#include <QDomDocument>
#include <QGuiApplication>
#include <QXmlStreamReader>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <gnu/libc-version.h>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/** What is counted, under a name that is the same with every compiler. */
extern "C" [[gnu::noinline]] void counted(std::function<void()> const& operation);

void counted(std::function<void()> const& operation)
{
    operation();
    // Not called last, lest the compiler leaves the function before.
    asm volatile("" ::: "memory");
}

namespace {

using Operation = std::function<void()>;

/** Tells the compiler that the value is used. */
template <class Value> void use(Value const& value)
{
    asm volatile("" : : "r"(&value) : "memory");
}

/** A thousand segments, half of them lines, half of them curves. */
std::shared_ptr<KpPathSegList> outline()
{
    auto list = std::make_shared<KpPathSegList>();
    list->moveTo({0.0, 0.0});
    for (int i = 1; i < 1000; ++i) {
        QPointF const end(i * 1.5, i * 0.75);
        if (i % 2 == 0)
            list->lineTo(end);
        else
            list->curveTo(end * 0.25, end * 0.5, end);
    }
    list->updateRate(120.0, 80.0);
    return list;
}

QByteArray saved(KpPathSegList& list)
{
    QByteArray text;
    XmlStreamWriter writer(&text);
    list.saveTo(writer);
    return text;
}

/** Repeatable numbers without an order. */
class Numbers
{
public:
    quint32 next()
    {
        m_state = m_state * 1664525U + 1013904223U;
        return m_state >> 8U;
    }

private:
    quint32 m_state = 1;
};

Operation streamParse()
{
    return [text = saved(*outline())] {
        QXmlStreamReader reader(text);
        reader.readNextStartElement();
        KpPathSegList list;
        list.parse(reader, 0);
    };
}

Operation streamSave()
{
    return [list = outline()] { use(saved(*list)); };
}

Operation domParse()
{
    QDomDocument document;
    document.setContent(saved(*outline()));
    return [document] {
        KpPathSegList list;
        list.parse(document.documentElement(), 0);
    };
}

Operation domSave()
{
    return [list = outline()] {
        QDomDocument document;
        QDomElement root = document.createElement(QStringLiteral("Root"));
        document.appendChild(root);
        list->saveTo(root);
    };
}

Operation toPath()
{
    return [list = outline()] {
        KpPath path;
        list->toPath(path);
        use(path);
    };
}

Operation fromPath()
{
    auto path = std::make_shared<KpPath>();
    outline()->toPath(*path);
    return [path] {
        KpPathSegList list;
        list.fromPath(*path);
    };
}

Operation updateValue()
{
    return [list = outline()] { list->updateValue(240.0, 60.0); };
}

Operation updateRate()
{
    return [list = outline()] { list->updateRate(240.0, 60.0); };
}

Operation applyTransform()
{
    return [list = outline()] { list->applyTransform(QMatrix(0.5, 0.25, -0.25, 0.5, 3.0, 4.0)); };
}

Operation translate()
{
    return [list = outline()] { list->translate(3.0, 4.0); };
}

Operation cloneAndDestroy()
{
    return [list = outline()] { std::unique_ptr<KpPathSegList> const copy(list->clone()); };
}

Operation toUndoValue()
{
    return [list = outline()] {
        QVector<int> ints;
        QVector<double> doubles;
        list->toUndoValue(ints, doubles);
    };
}

Operation fromUndoValue()
{
    auto const source = outline();
    QVector<int> ints;
    QVector<double> doubles;
    source->toUndoValue(ints, doubles);
    return [ints, doubles, count = source->segs.count()]() mutable {
        int intPos = 0;
        int doublePos = 0;
        KpPathSegList list;
        list.fromUndoValue(ints, doubles, intPos, doublePos, count);
    };
}

Operation walkForwards()
{
    return [list = outline()] {
        for (KpPathSeg* seg = list->segs.first(); seg; seg = list->getNextSeg(seg))
            use(seg);
    };
}

Operation walkBackwards()
{
    return [list = outline()] {
        for (KpPathSeg* seg = list->segs.last(); seg; seg = list->getPrevSeg(seg))
            use(seg);
    };
}

Operation jumpToNext()
{
    auto const list = outline();
    std::vector<KpPathSeg*> places;
    Numbers numbers;
    std::generate_n(std::back_inserter(places), 1000,
        [&] { return list->segs.at(static_cast<int>(numbers.next() % 1000U)); });
    return [list, places] {
        for (KpPathSeg* const seg : places)
            use(list->getNextSeg(seg));
    };
}

Operation quarks()
{
    QStringList const names {QStringLiteral("px"), QStringLiteral("cc"), QStringLiteral("MoveTo"),
        QStringLiteral("CurveTo"), QStringLiteral("Ellipse"), QStringLiteral("D"),
        QStringLiteral("Shape")};
    return [names] {
        for (QString const& name : names)
            use(QuarkManager::quarkFromString(name));
    };
}

/** A hundred colours at as many fractions. */
Operation colours(QColor (*change)(QColor const&, double))
{
    return [change] {
        Numbers numbers;
        for (int i = 0; i < 100; ++i)
            use(change(QColor(numbers.next()), 0.01 * i));
    };
}

Operation tint()
{
    return colours([](QColor const& colour, double t) { return ColorUtil::tint(colour, t); });
}

Operation shade()
{
    return colours([](QColor const& colour, double t) { return ColorUtil::shade(colour, t); });
}

Operation colourFunctions()
{
    ColorUtil::initColorFunctionMap();
    return [names = ColorUtil::mapColorFuncs.keys()] {
        for (QString const& name : names)
            use(ColorUtil::getColorFunc(name));
    };
}

Operation blur(unsigned int radius)
{
    // For the pixmap; never destroyed, which would take longer than the rest.
    static char name[] = "instructions";
    static char* arguments[] = {name, nullptr};
    static int count = 1;
    static auto const* const application = new QGuiApplication(count, arguments);
    use(application);
    QImage picture(320, 200, QImage::Format_ARGB32_Premultiplied);
    Numbers numbers;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            picture.setPixel(x, y, qPremultiply(numbers.next() * 257U));
    }
    return [picture, radius] { use(GaussianBlur::blurBitmap(picture, radius, 0)); };
}

Operation narrowBlur()
{
    return blur(3);
}

Operation wideBlur()
{
    return blur(50);
}

Operation digest()
{
    std::vector<char> bytes(65536);
    Numbers numbers;
    for (char& byte : bytes)
        byte = static_cast<char>(numbers.next());
    return [bytes] {
        MD5 md5(bytes.data(), bytes.size());
        use(md5.digest());
    };
}

/** With a full list. */
std::shared_ptr<KpRecentFileManager> recentFiles()
{
    auto manager = std::make_shared<KpRecentFileManager>();
    for (int i = 1000; i < 1064; ++i) {
        manager->addOpenFileInfo(
            QStringLiteral("/home/user/Documents/project%1/drawing%1.x").arg(i),
            KpRecentFileManager::RecAuto, QString());
    }
    return manager;
}

Operation recentAdd()
{
    return [manager = recentFiles(), number = 2000]() mutable {
        manager->addOpenFileInfo(QStringLiteral("/home/user/Documents/drawing%1.x").arg(++number),
            KpRecentFileManager::RecAuto, QString());
    };
}

Operation recentListing()
{
    return [manager = recentFiles()] {
        QVector<KpRecentFileManager::RecFileInfo> infos;
        manager->getRecentFiles(infos);
    };
}

/** An operation, and what prepares it. */
struct Road
{
    char const* name;
    Operation (*prepared)();
};

constexpr Road roads[] = {
    {"parse-stream", streamParse},
    {"save-stream", streamSave},
    {"parse-dom", domParse},
    {"save-dom", domSave},
    {"to-path", toPath},
    {"from-path", fromPath},
    {"update-value", updateValue},
    {"update-rate", updateRate},
    {"transform", applyTransform},
    {"translate", translate},
    {"clone", cloneAndDestroy},
    {"to-undo", toUndoValue},
    {"from-undo", fromUndoValue},
    {"walk-forwards", walkForwards},
    {"walk-backwards", walkBackwards},
    {"next-anywhere", jumpToNext},
    {"quarks", quarks},
    {"tint", tint},
    {"shade", shade},
    {"colour-functions", colourFunctions},
    {"blur-3", narrowBlur},
    {"blur-50", wideBlur},
    {"digest", digest},
    {"recent-add", recentAdd},
    {"recent-listing", recentListing},
};

/** On what else than this project's code the counts depend. */
void printBuilt()
{
#ifdef __clang__
    char const* const compiler = "clang " __clang_version__;
#else
    char const* const compiler = "gcc " __VERSION__;
#endif
    std::printf("%s, Qt %s, glibc %s, ", compiler, qVersion(), gnu_get_libc_version());
#ifdef __x86_64__
    bool const isWide = __builtin_cpu_supports("avx2") != 0;
    std::puts(isWide ? "x86-64 with AVX2" : "x86-64 without AVX2");
#else
    std::puts("another processor");
#endif
}

} // namespace

int main(int argc, char** argv)
{
    std::string_view const name = argc == 2 ? argv[1] : "";
    if (name == "--built") {
        printBuilt();
        return 0;
    }
    for (Road const& road : roads) {
        if (name == "--names")
            std::puts(road.name);
        if (name != road.name)
            continue;
        Operation const operation = road.prepared();
        // What is done once in a process only is done before.
        operation();
        counted(operation);
        return 0;
    }
    return name == "--names" ? 0 : 2;
}

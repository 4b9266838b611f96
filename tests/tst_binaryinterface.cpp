// SPDX-License-Identifier: MIT
#include "kppath.h"
#include "kppathsegcurveto.h"
#include "kppathsegellipse.h"
#include "kppathseglineto.h"
#include "kppathseglist.h"
#include "kppathsegmoveto.h"
#include "kprecentfilemanager.h"
#include "xmlstreamwriter.h"

#include <QFile>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QtTest>

#include <cstring>
#include <dlfcn.h>
#include <elf.h>
#include <link.h>
#include <memory>
#include <type_traits>

#ifdef KPGEOMETRY_SANITIZED
constexpr bool sanitized = true;
#else
constexpr bool sanitized = false;
#endif
#ifdef KPGEOMETRY_COVERAGE
constexpr bool measured = true;
#else
constexpr bool measured = false;
#endif

namespace {

/** Where `field` lies in `object`; offsetof is not for classes with virtual functions. */
template <class Object, class Field> int offset(Object const& object, Field const& field)
{
    return int(reinterpret_cast<char const*>(&field) - reinterpret_cast<char const*>(&object));
}

/** One symbol as nm lists it. */
struct Symbol
{
    QString name;
    QChar type; ///< nm's letter: T code, B and D data, V and W weak, U undefined
};

/** The dynamic symbols of `library`. `error` says why there are none. */
QVector<Symbol> dynamicSymbols(QString const& library, QString const& which, QString& error)
{
    QProcess nm;
    nm.start(KPGEOMETRY_NM, {"-D", "-P", which, library});
    if (!nm.waitForFinished() || nm.exitStatus() != QProcess::NormalExit || nm.exitCode() != 0) {
        error = QStringLiteral("%1 of binutils on %2: %3 %4")
                    .arg(KPGEOMETRY_NM, library, nm.errorString(),
                        QString::fromLocal8Bit(nm.readAllStandardError()));
        return {};
    }
    QVector<Symbol> symbols;
    for (QByteArray const& line : nm.readAllStandardOutput().split('\n')) {
        QList<QByteArray> const fields = line.split(' ');
        // A version as in "memcpy@GLIBC_2.14" belongs to the library that defines it.
        if (fields.count() >= 2)
            symbols.append({QString::fromLatin1(fields[0]).section('@', 0, 0), fields[1][0]});
    }
    if (symbols.isEmpty())
        error = QStringLiteral("no symbols in %1").arg(library);
    return symbols;
}

/** What a library exports without being asked to, from its compiler or linker. */
bool isByproduct(Symbol const& symbol)
{
    // Marks of the GNU linker at the ends of the data.
    if (QStringList {"__bss_start", "_edata", "_end"}.contains(symbol.name))
        return true;
    // Inline functions of the standard library and of Qt that an unoptimised build does not
    // expand. Their classes ask for default visibility, so they are exported, but as weak
    // symbols: any library's copy will do.
    static QRegularExpression const foreign(QStringLiteral("^_ZN?K?(St|9__gnu_cxx|[0-9]+Q)"));
    if (QStringLiteral("VWu").contains(symbol.type) && foreign.match(symbol.name).hasMatch())
        return true;
    // clang's sanitizer describes the type of every function that is called through a
    // pointer; AddressSanitizer marks each global variable.
    if (sanitized
        && (symbol.name.startsWith("_ZTIF") || symbol.name.startsWith("_ZTSF")
            || symbol.name.startsWith("__odr_asan")))
        return true;
    // Where fuzz targets are built, so are marks of the sections that count the branches.
    if (sanitized
        && (symbol.name.startsWith("__start___sancov")
            || symbol.name.startsWith("__stop___sancov")))
        return true;
    // The run-time library of gcov is linked into each library.
    return measured && (symbol.name.startsWith("__gcov_") || symbol.name == "mangle_path");
}

QStringList exportedNames(QString const& library, QString& error)
{
    QStringList names;
    for (Symbol const& symbol : dynamicSymbols(library, "--defined-only", error)) {
        if (!isByproduct(symbol))
            names << symbol.name;
    }
    names.sort();
    return names;
}

/** A committed list of names. */
struct NameList
{
    QStringList required;
    QStringList optional;
};

/** The sections of the list `file`, those before any header under the empty name. */
QMap<QString, NameList> readLists(QString const& file, QString& error)
{
    QMap<QString, NameList> lists;
    QFile source(QStringLiteral(KPGEOMETRY_TEST_DATA "/binaryinterface/") + file);
    if (!source.open(QIODevice::ReadOnly)) {
        error = source.errorString();
        return lists;
    }
    QString section;
    QString previous;
    for (QByteArray const& bytes : source.readAll().split('\n')) {
        QString line = QString::fromLatin1(bytes).trimmed();
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        if (line.startsWith('[')) {
            section = line.mid(1, line.size() - 2);
            previous.clear();
            continue;
        }
        bool const optional = line.startsWith("optional ");
        if (optional)
            line = line.section(' ', 1);
        if (line <= previous)
            error += QStringLiteral("%1 is not sorted at %2\n").arg(file, line);
        previous = line;
        (optional ? lists[section].optional : lists[section].required) << line;
    }
    return lists;
}

/** The differences between a library and its list, a line each; empty if there are none. */
QString differences(QStringList const& actual, NameList const& expected)
{
    QStringList lines;
    for (QString const& name : expected.required) {
        if (!actual.contains(name))
            lines << QStringLiteral("missing: %1").arg(name);
    }
    for (QString const& name : actual) {
        if (!expected.required.contains(name) && !expected.optional.contains(name))
            lines << QStringLiteral("not on the list: %1").arg(name);
    }
    return lines.join('\n');
}

void* libraryHandle()
{
    static void* const handle = dlopen(KPGEOMETRY_LIBRARY, RTLD_NOW);
    return handle;
}

void* addressOf(QString const& name)
{
    return dlsym(libraryHandle(), name.toLatin1().constData());
}

/** The names of what the dynamic linker loads along with the library, sorted. */
QStringList neededLibraries()
{
    link_map const* map = nullptr;
    if (dlinfo(libraryHandle(), RTLD_DI_LINKMAP, &map) != 0)
        return {};
    char const* names = nullptr;
    for (ElfW(Dyn) const* entry = map->l_ld; entry->d_tag != DT_NULL; ++entry) {
        if (entry->d_tag == DT_STRTAB)
            names = reinterpret_cast<char const*>(entry->d_un.d_ptr);
    }
    QStringList needed;
    for (ElfW(Dyn) const* entry = map->l_ld; entry->d_tag != DT_NULL; ++entry) {
        if (entry->d_tag == DT_NEEDED)
            needed << QString::fromLatin1(names + entry->d_un.d_val);
    }
    needed.sort();
    return needed;
}

/** The size of the object at `address` as its symbol gives it, 0 if there is no symbol. */
std::size_t symbolSize(void* address)
{
    Dl_info info;
    void* entry = nullptr;
    if (!dladdr1(address, &info, &entry, RTLD_DL_SYMENT) || !entry)
        return 0;
    return static_cast<ElfW(Sym) const*>(entry)->st_size;
}

/** Where the vtable pointer of `object` points. */
template <class Object> void* const* vtableOf(Object const& object)
{
    void* const* pointer = nullptr;
    std::memcpy(&pointer, static_cast<void const*>(&object), sizeof pointer);
    return pointer;
}

} // namespace

class TestBinaryInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void boundRealHasItsLayout();
    void boundPointHasItsLayout();
    void boundValuesAreCopiedAsMemory();
    void segmentHasItsLayout();
    void moveAndLineAddNoFields();
    void curveHasItsLayout();
    void ellipseHasItsLayout();
    void listHasItsLayout();
    void recentFilesHaveTheirLayout();
    void recentFileTypesHaveTheirNumbers();
    void segmentTypesHaveTheirNumbers();
    void segmentsAndListsAreNotAssignable();
    void resultTypesAreThoseOfTheInterface();

    void vtableHasItsSlots_data();
    void vtableHasItsSlots();
    void objectsPointToTheExportedVtables();

    void exportedSymbolsAreThoseOfTheList_data();
    void exportedSymbolsAreThoseOfTheList();
    void importedSymbolsAreThoseOfTheList();
    void neededLibrariesAreThoseOfTheList();
    void fixedColoursNeedNoCodeAtLoad();
    void nothingIsDestroyedAtExit_data();
    void nothingIsDestroyedAtExit();
};

void TestBinaryInterface::initTestCase()
{
    QVERIFY2(libraryHandle(), dlerror());
}

void TestBinaryInterface::boundRealHasItsLayout()
{
    KpReal const real;
    QCOMPARE(offset(real, real.base), 0);
    QCOMPARE(offset(real, real.rate), 8);
    QCOMPARE(offset(real, real.value), 16);
    QCOMPARE(int(sizeof real), 24);
    QCOMPARE(int(alignof(KpReal)), 8);
    QCOMPARE(int(sizeof real.base), 2);
    QVERIFY((std::is_same<decltype(real.base), qint16>::value));
    QVERIFY((std::is_same<decltype(real.rate), double>::value));
    QVERIFY((std::is_same<decltype(real.value), double>::value));
}

void TestBinaryInterface::boundPointHasItsLayout()
{
    KpPoint const point;
    QCOMPARE(offset(point, point.x), 0);
    QCOMPARE(offset(point, point.y), 24);
    QCOMPARE(int(sizeof point), 48);
    QCOMPARE(int(alignof(KpPoint)), 8);
}

void TestBinaryInterface::boundValuesAreCopiedAsMemory()
{
    QVERIFY(std::is_trivially_copyable<KpReal>::value);
    QVERIFY(std::is_trivially_copyable<KpPoint>::value);
    QVERIFY(std::is_standard_layout<KpReal>::value);
    QVERIFY(std::is_standard_layout<KpPoint>::value);
    QVERIFY(std::is_trivially_destructible<KpPoint>::value);

    KpPoint const source(KpReal(-7, 0.1, 1e300), KpReal(32767, -0.0, 5e-324));
    KpPoint copy;
    std::memcpy(static_cast<void*>(&copy), &source, sizeof copy);
    QCOMPARE(int(copy.x.base), -7);
    QVERIFY(copy.x.rate == 0.1 && copy.x.value == 1e300);
    QCOMPARE(int(copy.y.base), 32767);
    QVERIFY(std::signbit(copy.y.rate) && copy.y.value == 5e-324);
}

void TestBinaryInterface::segmentHasItsLayout()
{
    KpPathSegMoveTo const move(QPointF(), nullptr);
    KpPathSeg const& seg = move;
    QCOMPARE(offset(seg, seg.type), 8);
    QCOMPARE(offset(seg, seg.owner), 16);
    QCOMPARE(offset(seg, seg.pt), 24);
    QCOMPARE(int(sizeof seg), 72);
    QCOMPARE(int(sizeof seg.type), 4);
    QVERIFY(std::is_abstract<KpPathSeg>::value);
    QVERIFY(std::has_virtual_destructor<KpPathSeg>::value);
}

void TestBinaryInterface::moveAndLineAddNoFields()
{
    KpPathSegMoveTo const move(QPointF(), nullptr);
    KpPathSegLineTo const line(QPointF(), nullptr);
    QCOMPARE(int(sizeof move), 72);
    QCOMPARE(int(sizeof line), 72);
    // The base lies at the start, so a pointer to it is a pointer to the segment.
    QCOMPARE(offset(move, static_cast<KpPathSeg const&>(move)), 0);
    QCOMPARE(offset(line, static_cast<KpPathSeg const&>(line)), 0);
}

void TestBinaryInterface::curveHasItsLayout()
{
    KpPathSegCurveTo const curve(QPointF(), QPointF(), QPointF(), nullptr);
    QCOMPARE(offset(curve, static_cast<KpPathSeg const&>(curve)), 0);
    QCOMPARE(offset(curve, curve.ctrl1), 72);
    QCOMPARE(offset(curve, curve.ctrl2), 120);
    QCOMPARE(int(sizeof curve), 168);
}

void TestBinaryInterface::ellipseHasItsLayout()
{
    KpPathSegEllipse const ellipse(QPointF(), 0.0, 0.0, nullptr);
    QCOMPARE(offset(ellipse, static_cast<KpPathSeg const&>(ellipse)), 0);
    QCOMPARE(offset(ellipse, ellipse.a), 72);
    QCOMPARE(offset(ellipse, ellipse.b), 96);
    QCOMPARE(int(sizeof ellipse), 120);
}

void TestBinaryInterface::listHasItsLayout()
{
    KpPathSegList const list;
    QCOMPARE(offset(list, list.closed), 8);
    QCOMPARE(offset(list, list.noLine), 9);
    QCOMPARE(offset(list, list.noFill), 10);
    QCOMPARE(offset(list, list.segs), 16);
    QCOMPARE(int(sizeof list), 24);
    QVERIFY(std::has_virtual_destructor<KpPathSegList>::value);
}

void TestBinaryInterface::recentFilesHaveTheirLayout()
{
    KpRecentFileManager const manager;
    QCOMPARE(offset(manager, manager.m_isModified), 0);
    QCOMPARE(offset(manager, manager.m_maxCount), 4);
    QCOMPARE(offset(manager, manager.m_recentFileFolder), 8);
    QCOMPARE(offset(manager, manager.m_libraryFolder), 16);
    QCOMPARE(offset(manager, manager.m_symbolFolder), 24);
    QCOMPARE(offset(manager, manager.m_files), 32);
    QCOMPARE(offset(manager, manager.m_folders), 40);
    QCOMPARE(int(sizeof manager), 48);
    QVERIFY(!std::is_polymorphic<KpRecentFileManager>::value);

    KpRecentFileManager::RecFile const file {};
    QCOMPARE(offset(file, file.isTop), 0);
    QCOMPARE(offset(file, file.type), 4);
    QCOMPARE(offset(file, file.path), 8);
    QCOMPARE(offset(file, file.teamName), 16);
    QCOMPARE(int(sizeof file), 24);

    KpRecentFileManager::RecFileInfo const info {};
    QCOMPARE(offset(info, info.isTop), 0);
    QCOMPARE(offset(info, info.type), 4);
    QCOMPARE(offset(info, info.name), 8);
    QCOMPARE(offset(info, info.location), 16);
    QCOMPARE(offset(info, info.path), 24);
    QCOMPARE(int(sizeof info), 32);
}

void TestBinaryInterface::recentFileTypesHaveTheirNumbers()
{
    QCOMPARE(int(KpRecentFileManager::RecAuto), 0);
    QCOMPARE(int(KpRecentFileManager::RecLocal), 1);
    QCOMPARE(int(KpRecentFileManager::RecPersonal), 2);
    QCOMPARE(int(KpRecentFileManager::RecTeam), 3);
    QCOMPARE(int(KpRecentFileManager::RecGoogleDrive), 4);
    QCOMPARE(int(KpRecentFileManager::RecDropbox), 5);
}

void TestBinaryInterface::segmentTypesHaveTheirNumbers()
{
    QCOMPARE(int(KpPathSeg::SegMoveTo), 2);
    QCOMPARE(int(KpPathSeg::SegLineTo), 3);
    QCOMPARE(int(KpPathSeg::SegCurveTo), 4);
    QCOMPARE(int(KpPathSeg::SegEllipse), 5);
    QVERIFY((std::is_same<std::underlying_type_t<KpPathSeg::SegType>, int>::value));
}

void TestBinaryInterface::segmentsAndListsAreNotAssignable()
{
    QVERIFY(!std::is_copy_constructible<KpPathSegMoveTo>::value);
    QVERIFY(!std::is_copy_constructible<KpPathSegEllipse>::value);
    QVERIFY(!std::is_copy_assignable<KpPathSegCurveTo>::value);
    QVERIFY(std::is_copy_constructible<KpPathSegList>::value);
    QVERIFY(!std::is_copy_assignable<KpPathSegList>::value);
}

/** A mangled name holds the parameters of a function and not its result. */
void TestBinaryInterface::resultTypesAreThoseOfTheInterface()
{
    using Seg = KpPathSeg;
    using List = KpPathSegList;
    using DomWriter = void (Seg::*)(QDomElement&);
    using StreamWriter = void (Seg::*)(XmlStreamWriter&);
    using DomReader = bool (Seg::*)(QDomElement const&, unsigned int);
    using StreamReader = bool (Seg::*)(QXmlStreamReader&, unsigned int);
    using ListDomWriter = void (List::*)(QDomElement&);
    using ListStreamWriter = void (List::*)(XmlStreamWriter&);
    using ListDomReader = bool (List::*)(QDomElement const&, unsigned int);
    using ListStreamReader = bool (List::*)(QXmlStreamReader&, unsigned int);
    using RemoveOne = void (List::*)(int, bool);
    using RemoveMany = void (List::*)(QVector<int>, bool);

    QVERIFY((std::is_same<decltype(&Seg::startPt), QPointF (Seg::*)()>::value));
    QVERIFY((std::is_same<decltype(&Seg::setStartPt), void (Seg::*)(QPointF)>::value));
    QVERIFY(static_cast<DomWriter>(&Seg::saveTo) != nullptr);
    QVERIFY(static_cast<StreamWriter>(&Seg::saveTo) != nullptr);
    QVERIFY(static_cast<DomReader>(&Seg::parse) != nullptr);
    QVERIFY(static_cast<StreamReader>(&Seg::parse) != nullptr);
    QVERIFY((std::is_same<decltype(&Seg::clone), Seg* (Seg::*)()>::value));
    QVERIFY((std::is_same<decltype(&Seg::addToPath), void (Seg::*)(KpPath&)>::value));
    QVERIFY((std::is_same<decltype(&Seg::updateValue), void (Seg::*)(double, double)>::value));
    QVERIFY((std::is_same<decltype(&Seg::updateRate), void (Seg::*)(double, double)>::value));
    QVERIFY((std::is_same<decltype(&Seg::applyTransform), void (Seg::*)(QMatrix)>::value));
    QVERIFY((std::is_same<decltype(&Seg::translate), void (Seg::*)(double, double)>::value));
    QVERIFY((std::is_same<decltype(&Seg::toCurveTo), KpPathSegCurveTo* (Seg::*)()>::value));
    QVERIFY((std::is_same<decltype(&Seg::toEllipse), KpPathSegEllipse* (Seg::*)()>::value));
    QVERIFY((std::is_same<decltype(&Seg::isLastSeg), bool (Seg::*)()>::value));
    // An override with a result of its own kind would add a slot.
    QVERIFY((std::is_same<decltype(&KpPathSegMoveTo::clone), Seg* (KpPathSegMoveTo::*)()>::value));
    QVERIFY((std::is_same<decltype(&KpPathSegLineTo::clone), Seg* (KpPathSegLineTo::*)()>::value));
    QVERIFY(
        (std::is_same<decltype(&KpPathSegCurveTo::clone), Seg* (KpPathSegCurveTo::*)()>::value));
    QVERIFY(
        (std::is_same<decltype(&KpPathSegEllipse::clone), Seg* (KpPathSegEllipse::*)()>::value));

    QVERIFY((std::is_same<decltype(&List::clone), List* (List::*)()>::value));
    QVERIFY((std::is_same<decltype(&List::assign), void (List::*)(List const&)>::value));
    QVERIFY((std::is_same<decltype(&List::clear), void (List::*)()>::value));
    QVERIFY((std::is_same<decltype(&List::getClosed), bool (List::*)() const>::value));
    QVERIFY((std::is_same<decltype(&List::getNoLine), bool (List::*)() const>::value));
    QVERIFY((std::is_same<decltype(&List::getNoFill), bool (List::*)() const>::value));
    QVERIFY((std::is_same<decltype(&List::addTail), void (List::*)(Seg*)>::value));
    QVERIFY((std::is_same<decltype(&List::insertAt), void (List::*)(int, Seg*)>::value));
    QVERIFY((std::is_same<decltype(&List::moveTo), void (List::*)(QPointF)>::value));
    QVERIFY((std::is_same<decltype(&List::lineTo), void (List::*)(QPointF)>::value));
    QVERIFY(
        (std::is_same<decltype(&List::curveTo), void (List::*)(QPointF, QPointF, QPointF)>::value));
    QVERIFY((std::is_same<decltype(&List::removeAll), void (List::*)(bool)>::value));
    QVERIFY(static_cast<RemoveOne>(&List::removeAt) != nullptr);
    QVERIFY(static_cast<RemoveMany>(&List::removeAt) != nullptr);
    QVERIFY((std::is_same<decltype(&List::getNextSeg), Seg* (List::*)(Seg*) const>::value));
    QVERIFY((std::is_same<decltype(&List::getPrevSeg), Seg* (List::*)(Seg*) const>::value));
    QVERIFY((std::is_same<decltype(&List::translate), void (List::*)(double, double)>::value));
    QVERIFY((std::is_same<decltype(&List::updateValue), void (List::*)(double, double)>::value));
    QVERIFY((std::is_same<decltype(&List::updateRate), void (List::*)(double, double)>::value));
    QVERIFY((std::is_same<decltype(&List::applyTransform), void (List::*)(QMatrix)>::value));
    QVERIFY((std::is_same<decltype(&List::toPath), void (List::*)(KpPath&) const>::value));
    QVERIFY((std::is_same<decltype(&List::fromPath), void (List::*)(KpPath&)>::value));
    QVERIFY((std::is_same<decltype(&List::isClockwise), bool (List::*)()>::value));
    QVERIFY((std::is_same<decltype(&List::toUndoValue),
        void (List::*)(QVector<int>&, QVector<double>&)>::value));
    QVERIFY((std::is_same<decltype(&List::fromUndoValue),
        void (List::*)(QVector<int>&, QVector<double>&, int&, int&, int)>::value));
    QVERIFY(static_cast<ListDomWriter>(&List::saveTo) != nullptr);
    QVERIFY(static_cast<ListStreamWriter>(&List::saveTo) != nullptr);
    QVERIFY(static_cast<ListDomReader>(&List::parse) != nullptr);
    QVERIFY(static_cast<ListStreamReader>(&List::parse) != nullptr);
    QVERIFY((std::is_same<decltype(&KpPoint::fromUndoValue),
        void (KpPoint::*)(QVector<int>, QVector<double>, int&, int&)>::value));
}

void TestBinaryInterface::vtableHasItsSlots_data()
{
    QTest::addColumn<QString>("mangledClass");
    QTest::addColumn<QStringList>("slotNames");

    // Each kind's own override, or the function of the base where it has none. A virtual
    // destructor takes two slots: D1 destroys a complete object, D0 also frees it.
    QTest::newRow("segment") << "9KpPathSeg"
                             << QStringList {
                                    "_ZN9KpPathSegD1Ev",
                                    "_ZN9KpPathSegD0Ev",
                                    "_ZN9KpPathSeg7startPtEv",
                                    "_ZN9KpPathSeg10setStartPtE7QPointF",
                                    "__cxa_pure_virtual", // saveTo(QDomElement&)
                                    "__cxa_pure_virtual", // saveTo(XmlStreamWriter&)
                                    "__cxa_pure_virtual", // parse(QDomElement const&, unsigned)
                                    "__cxa_pure_virtual", // parse(QXmlStreamReader&, unsigned)
                                    "__cxa_pure_virtual", // clone()
                                    "__cxa_pure_virtual", // addToPath(KpPath&)
                                    "_ZN9KpPathSeg11updateValueEdd",
                                    "_ZN9KpPathSeg10updateRateEdd",
                                    "_ZN9KpPathSeg14applyTransformE7QMatrix",
                                    "_ZN9KpPathSeg9translateEdd",
                                    "_ZN9KpPathSeg9toCurveToEv",
                                    "_ZN9KpPathSeg9toEllipseEv",
                                };
    QTest::newRow("move") << "15KpPathSegMoveTo"
                          << QStringList {
                                 "_ZN15KpPathSegMoveToD1Ev",
                                 "_ZN15KpPathSegMoveToD0Ev",
                                 "_ZN15KpPathSegMoveTo7startPtEv",
                                 "_ZN15KpPathSegMoveTo10setStartPtE7QPointF",
                                 "_ZN15KpPathSegMoveTo6saveToER11QDomElement",
                                 "_ZN15KpPathSegMoveTo6saveToER15XmlStreamWriter",
                                 "_ZN15KpPathSegMoveTo5parseERK11QDomElementj",
                                 "_ZN15KpPathSegMoveTo5parseER16QXmlStreamReaderj",
                                 "_ZN15KpPathSegMoveTo5cloneEv",
                                 "_ZN15KpPathSegMoveTo9addToPathER6KpPath",
                                 "_ZN9KpPathSeg11updateValueEdd",
                                 "_ZN9KpPathSeg10updateRateEdd",
                                 "_ZN9KpPathSeg14applyTransformE7QMatrix",
                                 "_ZN9KpPathSeg9translateEdd",
                                 "_ZN9KpPathSeg9toCurveToEv",
                                 "_ZN9KpPathSeg9toEllipseEv",
                             };
    QTest::newRow("line") << "15KpPathSegLineTo"
                          << QStringList {
                                 "_ZN15KpPathSegLineToD1Ev",
                                 "_ZN15KpPathSegLineToD0Ev",
                                 "_ZN9KpPathSeg7startPtEv",
                                 "_ZN9KpPathSeg10setStartPtE7QPointF",
                                 "_ZN15KpPathSegLineTo6saveToER11QDomElement",
                                 "_ZN15KpPathSegLineTo6saveToER15XmlStreamWriter",
                                 "_ZN15KpPathSegLineTo5parseERK11QDomElementj",
                                 "_ZN15KpPathSegLineTo5parseER16QXmlStreamReaderj",
                                 "_ZN15KpPathSegLineTo5cloneEv",
                                 "_ZN15KpPathSegLineTo9addToPathER6KpPath",
                                 "_ZN9KpPathSeg11updateValueEdd",
                                 "_ZN9KpPathSeg10updateRateEdd",
                                 "_ZN9KpPathSeg14applyTransformE7QMatrix",
                                 "_ZN9KpPathSeg9translateEdd",
                                 "_ZN9KpPathSeg9toCurveToEv",
                                 "_ZN9KpPathSeg9toEllipseEv",
                             };
    QTest::newRow("curve") << "16KpPathSegCurveTo"
                           << QStringList {
                                  "_ZN16KpPathSegCurveToD1Ev",
                                  "_ZN16KpPathSegCurveToD0Ev",
                                  "_ZN9KpPathSeg7startPtEv",
                                  "_ZN9KpPathSeg10setStartPtE7QPointF",
                                  "_ZN16KpPathSegCurveTo6saveToER11QDomElement",
                                  "_ZN16KpPathSegCurveTo6saveToER15XmlStreamWriter",
                                  "_ZN16KpPathSegCurveTo5parseERK11QDomElementj",
                                  "_ZN16KpPathSegCurveTo5parseER16QXmlStreamReaderj",
                                  "_ZN16KpPathSegCurveTo5cloneEv",
                                  "_ZN16KpPathSegCurveTo9addToPathER6KpPath",
                                  "_ZN16KpPathSegCurveTo11updateValueEdd",
                                  "_ZN16KpPathSegCurveTo10updateRateEdd",
                                  "_ZN16KpPathSegCurveTo14applyTransformE7QMatrix",
                                  "_ZN16KpPathSegCurveTo9translateEdd",
                                  "_ZN16KpPathSegCurveTo9toCurveToEv",
                                  "_ZN9KpPathSeg9toEllipseEv",
                              };
    QTest::newRow("ellipse") << "16KpPathSegEllipse"
                             << QStringList {
                                    "_ZN16KpPathSegEllipseD1Ev",
                                    "_ZN16KpPathSegEllipseD0Ev",
                                    "_ZN9KpPathSeg7startPtEv",
                                    "_ZN9KpPathSeg10setStartPtE7QPointF",
                                    "_ZN16KpPathSegEllipse6saveToER11QDomElement",
                                    "_ZN16KpPathSegEllipse6saveToER15XmlStreamWriter",
                                    "_ZN16KpPathSegEllipse5parseERK11QDomElementj",
                                    "_ZN16KpPathSegEllipse5parseER16QXmlStreamReaderj",
                                    "_ZN16KpPathSegEllipse5cloneEv",
                                    "_ZN16KpPathSegEllipse9addToPathER6KpPath",
                                    "_ZN16KpPathSegEllipse11updateValueEdd",
                                    "_ZN16KpPathSegEllipse10updateRateEdd",
                                    "_ZN9KpPathSeg14applyTransformE7QMatrix",
                                    "_ZN9KpPathSeg9translateEdd",
                                    "_ZN9KpPathSeg9toCurveToEv",
                                    "_ZN16KpPathSegEllipse9toEllipseEv",
                                };
    QTest::newRow("list") << "13KpPathSegList"
                          << QStringList {
                                 "_ZN13KpPathSegListD1Ev",
                                 "_ZN13KpPathSegListD0Ev",
                             };
}

/**
 * Slots are compared by the address that a name stands for. gcc folds the two casts of the
 * base, which both return null, into one; the curve and the ellipse tell these slots apart.
 */
void TestBinaryInterface::vtableHasItsSlots()
{
    QFETCH(QString, mangledClass);
    QFETCH(QStringList, slotNames);

    auto* const table = static_cast<void**>(addressOf("_ZTV" + mangledClass));
    QVERIFY(table);
    std::size_t const size = (2 + std::size_t(slotNames.count())) * sizeof(void*);
    // AddressSanitizer counts the guard zone behind the table as part of it.
    if (sanitized)
        QVERIFY(symbolSize(table) >= size);
    else
        QCOMPARE(symbolSize(table), size);

    // Before the slots stand the offset of the object in itself and its type.
    QCOMPARE(table[0], nullptr);
    QVERIFY(addressOf("_ZTI" + mangledClass));
    QCOMPARE(table[1], addressOf("_ZTI" + mangledClass));
    // No complete object has the table of an abstract class, so gcc leaves its destructors' slots
    // null; clang fills them.
    bool const abstract = slotNames.contains("__cxa_pure_virtual");
    for (int i = 0; i < slotNames.count(); ++i) {
        void* const expected = addressOf(slotNames.at(i));
        QVERIFY2(expected, qPrintable(slotNames.at(i)));
        if (abstract && i < 2 && !table[2 + i])
            continue;
        QVERIFY2(table[2 + i] == expected,
            qPrintable(QStringLiteral("slot %1 is not %2").arg(i).arg(slotNames.at(i))));
    }
}

void TestBinaryInterface::objectsPointToTheExportedVtables()
{
    KpPathSegMoveTo const move(QPointF(), nullptr);
    KpPathSegLineTo const line(QPointF(), nullptr);
    KpPathSegCurveTo const curve(QPointF(), QPointF(), QPointF(), nullptr);
    KpPathSegEllipse const ellipse(QPointF(), 0.0, 0.0, nullptr);
    KpPathSegList const list;
    auto const slotsOf = [](char const* name) {
        return static_cast<void* const*>(addressOf(name)) + 2;
    };
    QCOMPARE(vtableOf(move), slotsOf("_ZTV15KpPathSegMoveTo"));
    QCOMPARE(vtableOf(line), slotsOf("_ZTV15KpPathSegLineTo"));
    QCOMPARE(vtableOf(curve), slotsOf("_ZTV16KpPathSegCurveTo"));
    QCOMPARE(vtableOf(ellipse), slotsOf("_ZTV16KpPathSegEllipse"));
    QCOMPARE(vtableOf(list), slotsOf("_ZTV13KpPathSegList"));
}

void TestBinaryInterface::exportedSymbolsAreThoseOfTheList_data()
{
    QTest::addColumn<QString>("library");
    QTest::newRow("kpgeometry") << KPGEOMETRY_LIBRARY;
#ifdef KPGEOMETRY_OWN_COMPANIONS
    QTest::newRow("KPBX") << KPGEOMETRY_KPBX_LIBRARY;
    QTest::newRow("kpgraphics") << KPGEOMETRY_KPGRAPHICS_LIBRARY;
#endif
}

void TestBinaryInterface::exportedSymbolsAreThoseOfTheList()
{
    QFETCH(QString, library);
    QString error;
    QMap<QString, NameList> const lists = readLists("exported.txt", error);
    QVERIFY2(error.isEmpty(), qPrintable(error));
    QCOMPARE(lists.keys(), (QStringList {"KPBX", "kpgeometry", "kpgraphics"}));

    QStringList const exported = exportedNames(library, error);
    QVERIFY2(error.isEmpty(), qPrintable(error));
    QString const found = differences(exported, lists.value(QTest::currentDataTag()));
    QVERIFY2(found.isEmpty(), qPrintable(found));
}

void TestBinaryInterface::importedSymbolsAreThoseOfTheList()
{
    QString error;
    NameList const list = readLists("imported.txt", error).value(QString());
    QVERIFY2(error.isEmpty(), qPrintable(error));

    QStringList const offered = exportedNames(KPGEOMETRY_KPBX_LIBRARY, error)
        + exportedNames(KPGEOMETRY_KPGRAPHICS_LIBRARY, error);
    QVERIFY2(error.isEmpty(), qPrintable(error));
    QStringList imported;
    for (Symbol const& symbol : dynamicSymbols(KPGEOMETRY_LIBRARY, "--undefined-only", error)) {
        if (offered.contains(symbol.name))
            imported << symbol.name;
    }
    QVERIFY2(error.isEmpty(), qPrintable(error));
    QString const found = differences(imported, list);
    QVERIFY2(found.isEmpty(), qPrintable(found));
}

/** The library takes the place of one in programs that bring nothing more. */
void TestBinaryInterface::neededLibrariesAreThoseOfTheList()
{
    NameList list {{"libKPBX.so.1", "libkpgraphics.so.1", "libQt5Core.so.5", "libQt5Gui.so.5",
                       "libQt5Xml.so.5", "libstdc++.so.6", "libc.so.6"},
        // The rest of the run time, which the linker may leave out where nothing refers to it.
        {"libm.so.6", "libgcc_s.so.1", "ld-linux-x86-64.so.2", "ld-linux-aarch64.so.1"}};
    // gcc gives a shared library the run time of the sanitizers, clang only the program.
    if (sanitized)
        list.optional << "libasan.so.8"
                      << "libubsan.so.1";
    QString const found = differences(neededLibraries(), list);
    QVERIFY2(found.isEmpty(), qPrintable(found));
}

void TestBinaryInterface::fixedColoursNeedNoCodeAtLoad()
{
    // Constant initialisation puts a value among the initialised data; what code has yet to set
    // is zero until then.
    QString error;
    QRegularExpression const fixedColour(QStringLiteral("^_ZN9ColorUtil[0-9]+s_"));
    int count = 0;
    for (Symbol const& symbol : dynamicSymbols(KPGEOMETRY_LIBRARY, "--defined-only", error)) {
        if (!fixedColour.match(symbol.name).hasMatch())
            continue;
        ++count;
        QVERIFY2(symbol.type == 'D', qPrintable(symbol.name));
    }
    QVERIFY2(error.isEmpty(), qPrintable(error));
    QCOMPARE(count, 15);
}

void TestBinaryInterface::nothingIsDestroyedAtExit_data()
{
    exportedSymbolsAreThoseOfTheList_data();
}

/** Whoever has a destructor run at exit, or at the end of a thread, imports one of these. */
void TestBinaryInterface::nothingIsDestroyedAtExit()
{
    QFETCH(QString, library);
    QString error;
    QStringList imported;
    for (Symbol const& symbol : dynamicSymbols(library, "--undefined-only", error))
        imported << symbol.name;
    QVERIFY2(error.isEmpty(), qPrintable(error));
    for (QString const name :
        {"__cxa_atexit", "__cxa_thread_atexit", "__cxa_thread_atexit_impl", "atexit", "on_exit"})
        QVERIFY2(!imported.contains(name), qPrintable(name));
}

QTEST_APPLESS_MAIN(TestBinaryInterface)
#include "tst_binaryinterface.moc"

// SPDX-License-Identifier: MIT
#include "testing.h"

#include <QProcess>
#include <QRegularExpression>
#include <QtTest>

#include <cstdlib>
#include <memory>

#include <cxxabi.h>

namespace {

/**
 * What prints, or changes what a whole process has one of. The tools' shared library uses none of
 * it: a window must be able to call it at any time, from any thread.
 *
 * Whole names without parameters, as patterns.
 */
QStringList const reserved {// What is printed, to the standard streams or to any other.
    "(__)?v?[df]?printf(_chk)?", "f?puts", "f?putc", "putchar", "perror", "fwrite",
    "std(in|out|err)", "write", "writev", "std::(cout|cerr|clog|cin)", "std::ios_base::Init::.*",
    "QFile::open", // with a FILE or a descriptor, see isReserved()
    "QTextStream::QTextStream", "QDebug::.*",
    // What is logged, and who gets it.
    "QMessageLogger::.*", "QLoggingCategory::.*", "qInstallMessageHandler", "qSetMessagePattern",
    "q(Debug|Info|Warning|Critical|Fatal)", "v?syslog",
    // The environment and the locale.
    "(secure_)?getenv", "setenv", "putenv", "unsetenv", "clearenv", "environ", "qgetenv", "qputenv",
    "qunsetenv", "qEnvironmentVariable.*", "setlocale", "uselocale", "std::locale::global",
    "QLocale::setDefault", "QTextCodec::setCodecForLocale",
    // Descriptors, the current folder, limits and signals.
    "dup[23]?", "close", "fcntl(64)?", "freopen(64)?", "pipe2?", "f?chdir", "umask",
    "setrlimit(64)?", "QDir::setCurrent", "signal", "sigaction", "sigprocmask", "raise", "kill",
    "fork", "exec[lv]p?e?", "system", "popen", "_?exit", "_Exit", "atexit", "QProcess::.*",
    // The application, and settings that all of it shares.
    "Q(Core|Gui)?Application::set.*", "Q(Core|Gui)?Application::Q(Core|Gui)?Application",
    "QGuiApplication::.*Cursor", "QStandardPaths::setTestModeEnabled", "QSettings::.*",
    "QPixmapCache::.*", "QFontDatabase::(add|remove).*", "QIcon::set.*", "qSetGlobalQHashSeed",
    "qsrand", "srand(om)?"};

/** Takes files by their names, as the library may. */
QString const openByName = QStringLiteral("QFile::open(QFlags<QIODevice::OpenModeFlag>)");

bool isReserved(QString const& symbol)
{
    static QRegularExpression const pattern(
        QRegularExpression::anchoredPattern("(" + reserved.join('|') + ")(\\[abi:[^]]*\\])?"));
    QString const name = symbol.section('@', 0, 0);
    return name != openByName && pattern.match(name.section('(', 0, 0)).hasMatch();
}

/** The full name in C++. Not every nm takes away the version behind a name before it asks. */
QString demangled(QString const& symbol)
{
    QByteArray const name = symbol.section('@', 0, 0).toLatin1();
    std::unique_ptr<char, decltype(&std::free)> const text(
        abi::__cxa_demangle(name.constData(), nullptr, nullptr, nullptr), &std::free);
    return text ? QString::fromLatin1(text.get()) : QString::fromLatin1(name);
}

/**
 * What the file takes from elsewhere, by its full name in C++.
 *
 * @param leftOut a member of an archive that is not looked into; none if empty
 */
QStringList importedSymbols(
    QStringList const& options, QString const& file, QString const& leftOut = QString())
{
    QProcess nm;
    nm.start(KPGEOMETRY_NM, QStringList {"-u"} + options + QStringList {file});
    if (!nm.waitForFinished() || nm.exitCode() != 0)
        return {};
    QStringList symbols;
    QString const mark = QStringLiteral(" U ");
    bool isLeftOut = false;
    for (QString const& line : QString::fromUtf8(nm.readAllStandardOutput()).split('\n')) {
        if (line.endsWith(".o:"))
            isLeftOut = line == leftOut + ':';
        if (line.contains(mark) && !isLeftOut)
            symbols << demangled(line.section(mark, 1));
    }
    symbols.removeDuplicates();
    symbols.sort();
    return symbols;
}

/** Those of them that are reserved, without parameters. */
QStringList reservedOf(QStringList const& symbols)
{
    QStringList found;
    for (QString const& symbol : symbols) {
        if (isReserved(symbol))
            found << symbol.section('@', 0, 0).section('(', 0, 0);
    }
    return found;
}

} // namespace

class TestKpgeomCore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leavesTheProcessAlone();
    void theToolIsFoundOut();
    void namesAreToldApart_data();
    void namesAreToldApart();
};

void TestKpgeomCore::leavesTheProcessAlone()
{
    QStringList const symbols = importedSymbols({}, KPGEOM_CORE_LIBRARY);
    // What it certainly uses: the list is that of this library, and by full names.
    QVERIFY(symbols.contains("QSvgRenderer::load(QByteArray const&)"));
    QVERIFY(symbols.contains("QFileDevice::flush()"));
    // What opens files has descriptors, but only those that it has opened itself.
    QStringList const ofOpening {"QFile::open", "close", "fcntl", "pipe2"};
    QCOMPARE(reservedOf(symbols).replaceInStrings("fcntl64", "fcntl"), ofOpening);
    QCOMPARE(reservedOf(importedSymbols({}, KPGEOM_CORE_LIBRARY, "opening.cpp.o")), QStringList());
}

/** The tool does what the library must not, so the same look at it finds that. */
void TestKpgeomCore::theToolIsFoundOut()
{
    QStringList const found = reservedOf(importedSymbols({"-D"}, KPGEOM_EXECUTABLE));
    QStringList expected {
        "QCoreApplication::setApplicationName", "QFile::open", "qInstallMessageHandler", "qputenv"};
    // A sanitizer has functions of the C library's names in the program itself.
    if (!Testing::sanitized)
        expected << "dup2"
                 << "fwrite"
                 << "stderr";
    for (QString const& name : qAsConst(expected))
        QVERIFY2(found.contains(name), qPrintable(name));
}

void TestKpgeomCore::namesAreToldApart_data()
{
    QTest::addColumn<bool>("expected");
    for (char const* const name : {"printf", "__printf_chk", "fprintf@GLIBC_2.2.5", "vprintf",
             "__fprintf_chk", "dprintf", "puts", "fputs", "fputc", "stdout", "stderr", "write",
             "std::cerr", "std::cout@GLIBCXX_3.4", "std::ios_base::Init::Init()",
             "QFile::open(_IO_FILE*, QFlags<QIODevice::OpenModeFlag>, QFlags<QFileDevice::"
             "FileHandleFlag>)",
             "QMessageLogger::warning(char const*, ...) const@Qt_5", "setenv", "putenv", "getenv",
             "qunsetenv(char const*)", "qEnvironmentVariableIsSet(char const*)", "dup", "dup2",
             "setlocale", "chdir", "QDir::setCurrent(QString const&)", "exit",
             "QCoreApplication::setOrganizationName(QString const&)",
             "QGuiApplication::setOverrideCursor(QCursor const&)"})
        QTest::newRow(name) << true;
    for (char const* const name : {"memcpy", "snprintf", "QIODevice::write(char const*, long long)",
             "QFileDevice::flush()", "QFile::open(QFlags<QIODevice::OpenModeFlag>)@Qt_5",
             "QFile::setFileName(QString const&)", "QCoreApplication::arguments()",
             "QXmlStreamWriter::writeDTD(QString const&)", "QPainter::setPen(QPen const&)"})
        QTest::newRow(name) << false;
}

void TestKpgeomCore::namesAreToldApart()
{
    QFETCH(bool, expected);
    QCOMPARE(isReserved(QTest::currentDataTag()), expected);
}

QTEST_GUILESS_MAIN(TestKpgeomCore)

#include "tst_kpgeomcore.moc"

// SPDX-License-Identifier: MIT
#include "literals.h"
#include "sequence.h"
#include "surroundings.h"
#include "testing.h"
#include "themes.h"

#include <QGuiApplication>
#include <QJsonDocument>
#include <QSet>

#include <cxxabi.h>
#include <memory>

namespace {

QByteArray committed(QString const& name)
{
    QFile file(QStringLiteral(KPGEOMETRY_VECTORS "/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/** The first line that differs, in both; empty if all are equal. */
QString firstDifference(QByteArray const& actual, QByteArray const& expected)
{
    QList<QByteArray> const ours = actual.split('\n');
    QList<QByteArray> const theirs = expected.split('\n');
    for (int i = 0; i < qMax(ours.count(), theirs.count()); ++i) {
        if (ours.value(i) != theirs.value(i))
            return QStringLiteral("line %1 is\n%2\nand not\n%3")
                .arg(QString::number(i + 1), QString::fromUtf8(ours.value(i)),
                    QString::fromUtf8(theirs.value(i)));
    }
    return {};
}

QVector<QJsonObject> const& committedVectors()
{
    static QVector<QJsonObject> const all = [] {
        QVector<QJsonObject> vectors;
        for (Vectors::File const& file : Vectors::files()) {
            for (QByteArray const& line : committed(file.name).split('\n')) {
                if (!line.isEmpty())
                    vectors.append(QJsonDocument::fromJson(line).object());
            }
        }
        return vectors;
    }();
    return all;
}

QSet<QString> functionsWithVectors()
{
    QSet<QString> functions;
    for (QJsonObject const& vector : committedVectors())
        functions.insert(vector.value("function").toString());
    return functions;
}

QSet<QString> functionsLeftOut()
{
    QSet<QString> functions;
    for (Vectors::LeftOut const& row : Vectors::leftOut())
        functions.insert(row.function);
    return functions;
}

/** A name as the vectors have it: with the usual names of the standard library's classes. */
QString readableName(QByteArray const& mangled)
{
    std::unique_ptr<char, decltype(&std::free)> const text(
        abi::__cxa_demangle(mangled.constData(), nullptr, nullptr, nullptr), &std::free);
    QString name = QString::fromLatin1(text.get());
    name.replace("std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >",
        "std::string");
    name.replace("std::basic_ifstream<char, std::char_traits<char> >", "std::ifstream");
    return name.remove("[abi:cxx11]");
}

/** All exported functions and variables; what describes types has no results. */
QSet<QString> exportedNames()
{
    QSet<QString> names;
    QFile file(KPGEOMETRY_TEST_DATA "/binaryinterface/exported.txt");
    if (!file.open(QIODevice::ReadOnly))
        return names;
    for (QByteArray const& line : file.readAll().split('\n')) {
        QByteArray const mangled = line.split(' ').last();
        if (mangled.startsWith("_Z") && !mangled.startsWith("_ZT"))
            names.insert(readableName(mangled));
    }
    return names;
}

/** Those that only the public headers have. */
QSet<QString> inlineNames()
{
    return {"KpBound::absolute(double)", "KpBound::fromBottom(double)",
        "KpBound::fromBottomPartOfSide(double)", "KpBound::fromRight(double)",
        "KpBound::fromRightPartOfSide(double)", "KpBound::partOfHeight(double)",
        "KpBound::partOfSide(double)", "KpBound::partOfWidth(double)",
        "KpBound::point(KpReal const&, KpReal const&)", "KpPoint::KpPoint()",
        "KpPoint::KpPoint(KpReal const&, KpReal const&)", "KpPoint::updateRate(double, double)",
        "KpPoint::updateValue(double, double)", "KpReal::KpReal()",
        "KpReal::KpReal(qint16, double, double)", "KpReal::updateRate(double, double)",
        "KpReal::updateValue(double, double)",
        "KpRecentFileManager::KpRecentFileManager(KpRecentFileManager const&)",
        "operator!=(KpColor const&, QColor const&)", "operator!=(QColor const&, KpColor const&)",
        "operator<<(QDataStream&, KpColor const&)", "operator<<(QDebug, KpColor const&)",
        "operator<<(QDebug, KpPath const&)", "operator<<(QDebug, KpPath::KpElement const&)",
        "operator<<(QDebug, KpPathSeg const&)", "operator<<(QDebug, KpPathSeg const*)",
        "operator<<(QDebug, KpPathSegList const&)", "operator<<(QDebug, KpPoint const&)",
        "operator<<(QDebug, KpReal const&)", "operator<<(QDebug, KpRecentFileManager const&)",
        "operator<<(QDebug, KpRecentFileManager::RecFile const&)",
        "operator<<(QDebug, KpRecentFileManager::RecFileInfo const&)",
        "operator==(KpColor const&, QColor const&)", "operator==(QColor const&, KpColor const&)",
        "operator>>(QDataStream&, KpColor&)"};
}

QStringList sorted(QSet<QString> const& names)
{
    QStringList list = names.values();
    list.sort();
    return list;
}

} // namespace

class tst_Vectors : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void committedFilesAreWhatTheLibraryGives_data();
    void committedFilesAreWhatTheLibraryGives();
    void theManifestIsCommitted();
    void everyPublicFunctionHasVectorsOrAReason();
    void noFunctionIsMadeUp();
    void onlyWhatTheCLibraryComputesIsInexact();
    void vectorsWorkedOutByHandAreThere_data();
    void vectorsWorkedOutByHandAreThere();
    void sequenceIsFixed();
    void realsAreWrittenWithoutLoss_data();
    void realsAreWrittenWithoutLoss();
};

void tst_Vectors::committedFilesAreWhatTheLibraryGives_data()
{
    QTest::addColumn<int>("index");
    for (std::size_t i = 0; i < Vectors::files().size(); ++i)
        QTest::newRow(Vectors::files()[i].name) << int(i);
}

void tst_Vectors::committedFilesAreWhatTheLibraryGives()
{
    QFETCH(int, index);
    Vectors::File const& file = Vectors::files()[std::size_t(index)];
    QByteArray const expected = committed(file.name);
    QVERIFY(!expected.isEmpty());
    QString const difference = firstDifference(Vectors::contentOf(file), expected);
    QVERIFY2(
        difference.isEmpty(), qPrintable(difference + "\nscripts/vectors writes the files anew"));
}

void tst_Vectors::theManifestIsCommitted()
{
    QCOMPARE(firstDifference(Vectors::manifest(), committed("manifest.json")), QString());
}

void tst_Vectors::everyPublicFunctionHasVectorsOrAReason()
{
    QSet<QString> const exported = exportedNames();
    QVERIFY(exported.count() > 200);
    QSet<QString> const missing =
        exported + inlineNames() - functionsWithVectors() - functionsLeftOut();
    QCOMPARE(sorted(missing), QStringList());
}

void tst_Vectors::noFunctionIsMadeUp()
{
    QSet<QString> const known = exportedNames() + inlineNames();
    QCOMPARE(sorted(functionsWithVectors() - known), QStringList());
    QCOMPARE(sorted(functionsLeftOut() - known), QStringList());
    QCOMPARE(sorted(functionsLeftOut() & functionsWithVectors()), QStringList());
}

void tst_Vectors::onlyWhatTheCLibraryComputesIsInexact()
{
    QMap<QString, QSet<int>> inexact;
    for (QJsonObject const& vector : committedVectors()) {
        QCOMPARE(vector.value("exact").toBool(true), !vector.contains("ulps"));
        if (vector.contains("ulps"))
            inexact[vector.value("function").toString()].insert(vector.value("ulps").toInt());
    }
    QMap<QString, QSet<int>> const expected {{"ColorUtil::SCRGB::SCRGB(KpColor)", {4}},
        {"ColorUtil::SCRGB::SCRGB(QColor)", {4}}, {"ColorUtil::SCRGB_To_SRGB(double)", {4}},
        {"ColorUtil::SRGB_To_SCRGB(double)", {4}}, {"KpMath::kpAtan(QPointF, QPointF)", {8}},
        {"KpMath::kpAtan2(QPointF, QPointF)", {8}},
        {"KpMath::kpDegree(QPointF, QPointF, QPointF)", {8}},
        {"KpMath::kpEllipsePoint(QRectF, double)", {8}}};
    QCOMPARE(inexact, expected);
}

void tst_Vectors::vectorsWorkedOutByHandAreThere_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < int(std::size(Vectors::literals)); ++i)
        QTest::addRow("%d %s", i, Vectors::literals[i].function) << i;
}

void tst_Vectors::vectorsWorkedOutByHandAreThere()
{
    QFETCH(int, index);
    Vectors::Literal const& literal = Vectors::literals[index];
    QJsonObject const inputs = QJsonDocument::fromJson(literal.inputs).object();
    QJsonObject const results = QJsonDocument::fromJson(literal.results).object();
    QVERIFY(!results.isEmpty());
    int found = 0;
    for (QJsonObject const& vector : committedVectors()) {
        if (vector.value("function") != literal.function || vector.value("inputs") != inputs)
            continue;
        QCOMPARE(vector.value("results").toObject(), results);
        ++found;
    }
    QVERIFY2(found > 0, "no vector has these inputs");
}

/** The values that the mixing function's authors publish for this seed. */
void tst_Vectors::sequenceIsFixed()
{
    Vectors::Sequence sequence(1234567);
    QCOMPARE(sequence.bits(), quint64(6457827717110365317U));
    QCOMPARE(sequence.bits(), quint64(3203168211198807973U));
    QCOMPARE(sequence.bits(), quint64(9817491932198370423U));
}

void tst_Vectors::realsAreWrittenWithoutLoss_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<QString>("text");
    QTest::newRow("three") << 3.0 << "0x1.8p+1";
    QTest::newRow("one") << 1.0 << "0x1p+0";
    QTest::newRow("tenth") << 0.1 << "0x1.999999999999ap-4";
    QTest::newRow("negative") << -0.15625 << "-0x1.4p-3";
    QTest::newRow("zero") << 0.0 << "0x0p+0";
    QTest::newRow("negative zero") << -0.0 << "-0x0p+0";
    QTest::newRow("greatest") << std::numeric_limits<double>::max() << "0x1.fffffffffffffp+1023";
    QTest::newRow("least normal") << std::numeric_limits<double>::min() << "0x1p-1022";
    QTest::newRow("least") << std::numeric_limits<double>::denorm_min()
                           << "0x0.0000000000001p-1022";
    QTest::newRow("infinite") << -Testing::infinite << "-inf";
    QTest::newRow("no number") << Testing::notANumber << "nan";
}

void tst_Vectors::realsAreWrittenWithoutLoss()
{
    QFETCH(double, number);
    QFETCH(QString, text);
    QCOMPARE(Vectors::hexText(number), text);
    if (!std::isnan(number))
        COMPARE_BITS(std::strtod(qPrintable(text), nullptr), number);
}

int main(int argc, char** argv)
{
    Vectors::Surroundings const surroundings;
    QGuiApplication const application(argc, argv);
    tst_Vectors test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_vectors.moc"

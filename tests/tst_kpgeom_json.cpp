// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace KpgeomTesting;

namespace {

/** What is given to the validator: the name of a schema and a document. */
struct Case
{
    QString schema;
    QJsonValue document;
};

QByteArray compact(QJsonValue const& value)
{
    QJsonDocument const document =
        value.isArray() ? QJsonDocument(value.toArray()) : QJsonDocument(value.toObject());
    return document.toJson(QJsonDocument::Compact);
}

/** Why the schemas refuse the documents, a line each; empty lines for what they take. */
QByteArrayList verdicts(QByteArrayList const& lines)
{
    QProcess python;
    python.start("/usr/bin/env", {"python3", KPGEOM_VALIDATOR, KPGEOMETRY_SCHEMA});
    python.write(lines.join('\n') + '\n');
    python.closeWriteChannel();
    if (!python.waitForFinished(120 * 1000) || python.exitCode() != 0)
        qFatal("no validator: %s", python.readAllStandardError().constData());
    QByteArrayList verdicts = python.readAllStandardOutput().split('\n');
    verdicts.removeLast();
    return verdicts;
}

QByteArrayList verdicts(QVector<Case> const& cases)
{
    QByteArrayList lines;
    for (Case const& one : cases)
        lines << one.schema.toUtf8() + '\t' + compact(one.document);
    return verdicts(lines);
}

/** The document with one thing in it broken, for each thing and each way to break it. */
QVector<QJsonValue> broken(QJsonValue const& value, QStringList const& optional)
{
    QVector<QJsonValue> results;
    auto const addOf = [&](QJsonValue const& part, auto const& whole) {
        for (QJsonValue const& worse : broken(part, optional))
            results << whole(worse);
        results << whole(
            part.isArray() || part.isObject() ? QJsonValue("x") : QJsonValue(QJsonArray {true}));
    };
    if (value.isArray()) {
        QJsonArray const array = value.toArray();
        for (int i = 0; i < array.size(); ++i) {
            addOf(array.at(i), [&array, i](QJsonValue const& item) {
                QJsonArray copy = array;
                copy.replace(i, item);
                return copy;
            });
        }
    } else if (value.isObject()) {
        QJsonObject const object = value.toObject();
        for (QString const& key : object.keys()) {
            addOf(object.value(key), [&object, &key](QJsonValue const& member) {
                QJsonObject copy = object;
                copy.insert(key, member);
                return copy;
            });
            QJsonObject without = object;
            without.remove(key);
            if (!optional.contains(key))
                results << without;
        }
        QJsonObject more = object;
        more.insert("Unknown", 1);
        results << more;
    }
    return results;
}

/** With at most two items in each array: enough to be broken. */
QJsonValue shortened(QJsonValue const& value)
{
    if (value.isArray()) {
        QJsonArray shorter;
        for (int i = 0; i < qMin(2, value.toArray().size()); ++i)
            shorter.append(shortened(value.toArray().at(i)));
        return shorter;
    }
    QJsonObject object = value.toObject();
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (it.value().isArray() || it.value().isObject())
            it.value() = shortened(it.value());
    }
    return value.isObject() ? QJsonValue(object) : value;
}

/** The files that the commands below are about. */
void prepareInput(Workplace const& place)
{
    QDir const examples(KPGEOMETRY_EXAMPLES);
    for (QString const& name : examples.entryList({"*.xml"}, QDir::Files))
        QFile::copy(examples.filePath(name), place.path(name));
    place.write("odd.xml",
        "<D>" + boxGeometry("Closed='2' Odd='1'").replace("\"60\"", "\"inf\"")
            + "<Geometry/><S Name='&quot;\\&#10;'>" + boxGeometry() + "</S></D>");
    place.write("none.xml", "<D/>");
    place.write("broken.xml", "<D>");
    QString const oddName = QFile::decodeName("\xff.xml");
    place.write(oddName, "<D>" + boxGeometry() + "</D>");
    place.write(oddName + "x", "<D>" + boxGeometry().replace("\"60\"", "\"90\"") + "</D>");
    place.write("wide.svg",
        "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 90 30'>"
        "<path d='M1 1H80V20C70 9 9 7 1 1Z'/></svg>");
    place.write("high.svg",
        "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 30 60'>"
        "<path d='M1 1H20V57.3C10 9 9 7 1 1Z'/></svg>");
    QDir(place.path()).mkdir("cfg");
    QDir(place.path()).mkdir("new");
    COMPARE_EXIT(
        place.run({"recent", "add", "--config", "cfg", "/a/b.x", "/c d/e.x", "7#$#/Dropbox/f.x"}),
        0);
    COMPARE_EXIT(place.run({"recent", "pin", "--config", "cfg", "0"}), 0);
    place.write("list",
        place.run({"digest", "arrow.xml", "none.xml"}).out
            + "0123456789abcdef0123456789abcdef  arrow.xml\n"
              "0123456789abcdef0123456789abcdef  gone\n");
}

} // namespace

/** What kpgeom prints with --json, and the schemas of it. */
class TestKpgeomJson : public QObject
{
    Q_OBJECT

private:
    /** What the command printed, if its exit status is one of those. */
    void add(QString const& schema, QStringList const& arguments, QVector<int> const& codes)
    {
        QStringList const withOption = QStringList {arguments.first(), "--json"} + arguments.mid(1);
        Result const result = m_place.run(withOption);
        QVERIFY2(result.exited && codes.contains(result.code),
            result.err + " of " + arguments.join(' ').toUtf8());
        QJsonParseError error;
        QJsonDocument const document = QJsonDocument::fromJson(result.out, &error);
        QVERIFY2(error.error == QJsonParseError::NoError, qPrintable(arguments.join(' ')));
        // No half of a surrogate pair is left, not escaped either.
        QVERIFY2(!result.out.contains("\\ud"), result.out.constData());
        m_cases.append({schema,
            document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object())});
        m_commands << arguments.join(' ');
    }

    Workplace const m_place;
    QVector<Case> m_cases;
    QStringList m_commands;

private Q_SLOTS:
    void initTestCase()
    {
        prepareInput(m_place);
        QStringList const all = QDir(m_place.path()).entryList({"*.xml"}, QDir::Files, QDir::Name);
        QString const odd = QFile::decodeName("\xff.xml");
        add("info", QStringList("info") + all, {1});
        add("info", {"info", "none.xml"}, {0});
        add("info", {"info", "missing"}, {1});
        add("check", QStringList("check") + all, {1});
        add("check", {"check", "odd.xml", "wide.svg"}, {3});
        add("check", {"check", "missing"}, {1});
        for (QString const& name : all) {
            if (name != "broken.xml")
                add("diff", {"diff", name, "arrow.xml"}, {0, 1});
        }
        add("diff", {"diff", "plate.xml", odd, "--tolerance", "0.5"}, {1});
        add("digest", QStringList("digest") + all + QStringList("missing"), {1});
        add("digest", {"digest", odd}, {0});
        add("digest", {"digest", "--check", "list"}, {1});
        add("digest", {"digest", "--check", "missing"}, {1});
        add("fit", {"fit", "wide.svg", "high.svg", "-o", "out.xml"}, {3});
        add("fit", {"fit", "wide.svg", "high.svg", "-o", "out.xml", "--strict"}, {1});
        add("fit", {"fit", odd + "@100x60", odd + "x@50x90", "-o", "out.xml"}, {0, 3});
        add("colour", {"colour", "#4472c4", "#80ffffff", "shade=50%", "gray=0"}, {0});
        add("units", {"units", "-5.5", "mm"}, {0});
        add("units", {"units", "5'6\"", "ft-in"}, {0});
        add("pages", {"pages"}, {0});
        add("pages", {"pages", "A4", "letter"}, {0});
        for (QString const& action : {QString("list"), QString("folders")}) {
            for (QString const& folder : {QString("cfg"), QString("new")})
                add("recent", {"recent", action, "--config", folder}, {0});
        }
    }

    void schemasTakeWhatIsPrinted()
    {
        QByteArrayList const faults = verdicts(m_cases);
        QCOMPARE(faults.size(), m_cases.size());
        for (int i = 0; i < faults.size(); ++i)
            QVERIFY2(faults.at(i).isEmpty(), m_commands.at(i).toUtf8() + ": " + faults.at(i));
    }

    void schemasRefuseWhatIsBroken()
    {
        // Any unit may be there alone.
        QStringList const units {
            "px", "mm", "cm", "m", "km", "in", "ft", "ft-in", "yd", "mi", "pt", "pc", "dd", "cc"};
        QVector<Case> cases;
        QSet<QString> schemas;
        for (Case const& valid : qAsConst(m_cases)) {
            cases.append({valid.schema, QJsonArray {1}});
            cases.append({valid.schema, QJsonObject {{"Unknown", 1}}});
            QStringList const optional = valid.schema == "units" ? units : QStringList();
            for (QJsonValue const& worse : broken(shortened(valid.document), optional))
                cases.append({valid.schema, worse});
            schemas << valid.schema;
        }
        QCOMPARE(schemas.size(), QDir(KPGEOMETRY_SCHEMA).entryList({"*.schema.json"}).size());
        QByteArrayList const faults = verdicts(cases);
        QCOMPARE(faults.size(), cases.size());
        for (int i = 0; i < faults.size(); ++i) {
            QVERIFY2(!faults.at(i).isEmpty(),
                cases.at(i).schema.toUtf8() + ": " + compact(cases.at(i).document));
        }
    }

    void whatIsNoJsonIsRefused()
    {
        QByteArrayList const faults = verdicts({"units\t{\"mm\": 1}", "units\t{\"mm\": NaN}",
            "units\t{\"mm\": 1", "units\t", "pages\t[[]"});
        QCOMPARE(faults.size(), 5);
        for (int i = 0; i < faults.size(); ++i)
            QCOMPARE(faults.at(i).isEmpty(), i == 0);
    }
};

QTEST_GUILESS_MAIN(TestKpgeomJson)

#include "tst_kpgeom_json.moc"

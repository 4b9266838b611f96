// SPDX-License-Identifier: MIT
#include "document/shapes.h"
#include "exchange/importing.h"
#include "testing.h"
#include "window/commandtext.h"

#include <QProcess>
#include <QTemporaryDir>

/** The command lines that do what was done: their words, and what kpgeom makes of them. */
class TestKpshapesCommandText : public QObject
{
    Q_OBJECT

private:
    static ShapeItem plate()
    {
        KpPathSegList list;
        list.moveTo({0.0, 0.0});
        list.lineTo({240.0, 0.0});
        list.lineTo({240.0, 160.0});
        list.updateRate(240.0, 160.0);
        list.closed = true;
        return {QStringLiteral("plate"), {240.0, 160.0}, std::nullopt, recordOf(list), {}, -1};
    }

    /** Runs a line in a shell, with the tool under its name in the path. */
    static QString run(QString const& line, QString const& folder, int& exitCode)
    {
        QProcess shell;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(
            "PATH", QFileInfo(KPGEOM_EXECUTABLE).absolutePath() + ":" + environment.value("PATH"));
        shell.setProcessEnvironment(environment);
        shell.setWorkingDirectory(folder);
        shell.start("/bin/sh", {"-c", line});
        shell.waitForFinished();
        exitCode = shell.exitStatus() == QProcess::NormalExit ? shell.exitCode() : -1;
        return QString::fromUtf8(shell.readAllStandardOutput());
    }

private Q_SLOTS:
    void wordsAreQuotedForAShell_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("quoted");
        QTest::newRow("plain") << "a-b_c.xml"
                               << "a-b_c.xml";
        QTest::newRow("path") << "/a/b.xml"
                              << "/a/b.xml";
        QTest::newRow("blank") << "my file.xml"
                               << "'my file.xml'";
        QTest::newRow("empty") << ""
                               << "''";
        QTest::newRow("quote") << "it's"
                               << "'it'\\''s'";
        QTest::newRow("colour") << "#2F6DB5"
                                << "'#2F6DB5'";
        QTest::newRow("dollar") << "$(rm)"
                                << "'$(rm)'";
        QTest::newRow("line feed") << "a\nb"
                                   << "'a\nb'";
        QTest::newRow("umlaut") << QString::fromUtf8("\303\244.xml")
                                << QString::fromUtf8("'\303\244.xml'");
    }

    void wordsAreQuotedForAShell()
    {
        QFETCH(QString, text);
        QTEST(CommandText::word(text), "quoted");
        int exitCode = 0;
        QCOMPARE(run("printf %s " + CommandText::word(text), ".", exitCode), text);
    }

    void aDraggedBoxIsResized()
    {
        ShapeItem const before = plate();
        ShapeItem after = before;
        after.box = {480.0, 80.5};
        QCOMPARE(CommandText::ofStep(before, after, "my shapes.xml"),
            QString("kpgeom resize --from 240x160 --to 480x80.5 'my shapes.xml' -o 'my "
                    "shapes.xml'"));
    }

    void theResizedDocumentIsTheOneOfTheWindow()
    {
        QTemporaryDir folder;
        ShapeItem const before = plate();
        WorkingShape shape = workingShapeOf(before);
        shape.box = {480.0, 80.0};
        shape.list->updateValue(480.0, 80.0);
        auto const documentOf = [](WorkingShape& working) {
            return shapesDocument({{working.name, QSizeF(240.0, 160.0), std::nullopt,
                std::shared_ptr<KpPathSegList>(std::move(working.list))}});
        };
        WorkingShape original = workingShapeOf(before);
        QFile file(folder.filePath("shapes.xml"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(documentOf(original));
        file.close();
        int exitCode = -1;
        run(CommandText::ofStep(before, itemOf(shape), {}), folder.path(), exitCode);
        QCOMPARE(exitCode, 0);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), documentOf(shape));
    }

    void aColourIsComputedFromItsReference()
    {
        ShapeItem const before = plate();
        ShapeItem after = before;
        ShapeColour colour;
        colour.colour.setTintColor(QColor(0x44, 0x72, 0xc4), -50, 5);
        colour.transforms = {{QStringLiteral("satMod"), 0.5}};
        after.appearance.fill = colour;
        QString const line = CommandText::ofStep(before, after, {});
        QCOMPARE(line, QString("kpgeom colour '#4472C4' shade=0.5 satMod=0.5"));
        int exitCode = -1;
        QString const output = run(line, ".", exitCode);
        QCOMPARE(exitCode, 0);
        QVERIFY2(output.contains(colour.shown().name().toUpper()), qPrintable(output));
    }

    void aStepWithoutACommandHasNone()
    {
        ShapeItem const before = plate();
        ShapeItem after = before;
        after.name = QStringLiteral("other");
        QCOMPARE(CommandText::ofStep(before, after, {}), QString());
    }

    void everythingElseIsUnderstood_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("expected");
        QTest::newRow("unit") << CommandText::ofUnit(1) << "kpgeom units 1 mm";
        QTest::newRow("pages") << CommandText::ofPages() << "kpgeom pages";
        QTest::newRow("opening") << CommandText::ofOpening("a.xml") << "kpgeom info a.xml";
        QTest::newRow("picture") << CommandText::ofExport(ExportFormat::Svg, "a.xml", "a.svg")
                                 << "kpgeom render a.xml -o a.svg";
        QTest::newRow("paths") << CommandText::ofExport(ExportFormat::PathData, "a.xml", "a.txt")
                               << "kpgeom svg a.xml -o a.txt";
        QTest::newRow("import") << CommandText::ofImport("a.svg")
                                << "kpgeom convert a.svg -o shapes.xml";
        QTest::newRow("glyphs") << CommandText::ofGlyphs("A b", "f.ttf")
                                << "kpgeom convert --font f.ttf --text 'A b' -o shapes.xml";
        QTest::newRow("presets") << CommandText::ofPresets("p.xml")
                                 << "kpgeom convert --presets p.xml -o shapes";
        QTest::newRow("fit") << CommandText::ofFit({"a.svg", "b.svg@10x20"})
                             << "kpgeom fit a.svg b.svg@10x20 -o shapes.xml";
    }

    void everythingElseIsUnderstood()
    {
        QFETCH(QString, line);
        QTEST(line, "expected");
    }
};

QTEST_GUILESS_MAIN(TestKpshapesCommandText)
#include "tst_kpshapes_commandtext.moc"

// SPDX-License-Identifier: MIT
#include "kpshapestesting.h"
#include "panels/fitdialog.h"
#include "testing.h"
#include "window/printing.h"
#include "windowtesting.h"

#include <QClipboard>
#include <QListWidget>
#include <QMimeData>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPushButton>
#include <QTimer>

#include <memory>

#include <unistd.h>

using Testing::openFile;
using Testing::trigger;
using Testing::WindowFolder;

namespace {

QString drawing(QString const& name)
{
    return QStringLiteral(KPGEOMETRY_EXAMPLES "/drawings/") + name;
}

QByteArray pictureText()
{
    return "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='20'>"
           "<path id='roof' d='M0 0H40V20Z'/><circle id='knob' cx='10' cy='10' r='5'/></svg>";
}

/** A preset shape whose right half ends half the shorter side before the edge. */
QByteArray presetText()
{
    return "<presetShapeDefinitons><arrow>"
           "<avLst xmlns='http://schemas.openxmlformats.org/drawingml/2006/main'/>"
           "<gdLst xmlns='http://schemas.openxmlformats.org/drawingml/2006/main'>"
           "<gd name='half' fmla='*/ ss 1 2'/><gd name='x1' fmla='+- r 0 half'/></gdLst>"
           "<pathLst xmlns='http://schemas.openxmlformats.org/drawingml/2006/main'><path>"
           "<moveTo><pt x='l' y='t'/></moveTo><lnTo><pt x='x1' y='t'/></lnTo>"
           "<lnTo><pt x='r' y='vc'/></lnTo><lnTo><pt x='x1' y='b'/></lnTo>"
           "<lnTo><pt x='l' y='b'/></lnTo><close/></path></pathLst>"
           "</arrow></presetShapeDefinitons>";
}

/** Does something to a dialog of a kind as soon as there is one, and closes it. */
template <class Dialog> class DialogVisit : public QTimer
{
public:
    /** @param act is done at each turn of the event loop until it says that it has done all */
    explicit DialogVisit(std::function<bool(Dialog&)> const& act)
    {
        callOnTimeout([this, act] {
            auto* const dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
            if (!dialog || (hasCome = true, !act(*dialog)))
                return;
            stop();
            if (dialog->isVisible())
                dialog->close();
        });
        start(5);
    }

    bool hasCome = false;
};

} // namespace

/** What a window takes in and gives away: other formats, the clipboard, drawings, paper. */
class TestKpshapesExchangeWindow : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<WindowFolder> m_folder;
    std::unique_ptr<MainWindow> m_window;

    Testing::ScriptedPrompter& prompter() { return m_folder->prompter; }
    ShapeDocument& document() { return m_window->document(); }
    QString message() { return m_window->messages().text(); }

    QString open()
    {
        QString const path = m_folder->write("shapes.xml", Testing::twoOutlines());
        if (!openFile(*m_window, path))
            qFatal("%s is never read", qPrintable(path));
        return path;
    }

    static void accept(FitDialog const& dialog)
    {
        for (QPushButton* const button : dialog.findChildren<QPushButton*>()) {
            if (button->text() == "&Insert")
                button->click();
        }
    }

    QStringList names()
    {
        QStringList all;
        for (ItemPointer const& item : document().items())
            all << item->name;
        return all;
    }

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<WindowFolder>();
        m_window = std::make_unique<MainWindow>(m_folder->surroundings());
        m_window->show();
        QGuiApplication::clipboard()->clear();
    }

    void cleanup()
    {
        m_window.reset();
        m_folder.reset();
    }

    void whatIsImportedStandsBehindTheCurrentOutline_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QString>("step");
        QTest::addColumn<QString>("command");
        QString const font = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
        QTest::newRow("picture") << "import" << QString("a.svg") << QStringList {"roof", "knob"}
                                 << "Import a.svg"
                                 << "kpgeom convert %1 -o shapes.xml";
        QTest::newRow("drawing") << "import" << drawing("bubble-wide.svg")
                                 << QStringList {"bubble", "title", "close", "face", "share"}
                                 << "Import bubble-wide.svg"
                                 << "kpgeom convert %1 -o shapes.xml";
        QTest::newRow("glyphs") << "import-glyphs" << font << QStringList {"A", "b"}
                                << "Import glyphs"
                                << "kpgeom convert --font %1 --text Ab -o shapes.xml";
        QTest::newRow("presets") << "import-presets" << QString("preset.xml")
                                 << QStringList {"arrow"} << "Import preset shapes"
                                 << "kpgeom convert --presets %1 -o shapes";
    }

    void whatIsImportedStandsBehindTheCurrentOutline()
    {
        QFETCH(QString, action);
        QFETCH(QString, file);
        QFETCH(QStringList, names);
        QFETCH(QString, command);
        open();
        m_folder->write("a.svg", pictureText());
        m_folder->write("preset.xml", presetText());
        QString const path = QDir(m_folder->path("")).absoluteFilePath(file);
        prompter().open = QStringList(path);
        prompter().answer = "Ab";
        trigger(*m_window, action);
        QVERIFY2(message().isEmpty() || message().contains("with a colour other than black"),
            qPrintable(message()));
        QCOMPARE(this->names(), QStringList("plate") + names + QStringList("roof"));
        QCOMPARE(document().current(), 1);
        QTEST(document().undoStack().undoText(), "step");
        QCOMPARE(m_window->statusLine().command(), command.arg(path));
        trigger(*m_window, "undo");
        QCOMPARE(this->names(), QStringList({"plate", "roof"}));
        QCOMPARE(m_window->controller().text(), Testing::twoOutlines());
    }

    void presetsHaveTheirRules()
    {
        prompter().open = QStringList(m_folder->write("preset.xml", presetText()));
        trigger(*m_window, "import-presets");
        QCOMPARE(names(), QStringList("arrow"));
        auto const& segments = document().working().list->segs;
        QCOMPARE(segments.size(), 5);
        QCOMPARE(int(segments.at(1)->pt.x.base), 6);
        QCOMPARE(segments.at(1)->pt.x.rate, 0.5);
        QCOMPARE(int(segments.at(2)->pt.x.base), 1);
        QCOMPARE(segments.at(2)->pt.x.rate, 1.0);
        QCOMPARE(int(segments.at(2)->pt.y.base), 2);
        QCOMPARE(segments.at(2)->pt.y.rate, 0.5);
    }

    void nothingIsImportedFromNothing_data()
    {
        QTest::addColumn<QString>("action");
        for (QString const action : {"import", "import-glyphs", "import-presets"})
            QTest::newRow(qPrintable(action)) << action;
    }

    void nothingIsImportedFromNothing()
    {
        QFETCH(QString, action);
        trigger(*m_window, action);
        QCOMPARE(message(), QString());
        prompter().open = QStringList(m_folder->write("a.xml", "nothing"));
        prompter().answer = "Ab";
        trigger(*m_window, action);
        QVERIFY2(message().contains("a.xml:"), qPrintable(message()));
        QCOMPARE(document().count(), 0);
        QCOMPARE(document().undoStack().count(), 0);
    }

    void everyFormatIsExported_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("begin");
        QTest::newRow("SVG") << "export-svg"
                             << "a.svg" << QByteArray("<?xml");
        QTest::newRow("PNG") << "export-png"
                             << "a.png" << QByteArray("\x89PNG");
        QTest::newRow("PDF") << "export-pdf"
                             << "a.pdf" << QByteArray("%PDF");
        QTest::newRow("HTML") << "export-html"
                              << "a.html" << QByteArray("<!DOCTYPE html>");
        QTest::newRow("DrawingML") << "export-custgeom"
                                   << "a.custgeom.xml" << QByteArray("<?xml");
        QTest::newRow("paths") << "export-path-data"
                               << "a.txt" << QByteArray("M0 0 L240 0 L240 160 Z\nM0 50 L96 50\n");
    }

    void everyFormatIsExported()
    {
        QFETCH(QString, action);
        QFETCH(QString, file);
        QFETCH(QByteArray, begin);
        QString const path = open();
        trigger(*m_window, action);
        QCOMPARE(message(), QString());
        QVERIFY(!QFile::exists(m_folder->path(file)));
        prompter().saveAs = m_folder->path(file);
        trigger(*m_window, action);
        QCOMPARE(message(), QString());
        QByteArray const content = WindowFolder::read(m_folder->path(file));
        QVERIFY2(content.startsWith(begin), content.left(60).constData());
        QVERIFY(m_window->statusLine().command().contains(m_folder->path(file)));
        // Whatever is exported is no saved document.
        QVERIFY(!m_window->controller().isModified());
        QCOMPARE(m_window->controller().path(), path);
        QCOMPARE(WindowFolder::read(path), Testing::twoOutlines());
    }

    void theDocumentIsNotExportedOverItself_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("its name") << "shapes.xml";
        QTest::newRow("a way round") << "./../%1/shapes.xml";
        QTest::newRow("symbolic link") << "link.xml";
        QTest::newRow("hard link") << "hard.xml";
    }

    void theDocumentIsNotExportedOverItself()
    {
        QFETCH(QString, name);
        QString const path = open();
        QVERIFY(QFile::link(path, m_folder->path("link.xml")));
        if (name.contains("%1"))
            name = name.arg(QFileInfo(path).dir().dirName());
        if (name == "hard.xml") {
            // Replaced, the other name is another file: the document stays as it is.
            QCOMPARE(link(qPrintable(path), qPrintable(m_folder->path(name))), 0);
        }
        prompter().saveAs = m_folder->path(name);
        trigger(*m_window, "export-custgeom");
        QCOMPARE(WindowFolder::read(path), Testing::twoOutlines());
        if (name != "hard.xml")
            QVERIFY2(message().contains("it is the document itself"), qPrintable(message()));
    }

    void nothingIsNotExported()
    {
        prompter().saveAs = m_folder->path("a.svg");
        trigger(*m_window, "export-svg");
        QVERIFY(message().contains("there is no outline to be exported"));
        QVERIFY(!QFile::exists(m_folder->path("a.svg")));
    }

    void outlinesAreCutCopiedAndPasted()
    {
        open();
        trigger(*m_window, "copy");
        QVERIFY(!document().undoStack().canUndo());
        QMimeData const& data = *QGuiApplication::clipboard()->mimeData();
        QVERIFY(data.hasFormat("image/svg+xml"));
        QVERIFY(data.text().contains("<svg"));
        trigger(*m_window, "paste");
        QCOMPARE(names(), (QStringList {"plate", "plate", "roof"}));
        QCOMPARE(document().current(), 1);
        QCOMPARE(document().undoStack().undoText(), QString("Paste outlines"));
        document().setCurrent(2);
        trigger(*m_window, "cut");
        QCOMPARE(names(), (QStringList {"plate", "plate"}));
        QCOMPARE(document().undoStack().undoText(), QString("Cut outline"));
        document().setCurrent(0);
        trigger(*m_window, "paste");
        QCOMPARE(names(), (QStringList {"plate", "roof", "plate"}));
        QVERIFY(haveSameContent(document().at(0), document().at(2)));
        // The rules came along.
        QCOMPARE(int(document().working().list->segs.at(1)->pt.x.base), 0);
        QCOMPARE(document().working().box, QSizeF(100.0, 50.0));
        document().undoStack().setIndex(0);
        QCOMPARE(m_window->controller().text(), Testing::twoOutlines());
    }

    void anotherWindowPastesTheSame()
    {
        open();
        trigger(*m_window, "copy");
        MainWindow other(m_folder->surroundings());
        trigger(other, "paste");
        QCOMPARE(other.document().count(), 1);
        QVERIFY(haveSameContent(other.document().at(0), document().at(0)));
        QVERIFY(other.controller().isModified());
    }

    void otherProgramsGiveOutlinesAsText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("names");
        QTest::newRow("picture") << QString(pictureText()) << QStringList {"roof", "knob"};
        QTest::newRow("document") << QString(Testing::twoOutlines())
                                  << QStringList {"plate", "roof"};
        QTest::newRow("prose") << "hello" << QStringList();
        QTest::newRow("other XML") << "<a/>" << QStringList();
        QTest::newRow("nothing") << QString() << QStringList();
    }

    void otherProgramsGiveOutlinesAsText()
    {
        QFETCH(QString, text);
        QFETCH(QStringList, names);
        if (!text.isEmpty())
            QGuiApplication::clipboard()->setText(text);
        trigger(*m_window, "paste");
        QCOMPARE(this->names(), names);
        QCOMPARE(document().undoStack().count(), names.isEmpty() ? 0 : 1);
        QVERIFY2(message().startsWith("clipboard:") == names.isEmpty(), qPrintable(message()));
    }

    void nothingIsCutFromNothing()
    {
        QGuiApplication::clipboard()->setText("kept");
        trigger(*m_window, "copy");
        trigger(*m_window, "cut");
        QCOMPARE(QGuiApplication::clipboard()->text(), QString("kept"));
        QCOMPARE(document().undoStack().count(), 0);
    }

    void rulesAreLearntOfDrawings()
    {
        open();
        bool isAdded = false;
        DialogVisit<FitDialog> const visit([&isAdded](FitDialog& dialog) {
            if (!isAdded) {
                isAdded = true;
                dialog.addFiles({drawing("bubble-wide.svg"), drawing("bubble-tall.svg")});
            }
            if (dialog.isRunning() || dialog.items().empty())
                return false;
            accept(dialog);
            return true;
        });
        trigger(*m_window, "fit");
        QCOMPARE(
            names(), (QStringList {"plate", "bubble", "title", "close", "face", "share", "roof"}));
        QCOMPARE(document().undoStack().undoText(), QString("Fit from drawings"));
        QCOMPARE(document().current(), 1);
        QCOMPARE(document().working().box, QSizeF(300.0, 200.0));
        QCOMPARE(m_window->statusLine().command(),
            "kpgeom fit " + drawing("bubble-wide.svg") + " " + drawing("bubble-tall.svg")
                + " -o shapes.xml");
        // The end of the pointer keeps to the lower edge.
        resizeBox(document().working(), {180.0, 340.0});
        double lowest = 0.0;
        for (KpPathSeg const* const segment : document().working().list->segs)
            lowest = std::max(lowest, segment->pt.y.value);
        QVERIFY(std::abs(lowest - 340.0) < 0.01);
    }

    void aLineOfTheFindingsIsShownOnThePage()
    {
        // In boxes of the same proportions no rule is decided.
        QString const wide = m_folder->write("a.svg",
            "<svg xmlns='http://www.w3.org/2000/svg' stroke='black' fill='none' "
            "viewBox='0 0 100 100'><path d='M0 0L50 100'/></svg>");
        QString const wider = m_folder->write("b.svg",
            "<svg xmlns='http://www.w3.org/2000/svg' stroke='black' fill='none' "
            "viewBox='0 0 200 200'><path d='M0 0L100 200'/></svg>");
        bool isAdded = false;
        DialogVisit<FitDialog> const visit([&](FitDialog& dialog) {
            if (!isAdded) {
                isAdded = true;
                dialog.addFiles({wide, wider});
            }
            auto* const list = dialog.findChild<QListWidget*>();
            if (dialog.isRunning() || dialog.items().empty() || list->count() == 0)
                return false;
            Q_EMIT list->itemActivated(list->item(0));
            accept(dialog);
            return true;
        });
        trigger(*m_window, "fit");
        QVERIFY(visit.hasCome);
        QCOMPARE(document().count(), 1);
        QCOMPARE(m_window->selection().handles(), QVector<HandleId>({{0, HandleKind::Point}}));
        QVERIFY(m_window->canvas().rect().contains(
            m_window->canvas().handleRect(m_window->selection().handles().first()).center()));
    }

    void aFitThatIsGivenUpChangesNothing()
    {
        DialogVisit<FitDialog> const visit([](FitDialog& /*dialog*/) { return true; });
        trigger(*m_window, "fit");
        QVERIFY(visit.hasCome);
        QCOMPARE(document().count(), 0);
        QCOMPARE(document().undoStack().count(), 0);
    }

    void outlinesArePrinted()
    {
        open();
        QPrinter printer;
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(m_folder->path("page.pdf"));
        QVERIFY(Printing::print(printer, document().items()));
        QByteArray const page = WindowFolder::read(m_folder->path("page.pdf"));
        QVERIFY(page.startsWith("%PDF"));
        QCOMPARE(page.count("/Type /Page\n"), 1);
    }

    void whatCannotBePrintedIsNot()
    {
        QPrinter printer;
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(m_folder->path("page.pdf"));
        QVERIFY(!Printing::print(printer, {}));
        open();
        printer.setOutputFileName("/missing/page.pdf");
        QTest::ignoreMessage(
            QtWarningMsg, QRegularExpression("QPainter::begin\\(\\): Returned false"));
        QVERIFY(!Printing::print(printer, document().items()));
    }

    void thePreviewIsOpenedAndClosed()
    {
        open();
        DialogVisit<QPrintPreviewDialog> const visit(
            [](QPrintPreviewDialog& dialog) { return dialog.isVisible(); });
        trigger(*m_window, "print-preview");
        QVERIFY(visit.hasCome);
    }
};

KPSHAPES_TEST_MAIN(TestKpshapesExchangeWindow)
#include "tst_kpshapes_exchangewindow.moc"

// SPDX-License-Identifier: MIT
#include "window/exchangecontroller.h"

#include "common/filecontent.h"
#include "exchange/clipboard.h"
#include "exchange/importing.h"
#include "panels/fitdialog.h"
#include "window/commandtext.h"
#include "window/mainwindow.h"
#include "window/printing.h"
#include "window/prompter.h"
#include "window/recentfiles.h"

#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>

ExchangeController::ExchangeController(MainWindow& window, Surroundings const& surroundings)
    : QObject(&window)
    , m_window(window)
    , m_surroundings(surroundings)
{
}

void ExchangeController::addActions(QMenu& menu, ActionTable& actions)
{
    actions.add(menu, {"import", "&Import\u2026", "Ctrl+I", [this] { importWithDialog(); }});
    actions.add(menu, {"import-glyphs", "Import &Glyphs\u2026", "", [this] { importGlyphs(); }});
    actions.add(
        menu, {"import-presets", "Import P&reset Shapes\u2026", "", [this] { importPresets(); }});
    actions.add(
        menu, {"fit", "&Fit from Drawings\u2026", "Ctrl+Shift+F", [this] { fitDrawings(); }});
    QMenu& exports = actions.addMenu(menu, QStringLiteral("&Export"));
    for (ExportKind const& kind : exportKinds()) {
        QByteArray const id = QByteArray("export-") + kind.id;
        QByteArray const text = QByteArray(kind.text) + "\u2026";
        actions.add(exports,
            {id.constData(), text.constData(), "", [this, &kind] { exportWithDialog(kind); }});
    }
    menu.addSeparator();
    actions.add(menu,
        {"print", "&Print\u2026", "Ctrl+P",
            [this] { Printing::printWithDialog(&m_window, m_window.document().items(), name()); }});
    actions.add(menu, {"print-preview", "Print Pre&view\u2026", "", [this] {
                           Printing::preview(&m_window, m_window.document().items(), name());
                       }});
}

void ExchangeController::addClipboardActions(QMenu& menu, ActionTable& actions)
{
    actions.add(menu, {"cut", "Cu&t Outline", "Ctrl+X", [this] { cut(); }});
    actions.add(menu, {"copy", "&Copy Outline", "Ctrl+C", [this] { copy(); }});
    actions.add(menu, {"paste", "&Paste Outlines", "Ctrl+V", [this] { paste(); }});
}

QString ExchangeController::name() const
{
    return m_window.controller().title();
}

void ExchangeController::insert(std::optional<Items> const& items, Diagnostics const& diagnostics,
    QString const& step, QString const& command)
{
    m_window.messages().show(diagnostics);
    if (!items)
        return;
    m_window.document().insert(m_window.document().current() + 1, *items, step);
    m_window.canvas().fitBox();
    m_window.statusLine().setCommand(command);
}

void ExchangeController::importEach(
    QStringList const& files, Import read, TextOfFile step, TextOfFile command)
{
    for (QString const& file : files) {
        Diagnostics diagnostics;
        auto const content = readPlainFile(file, diagnostics);
        auto const items = content ? read(*content, file, diagnostics) : std::nullopt;
        insert(items, diagnostics, step(file), command(file));
    }
}

void ExchangeController::importFiles(QStringList const& files)
{
    auto const step = [](QString const& file) {
        return QStringLiteral("Import %1").arg(QFileInfo(file).fileName());
    };
    importEach(files, importedItems, step, CommandText::ofImport);
}

void ExchangeController::importWithDialog()
{
    importFiles(m_surroundings.prompter.filesToOpen(&m_window, QStringLiteral("Import"),
        m_surroundings.recent.folder(),
        QStringLiteral("Pictures and stencils (*.svg *.svgz *.odg *.fodg *.shape *.xml);;"
                       "All files (*)")));
}

void ExchangeController::importGlyphs()
{
    QStringList const fonts = m_surroundings.prompter.filesToOpen(&m_window, QStringLiteral("Font"),
        QStringLiteral("/usr/share/fonts"),
        QStringLiteral("Fonts (*.ttf *.otf *.ttc);;All files (*)"));
    if (fonts.isEmpty())
        return;
    QString const text = m_surroundings.prompter.text(&m_window, QStringLiteral("Glyphs"),
        QStringLiteral("Characters whose outlines are taken:"), QStringLiteral("Ag&"));
    if (text.isEmpty())
        return;
    Diagnostics diagnostics;
    auto const items = isPlainFile(fonts.first(), diagnostics)
        ? glyphItems(text, fonts.first(), diagnostics)
        : std::nullopt;
    insert(items, diagnostics, QStringLiteral("Import glyphs"),
        CommandText::ofGlyphs(text, fonts.first()));
}

void ExchangeController::importPresets()
{
    QStringList const files = m_surroundings.prompter.filesToOpen(&m_window,
        QStringLiteral("Preset Shapes"), m_surroundings.recent.folder(),
        QStringLiteral("Definitions of preset shapes (*.xml);;All files (*)"));
    auto const step = [](QString const&) { return QStringLiteral("Import preset shapes"); };
    importEach(files, presetItems, step, CommandText::ofPresets);
}

void ExchangeController::fitDrawings()
{
    FitDialog dialog(&m_window);
    if (dialog.exec() != QDialog::Accepted || dialog.items().empty())
        return;
    ShapeDocument& document = m_window.document();
    int const first = document.current() + 1;
    insert(dialog.items(), {}, QStringLiteral("Fit from drawings"),
        CommandText::ofFit(dialog.drawings()));
    auto const place = dialog.place();
    if (!place)
        return;
    document.setCurrent(first + place->shape);
    KpPathSeg& segment = *document.working().list->segs.at(place->segment);
    HandleId const handle = handleOfLetter(segment, place->segment, place->letter);
    m_window.selection().set({handle});
    m_window.canvas().scrollTo(handle);
}

void ExchangeController::exportWithDialog(ExportKind const& kind)
{
    QString const suffix = QString::fromLatin1(kind.suffix);
    QString const file = m_surroundings.prompter.fileToSave(&m_window, QStringLiteral("Export"),
        QFileInfo(name()).completeBaseName() + QLatin1Char('.') + suffix,
        QStringLiteral("%1 (*.%2)").arg(QString::fromLatin1(kind.text), suffix));
    if (!file.isEmpty())
        exportTo(file, kind.format);
}

bool ExchangeController::exportTo(QString const& file, ExportFormat format)
{
    Diagnostics diagnostics;
    if (QFileInfo(file) == QFileInfo(m_window.controller().path())) {
        diagnostics.error(file, QStringLiteral("it is the document itself, which stays"));
        m_window.messages().show(diagnostics);
        return false;
    }
    auto const content = exported({m_window.document().items(), name()}, format, diagnostics);
    bool const isWritten = content && writePlainFile(file, *content, diagnostics);
    m_window.messages().show(diagnostics);
    if (isWritten) {
        m_window.statusLine().setCommand(
            CommandText::ofExport(format, m_window.controller().path(), file));
    }
    return isWritten;
}

void ExchangeController::copy()
{
    ShapeDocument const& document = m_window.document();
    if (!document.hasCurrent())
        return;
    auto const index = static_cast<std::size_t>(document.current());
    QGuiApplication::clipboard()->setMimeData(
        Clipboard::dataOf({document.items()[index]}).release());
}

void ExchangeController::cut()
{
    copy();
    ShapeDocument& document = m_window.document();
    if (document.hasCurrent())
        document.remove(document.current(), 1, QStringLiteral("Cut outline"));
}

void ExchangeController::paste()
{
    Diagnostics diagnostics;
    auto const items = Clipboard::itemsOf(QGuiApplication::clipboard()->mimeData(), diagnostics);
    insert(items, diagnostics, QStringLiteral("Paste outlines"), {});
}

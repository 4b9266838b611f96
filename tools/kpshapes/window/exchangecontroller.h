// SPDX-License-Identifier: MIT
#ifndef EXCHANGECONTROLLER_H
#define EXCHANGECONTROLLER_H

#include "exchange/exporting.h"
#include "window/surroundings.h"

#include <QObject>

class ActionTable;
class MainWindow;
class QMenu;

/** What a window takes in and gives away beside its document: other formats, the clipboard, paper. */
class ExchangeController : public QObject
{
    Q_OBJECT

public:
    /** Belongs to the window. */
    ExchangeController(MainWindow& window, Surroundings const& surroundings);

    /** Appends import, fit, export and print to the menu of files. */
    void addActions(QMenu& menu, ActionTable& actions);
    /** Appends cut, copy and paste. */
    void addClipboardActions(QMenu& menu, ActionTable& actions);

    /** Inserts the outlines of files of other kinds behind the current outline: one step a file. */
    void importFiles(QStringList const& files);
    /**
     * Writes the outlines in a format, whole or not at all. False, with a message, if that fails, or
     * if the file is the document itself.
     */
    bool exportTo(QString const& file, ExportFormat format);
    /** Puts the current outline on the clipboard. */
    void copy();
    /** Puts it there and removes it: one step. */
    void cut();
    /** Inserts what the clipboard holds behind the current outline: one step. */
    void paste();

private:
    /** What makes items of a file's content: importedItems() or presetItems(). */
    using Import = std::optional<Items> (*)(QByteArray const&, QString const&, Diagnostics&);
    /** What is said of a file: the text of a step, or a command. */
    using TextOfFile = QString (*)(QString const&);

    void importWithDialog();
    void importGlyphs();
    void importPresets();
    void importEach(QStringList const& files, Import read, TextOfFile step, TextOfFile command);
    void fitDrawings();
    void exportWithDialog(ExportKind const& kind);
    void insert(std::optional<Items> const& items, Diagnostics const& diagnostics,
        QString const& step, QString const& command);
    QString name() const;

    MainWindow& m_window;
    Surroundings const m_surroundings;
};

#endif // EXCHANGECONTROLLER_H

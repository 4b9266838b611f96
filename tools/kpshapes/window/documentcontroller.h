// SPDX-License-Identifier: MIT
#ifndef DOCUMENTCONTROLLER_H
#define DOCUMENTCONTROLLER_H

#include "common/diagnostic.h"
#include "files/documentfile.h"
#include "files/documentloader.h"
#include "files/recovery.h"
#include "model/shapedocument.h"
#include "window/surroundings.h"

#include <QObject>
#include <QTimer>

#include <memory>
#include <optional>

class QWidget;

/**
 * The file of a window's document: reading it in the background, saving it whole or not at all,
 * asking before anything is lost, and keeping unsaved work for the case of a crash.
 */
class DocumentController : public QObject
{
    Q_OBJECT

public:
    /**
     * A new document without a file.
     *
     * @param document not owned, must outlive this
     * @param window in front of which questions are asked; not owned
     */
    DocumentController(ShapeDocument& document, Surroundings const& surroundings, QWidget& window);
    ~DocumentController() override;

    /** The path of the file; empty for a new document. */
    QString path() const;
    /** The document as saving would write it now. */
    QByteArray text() const { return m_file.source().write(m_document.items()); }
    /** What the document is called in titles. */
    QString title() const;
    /** Whether something was changed that is not saved. */
    bool isModified() const;
    /** Whether a file is being read. */
    bool isLoading() const { return m_loader != nullptr; }

    /** Begins a new document in this window if it holds none yet, else in another. */
    void newDocument();
    /** Reads a file into this window, whose document must not be needed any more. */
    void open(QString const& path);
    /** Reads a file here if the window holds no document yet, else asks for another window. */
    void openHereOrElsewhere(QString const& path);
    /** Asks which files to open. @param folder to begin with; empty: the one of the last file */
    void openWithDialog(QString const& folder = {});
    /** Opens the example, which has no file. */
    void openExample();
    /** Opens what was kept of a document that was not saved. */
    void recover(RecoverableDocument const& document);
    /** Stops reading; what was read so far is dropped. */
    void cancelLoading();

    /** Writes the file; asks for its name if there is none. False, with a message, if it did not. */
    bool save();
    /** Asks for a name and writes the file. */
    bool saveAs();
    /** Reads the file anew, after asking if changes would be lost; not if there are more by then. */
    void reload();
    /** Whether the window may close: asks for what is not saved, and saves if asked to. */
    bool mayClose();
    /** Looks whether another program has changed the file, and says so once. */
    void lookAtFile();
    /** Keeps unsaved work now; while a file is read, a little later. */
    void storeRecovery();
    /** Drops what was kept of unsaved work: there is none any more. */
    void forgetRecovery();

Q_SIGNALS:
    /** Another path, or another state of saving. */
    void titleChanged();
    /** There is something to be told. */
    void reported(Diagnostics const& diagnostics);
    /** Something was done that a command does, too. */
    void did(QString const& command);
    /** A document has been read. */
    void opened();
    /** Reading has begun or ended. */
    void loadingChanged(bool isLoading);
    /** How much has been read, 0 to 1. */
    void progressed(double part);
    /** Another window is wanted for a file. */
    void windowWanted(QString const& path);

private:
    void load(QString const& path);
    void finishOpening(LoadResult const& result);
    void finishReloading(LoadResult const& result);
    void takeFile(LoadResult const& result);
    void takePicture(LoadResult const& result);
    void takeWithoutFile(QString const& name, Items const& items);
    bool saveTo(QString const& path);
    bool mayOverwrite(QString const& path);
    bool holdsNothing() const;
    void endLoading();
    void tellTitle();
    void changed();

    ShapeDocument& m_document;
    Surroundings const m_surroundings;
    QWidget& m_window;
    DocumentFile m_file;
    QString m_name; ///< of a document without a file
    DocumentLoader* m_loader = nullptr; ///< while a file is read
    QString m_loading; ///< the path of that file
    bool m_isChangedMeanwhile = false; ///< the document, since that began
    std::unique_ptr<RecoveryFile> m_recovery; ///< once there is something to be kept
    QTimer m_recoveryTimer;
    bool m_isExample = false; ///< it shows the example, which another document may replace
    bool m_hasToldChange = false; ///< of the file on disk, since it was read or written last
};

#endif // DOCUMENTCONTROLLER_H

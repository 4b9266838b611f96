// SPDX-License-Identifier: MIT
#include "window/documentcontroller.h"

#include "common/filecontent.h"
#include "exchange/importing.h"
#include "window/commandtext.h"
#include "window/prompter.h"
#include "window/recentfiles.h"
#include "window/resources.h"

#include <QFileInfo>
#include <QWidget>

namespace {

QString documentFilter()
{
    return QStringLiteral("Documents of outlines (*.xml);;All files (*)");
}

} // namespace

DocumentController::DocumentController(
    ShapeDocument& document, Surroundings const& surroundings, QWidget& window)
    : m_document(document)
    , m_surroundings(surroundings)
    , m_window(window)
    , m_name(QStringLiteral("New shapes"))
{
    m_recoveryTimer.setSingleShot(true);
    m_recoveryTimer.setInterval(surroundings.recoveryDelay);
    connect(&m_recoveryTimer, &QTimer::timeout, this, &DocumentController::storeRecovery);
    connect(&m_document.undoStack(), &QUndoStack::indexChanged, this, &DocumentController::changed);
}

DocumentController::~DocumentController()
{
    delete m_loader;
    m_document.undoStack().disconnect(this);
}

QString DocumentController::path() const
{
    return m_file.path();
}

QString DocumentController::title() const
{
    if (isLoading())
        return QFileInfo(m_loading).fileName();
    return path().isEmpty() ? m_name : QFileInfo(path()).fileName();
}

bool DocumentController::isModified() const
{
    return !m_document.undoStack().isClean();
}

bool DocumentController::holdsNothing() const
{
    bool const isUnused = m_document.count() == 0 || m_isExample;
    return path().isEmpty() && !isLoading() && isUnused && !isModified();
}

void DocumentController::changed()
{
    m_isChangedMeanwhile = isLoading();
    if (isModified() && !m_recoveryTimer.isActive())
        m_recoveryTimer.start();
    tellTitle();
}

void DocumentController::tellTitle()
{
    Q_EMIT titleChanged();
}

void DocumentController::newDocument()
{
    if (!holdsNothing()) {
        Q_EMIT windowWanted({});
    } else if (m_isExample) {
        takeWithoutFile(QStringLiteral("New shapes"), {});
        tellTitle();
    }
}

void DocumentController::openHereOrElsewhere(QString const& path)
{
    if (holdsNothing())
        open(path);
    else
        Q_EMIT windowWanted(path);
}

void DocumentController::openWithDialog(QString const& folder)
{
    QStringList const files = m_surroundings.prompter.filesToOpen(&m_window, QStringLiteral("Open"),
        folder.isEmpty() ? m_surroundings.recent.folder() : folder, documentFilter());
    for (QString const& file : files)
        openHereOrElsewhere(file);
}

void DocumentController::open(QString const& path)
{
    load(path);
    m_file = DocumentFile();
    m_isExample = false;
    m_document.reset({});
    forgetRecovery();
    connect(m_loader, &DocumentLoader::loaded, this,
        [this](Items const& items) { m_document.append(items); });
    connect(m_loader, &DocumentLoader::finished, this, &DocumentController::finishOpening);
    m_loader->start();
    tellTitle();
}

void DocumentController::load(QString const& path)
{
    endLoading();
    m_isChangedMeanwhile = false;
    m_loading = path;
    m_loader = new DocumentLoader(path);
    connect(m_loader, &DocumentLoader::progress, this, &DocumentController::progressed);
    Q_EMIT loadingChanged(true);
}

void DocumentController::finishOpening(LoadResult const& result)
{
    endLoading();
    if (!result.diagnostics.isEmpty())
        Q_EMIT reported(result.diagnostics);
    if (result.reading.kind == SourceKind::Picture) {
        takePicture(result);
    } else if (result.reading.document && !result.reading.wasCancelled) {
        takeFile(result);
    } else {
        // Half a document must never be saved as the whole.
        m_document.reset({});
    }
    tellTitle();
    Q_EMIT opened();
}

void DocumentController::finishReloading(LoadResult const& result)
{
    endLoading();
    if (!result.diagnostics.isEmpty())
        Q_EMIT reported(result.diagnostics);
    if (m_isChangedMeanwhile) {
        Diagnostics diagnostics;
        diagnostics.warning(m_loading,
            QStringLiteral("it is not reloaded: it was changed here while it was read again"));
        Q_EMIT reported(diagnostics);
    } else if (result.reading.document && !result.reading.wasCancelled) {
        takeFile(result);
        forgetRecovery();
        m_document.reset(result.reading.document->items());
        Q_EMIT opened();
    } else if (result.reading.kind == SourceKind::Picture) {
        // What is no document any more takes nothing away.
        Diagnostics diagnostics;
        diagnostics.error(m_loading, QStringLiteral("it is no document of outlines any more"));
        Q_EMIT reported(diagnostics);
    }
    tellTitle();
}

void DocumentController::takeFile(LoadResult const& result)
{
    m_file = DocumentFile(m_loading, result.reading.document, result.state);
    m_hasToldChange = false;
    m_surroundings.recent.add(m_loading);
    Q_EMIT did(CommandText::ofOpening(m_loading));
}

void DocumentController::takePicture(LoadResult const& result)
{
    Diagnostics diagnostics;
    auto const items = importedItems(result.content, m_loading, diagnostics);
    if (!diagnostics.isEmpty())
        Q_EMIT reported(diagnostics);
    if (!items)
        return;
    takeWithoutFile(QFileInfo(m_loading).completeBaseName(), *items);
    Q_EMIT did(CommandText::ofImport(m_loading));
}

void DocumentController::takeWithoutFile(QString const& name, Items const& items)
{
    m_file = DocumentFile();
    m_name = name;
    m_isExample = false;
    m_document.reset(items);
}

void DocumentController::endLoading()
{
    if (!m_loader)
        return;
    // It may be this very loader that is telling something.
    m_loader->disconnect(this);
    m_loader->cancel();
    m_loader->deleteLater();
    m_loader = nullptr;
    Q_EMIT loadingChanged(false);
}

void DocumentController::cancelLoading()
{
    if (m_loader)
        m_loader->cancel();
}

void DocumentController::openExample()
{
    takeWithoutFile(QStringLiteral("Example"), Resources::example());
    m_isExample = true;
    tellTitle();
    Q_EMIT opened();
}

void DocumentController::recover(RecoverableDocument const& document)
{
    Diagnostics diagnostics;
    auto const content = readRecovery(document.file, diagnostics);
    SourceReading reading;
    if (content)
        reading = readSource(content->text, document.file, diagnostics);
    if (!diagnostics.isEmpty())
        Q_EMIT reported(diagnostics);
    if (!reading.document)
        return;
    // Whether the file is still that of then, only its digest can tell.
    FileState state = stateOf(content->path);
    state.modified = 0;
    state.digest = content->digest;
    m_file = DocumentFile(content->path, reading.document, state);
    m_recovery = RecoveryFile::adopt(document.file);
    m_document.reset(reading.document->items());
    m_document.undoStack().resetClean();
    tellTitle();
    Q_EMIT opened();
}

bool DocumentController::save()
{
    return path().isEmpty() ? saveAs() : saveTo(path());
}

bool DocumentController::saveAs()
{
    QString const suggestion = path().isEmpty() ? m_name + QStringLiteral(".xml") : path();
    QString const file = m_surroundings.prompter.fileToSave(
        &m_window, QStringLiteral("Save As"), suggestion, documentFilter());
    return !file.isEmpty() && saveTo(QFileInfo(file).absoluteFilePath());
}

bool DocumentController::mayOverwrite(QString const& path)
{
    if (path != this->path() || !m_file.hasChangedOnDisk())
        return true;
    QString const what = QFileInfo::exists(path)
        ? QStringLiteral("%1 was changed by another program since it was opened.")
        : QStringLiteral("%1 was removed by another program since it was opened.");
    return m_surroundings.prompter.confirm(&m_window, what.arg(path), QStringLiteral("Overwrite"));
}

bool DocumentController::saveTo(QString const& path)
{
    Diagnostics diagnostics;
    if (isLoading()) {
        diagnostics.error(m_loading, QStringLiteral("it is still being read, and not saved"));
        Q_EMIT reported(diagnostics);
        return false;
    }
    if (!mayOverwrite(path))
        return false;
    bool const isSaved = m_file.save(m_document.items(), path, diagnostics);
    if (!diagnostics.isEmpty())
        Q_EMIT reported(diagnostics);
    if (!isSaved)
        return false;
    m_document.undoStack().setClean();
    m_hasToldChange = false;
    forgetRecovery();
    m_surroundings.recent.add(path);
    Q_EMIT did(CommandText::ofCheck(path));
    tellTitle();
    return true;
}

void DocumentController::reload()
{
    if (path().isEmpty())
        return;
    QString const question =
        QStringLiteral("The changes of %1 since it was saved are lost.").arg(title());
    if (isModified()
        && !m_surroundings.prompter.confirm(&m_window, question, QStringLiteral("Reload")))
        return;
    load(path());
    connect(m_loader, &DocumentLoader::finished, this, &DocumentController::finishReloading);
    m_loader->start();
}

bool DocumentController::mayClose()
{
    if (!isModified())
        return true;
    switch (m_surroundings.prompter.askToSave(&m_window, title())) {
    case Prompter::Unsaved::Save:
        return save();
    case Prompter::Unsaved::Discard:
        return true;
    case Prompter::Unsaved::Cancel:
        break;
    }
    return false;
}

void DocumentController::lookAtFile()
{
    if (m_hasToldChange || isLoading() || !m_file.hasChangedOnDisk())
        return;
    m_hasToldChange = true;
    Diagnostics diagnostics;
    diagnostics.warning(path(),
        QFileInfo::exists(path())
            ? QStringLiteral("another program has changed the file: Reload (F5) shows its state, "
                             "saving asks before it is replaced")
            : QStringLiteral("another program has removed the file: saving writes it again"));
    Q_EMIT reported(diagnostics);
}

void DocumentController::storeRecovery()
{
    if (!isModified())
        return;
    if (isLoading()) {
        m_recoveryTimer.start();
        return;
    }
    Diagnostics diagnostics;
    if (!m_recovery)
        m_recovery = RecoveryFile::create(m_surroundings.recoveryFolder, diagnostics);
    if (m_recovery)
        m_recovery->store({path(), m_file.state().digest, text()}, diagnostics);
    if (!diagnostics.isEmpty())
        Q_EMIT reported(diagnostics);
}

void DocumentController::forgetRecovery()
{
    m_recoveryTimer.stop();
    m_recovery.reset();
}

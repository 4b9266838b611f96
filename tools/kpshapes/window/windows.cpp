// SPDX-License-Identifier: MIT
#include "window/windows.h"

#include "files/recovery.h"
#include "window/mainwindow.h"
#include "window/menus.h"
#include "window/prompter.h"

#include <QLocale>
#include <QSettings>

namespace {

/** Set as soon as the program has been started once. */
QString startedKey()
{
    return QStringLiteral("started");
}

} // namespace

Windows::Windows(Surroundings const& surroundings, QObject* parent)
    : QObject(parent)
    , m_surroundings(surroundings)
{
}

Windows::~Windows()
{
    for (MainWindow* const window : all())
        delete window;
}

bool Windows::isFirstStart() const
{
    QSettings settings(m_surroundings.settingsFile, QSettings::IniFormat);
    bool const isFirst = !settings.contains(startedKey());
    settings.setValue(startedKey(), true);
    return isFirst;
}

void Windows::start(QStringList const& files)
{
    bool const isFirst = isFirstStart();
    bool const isRecovered = offerRecovery();
    for (QString const& file : files)
        open(file);
    if (isRecovered || !files.isEmpty())
        return;
    MainWindow& window = open({});
    if (isFirst) {
        window.controller().openExample();
        window.messages().show(whatToDrag());
    }
}

bool Windows::offerRecovery()
{
    bool isAny = false;
    for (RecoverableDocument const& document : listRecoverable(m_surroundings.recoveryFolder)) {
        QString const question =
            QStringLiteral(
                "%1 was not saved when kpshapes ended unexpectedly. What it was at %2 was "
                "kept; unless it is recovered now, the next start asks again.")
                .arg(document.path.isEmpty() ? QStringLiteral("A new document") : document.path,
                    QLocale().toString(document.time, QLocale::ShortFormat));
        if (!m_surroundings.prompter.confirm(nullptr, question, QStringLiteral("Recover")))
            continue;
        open({}).controller().recover(document);
        isAny = true;
    }
    return isAny;
}

MainWindow& Windows::open(QString const& path)
{
    auto* const window = new MainWindow(m_surroundings);
    window->setAttribute(Qt::WA_DeleteOnClose);
    m_windows.append(window);
    connect(window, &MainWindow::windowWanted, this, [this](QString const& file) { open(file); });
    connect(window, &MainWindow::quitWanted, this, &Windows::closeAll);
    window->show();
    if (!path.isEmpty())
        window->controller().open(path);
    return *window;
}

void Windows::closeAll()
{
    for (MainWindow* const window : all()) {
        if (!window->close())
            return;
    }
}

QVector<MainWindow*> Windows::all() const
{
    QVector<MainWindow*> open;
    for (QPointer<MainWindow> const& window : m_windows) {
        if (window)
            open << window;
    }
    return open;
}

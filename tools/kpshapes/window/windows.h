// SPDX-License-Identifier: MIT
#ifndef WINDOWS_H
#define WINDOWS_H

#include "window/surroundings.h"

#include <QObject>
#include <QPointer>
#include <QVector>

class MainWindow;

/** All windows of the program. Each deletes itself when it is closed. */
class Windows : public QObject
{
    Q_OBJECT

public:
    /** None yet. */
    explicit Windows(Surroundings const& surroundings, QObject* parent = nullptr);
    /** Deletes those that are still open, without asking. */
    ~Windows() override;

    /**
     * What the program begins with: a window for each file; work that was not saved when the program
     * ended without warning, if its user wants it; the example at the very first start; or an
     * empty window.
     */
    void start(QStringList const& files);
    /** Opens another window. @param path of its document, or empty */
    MainWindow& open(QString const& path);
    /** Closes all windows, unless the user wants to keep one. */
    void closeAll();
    /** Those that are open. */
    QVector<MainWindow*> all() const;

private:
    bool offerRecovery();
    bool isFirstStart() const;

    Surroundings const m_surroundings;
    QVector<QPointer<MainWindow>> m_windows;
};

#endif // WINDOWS_H

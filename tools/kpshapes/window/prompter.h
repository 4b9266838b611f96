// SPDX-License-Identifier: MIT
#ifndef PROMPTER_H
#define PROMPTER_H

#include <QString>
#include <QStringList>

class QWidget;

/**
 * What a window asks its user. Dialogs answer by default; whoever drives a window without one
 * answers for the user instead.
 */
class Prompter
{
public:
    /** What to do with changes that are not saved. */
    enum class Unsaved { Save, Discard, Cancel };

    Prompter() = default;
    virtual ~Prompter() = default;
    Prompter(Prompter const&) = delete;
    Prompter& operator=(Prompter const&) = delete;

    /** Asks what to do with the changes of a document. @param name of the document */
    virtual Unsaved askToSave(QWidget* parent, QString const& name) = 0;
    /**
     * Asks whether to do something that cannot be taken back.
     *
     * @param question in a whole sentence
     * @param yes what the button says that does it: "Overwrite"
     */
    virtual bool confirm(QWidget* parent, QString const& question, QString const& yes) = 0;
    /** Asks for files to be read; empty if the user does not want to. */
    virtual QStringList filesToOpen(
        QWidget* parent, QString const& title, QString const& folder, QString const& filter) = 0;
    /** Asks for the name of a file to be written; empty if the user does not want to. */
    virtual QString fileToSave(QWidget* parent, QString const& title, QString const& suggestion,
        QString const& filter) = 0;
    /** Asks for a text; null if the user does not want to. */
    virtual QString text(
        QWidget* parent, QString const& title, QString const& label, QString const& suggestion) = 0;
};

/** Asks by dialogs. */
class DialogPrompter : public Prompter
{
public:
    Unsaved askToSave(QWidget* parent, QString const& name) override;
    bool confirm(QWidget* parent, QString const& question, QString const& yes) override;
    QStringList filesToOpen(QWidget* parent, QString const& title, QString const& folder,
        QString const& filter) override;
    QString fileToSave(QWidget* parent, QString const& title, QString const& suggestion,
        QString const& filter) override;
    QString text(QWidget* parent, QString const& title, QString const& label,
        QString const& suggestion) override;
};

#endif // PROMPTER_H

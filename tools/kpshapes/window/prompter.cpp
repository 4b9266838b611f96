// SPDX-License-Identifier: MIT
#include "window/prompter.h"

#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>

Prompter::Unsaved DialogPrompter::askToSave(QWidget* parent, QString const& name)
{
    QMessageBox box(QMessageBox::Warning, QStringLiteral("Save changes?"),
        QStringLiteral("The changes of %1 are not saved.").arg(name),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, parent);
    // Names of files may look like markup.
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(QStringLiteral("They are lost if you do not save them."));
    box.setDefaultButton(QMessageBox::Save);
    switch (box.exec()) {
    case QMessageBox::Save:
        return Unsaved::Save;
    case QMessageBox::Discard:
        return Unsaved::Discard;
    default:
        return Unsaved::Cancel;
    }
}

bool DialogPrompter::confirm(QWidget* parent, QString const& question, QString const& yes)
{
    QMessageBox box(
        QMessageBox::Question, QStringLiteral("kpshapes"), question, QMessageBox::Cancel, parent);
    box.setTextFormat(Qt::PlainText);
    QPushButton const* const button = box.addButton(yes, QMessageBox::AcceptRole);
    box.exec();
    return box.clickedButton() == button;
}

QStringList DialogPrompter::filesToOpen(
    QWidget* parent, QString const& title, QString const& folder, QString const& filter)
{
    return QFileDialog::getOpenFileNames(parent, title, folder, filter);
}

QString DialogPrompter::fileToSave(
    QWidget* parent, QString const& title, QString const& suggestion, QString const& filter)
{
    return QFileDialog::getSaveFileName(parent, title, suggestion, filter);
}

QString DialogPrompter::text(
    QWidget* parent, QString const& title, QString const& label, QString const& suggestion)
{
    bool isAccepted = false;
    QString const text =
        QInputDialog::getText(parent, title, label, QLineEdit::Normal, suggestion, &isAccepted);
    return isAccepted ? text : QString();
}

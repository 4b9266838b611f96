// SPDX-License-Identifier: MIT
#include "kpshapestesting.h"
#include "window/prompter.h"

#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

/** The questions as dialogs: what their buttons and keys answer. */
class TestKpshapesPrompter : public QObject
{
    Q_OBJECT

private:
    DialogPrompter m_prompter;
    QString m_text; ///< that the last dialog showed
    Qt::TextFormat m_format = Qt::AutoText; ///< how it showed that

    /** Presses a key, or the button of this text, in the dialog that comes next. */
    void answer(QString const& button, Qt::Key key = Qt::Key_unknown)
    {
        m_text.clear();
        m_format = Qt::AutoText;
        QTimer::singleShot(0, this, [this, button, key] {
            QWidget* const dialog = QApplication::activeModalWidget();
            if (!dialog)
                return answer(button, key);
            if (auto const* const box = qobject_cast<QMessageBox*>(dialog)) {
                m_text = box->text();
                m_format = box->textFormat();
            }
            if (key != Qt::Key_unknown)
                return QTest::keyClick(dialog, key);
            for (QPushButton* const candidate : dialog->findChildren<QPushButton*>()) {
                if (candidate->text().remove('&') == button)
                    return candidate->click();
            }
            qFatal("there is no button %s", qPrintable(button));
        });
    }

private Q_SLOTS:
    void initTestCase() { QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }

    void unsavedChangesAreAskedFor_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("answer");
        using Unsaved = Prompter::Unsaved;
        QTest::newRow("save") << "Save" << int(Qt::Key_unknown) << int(Unsaved::Save);
        QTest::newRow("discard") << "Discard" << int(Qt::Key_unknown) << int(Unsaved::Discard);
        QTest::newRow("cancel") << "Cancel" << int(Qt::Key_unknown) << int(Unsaved::Cancel);
        QTest::newRow("Return saves") << "" << int(Qt::Key_Return) << int(Unsaved::Save);
        QTest::newRow("Escape goes back") << "" << int(Qt::Key_Escape) << int(Unsaved::Cancel);
    }

    void unsavedChangesAreAskedFor()
    {
        QFETCH(QString, button);
        QFETCH(int, key);
        answer(button, static_cast<Qt::Key>(key));
        QTEST(int(m_prompter.askToSave(nullptr, "a.xml")), "answer");
        QCOMPARE(m_text, QString("The changes of a.xml are not saved."));
    }

    /** A file may be called anything. */
    void namesAreNoMarkup()
    {
        answer("Cancel");
        m_prompter.askToSave(nullptr, "<b>a</b>");
        QCOMPARE(m_text, QString("The changes of <b>a</b> are not saved."));
        QCOMPARE(m_format, Qt::PlainText);
        answer("Cancel");
        m_prompter.confirm(nullptr, "<b>a</b> was changed.", "Overwrite");
        QCOMPARE(m_format, Qt::PlainText);
    }

    void nothingIsDoneUnlessItIsConfirmed_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("key");
        QTest::addColumn<bool>("isDone");
        QTest::newRow("yes") << "Overwrite" << int(Qt::Key_unknown) << true;
        QTest::newRow("cancel") << "Cancel" << int(Qt::Key_unknown) << false;
        QTest::newRow("Escape") << "" << int(Qt::Key_Escape) << false;
    }

    void nothingIsDoneUnlessItIsConfirmed()
    {
        QFETCH(QString, button);
        QFETCH(int, key);
        answer(button, static_cast<Qt::Key>(key));
        QTEST(m_prompter.confirm(nullptr, "Really?", "Overwrite"), "isDone");
        QCOMPARE(m_text, QString("Really?"));
    }

    void textIsEntered()
    {
        answer({}, Qt::Key_Return);
        QCOMPARE(m_prompter.text(nullptr, "Glyphs", "Characters:", "Ag&"), QString("Ag&"));
        answer({}, Qt::Key_Escape);
        QCOMPARE(m_prompter.text(nullptr, "Glyphs", "Characters:", "Ag&"), QString());
    }

    void noFileIsChosenByEscape()
    {
        answer({}, Qt::Key_Escape);
        QCOMPARE(m_prompter.filesToOpen(nullptr, "Open", "/", "All files (*)"), QStringList());
        answer({}, Qt::Key_Escape);
        QCOMPARE(m_prompter.fileToSave(nullptr, "Save", "a.xml", "All files (*)"), QString());
    }
};

KPSHAPES_TEST_MAIN(TestKpshapesPrompter)
#include "tst_kpshapes_prompter.moc"

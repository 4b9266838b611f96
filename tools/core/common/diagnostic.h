// SPDX-License-Identifier: MIT
#ifndef DIAGNOSTIC_H
#define DIAGNOSTIC_H

#include <QString>
#include <QVector>

/** Something reported of an input or an operation: the one shape of failure in the tools. */
struct Diagnostic
{
    /** How bad it is. */
    enum class Severity {
        Warning, ///< it was done, but not all of it, or not as it looks
        Error ///< it was not done
    };

    Severity severity = Severity::Error; ///< how bad it is
    QString file; ///< as its caller named it; null if it is about no file
    qint64 line = 0; ///< counted from 1; 0 where the place is not known
    qint64 column = 0; ///< counted from 1
    QString text; ///< what is wrong; it may hold any character that the input holds
};

/** In the order in which they are to be reported. */
class Diagnostics
{
public:
    /** Appends one. */
    void add(Diagnostic const& diagnostic) { m_all.append(diagnostic); }

    /** Appends an error of unknown place in a file; null if it is about no file. */
    void error(QString const& file, QString const& text)
    {
        add({Diagnostic::Severity::Error, file, 0, 0, text});
    }

    /** Appends a warning of unknown place in a file; null if it is about no file. */
    void warning(QString const& file, QString const& text)
    {
        add({Diagnostic::Severity::Warning, file, 0, 0, text});
    }

    /** Appends all others, in their order. */
    void append(Diagnostics const& others) { m_all += others.m_all; }

    /** Whether nothing was reported, not even a warning. */
    bool isEmpty() const { return m_all.isEmpty(); }
    /** How many there are. */
    int size() const { return m_all.size(); }
    /** @param index from 0, below size() */
    Diagnostic const& at(int index) const { return m_all.at(index); }
    /** The first. */
    QVector<Diagnostic>::const_iterator begin() const { return m_all.begin(); }
    /** Behind the last. */
    QVector<Diagnostic>::const_iterator end() const { return m_all.end(); }

private:
    QVector<Diagnostic> m_all;
};

#endif // DIAGNOSTIC_H

// SPDX-License-Identifier: MIT
#include "check/recentaudit.h"

#include "document/elementposition.h"
#include "kprecentfilemanager.h"

#include <QDomDocument>
#include <QStringList>

namespace {

/** Walks the tree as the library does, and writes down what it passes over. */
class RecentAudit
{
public:
    RecentAudit(QDomDocument const& document, QString const& file)
        : m_file(file)
    {
        QDomElement const root = document.documentElement();
        if (root.tagName() != QLatin1String("RecentFiles")) {
            add(root,
                QStringLiteral("the root is %1, not RecentFiles: nothing is read")
                    .arg(root.tagName()));
            return;
        }
        for (QDomElement child = root.firstChildElement(); !child.isNull();
             child = child.nextSiblingElement())
            auditChild(child);
    }

    Diagnostics const& diagnostics() const { return m_diagnostics; }

private:
    void add(QDomElement const& element, QString const& what)
    {
        m_diagnostics.add(warningAt(element, m_file, what));
    }

    void auditChild(QDomElement const& child)
    {
        QString const name = child.tagName();
        if (m_seen.contains(name)) {
            add(child, QStringLiteral("a second %1 is ignored").arg(name));
            return;
        }
        m_seen << name;
        if (name == QLatin1String("RecentFiles"))
            auditList(child, QStringLiteral("RecentFile"));
        else if (name == QLatin1String("RecentFolders"))
            auditList(child, QStringLiteral("RecentFolder"));
        else if (!isFolderName(name))
            add(child, QStringLiteral("element %1 is ignored").arg(name));
        else if (child.attribute(QStringLiteral("V")).isEmpty())
            add(child, QStringLiteral("%1 names no folder").arg(name));
    }

    static bool isFolderName(QString const& name)
    {
        return name == QLatin1String("RecentFile") || name == QLatin1String("RecentSymbol")
            || name == QLatin1String("RecentLibrary");
    }

    void auditList(QDomElement const& list, QString const& entryName)
    {
        bool isBehindUnpinned = false;
        int count = 0;
        for (QDomElement entry = list.firstChildElement(); !entry.isNull();
             entry = entry.nextSiblingElement()) {
            if (entry.tagName() != entryName) {
                add(entry,
                    QStringLiteral("element %1 is read as %2").arg(entry.tagName(), entryName));
            }
            if (entry.attribute(QStringLiteral("V")).isEmpty()) {
                add(entry, QStringLiteral("an entry without a path is left out"));
                continue;
            }
            auditKind(entry);
            bool const isPinned = auditPin(entry);
            if (isPinned && isBehindUnpinned)
                add(entry, QStringLiteral("a pinned entry stands behind one that is not"));
            isBehindUnpinned = isBehindUnpinned || !isPinned;
            ++count;
        }
        int const kept = KpRecentFileManager().m_maxCount;
        if (count > kept) {
            add(list,
                QStringLiteral("%1 has %2 entries, of which %3 are kept")
                    .arg(list.tagName(), QString::number(count), QString::number(kept)));
        }
    }

    void auditKind(QDomElement const& entry)
    {
        QString const text = entry.attribute(QStringLiteral("Type"));
        int const kind = text.toInt();
        if (kind < KpRecentFileManager::RecLocal || kind > KpRecentFileManager::RecDropbox) {
            add(entry,
                QStringLiteral("Type=\"%1\" reads as %2, which is no kind of storage")
                    .arg(text, QString::number(kind)));
        }
    }

    /** @return whether the entry is read as pinned */
    bool auditPin(QDomElement const& entry)
    {
        QString const text = entry.attribute(QStringLiteral("Top"));
        bool const isPinned = text.toInt() == 1;
        if (!isPinned && text != QLatin1String("0"))
            add(entry, QStringLiteral("Top=\"%1\" reads as not pinned").arg(text));
        return isPinned;
    }

    QString const m_file;
    QStringList m_seen;
    Diagnostics m_diagnostics;
};

} // namespace

Diagnostics auditRecentFiles(QDomDocument const& document, QString const& file)
{
    return RecentAudit(document, file).diagnostics();
}

// SPDX-License-Identifier: MIT
#ifndef OUTLINEAUDIT_H
#define OUTLINEAUDIT_H

#include "document/markup.h"
#include "kppathseglist.h"

#include <QString>
#include <QStringList>

#include <functional>

/**
 * Finds what the readers ignore or read otherwise than it looks in a `Geometry` element:
 * unknown elements and attributes, numbers that are none, bases without a rule, coordinates
 * that are missing or given twice.
 */
class OutlineAudit
{
public:
    /** What becomes of it when the outline is written anew as it was read. */
    enum class Finding {
        Ignored, ///< readers pass it over, or take it as it is
        Misread ///< it reads otherwise than it looks, which is not to be seen any more then
    };

    /** Told each finding: its sort, the element that it is about, and what it is. */
    using Report = std::function<void(Finding, MarkupNode const&, QString const&)>;

    /** @param report called for each finding */
    explicit OutlineAudit(Report const& report)
        : m_report(report)
    {
    }

    /**
     * Looks through one element.
     *
     * @param list what the DOM reader has made of the element
     */
    void geometry(MarkupNode const& element, KpPathSegList const& list) const;

private:
    void flag(MarkupNode const& geometry, QString const& name) const;
    void segment(MarkupNode const& element, KpPathSeg& seg) const;
    void coordinate(MarkupNode const& element) const;
    void real(MarkupNode const& coordinate, QString const& attribute) const;
    void base(MarkupNode const& coordinate) const;
    void attributes(MarkupNode const& element, QStringList const& known) const;
    void texts(MarkupNode const& element) const;

    Report m_report;
};

#endif // OUTLINEAUDIT_H

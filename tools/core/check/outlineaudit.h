#ifndef OUTLINEAUDIT_H
#define OUTLINEAUDIT_H

#include "kppathseglist.h"

#include <QDomElement>
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
    using Report = std::function<void(Finding, QDomNode const&, QString const&)>;

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
    void geometry(QDomElement const& element, KpPathSegList const& list) const;

private:
    void flag(QDomElement const& geometry, QString const& name) const;
    void segment(QDomElement const& element, KpPathSeg& seg) const;
    void coordinate(QDomElement const& element) const;
    void real(QDomElement const& coordinate, QString const& attribute) const;
    void base(QDomElement const& coordinate) const;
    void attributes(QDomElement const& element, QStringList const& known) const;
    void texts(QDomElement const& element) const;

    Report m_report;
};

#endif // OUTLINEAUDIT_H

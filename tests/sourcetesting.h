// SPDX-License-Identifier: MIT
#ifndef SOURCETESTING_H
#define SOURCETESTING_H

#include "documenttesting.h"
#include "files/sourcedocument.h"

/** What the tests of documents that are edited share: reading them, and items that differ. */
namespace SourceTesting {

/** What comes of reading a text. */
inline SourceReading readingOf(QByteArray const& text, Diagnostics& diagnostics)
{
    return readSource(text, "a.xml", diagnostics);
}

/** The document of a text; a test fails without one. */
inline std::shared_ptr<SourceDocument const> sourceOf(QByteArray const& text)
{
    Diagnostics diagnostics;
    auto const reading = readingOf(text, diagnostics);
    if (!reading.document)
        qFatal("%s: %s", diagnostics.isEmpty() ? "" : qPrintable(diagnostics.at(0).text),
            text.constData());
    return reading.document;
}

/** An item with something of it changed. */
template <class Change> ItemPointer changed(ItemPointer const& item, Change const& change)
{
    WorkingShape shape = workingShapeOf(*item);
    change(shape);
    return std::make_shared<ShapeItem const>(itemOf(shape));
}

/** The item with another name. */
inline ItemPointer renamed(ItemPointer const& item, QString const& name)
{
    return changed(item, [&](WorkingShape& shape) { shape.name = name; });
}

/** A new item of one line. */
inline ItemPointer newItem(QString const& name)
{
    KpPathSegList list;
    list.moveTo(QPointF(1.0, 2.0));
    list.lineTo(QPointF(3.0, 4.0));
    return std::make_shared<ShapeItem const>(
        ShapeItem {name, QSizeF(10.0, 20.0), {}, recordOf(list), {}, -1});
}

/** The names of the items in a text. */
inline QStringList namesIn(QByteArray const& text)
{
    QStringList names;
    for (ItemPointer const& item : sourceOf(text)->items())
        names << item->name;
    return names;
}

} // namespace SourceTesting

#endif // SOURCETESTING_H

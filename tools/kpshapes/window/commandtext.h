// SPDX-License-Identifier: MIT
#ifndef COMMANDTEXT_H
#define COMMANDTEXT_H

#include "exchange/exporting.h"
#include "model/shapeitem.h"

#include <QStringList>

/**
 * The kpgeom command lines that do what the window has done, quoted for a POSIX shell. A document
 * that has no file yet is called "shapes.xml" in them.
 */
namespace CommandText {

/** A word of a command line: as it is if no shell takes it for more, else in single quotes. */
QString word(QString const& text);

/** "kpgeom" and the words. */
QString of(QStringList const& words);

/**
 * What brings a document from one state of an outline to another, or computes what is different:
 * resize, colour or blur. Empty if no command does.
 *
 * @param file of the document, or empty
 */
QString ofStep(ShapeItem const& before, ShapeItem const& after, QString const& file);

/** What tells of the outlines of a file. */
QString ofOpening(QString const& file);
/** What looks through a file that was written. */
QString ofCheck(QString const& file);
/** What writes a document as another kind of file. */
QString ofExport(ExportFormat format, QString const& file, QString const& output);
/** What makes a document of another kind of file. */
QString ofImport(QString const& file);
/** What makes a document of glyphs. */
QString ofGlyphs(QString const& text, QString const& fontFile);
/** What learns the rules of preset shapes. */
QString ofPresets(QString const& file);
/** What learns rules from drawings. @param drawings as kpgeom fit takes them: FILE or FILE@WxH */
QString ofFit(QStringList const& drawings);
/** What shows a length in all units. @param unit a code of UnitUtil */
QString ofUnit(unsigned int unit);
/** What shows the pages that there are. */
QString ofPages();

} // namespace CommandText

#endif // COMMANDTEXT_H

// SPDX-License-Identifier: MIT
#ifndef PAGETEMPLATE_H
#define PAGETEMPLATE_H

#include <QByteArray>

/** The parts of the page that htmlPage() fills: the files page.*, put into the program at its build. */
namespace PageTemplate {

/** page.html, with {{places}} to be filled; in UTF-8, as the others. */
QByteArray html();
/** page.css */
QByteArray style();
/** page.js */
QByteArray script();

} // namespace PageTemplate

#endif // PAGETEMPLATE_H

// SPDX-License-Identifier: MIT
#ifndef RESOURCES_H
#define RESOURCES_H

#include "model/shapeitem.h"

#include <QIcon>

/** The documents that are a part of the program. */
namespace Resources {

/** The outlines of the example, new ones. */
Items example();

/** The program's icon, in the sizes that windows show. */
QIcon icon();

} // namespace Resources

#endif // RESOURCES_H

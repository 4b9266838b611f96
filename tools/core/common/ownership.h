// SPDX-License-Identifier: MIT
#ifndef OWNERSHIP_H
#define OWNERSHIP_H

#include <QByteArray>

/**
 * Gives a new file, open and still empty, whom the present one belongs to and who may use it: owner,
 * group, permissions, access list and the attributes that users have set. Nothing if there is no
 * present file, or if both are the same.
 *
 * What the system forbids stays as it is in a new file. Where that is the group, its members may do no
 * more than all others may. Bits that let others run a file as its owner or group are never taken
 * over: what they were meant for is not what is written now.
 *
 * @param present the name of the present file, whose links are followed
 */
void takeOverOwnership(int fresh, QByteArray const& present);

#endif // OWNERSHIP_H

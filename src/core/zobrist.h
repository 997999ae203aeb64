// Hash keys of positions, material, captives and towers, drawn once at start-up.
#pragma once

#include "core/types.h"

namespace Zobrist {
extern Key pieceKeys[2][PieceTypeNb][64];  // by square; material keys use the count as "square"
extern Key sideKey;
extern Key exclusionKey;
extern Key captiveKeys[65];  // by square, 64 = NoSquare
extern Key towerKeys[65];    // by the number of tower squares still standing
}  // namespace Zobrist

// Draws every key in its fixed order and fills psq from the default values.
void initPsqAndKeys();

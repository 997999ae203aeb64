// Piece values and piece-square tables; psq[p][s] holds placement plus material, from White's view.
#pragma once

#include "core/types.h"

extern Value pieceValueMg[PieceSlots];
extern Value pieceValueEg[PieceSlots];
extern Score psq[PieceSlots][64];

// Fills psq from the current piece values; refreshes only the given white type and its black twin.
void refreshPsq(PieceType t);
void refreshAllPsq();

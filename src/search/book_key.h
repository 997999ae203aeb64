// The key under which an opening book file lists a position.
#pragma once

#include "core/types.h"
#include "game/position.h"

// The random number for a piece of kind k = 2 * (type - 1) + (1 for White) on square s. Kinds 0 to
// 11 (types 1 to 6) read the published table; kinds 12 to 21 (types 7 to 11), which that table
// lacks, read a second table of our own (see book_key.cpp).
Key bookPieceKey(PieceType type, Color c, Square s);

// XOR of the piece numbers of every piece on the board, and the turn number when White is to move.
// Towers, captives, castling and en passant play no part.
Key bookKey(const Position& pos);

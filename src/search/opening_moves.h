// The opening set-up moves: a random safe first move out of the start board of the game type.
#pragma once

#include "core/types.h"
#include "game/position.h"
#include "game/rules.h"

// A type's start boards as pairs of occupied squares and FEN. Pair 0 is the start board; pair 1 is
// the second board of "rescuegeneral" and empty (no squares, no FEN) in every other type.
struct StartBoard {
  Bitboard occupied;
  const char* fen;
};
StartBoard startBoard(const GameType& row, int pair);

// A set-up move for the side to move when the board is the pair's start board (White to move), or
// one White move away from it (Black to move); in "rescuegeneral" also only while the tower is
// untouched and the captive inside. The move is drawn by `rand` among the safe candidates of the
// type, and `reply` gets the opponent's expected answer drawn the same way, or MoveNone. MoveNone
// when the position does not qualify or no candidate is safe. `pos` is changed during the call and
// restored.
Move openingMove(Position& pos, Move& reply, const GameType& row, int pair);

// openingMove for the first, then the second start board of `row`, whichever gives a move first.
Move setupMove(Position& pos, Move& reply, const GameType& row);

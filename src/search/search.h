// The node search: principal-variation alpha-beta with its prunings, and the quiescence search.
#pragma once

#include "core/types.h"
#include "game/position.h"
#include "search/search_stack.h"

struct SplitPoint;

// The search's fixed measure of a Sword in its margins, whatever value the rules give the piece.
inline constexpr Value SwordValueMg = 200;

// The score of a draw for each colour in this search; set before the search starts.
extern Value drawValue[2];

// Depths are in half plies. The stack pointer is at the node's own record; ss - 1 is the parent.
// A depth below OnePly goes to the quiescence search.
Value searchRoot(Position& pos, SearchStack* ss, Value alpha, Value beta, Depth depth);
Value searchPV(Position& pos, SearchStack* ss, Value alpha, Value beta, Depth depth);
Value searchNonPV(Position& pos, SearchStack* ss, Value alpha, Value beta, Depth depth);

// The quiescence search, by node kind and whether the side to move is in check; depth is 0 or
// below. `checksInRow` counts the checks the side to move gave in a row while out of check itself.
Value qsearchNonPV(Position& pos, SearchStack* ss, Value alpha, Value beta, Depth depth);
Value qsearchPV(Position& pos, SearchStack* ss, Value alpha, Value beta, Depth depth);
Value qsearchNonPVInCheck(Position& pos, SearchStack* ss, Value alpha, Value beta, Depth depth, int checksInRow);
Value qsearchPVInCheck(Position& pos, SearchStack* ss, Value alpha, Value beta, Depth depth, int checksInRow);

// What a helper thread runs at a split point: the rest of the node's moves, in the node's own
// kind. Entered and left with the split point's lock held.
void searchSplitPoint(Position& pos, SearchStack* ss, SplitPoint* sp);

// First siege game: m carries the captive home and so wins at once.
bool isSiege1WinningMove(const Position& pos, Move m);
// May quiet move m do something against `threat`, the move the null move search ran into?
bool connectedThreat(Position& pos, Move m, Move threat);
// Is quiet check m worth a look in the quiescence search, for what it takes from the enemy leader?
bool checkIsDangerous(const Position& pos, Move m, Value futilityBase, Value beta);

// Mate scores go into the table relative to the node and come out relative to the new ply.
inline Value valueToTT(Value v, int ply) {
  return v >= ValueMateInMaxPly ? v + ply : v <= -ValueMateInMaxPly ? v - ply : v;
}
inline Value valueFromTT(Value v, int ply) {
  if (v == ValueNone) return v;
  return v >= ValueMateInMaxPly ? v - ply : v <= -ValueMateInMaxPly ? v + ply : v;
}

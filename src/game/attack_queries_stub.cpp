// Stand-ins for the attack queries, legality and move making while their real definitions are
// being written; weak, so the real ones win as soon as they are linked in.
#include "game/position.h"

__attribute__((weak)) Bitboard Position::attackersTo(Square, Bitboard, Bitboard, Color) const { return 0; }
__attribute__((weak)) Bitboard Position::allAttackersTo(Square, Bitboard, Bitboard) const { return 0; }
__attribute__((weak)) Bitboard Position::checkableBy(Color) const { return 0; }
__attribute__((weak)) CheckInfo::CheckInfo(const Position&) {}
__attribute__((weak)) bool Position::pseudo_legal(Move) const { return false; }
__attribute__((weak)) bool Position::legal(Move, Bitboard) const { return false; }
__attribute__((weak)) void Position::do_move(Move, StateInfo&) {}

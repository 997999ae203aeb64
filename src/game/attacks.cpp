// Reports of a faulty walker or runner hash table; the hot lookups are inline in attacks.h.
#include "game/attacks.h"

#include <iostream>

namespace {

void reportFault(const Position& pos, const char* text, Bitboard occ, Bitboard key) {
  std::cout << pos.pretty(MoveNone, false, false) << text;
  printBitboard("occ=\n", occ);
  printBitboard("_occ=\n", key);
}

}  // namespace

Bitboard warriorTableFault(const Position& pos, Square s, Bitboard occ) {
  reportFault(pos, "? ABW: no wbb\n", occ, warriorKey(s, occ));
  return warriorAttacksSlow(s, occ);
}

Bitboard assassinTableFault(const Position& pos, Square s, Bitboard occ) {
  reportFault(pos, "? ABA: no wbb\n", occ, assassinKey(s, occ));
  return assassinAttacksSlow(s, occ);
}

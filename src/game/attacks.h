// Attack sets of the walkers and runners in a position, where standing tower squares block like pieces.
#pragma once

#include "core/bitboard.h"
#include "game/position.h"

// Cold paths for an empty hash slot: report the fault, then answer from the plain definition.
Bitboard warriorTableFault(const Position& pos, Square s, Bitboard occ);
Bitboard assassinTableFault(const Position& pos, Square s, Bitboard occ);

// Pass towersInOcc when `occ` already holds the standing tower squares.
inline Bitboard withTowers(const Position& pos, Bitboard occ, bool towersInOcc) {
  return towersInOcc ? occ : occ | pos.standingTowers();
}

// All 8 neighbours, and every neighbour of each empty neighbour, without s itself.
inline Bitboard warriorAttacks(const Position& pos, Square s, Bitboard occ, bool towersInOcc = false) {
  occ = withTowers(pos, occ, towersInOcc);
  Bitboard attacks = warriorLookup(s, occ);
  if (attacks) [[likely]]
    return attacks;
  return warriorTableFault(pos, s, occ);
}

// The 4 orthogonal neighbours, and the square beyond each empty one.
inline Bitboard assassinAttacks(const Position& pos, Square s, Bitboard occ, bool towersInOcc = false) {
  occ = withTowers(pos, occ, towersInOcc);
  Bitboard attacks = assassinLookup(s, occ);
  if (attacks) [[likely]]
    return attacks;
  return assassinTableFault(pos, s, occ);
}

// The walker plus the orthogonal squares at distance 3 with a clear path. The line lookup runs only
// when `targets` meets that reach, so a caller asking about near squares never pays for it.
inline Bitboard bondsmanAttacks(const Position& pos, Square s, Bitboard occ, Bitboard targets = ~0ULL,
                                bool towersInOcc = false) {
  occ = withTowers(pos, occ, towersInOcc);
  Bitboard attacks = warriorAttacks(pos, s, occ, true);
  if (targets & reach[BondsmanLong][s]) attacks |= rookLines(s, occ) & reach[BondsmanLong][s];
  return attacks;
}

// As the Bondsman, and the diagonal squares at distance 3 with a clear path.
inline Bitboard dornAttacks(const Position& pos, Square s, Bitboard occ, Bitboard targets = ~0ULL,
                            bool towersInOcc = false) {
  occ = withTowers(pos, occ, towersInOcc);
  Bitboard attacks = warriorAttacks(pos, s, occ, true);
  if (targets & reach[BondsmanLong][s]) attacks |= rookLines(s, occ) & reach[BondsmanLong][s];
  if (targets & reach[DornDiagonalLong][s]) attacks |= bishopLines(s, occ) & reach[DornDiagonalLong][s];
  return attacks;
}

// Bitboards and the precomputed geometry: stepping tables, walker/runner hashes, range-3 magics.
#pragma once

#include <bit>
#include <string>

#include "core/types.h"

// ---------------------------------------------------------------- set primitives
inline int popcount(Bitboard b) {
#if defined(__POPCNT__)
  return std::popcount(b);
#else
  // Without the instruction the compiler calls a library routine, dearer than this arithmetic.
  b -= (b >> 1) & 0x5555555555555555ULL;
  b = (b & 0x3333333333333333ULL) + ((b >> 2) & 0x3333333333333333ULL);
  b = (b + (b >> 4)) & 0x0F0F0F0F0F0F0F0FULL;
  return int((b * 0x0101010101010101ULL) >> 56);
#endif
}
// For sets known to hold at most 15 bits, such as tower sets.
inline int popcount15(Bitboard b) {
  b -= (b >> 1) & 0x5555555555555555ULL;
  b = ((b >> 2) & 0x3333333333333333ULL) + (b & 0x3333333333333333ULL);
  return int((b * 0x1111111111111111ULL) >> 60);
}
inline Square lowestSquare(Bitboard b) { return std::countr_zero(b); }
inline Square popLowest(Bitboard& b) {
  Square s = lowestSquare(b);
  b &= b - 1;
  return s;
}

// ---------------------------------------------------------------- tables
extern Bitboard squareBit[64];
extern Bitboard fileMask[8];
extern Bitboard rankMask[8];
extern int squareDistance[64][64];

// Stepping tables. Rows 0..11 by white piece, 16..27 by black piece (equal sets), and helper rows.
enum ReachRow : int {
  WarriorRing = 0,        // distance-2 squares with more than one way in
  BondsmanLong = 8,       // (±3,0), (0,±3)
  DornLong = 9,           // (±3,0), (0,±3), (±3,±3)
  DornDiagonalLong = 32,  // (±3,±3)
  DiagonalOne = 33,       // (±1,±1), evaluation
  DiagonalTwo = 34,       // (±2,±2), evaluation
  AssassinSecond = 35,    // (±2,0), (0,±2)
  DistanceTwo = 36,       // all 16 squares at distance exactly 2
  MagicianStep = 37,      // quiet step of Magician and Magician1
  DemotionReach0 = 38,    // demotion reach with 0, 1, 2 extended squares: rows 38, 39, 40
  ReachRows = 41
};
extern Bitboard reach[ReachRows][64];
constexpr int NeighbourRow = Archer;  // row 4: the 8 neighbours

extern Bitboard between[64][64];
extern Bitboard warriorVia[64][64];
extern uint16_t warriorViaCount[64][64];
extern Bitboard assassinVia[64][64];
extern Bitboard pseudoAttacks[PieceTypeNb][64];
extern Bitboard promotionZone[2];

// Builds every table above in its fixed order, magics included.
void initBitboards();
// Copies reach row `row` over the rows of `type` and `type + 16`.
void setDemotionReach(int type, int row);

// ---------------------------------------------------------------- attack sets by occupancy
// The occupancy passed here must already hold any standing tower squares; the position-aware
// forms that add them live in game/attacks.h.

// Two-step walker and orthogonal runner, hashed by neighbour pattern. A filled slot holds the
// attack set with the bit of its own square added, so no valid entry is zero.
constexpr int WarriorSlots = 3079;  // the 256 keys of each square never share a slot
constexpr int AssassinSlots = 29;   // likewise for the 16 keys of the runner
extern Bitboard warriorTable[64][WarriorSlots];
extern Bitboard assassinTable[64][AssassinSlots];

inline Bitboard warriorKey(Square s, Bitboard occ) { return (occ & reach[NeighbourRow][s]) | squareBit[s]; }
inline Bitboard assassinKey(Square s, Bitboard occ) { return (occ & reach[Assassin][s]) | squareBit[s]; }

// The attack set, or 0 when the slot is empty, which is a fault of the table.
inline Bitboard warriorLookup(Square s, Bitboard occ) {
  return warriorTable[s][warriorKey(s, occ) % WarriorSlots] & ~squareBit[s];
}
inline Bitboard assassinLookup(Square s, Bitboard occ) {
  return assassinTable[s][assassinKey(s, occ) % AssassinSlots] & ~squareBit[s];
}

// Multiplication hashing of the full lines of a square.
struct Magic {
  Bitboard mask;
  Bitboard magic;
  Bitboard* attacks;
  unsigned shift;
  unsigned index(Bitboard occ) const { return unsigned(((occ & mask) * magic) >> shift); }
};
extern Magic rookMagics[64];
extern Magic bishopMagics[64];

// Full lines up to and including the first blocker.
inline Bitboard rookLines(Square s, Bitboard occ) { return rookMagics[s].attacks[rookMagics[s].index(occ)]; }
inline Bitboard bishopLines(Square s, Bitboard occ) { return bishopMagics[s].attacks[bishopMagics[s].index(occ)]; }

// The plain definitions behind the hashed lookups; also the fallback on a table fault.
Bitboard warriorAttacksSlow(Square s, Bitboard occ);
Bitboard assassinAttacksSlow(Square s, Bitboard occ);

// Prints the title, then rank 8 down to rank 1 as "1 "/"0 " per file.
void printBitboard(const std::string& title, Bitboard b);

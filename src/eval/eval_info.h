// The working record of one evaluation call, and the half-by-half weighting of scores.
#pragma once

#include "core/types.h"

struct MaterialEntry;

// Lives on the caller's stack for one call of evaluate; every set starts empty.
struct EvalInfo {
  MaterialEntry* material = nullptr;
  // [c][0] is the union of the Sword, Magician1, Magician, Warrior, Bondsman and leader sets;
  // the Assassin, Archer and Magician2 sets stay out of it.
  Bitboard attackedBy[2][TypeSlots] = {};
  Bitboard attackedByNoSwords[2] = {};  // [c][0] without the Sword set
  Score mobility[2] = {};
  Value margin[2] = {};  // kept for the interface, always 0
};

// Multiplies each half by the matching half of w / 256, truncating toward zero.
constexpr Score applyWeight(Score s, Score w) {
  return makeScore(mgValue(s) * mgValue(w) / 256, egValue(s) * egValue(w) / 256);
}

// What material alone decides, kept per thread by material key: game phase, space weight, endings.
#pragma once

#include <array>
#include <cstdint>

#include "core/types.h"
#include "eval/endgame.h"
#include "game/table_prefetch.h"

class Position;

struct MaterialEntry {
  Key key = 0;
  int16_t value = 0;                  // no imbalance term: always 0
  uint8_t factor[2] = {0, 0};         // scale factor per colour, 64; the evaluation does not read it
  const EndgameBase<Value>* evaluationFunction = nullptr;
  const EndgameBase<ScaleFactor>* scalingFunction[2] = {nullptr, nullptr};
  int spaceWeight = 0;                // 0 turns the space term off
  int gamePhase = 0;                  // 0 (end game) to 128 (middle game)
};
// The game layer's prefetch steps through the table with this entry size.
static_assert(sizeof(MaterialEntry) == MaterialEntryBytes);

constexpr int MaterialTableSize = 8192;
static_assert(MaterialTableSize - 1 == MaterialIndexMask);
// No buckets: a new key overwrites its slot.
using MaterialTable = std::array<MaterialEntry, MaterialTableSize>;

// Sums of both sides' npMaterial that bound the game phase.
constexpr Value MidgameMaterialLimit = 20181;
constexpr Value EndgameMaterialLimit = 8598;
// 128 at or above the middle-game limit, 0 at or below the end-game limit, linear between.
int gamePhase(Value npSum);

// Finds the position's entry, computing it afresh when the slot holds another key.
MaterialEntry* probeMaterial(const Position& pos, MaterialTable& table, const Endgames& endgames);

// `weak` has its leader alone, and the other side has enough to make something of it.
bool isLoneLeaderEnding(const Position& pos, Color weak);

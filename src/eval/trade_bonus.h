// The trade bonus: a side ahead in material is rewarded for trading enemy material off since the root.
#pragma once

#include "core/types.h"

class Position;

// The root of the search, written when a search starts and read by its threads without locks.
extern Value rootNpMaterial[2];
extern Value rootSwordBalance;  // (White Swords - Black Swords) * the middle-game Sword value
extern Color rootSideToMove;

// Records the root state from the position a search starts from.
void setTradeBonusRoot(const Position& root);

// The first move of the line under search promoted, demoted or captured. It reads the global
// move stack, which other search threads may be writing: a stale entry shifts a bonus slightly.
bool firstMoveChangedMaterial();

Score tradeBonus(const Position& pos, Color c);

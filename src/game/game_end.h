// Game end: lost leaders, Siege 1 goals, and draws by closed towers, material, 100 plies, repetition.
#pragma once

#include <string>

#include "core/types.h"

class Position;

// Types that base promotions can still raise, ended by 0; filled at start-up.
extern PieceType promotableTypes[7];
void initPromotableTypes();

bool leaderLost(const Position& pos);
// Siege 1: the captive is carried on a goal square; `winner` gets the goal's colour.
bool captiveOnGoal(const Position& pos, Color& winner);
// Prints "Game is over" with the winner when a leader is lost or a goal reached.
bool gameOver(const Position& pos, int& winner);
Value getDornValue(const Position& pos, Color c);

// The full draw test (two earlier occurrences); `reason` receives the words when given.
bool isDrawPV(const Position& pos, std::string* reason = nullptr);
// One earlier occurrence is enough; no text.
bool isDrawNonPV(const Position& pos);
// No repetition test.
bool isDrawQuiescence(const Position& pos);

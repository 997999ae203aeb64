// The search log: a summary of each search appended to the file of option "Search Log Filename".
#pragma once

#include <cstdint>

#include "core/types.h"
#include "game/position.h"
#include "search/search_limits.h"

// Option "Use Search Log"; each entry below is written only while it is on.
bool searchLogOn();
// The root position and the limits, when a search begins.
void logSearchStart(const Position& root, const GoLimits& limits);
// One finished iteration: depth, score, time, nodes and the line in SAN.
void logIteration(Position& root, int depth, Value value, int64_t elapsedMs, const Move* pv);
// The end: nodes, speed, the move played and the expected reply, both in SAN.
void logSearchEnd(Position& root, int64_t elapsedMs, const Move* pv);

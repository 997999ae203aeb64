// The static evaluation of a position, from the side to move's point of view.
#pragma once

#include <atomic>
#include <cstdint>

#include "core/types.h"

class Position;

// Calls of evaluate and of its traced form. Shared by the search threads: each call does a relaxed
// load and store, so concurrent calls may lose counts, which only the statistics see.
extern std::atomic<uint32_t> evalCount;

// Middle-game and end-game weights of the mobility and space terms, scaled by their options. An
// option may change while a search runs, so they are atomic; relaxed loads cost nothing here.
extern std::atomic<Score> MobilityWeight;
extern std::atomic<Score> SpaceWeight;

// A multiple of 8, unless an ending evaluator takes over. `margin` receives 0.
Value evaluate(const Position& pos, Value& margin);

// Rebuilds the weights and the flag-dependent threat rows, and installs siege scoring. Runs at
// start-up and when one of the weight options changes.
void evaluate_init();

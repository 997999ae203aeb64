// The scorer behind Position::computeSiegeScore, installed from above.
#pragma once

#include "core/types.h"

class Position;

// Siege scoring is part of the evaluation, a layer above this one; the evaluation installs its
// scorer at start-up. Until then every position scores 0.
using SiegeScorer = Score (*)(const Position& pos);
void setSiegeScorer(SiegeScorer scorer);

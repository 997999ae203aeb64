// The installed siege scorer, called whenever a position is set up and after every move.
#include "game/siege_scorer.h"

#include <atomic>

#include "game/position.h"

namespace {

Score noSiegeScore(const Position&) { return 0; }

// Installed at start-up; the evaluation's init installs it again when an option changes, maybe
// during a search, hence atomic (a relaxed load per move costs nothing).
std::atomic<SiegeScorer> siegeScorer{noSiegeScore};

}  // namespace

void setSiegeScorer(SiegeScorer scorer) { siegeScorer.store(scorer ? scorer : noSiegeScore, std::memory_order_relaxed); }

int Position::computeSiegeScore() const { return siegeScorer.load(std::memory_order_relaxed)(*this); }

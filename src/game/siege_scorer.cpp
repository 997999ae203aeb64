// The installed siege scorer, called whenever a position is set up and after every move.
#include "game/siege_scorer.h"

#include "game/position.h"

namespace {

Score noSiegeScore(const Position&) { return 0; }

// Written once at start-up, before any position exists; read-only afterwards.
SiegeScorer siegeScorer = noSiegeScore;

}  // namespace

void setSiegeScorer(SiegeScorer scorer) { siegeScorer = scorer ? scorer : noSiegeScore; }

int Position::computeSiegeScore() const { return siegeScorer(*this); }

// Rule settings that the random-game and perft tests run under, and the brute test of a sole leader.
#pragma once

#include "game/position.h"
#include "game/rules.h"

struct RuleSet {
  const char* name;
  void (*apply)();  // changes the flags from their defaults
};

inline const RuleSet ruleSets[] = {
    {"defaults", [] {}},
    {"Bondsmen do not lead", [] { bondsmenLeaders = 0; }},
    {"strong pieces",
     [] {
       capturePromotions = 1;
       swordsCaptureMounts = 1;
       magicianExtendedDemotionSqs = 2;
       powerMagicianExtendedDemotionSqs = 1;
     }},
    {"few specials",
     [] {
       exchanges = 0;
       basePromotions = 0;
       magicianDemotesDorn = 0;
       siegeExchanges = 0;
     }},
    {"capture promotions only",
     [] {
       capturePromotions = 1;
       basePromotions = 0;
     }},
};

// The enemies that could take c's sole leader, found from scratch; empty while c has several.
inline Bitboard leaderTakers(const Position& pos, Color c) {
  Square k = pos.leaderSquare(c);
  if (k == NoSquare || pos.severalLeaders(c)) return 0;
  return pos.checkableBy(c) & pos.allAttackersTo(k, pos.pieces(), ~0ULL) & pos.pieces(~c);
}

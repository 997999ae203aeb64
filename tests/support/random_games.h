// Positions from random games of every game type under each rule set, for sweeping tests.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "game/move_stack.h"
#include "game/piece_values.h"
#include "movegen/movegen.h"
#include "rule_sets.h"

// Hands every position of `games` random games per game type and rule set, of up to `plies` plies,
// to `visit` with a line that names it. Captures, special words and tower moves are preferred two
// times in three, so that the games meet the siege events. Puts the rules back at the end.
inline void forRandomPositions(int games, int plies, unsigned seed,
                               const std::function<void(Position&, const std::string&)>& visit) {
  std::mt19937 rng(seed);
  for (const GameType& type : gameTypeTable)
    for (const RuleSet& rules : ruleSets)
      for (int game = 0; game < games; ++game) {
        resetRuleFlags();
        rules.apply();
        if (type.number == 4 && !bondsmenLeaders) break;  // nobody would lead
        setSiegeModes(type.number);
        Position pos;
        ASSERT_TRUE(pos.set(type.secondStartFen && game % 2 ? type.secondStartFen : type.startFen, nullptr));
        setPieceValues(pos);
        moveStackCount = 0;
        std::deque<StateInfo> states;
        for (int ply = 0; ply < plies && !::testing::Test::HasFatalFailure(); ++ply) {
          visit(pos, std::string(type.name) + ", " + rules.name + ", ply " + std::to_string(ply) + ": " + pos.fen());
          ScoredMove list[MaxMoves];
          std::vector<Move> legal, eventful;
          for (ScoredMove* sm = list, *end = generateLegal(pos, list); sm != end; ++sm) {
            const Move m = sm->move;
            legal.push_back(m);
            if (specialKind(m) || captiveKind(m) || !pos.empty(moveTo(m)) || pos.onStandingTower(moveTo(m)))
              eventful.push_back(m);
          }
          if (legal.empty()) break;
          const std::vector<Move>& from = !eventful.empty() && rng() % 3 ? eventful : legal;
          pos.do_move(from[rng() % from.size()], states.emplace_back());
        }
      }
  resetRuleFlags();
  setSiegeModes(DefaultGameType);
  setPieceValues(Position());
  moveStackCount = 0;
}

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

// Plays `games` random games of each game type under each rule set, of up to `plies` plies, and
// hands every position met to `visit` with a line that names it. Captures, special words and tower
// moves are preferred two times in three, so that the games reach exchanges, promotions and the
// siege events. Puts the rules and piece values back at the end.
inline void forRandomPositions(int games, int plies, unsigned seed,
                               const std::function<void(Position&, const std::string&)>& visit) {
  std::mt19937 rng(seed);
  for (const GameType& type : gameTypeTable)
    for (const RuleSet& rules : ruleSets) {
      resetRuleFlags();
      rules.apply();
      if (type.number == 4 && !bondsmenLeaders) continue;  // nobody would lead
      setSiegeModes(type.number);
      for (int game = 0; game < games; ++game) {
        Position pos;
        const char* fen = type.secondStartFen && game % 2 ? type.secondStartFen : type.startFen;
        ASSERT_TRUE(pos.set(fen, nullptr)) << fen;
        setPieceValues(pos);
        moveStackCount = 0;
        std::deque<StateInfo> states;
        for (int ply = 0; ply < plies; ++ply) {
          const std::string where = std::string(type.name) + ", " + rules.name + ", game " + std::to_string(game) +
                                    ", ply " + std::to_string(ply) + ": " + pos.fen();
          visit(pos, where);
          if (::testing::Test::HasFatalFailure()) return;
          ScoredMove legal[MaxMoves];
          ScoredMove* end = generateLegal(pos, legal);
          if (end == legal) break;
          std::vector<Move> eventful;
          for (ScoredMove* sm = legal; sm != end; ++sm)
            if (specialKind(sm->move) || captiveKind(sm->move) || !pos.empty(moveTo(sm->move)) ||
                pos.onStandingTower(moveTo(sm->move)))
              eventful.push_back(sm->move);
          Move m = !eventful.empty() && rng() % 3 ? eventful[rng() % eventful.size()]
                                                  : legal[rng() % (end - legal)].move;
          states.emplace_back();
          pos.do_move(m, states.back());
        }
      }
    }
  resetRuleFlags();
  setSiegeModes(DefaultGameType);
  setPieceValues(Position());
  moveStackCount = 0;
}

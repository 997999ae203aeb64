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

// The moves a random game favours: by default captures, special words and tower moves, so that
// the games meet the siege events.
using MovePreference = std::function<bool(const Position&, Move)>;
inline bool eventfulMove(const Position& pos, Move m) {
  return specialKind(m) || captiveKind(m) || !pos.empty(moveTo(m)) || pos.onStandingTower(moveTo(m));
}

// Hands every position of `games` random games per game type and rule set, of up to `plies` plies,
// to `visit` with a line that names it; the odd games of a type with a second start board begin
// there. A preferred move is played two times in three. Puts the rules back at the end.
inline void forRandomPositions(int games, int plies, unsigned seed,
                               const std::function<void(Position&, const std::string&)>& visit,
                               const MovePreference& prefer = eventfulMove) {
  std::mt19937 rng(seed);
  for (const GameType& type : gameTypeTable)
    for (const RuleSet& rules : ruleSets)
      for (int game = 0; game < games; ++game) {
        resetRuleFlags();
        rules.apply();
        if (type.number == 4 && !bondsmenLeaders) break;  // nobody would lead
        setSiegeModes(type.number);
        Position pos;
        // Set twice, so that the running values are made from the piece values of these rules.
        const char* fen = type.secondStartFen && game % 2 ? type.secondStartFen : type.startFen;
        ASSERT_TRUE(pos.set(fen, nullptr));
        setPieceValues(pos);
        pos.set(fen, nullptr);
        moveStackCount = 0;
        std::deque<StateInfo> states;
        for (int ply = 0; ply < plies && !::testing::Test::HasFatalFailure(); ++ply) {
          moveStackCount = 0;  // as each search starts it: the list stops growing at 199 moves
          visit(pos, std::string(type.name) + ", " + rules.name + ", game " + std::to_string(game) + ", ply " +
                         std::to_string(ply) + ": " + pos.fen());
          ScoredMove list[MaxMoves];
          std::vector<Move> legal, preferred;
          for (ScoredMove* sm = list, *end = generateLegal(pos, list); sm != end; ++sm) {
            legal.push_back(sm->move);
            if (prefer(pos, sm->move)) preferred.push_back(sm->move);
          }
          if (legal.empty()) break;
          const std::vector<Move>& from = !preferred.empty() && rng() % 3 ? preferred : legal;
          pos.do_move(from[rng() % from.size()], states.emplace_back());
        }
      }
  resetRuleFlags();
  setSiegeModes(DefaultGameType);
  setPieceValues(Position());
  moveStackCount = 0;
}

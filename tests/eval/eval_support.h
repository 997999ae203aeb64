// Shared by the evaluation tests: a clean evaluation state, positions from random games, and the
// colour mirror of a position with its siege state and geometry.
#pragma once

#include <gtest/gtest.h>

#include <bit>
#include <functional>
#include <random>
#include <vector>

#include "eval/evaluate.h"
#include "eval/trade_bonus.h"
#include "game/move_stack.h"
#include "game/piece_values.h"
#include "game/position.h"
#include "game/rules.h"
#include "movegen/movegen.h"
#include "../support/capture_stdout.h"
#include "../support/position_fixture.h"

namespace eval_test {

// No root to trade against and no first move: the trade bonus is 0 until a test sets them.
inline void clearRootState() {
  rootNpMaterial[WHITE] = rootNpMaterial[BLACK] = 0;
  rootSwordBalance = 0;
  rootSideToMove = WHITE;
  moveStackCount = 0;
  moveStack[0] = MoveNone;
  moveStackCapture[0] = false;
}

class EvalFixture : public PositionFixture {
 protected:
  void SetUp() override { clearRootState(); }
  void TearDown() override {
    clearRootState();
    PositionFixture::TearDown();
  }
  // Sets a FEN under a game type and the rules in force, with piece values to match.
  void loadIn(int gameType, const std::string& fen) {
    setSiegeModes(gameType);
    load(fen);
    setPieceValues(pos);
    load(fen);
  }
  Value eval() {
    Value margin = -1;
    Value v = evaluate(pos, margin);
    EXPECT_EQ(margin, 0);
    return v;
  }
};

inline Bitboard mirrored(Bitboard b) { return __builtin_bswap64(b); }
inline Square mirrored(Square s) { return s == NoSquare ? NoSquare : flipRank(s); }

// The process-wide siege geometry, to be mirrored and put back around an evaluation.
struct SiegeGeometry {
  Bitboard siege1Tower, siege2Towers[2], goals[2];
  static SiegeGeometry current() {
    return {siege1TowerSquares, {siege2TowerSquares[WHITE], siege2TowerSquares[BLACK]},
            {goalSquares[WHITE], goalSquares[BLACK]}};
  }
  SiegeGeometry colourMirror() const {
    return {mirrored(siege1Tower), {mirrored(siege2Towers[BLACK]), mirrored(siege2Towers[WHITE])},
            {mirrored(goals[BLACK]), mirrored(goals[WHITE])}};
  }
  void apply() const {
    siege1TowerSquares = siege1Tower;
    siege2TowerSquares[WHITE] = siege2Towers[WHITE];
    siege2TowerSquares[BLACK] = siege2Towers[BLACK];
    setGoalSquares(WHITE, goals[WHITE]);
    setGoalSquares(BLACK, goals[BLACK]);
  }
};

// The same game seen from the other side: pieces, side to move and every siege field mirrored by
// rank with the colours exchanged. The piece lists keep their order, which the outpost support
// test depends on. The state is computed under `geometry`, the mirrored geometry; the running psq
// sum is the negative of the original's, siege drift included.
inline Position colourMirror(const Position& pos, const SiegeGeometry& geometry) {
  Position m;
  m.sideToMove = ~pos.side();
  m.gamePly = pos.gamePly;
  for (Color c : {WHITE, BLACK})
    for (int t = Sword; t < PieceTypeNb; ++t)
      for (int i = 0; i < pos.count(c, PieceType(t)); ++i)
        m.putPiece(makePiece(~c, PieceType(t)), flipRank(pos.pieceList[c][t][i]));
  m.siege1CaptiveSquare = mirrored(pos.siege1CaptiveSquare);
  m.siege1LastCaptiveSquare = mirrored(pos.siege1LastCaptiveSquare);
  m.siege1Tower = mirrored(pos.siege1Tower);
  m.siege1Breached = mirrored(pos.siege1Breached);
  for (Color c : {WHITE, BLACK}) {
    m.siege2CaptiveSquare[c] = mirrored(pos.siege2CaptiveSquare[~c]);
    m.siege2LastCaptiveSquare[c] = mirrored(pos.siege2LastCaptiveSquare[~c]);
    m.siege2Tower[c] = mirrored(pos.siege2Tower[~c]);
    m.siege2Breached[c] = mirrored(pos.siege2Breached[~c]);
    m.siege2CaptiveAlive[c] = pos.siege2CaptiveAlive[~c];
    m.siege2CaptiveReleased[c] = pos.siege2CaptiveReleased[~c];
  }
  SiegeGeometry saved = SiegeGeometry::current();
  geometry.apply();
  m.computeStateFromScratch();
  m.computeCheckers();
  saved.apply();
  m.startState.psqScore = -pos.state()->psqScore;
  return m;
}

// Rule sets the random games run under, as changes from the defaults.
struct EvalRules {
  const char* name;
  void (*apply)();
};
inline const EvalRules evalRuleSets[] = {
    {"defaults", [] {}},
    {"Swords take mounts, long reach, capture promotions",
     [] {
       swordsCaptureMounts = 1;
       capturePromotions = 1;
       magicianExtendedDemotionSqs = 2;
       powerMagicianExtendedDemotionSqs = 1;
     }},
    {"no base promotions or siege exchanges",
     [] {
       basePromotions = 0;
       siegeExchanges = 0;
     }},
};

// Plays random legal games from the start of a game type, preferring captures and special moves,
// and calls `visit` on every position reached (the start included), and `eachMove` with every
// legal move of it when given.
inline void playRandomGames(int gameType, int games, int plies, const std::function<void(Position&)>& visit,
                            const std::function<void(Position&, Move)>& eachMove = nullptr) {
  std::mt19937 rng(977u + 31u * unsigned(gameType));
  for (int g = 0; g < games; ++g) {
    Position pos;
    setSiegeModes(gameType);
    {
      CaptureStdout quiet;
      ASSERT_TRUE(pos.set(gameTypeTable[gameType].startFen, nullptr));
      setPieceValues(pos);
      ASSERT_TRUE(pos.set(gameTypeTable[gameType].startFen, nullptr));
    }
    std::vector<StateInfo> states(plies);
    for (int ply = 0; ply < plies; ++ply) {
      moveStackCount = 0;  // as each search starts it
      visit(pos);
      ScoredMove legal[MaxMoves];
      ScoredMove* end = generateLegal(pos, legal);
      if (end == legal) break;
      if (eachMove)
        for (ScoredMove* sm = legal; sm != end; ++sm) eachMove(pos, sm->move);
      std::vector<Move> eventful;
      for (ScoredMove* sm = legal; sm != end; ++sm)
        if (captiveKind(sm->move) || specialKind(sm->move) || !pos.empty(moveTo(sm->move)))
          eventful.push_back(sm->move);
      Move m = !eventful.empty() && rng() % 2 ? eventful[rng() % eventful.size()] : legal[rng() % (end - legal)].move;
      pos.do_move(m, states[ply]);
    }
  }
}

}  // namespace eval_test

// Shared by the evaluation tests: a clean evaluation state and the colour mirror of a position
// with its siege state and geometry.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "../support/position_fixture.h"
#include "eval/evaluate.h"
#include "eval/trade_bonus.h"
#include "game/move_stack.h"

namespace eval_test {

// No root to trade against and no first move: the trade bonus is 0 until a test sets them.
inline void clearRootState() {
  rootNpMaterial[WHITE] = rootNpMaterial[BLACK] = rootSwordBalance = moveStackCount = 0;
  rootSideToMove = WHITE;
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
  // A FEN under a game type, with the piece values of that type and the rules in force.
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

// The towers and goals of the other side's view: ranks flipped, colours exchanged.
inline SiegeGeometry colourMirror(const SiegeGeometry& g) {
  return {mirrored(g.siege1TowerSquares), mirrored(g.siege1InitialTower),
          {mirrored(g.siege2TowerSquares[BLACK]), mirrored(g.siege2TowerSquares[WHITE])},
          {mirrored(g.goalSquares[BLACK]), mirrored(g.goalSquares[WHITE])}};
}

// The same game seen from the other side: pieces, side to move and siege fields mirrored by rank
// with the colours exchanged. The piece lists keep their order, on which the outpost support test
// depends. The state is computed under the mirrored `geometry`; the running psq sum is the
// negative of the original's, siege drift included.
inline Position colourMirror(const Position& pos, const SiegeGeometry& geometry) {
  Position m;
  m.sideToMove = ~pos.side();
  for (Color c : {WHITE, BLACK})
    for (int t = Sword; t < PieceTypeNb; ++t)
      for (int i = 0; i < pos.count(c, PieceType(t)); ++i)
        m.putPiece(makePiece(~c, PieceType(t)), flipRank(pos.pieceList[c][t][i]));
  m.siege1CaptiveSquare = mirrored(pos.siege1CaptiveSquare);
  m.siege1Tower = mirrored(pos.siege1Tower);
  m.siege1Breached = mirrored(pos.siege1Breached);
  for (Color c : {WHITE, BLACK}) {
    m.siege2CaptiveSquare[c] = mirrored(pos.siege2CaptiveSquare[~c]);
    m.siege2Tower[c] = mirrored(pos.siege2Tower[~c]);
    m.siege2Breached[c] = mirrored(pos.siege2Breached[~c]);
    m.siege2CaptiveAlive[c] = pos.siege2CaptiveAlive[~c];
    m.siege2CaptiveReleased[c] = pos.siege2CaptiveReleased[~c];
  }
  const SiegeGeometry saved = currentSiegeGeometry();
  restoreSiegeGeometry(geometry);
  m.computeStateFromScratch();
  m.computeCheckers();
  restoreSiegeGeometry(saved);
  m.startState.psqScore = -pos.state()->psqScore;
  return m;
}

}  // namespace eval_test

// The lone-leader evaluator: the hunt, the promotion plan, the pair term, stalemate; ending keys.
#include <gtest/gtest.h>

#include "eval/endgame.h"
#include "eval_support.h"

using namespace eval_test;

namespace {

class LoneLeaderTest : public EvalFixture {
 protected:
  Value white(const char* fen) {
    load(fen);
    return loneLeaderEndgame[WHITE](pos);
  }
};

TEST_F(LoneLeaderTest, TwoMountsHuntTheLeaderIntoACorner) {
  // Material, the known win, then the leaders' distance and the weak leader's edge bonus.
  EXPECT_EQ(white("k7/8/8/8/8/8/8/K6W w 0 1"), 1600 + ValueKnownWin + 10 + 100);
  EXPECT_EQ(white("8/8/8/8/3k4/8/8/K6W b 0 1"), -(1600 + ValueKnownWin + 80 + 20));  // for the side to move
}

TEST_F(LoneLeaderTest, OneMountPromotesUnlessThereAreNoPromotions) {
  EXPECT_EQ(white("k7/8/1S6/8/8/8/8/K7 w 0 1"), 205);  // a Sword one step from b7 costs nothing
  EXPECT_EQ(white("k7/8/8/8/1S6/8/8/K7 w 0 1"), 195);  // three steps: 3 * 3 + 1
  moveStack[0] = makeMove(B3, B4, Promotion);         // the line under search began with a promotion
  EXPECT_EQ(white("k7/8/8/8/1S6/8/8/K7 w 0 1"), 235);
  moveStack[0] = MoveNone;
  basePromotions = 0;  // now the hunt: the Archers' distances count twice, the pair's beyond 2 once
  EXPECT_EQ(white("k7/8/8/8/8/8/8/K1A3A1 w 0 1"), 1300 + 10 + 100 - 2 * 7 - 2 * 7 - 4);
  EXPECT_EQ(white("k7/8/8/8/8/8/8/K1A1A3 w 0 1"), 1300 + 10 + 100 - 2 * 7 - 2 * 7);
}

TEST_F(LoneLeaderTest, StalemateScoresZero) {
  EXPECT_EQ(white("i7/8/2A5/8/8/8/8/K7 b 0 1"), 0);  // the Dorn Sword's only step, b7, is guarded
  EXPECT_NE(white("i7/8/8/2A5/8/8/8/K7 b 0 1"), 0);
}

TEST(EndgameCode, KeyIsThatOfThePositionTheCodeDescribes) {
  CaptureStdout quiet;
  Position pos;
  ASSERT_TRUE(pos.set("K5ks/8/8/8/8/8/8/8 w 0 10", nullptr));
  EXPECT_EQ(endgameCodeKey("KSK", BLACK), pos.materialKey());
  Endgames endgames;
  const EndgameBase<Value>* ksk = endgames.probeValue(pos.materialKey());
  ASSERT_NE(ksk, nullptr);
  EXPECT_EQ(ksk->strongerSide(), BLACK);
}

}  // namespace

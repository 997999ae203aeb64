// The lone-leader evaluator: the promotion plan, the hunt, the pair term, stalemate; and the keys
// of ending codes.
#include <gtest/gtest.h>

#include "eval/endgame.h"
#include "eval_support.h"

using namespace eval_test;

namespace {

class LoneLeaderTest : public EvalFixture {
 protected:
  Value white() { return loneLeaderEndgame[WHITE](pos); }
};

TEST_F(LoneLeaderTest, TwoMountsHuntTheLeaderIntoACorner) {
  // 1600 of material, the known win, then leader distance and edge bonus.
  load("k7/8/8/8/8/8/8/K6W w 0 1");
  EXPECT_EQ(white(), 1600 + ValueKnownWin + 10 + 100);
  load("8/8/8/8/3k4/8/8/K6W b 0 1");
  EXPECT_EQ(white(), -(1600 + ValueKnownWin + 80 + 20));  // from the side to move's view
}

TEST_F(LoneLeaderTest, WithoutASecondMountTheSwordMustPromote) {
  load("k7/8/1S6/8/8/8/8/K7 w 0 1");  // one square from b7 costs nothing
  EXPECT_EQ(white(), 205);
  load("k7/8/8/8/1S6/8/8/K7 w 0 1");  // three squares: 3 * 3 + 1
  EXPECT_EQ(white(), 195);
  moveStack[0] = makeMove(B3, B4, Promotion);  // the line under search began with a promotion
  EXPECT_EQ(white(), 235);
}

TEST_F(LoneLeaderTest, WithoutPromotionsOneMountHunts) {
  basePromotions = 0;
  load("k7/8/8/8/8/8/8/K6A w 0 1");  // the Archer's distance counts twice
  EXPECT_EQ(white(), 650 + 10 + 100 - 2 * 7);
}

TEST_F(LoneLeaderTest, ThePairTermKeepsTwoArchersTogether) {
  basePromotions = 0;
  load("k7/8/8/8/8/8/8/K1A3A1 w 0 1");  // 4 apart
  EXPECT_EQ(white(), 1300 + 10 + 100 - 2 * 7 - 2 * 7 - 4);
  load("k7/8/8/8/8/8/8/K1A1A3 w 0 1");  // 2 apart: no loss
  EXPECT_EQ(white(), 1300 + 10 + 100 - 2 * 7 - 2 * 7);
}

TEST_F(LoneLeaderTest, AStalematedLeaderScoresZero) {
  load("i7/8/2A5/8/8/8/8/K7 b 0 1");  // the Dorn Sword's only step, b7, is guarded
  EXPECT_EQ(white(), 0);
  load("i7/8/8/2A5/8/8/8/K7 b 0 1");
  EXPECT_NE(white(), 0);
}

TEST(EndgameCode, KeyIsThatOfThePositionTheCodeDescribes) {
  CaptureStdout quiet;
  Position pos;
  ASSERT_TRUE(pos.set("k5KS/8/8/8/8/8/8/8 w 0 10", nullptr));
  EXPECT_EQ(endgameCodeKey("KSK", WHITE), pos.materialKey());
  ASSERT_TRUE(pos.set("K5ks/8/8/8/8/8/8/8 w 0 10", nullptr));
  EXPECT_EQ(endgameCodeKey("KSK", BLACK), pos.materialKey());

  Endgames endgames;
  const EndgameBase<Value>* ksk = endgames.probeValue(endgameCodeKey("KSK", BLACK));
  ASSERT_NE(ksk, nullptr);
  EXPECT_EQ(ksk->strongerSide(), BLACK);
  EXPECT_EQ((*ksk)(pos), 0);
  EXPECT_EQ(endgames.probeScaleFactor(pos.materialKey()), nullptr);
}

}  // namespace

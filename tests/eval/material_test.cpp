// Material entries: game phase, the lone-leader choice of an ending evaluator, space weight, the
// probe's key test; and the trade bonus against the root.
#include <gtest/gtest.h>

#include "eval/eval_tables.h"
#include "eval/material.h"
#include "eval/trade_bonus.h"
#include "eval_support.h"

using namespace eval_test;

namespace {

class MaterialTest : public EvalFixture {
 protected:
  const MaterialEntry& probe() { return *probeMaterial(pos, tables->material, tables->endgames); }
  std::unique_ptr<EvalTables> tables = std::make_unique<EvalTables>();
};

TEST_F(MaterialTest, PhaseRunsFromTheEndgameLimitToTheMidgameLimit) {
  load("k7/8/8/8/8/8/8/K7 w 0 1");  // 4600
  EXPECT_EQ(probe().gamePhase, 0);
  load("k7/w7/8/8/8/8/8/KWWW4 w 0 1");  // 7100 + 3900 = 11000: (11000 - 8598) * 128 / 11583
  EXPECT_EQ(probe().gamePhase, 26);
  load("k7/wwwwww2/8/8/8/8/WWWWWW2/K7 w 0 1");  // 2 * 11900, above 20181
  EXPECT_EQ(probe().gamePhase, 128);
}

TEST_F(MaterialTest, LoneLeaderEvaluatorGoesToTheSideThatCanStillWin) {
  load("k7/8/8/8/8/8/8/KS6 w 0 1");  // a Sword that may still promote
  EXPECT_EQ(probe().evaluationFunction, &loneLeaderEndgame[WHITE]);
  basePromotions = 0;  // the Sword adds no excess material: nothing to win with
  EXPECT_NE(probe().evaluationFunction, nullptr) << "an entry made under other rules stands until overwritten";
  tables = std::make_unique<EvalTables>();
  EXPECT_EQ(probe().evaluationFunction, nullptr);
  load("kw6/8/8/8/8/8/8/K7 w 0 1");  // a Warrior is enough without promotions
  EXPECT_EQ(probe().evaluationFunction, &loneLeaderEndgame[BLACK]);
  basePromotions = 1;
  load("k7/8/8/8/8/8/8/K7 w 0 1");  // both bare
  EXPECT_EQ(probe().evaluationFunction, nullptr);
  load("kg6/8/8/8/8/8/8/KS6 w 0 1");  // a Magician1 keeps Black from being bare
  EXPECT_EQ(probe().evaluationFunction, nullptr);
}

TEST_F(MaterialTest, SpaceWeightIsTheSquaredArcherAndMagicianCountAboveTheThreshold) {
  load("kwwww3/am6/a7/8/8/A7/AM6/KWWWW3 w 0 1");  // 2 * (2300 + 6400 + 1300 + 1025) = 22050
  EXPECT_EQ(probe().spaceWeight, 36);
  load("kw6/am6/a7/8/8/A7/AM6/KW6 w 0 1");  // 2 * 6225 = 12450, below 19600
  EXPECT_EQ(probe().spaceWeight, 0);
  // The start positions hold more than a signed 16-bit sum can: it wraps, and space stays off.
  load(gameTypeTable[DefaultGameType].startFen);
  EXPECT_EQ(probe().spaceWeight, 0);
}

TEST_F(MaterialTest, SlotIsReusedOnlyForTheSameFullKey) {
  load("k7/8/8/8/8/8/8/KS6 w 0 1");
  MaterialEntry& slot = tables->material[pos.materialKey() & MaterialIndexMask];
  slot.key = pos.materialKey() ^ (Key(1) << 40);  // same slot, another key
  slot.gamePhase = 77;
  EXPECT_EQ(probe().gamePhase, 0);
  EXPECT_EQ(slot.key, pos.materialKey());
  slot.gamePhase = 77;  // a hit returns the slot as it stands
  EXPECT_EQ(probe().gamePhase, 77);
}

// ---------------------------------------------------------------- trade bonus

class TradeBonusTest : public EvalFixture {
 protected:
  // White's lead over the root Sword balance is `lead`; Black has lost `lost` since the root.
  Score whiteBonus(int lead, int lost) {
    StateInfo& st = *pos.st;
    st.psqScore = makeScore(lead, 0);
    rootNpMaterial[BLACK] = st.npMaterial[BLACK] + lost;
    return tradeBonus(pos, WHITE);
  }
};

TEST_F(TradeBonusTest, NothingAtTheRootsMaterial) {
  load(gameTypeTable[DefaultGameType].startFen);
  setTradeBonusRoot(pos);
  EXPECT_EQ(tradeBonus(pos, WHITE), 0);
  EXPECT_EQ(tradeBonus(pos, BLACK), 0);
}

TEST_F(TradeBonusTest, StepsByMaterialLostAndByLead) {
  load("k7/w7/8/8/8/8/8/KW6 w 0 1");
  EXPECT_EQ(whiteBonus(0, 1600), 0);  // not ahead
  EXPECT_EQ(whiteBonus(1, 0), 0);     // nothing traded
  const int cases[][3] = {{1, 599, 50},     {1, 600, 55},     {1, 649, 55},      {1, 650, 60},
                          {1, 1599, 60},    {1, 1600, 70},    {1179, 1, 50},     {1180, 1, 100},
                          {1479, 1, 100},   {1480, 1, 110}};
  for (auto& c : cases) EXPECT_EQ(whiteBonus(c[0], c[1]), makeScore(c[2], c[2])) << c[0] << " " << c[1];

  // The root side to move gains 15 when the line began with a capture; the other side does not.
  moveStack[0] = makeMove(A2, A3);
  moveStackCapture[0] = true;
  EXPECT_EQ(whiteBonus(1, 599), makeScore(65, 65));
  rootSideToMove = BLACK;
  EXPECT_EQ(whiteBonus(1, 599), makeScore(50, 50));
  moveStackCapture[0] = false;
  moveStack[0] = makeMove(A2, A3, Demotion);
  rootSideToMove = WHITE;
  EXPECT_EQ(whiteBonus(1, 599), makeScore(65, 65));

  // In the first siege game the bonus is divided by 0.4, to survive the fold-in at full weight.
  siege1 = 1;
  EXPECT_EQ(whiteBonus(1, 599), makeScore(162, 162));
  siege1 = 0;
}

TEST_F(TradeBonusTest, BlackIsRewardedForLeadingBelowTheRootBalance) {
  load("k7/w7/8/8/8/8/8/KW6 w 0 1");
  pos.st->psqScore = makeScore(-300, 0);
  rootSwordBalance = 200;  // Black leads by 500
  rootNpMaterial[WHITE] = pos.state()->npMaterial[WHITE] + 650;
  EXPECT_EQ(tradeBonus(pos, BLACK), makeScore(60, 60));
  EXPECT_EQ(tradeBonus(pos, WHITE), 0);
}

}  // namespace

// Material entries: phase, the choice of the lone-leader evaluator, space weight, the full-key
// test of a slot; and the trade bonus against the root.
#include <gtest/gtest.h>

#include "eval/eval_tables.h"
#include "eval_support.h"

using namespace eval_test;

namespace {

class MaterialTest : public EvalFixture {
 protected:
  const MaterialEntry& probe() { return *probeMaterial(pos, tables->material, tables->endgames); }
  std::unique_ptr<EvalTables> tables = std::make_unique<EvalTables>();
};

TEST_F(MaterialTest, PhaseAndSpaceWeightFollowTheMaterialSum) {
  load("k7/8/8/8/8/8/8/K7 w 0 1");  // 4600: end game
  EXPECT_EQ(probe().gamePhase, 0);
  load("k7/w7/8/8/8/8/8/KWWW4 w 0 1");  // 11000: (11000 - 8598) * 128 / 11583
  EXPECT_EQ(probe().gamePhase, 26);
  load("kwwww3/am6/a7/8/8/A7/AM6/KWWWW3 w 0 1");  // 22050: middle game, space on, 6 Archers and Magicians
  EXPECT_EQ(probe().gamePhase, 128);
  EXPECT_EQ(probe().spaceWeight, 36);
  load("kw6/am6/a7/8/8/A7/AM6/KW6 w 0 1");  // 12450: below 19600
  EXPECT_EQ(probe().spaceWeight, 0);
  load(gameTypeTable[DefaultGameType].startFen);  // 33250 wraps as a 16-bit sum: space stays off
  EXPECT_EQ(probe().spaceWeight, 0);
}

TEST_F(MaterialTest, LoneLeaderEvaluatorGoesToTheSideThatCanStillWin) {
  load("k7/8/8/8/8/8/8/KS6 w 0 1");  // a Sword that may still promote
  EXPECT_EQ(probe().evaluationFunction, &loneLeaderEndgame[WHITE]);
  basePromotions = 0;  // now it adds no excess: nothing to win with
  EXPECT_NE(probe().evaluationFunction, nullptr) << "an entry made under other rules stands until overwritten";
  tables = std::make_unique<EvalTables>();
  EXPECT_EQ(probe().evaluationFunction, nullptr);
  load("kw6/8/8/8/8/8/8/K7 w 0 1");
  EXPECT_EQ(probe().evaluationFunction, &loneLeaderEndgame[BLACK]);
  for (const char* fen : {"k7/8/8/8/8/8/8/K7 w 0 1", "kg6/8/8/8/8/8/8/KW6 w 0 1"}) {  // bare; a Magician1 left
    load(fen);
    EXPECT_EQ(probe().evaluationFunction, nullptr) << fen;
  }
}

TEST_F(MaterialTest, SlotServesOnlyItsFullKey) {
  load("k7/8/8/8/8/8/8/KS6 w 0 1");
  MaterialEntry& slot = tables->material[pos.materialKey() & MaterialIndexMask];
  slot = {pos.materialKey() ^ (Key(1) << 40), 0, {}, nullptr, {}, 0, 77};  // same slot, another key
  EXPECT_EQ(probe().gamePhase, 0);
  slot.gamePhase = 77;  // a hit returns the slot as it stands
  EXPECT_EQ(probe().gamePhase, 77);
}

TEST_F(MaterialTest, TradeBonusStepsByMaterialLostAndByLead) {
  load(gameTypeTable[DefaultGameType].startFen);
  setTradeBonusRoot(pos);
  EXPECT_EQ(tradeBonus(pos, WHITE) | tradeBonus(pos, BLACK), 0);

  // White leads the root Sword balance by `lead`, and Black has lost `lost` since the root.
  load("k7/w7/8/8/8/8/8/KW6 w 0 1");
  auto white = [&](int lead, int lost) {
    pos.st->psqScore = makeScore(lead, 0);
    rootNpMaterial[BLACK] = pos.state()->npMaterial[BLACK] + lost;
    return mgValue(tradeBonus(pos, WHITE));
  };
  const int cases[][3] = {{0, 1600, 0},  {1, 0, 0},      {1, 599, 50},    {1, 600, 55},    {1, 650, 60},
                          {1, 1599, 60}, {1, 1600, 70},  {1179, 1, 50},   {1180, 1, 100},  {1480, 1, 110}};
  for (auto& c : cases) EXPECT_EQ(white(c[0], c[1]), c[2]) << c[0] << " " << c[1];
  EXPECT_EQ(tradeBonus(pos, BLACK), 0);

  moveStack[0] = makeMove(A2, A3, Demotion);  // the root side gains 15 when the line began so
  EXPECT_EQ(white(1, 599), 65);
  rootSideToMove = BLACK;
  EXPECT_EQ(white(1, 599), 50);
  siege1 = 1;  // divided by 0.4, so that the siege fold-in leaves it whole
  EXPECT_EQ(white(1, 599), 125);
  siege1 = 0;
}

}  // namespace

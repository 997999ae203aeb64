// Move generation: each piece's lists under the rule flags, the fixed order, and the siege words.
#include "move_list_text.h"

namespace {

using MoveGenTest = PositionUnderRules;

TEST_F(MoveGenTest, SwordLeavesMountsAloneUnlessTheRuleAllowsIt) {
  const char* fen = "k7/8/8/3w1f2/4S3/5a2/8/7K w 0 1";  // Sword e4 between a Warrior, a Bondsman, an Archer
  load(fen);
  EXPECT_EQ(captures(E4), "f3");
  EXPECT_EQ(quiets(E4), "d3");
  capturePromotions = 1;
  EXPECT_EQ(nonEvasions(E4), "f3= d3");
  swordsCaptureMounts = 1;
  load(fen);
  EXPECT_EQ(captures(E4), "f3= d5= f5=");

  load("k7/1w6/2S5/8/8/8/8/7K w 0 1");  // nor is a mount in the base a promotion
  EXPECT_EQ(captures(C6), "b7=");
  swordsCaptureMounts = 0;
  EXPECT_EQ(captures(C6), "");
}

TEST_F(MoveGenTest, ArrivalInTheBaseIsAPromotionInCapturesAndAPlainMoveInQuiets) {
  load("k7/8/2S5/8/8/8/8/7K w 0 1");
  EXPECT_EQ(captures(C6), "b7=");
  EXPECT_EQ(quiets(C6), "b5 d5 b7 d7");
  EXPECT_EQ(nonEvasions(C6), "b7= b5 d5 d7");
  basePromotions = 0;
  EXPECT_EQ(nonEvasions(C6), "b5 d5 b7 d7");
}

// A Dorn_archer that takes a mount in the base becomes a Dorn there in every game type, as
// classifying the squares says.
TEST_F(MoveGenTest, DornArcherTakingAMountInTheBaseIsPromoted) {
  load("k7/1w6/1J6/8/8/8/8/8 w 0 1");
  EXPECT_EQ(nonEvasions(B6), "a7= b7= a5 b5 c5 a6 c6 c7");
  EXPECT_TRUE(pos.promotionPair(B6, B7));
  load("k7/1w6/1J6/8/8/8/8/7f w 0 1 - 1 - 1", 4);
  EXPECT_EQ(nonEvasions(B6), "a7= b7= a5 b5 c5 a6 c6 c7");
}

TEST_F(MoveGenTest, MagicianPromotesOnlyByAQuietStep) {
  load("k7/8/1M6/8/8/8/8/7K w 0 1", 1);
  EXPECT_EQ(captures(B6), "b7=");
  EXPECT_EQ(quiets(B6), "b5 a6 c6 b7");
  EXPECT_EQ(nonEvasions(B6), "b7= b5 a6 c6");  // the promotion alone, no plain twin
  load("k7/1a6/1M6/8/8/8/8/7K w 0 1", 1);      // aiming at an enemy there is a demotion
  EXPECT_EQ(captures(B6), "b7<");
  load("k7/8/8/1M6/8/8/8/7K w 0 1", 1);  // its reach touches b7, its steps do not
  EXPECT_EQ(captures(B5), "");
}

TEST_F(MoveGenTest, MagicianDemotesOnlyWhatMayBeDemoted) {
  load("8/8/3i1a2/3s4/3M4/3g4/8/7K w 0 1", 1);  // Dorn_sword, Sword and Magician1 in reach
  EXPECT_EQ(captures(D4), "f6<");
  load("8/8/3k4/8/3M4/8/8/7K w 0 1", 1);
  EXPECT_EQ(captures(D4), "d6<");
  magicianDemotesDorn = 0;
  EXPECT_EQ(captures(D4), "");
}

TEST_F(MoveGenTest, MagicianExchangePartnersDependOnTheLeaders) {
  load("k7/8/8/8/8/8/4M3/4WF2 w 0 1", 1);  // the Bondsman is the sole leader
  EXPECT_EQ(captures(E2), "e1$");
  EXPECT_EQ(quiets(E2), "d2 f2 e3");
  load("k7/8/8/8/8/8/4M3/3KWF2 w 0 1", 1);  // Dorn and Bondsman lead together
  EXPECT_EQ(captures(E2), "d1$ e1$ f1$");
  bondsmenLeaders = 0;
  load("k7/8/8/8/8/8/4M3/3KWF2 w 0 1", 1);
  EXPECT_EQ(captures(E2), "e1$ f1$");
}

TEST_F(MoveGenTest, DornFormsExchangeForTheirMountOutsideCheck) {
  load("k7/8/8/8/8/8/6J1/7W w 0 1");
  EXPECT_EQ(nonEvasions(G2), "h1$ f1 g1 f2 h2 f3 g3 h3");
  EXPECT_EQ(quiets(G2), "f1 g1 f2 h2 f3 g3 h3");
  load("k7/8/8/8/8/8/6K1/7W w 0 1");
  EXPECT_EQ(captures(G2), "");
  load("k7/8/8/8/8/8/6I1/6AW w 0 1");  // a Dorn_sword takes only the Archer row
  EXPECT_EQ(captures(G2), "g1$");
  load("k7/8/8/8/8/6a1/6J1/7W w 0 1");  // in check
  EXPECT_EQ(captures(G2), "g3");
}

TEST_F(MoveGenTest, TowerSquaresInSiegeOne) {
  load("k7/8/8/8/2M5/2K2W2/8/8 w 0 1", 3);
  // The sole leader stays off the tower; the Warrior may walk onto it and die there.
  EXPECT_EQ(quiets(C3), "a1 b1 c1 d1 e1 a2 b2 c2 d2 e2 a3 b3 d3 e3 a4 b4 a5 b5 c5");
  EXPECT_EQ(quiets(F3), "d1 e1 f1 g1 h1 d2 e2 f2 g2 h2 d3 e3 g3 h3 d4 e4 f4 g4 h4 e5 f5 g5 h5");
  // A Magician never steps onto it but breaches it from where it stands.
  EXPECT_EQ(quiets(C4), "d4< e4< b4 c5");
  load("k7/8/8/8/2M5/2K2W2/8/7F w 0 1", 3);  // with two leaders the Dorn may go there too
  EXPECT_EQ(quiets(C3), "a1 b1 c1 d1 e1 a2 b2 c2 d2 e2 a3 b3 d3 e3 a4 b4 d4 e4 a5 b5 c5");

  load("k7/8/8/8/W7/8/8/7K w 0 1 A4", 3);  // a carrier on a win square has ended the game
  EXPECT_FALSE(movesOf(pos, generateNonEvasions).empty());
  EXPECT_TRUE(movesOf(pos, generateLegal).empty());
}

TEST_F(MoveGenTest, ListsFollowThePieceOrderAndTheSquareOrder) {
  load(gameTypeTable[1].startFen, 1);
  EXPECT_EQ(listText(movesOf(pos, generateNonEvasions)),
            "f2e3 g3e3 g3f3 g4f3 g4f4 g4f5 g4g5 g4h5 h4g5 h4h5 d2c1 d2c2 d2c3 d2d3 d2e3 d1c1 d1c2 "
            "e2e1$ e2f1$ e2e3 g2e3 g2f3 g2e4 g2f4 g2d5");
  load("k7/8/8/8/3a4/8/8/3F3K w 0 1");  // the Bondsman's range-3 capture is looked up for captures
  EXPECT_EQ(captures(D1), "d4");
}

// The Archer on f1 shields its Dorn from the Bondsman's long reach. Each refused word takes the
// last entry's place, and that entry is tested next, so the legal list is not in generation order.
TEST_F(MoveGenTest, LegalListFillsARefusedPlaceWithTheLastEntry) {
  load("k7/8/8/8/8/8/8/4fA1K w 0 1");
  EXPECT_EQ(listText(movesOf(pos, generateNonEvasions)),
            "f1e1 f1g1 f1e2 f1f2 f1g2 h1g1 h1f2 h1g2 h1h2 h1f3 h1g3 h1h3 h1e4 h1h4");
  EXPECT_EQ(listText(movesOf(pos, generateLegal)), "f1e1 f1g1 h1h4 h1h3 h1h2");
}

TEST_F(MoveGenTest, SiegeWordsCarryTheirCaptiveKind) {
  load("k7/8/8/8/3a4/2W5/2g5/7K w 0 1 C3 Breached { D4 }", 3);  // the Warrior carries
  EXPECT_EQ(makePromotionMove(pos, C3, B4), makeMove(C3, B4, Promotion | Transfer));
  for (Move m : movesOf(pos, generateNonEvasions))
    EXPECT_TRUE(moveFrom(m) != C3 || isTransfer(m)) << wordText(m);
  pos.sideToMove = BLACK;  // taking the carrier picks the captive up; demoting it does not
  EXPECT_EQ(makePlainMove(pos, D4, C3), makeMove(D4, C3, Pickup));
  EXPECT_EQ(makeDemotionMove(pos, C2, C3), makeMove(C2, C3, Demotion));

  load("k7/8/8/8/3a4/2W5/8/7K w 0 1 - Breached { D4 }", 3);  // the captive is inside, d4 open
  EXPECT_EQ(makePlainMove(pos, C3, D4), makeMove(C3, D4, Pickup));
  EXPECT_EQ(makeDemotionMove(pos, D2, D4), makeMove(D2, D4, Demotion | Pickup));
  EXPECT_EQ(makeExchangeMove(pos, E3, D4), makeMove(E3, D4, Exchange | Pickup));

  load("k7/8/8/8/8/8/8/W6F w 0 1 A1 1 - 1", 4);  // Siege 2: the carrier leaves it on its drop-off square
  EXPECT_EQ(makePromotionMove(pos, A1, A2), makeMove(A1, A2, Promotion | Dropoff));
  EXPECT_EQ(nonEvasions(A1), "b1^d c1^d a2^d b2^d c2^d a3^d b3^d c3^d");
  load("k7/8/8/8/8/8/W7/7F w 0 1 A2 1 - 1", 4);
  EXPECT_EQ(makePlainMove(pos, A2, B2), makeMove(A2, B2, Transfer));
}

}  // namespace

// Captive moves in both siege games: which list a siege square lands in, and with which flag.
#include "move_list_text.h"

namespace {

using CaptiveMovesTest = PositionUnderRules;

constexpr int Siege1 = 3, Siege2 = 4;

// ---------------------------------------------------------------- Siege 1

TEST_F(CaptiveMovesTest, BreachWithTheCaptiveInsideIsAPickUpInCapturesOnly) {
  load("k7/8/8/8/8/2W5/8/7K w 0 1 - Breached { D4 }", Siege1);
  EXPECT_EQ(captures(C3), "d4^p");
  EXPECT_FALSE(reaches(quiets(C3), "d4")) << quiets(C3);
  // Once someone carries the captive, the breach is an ordinary square again.
  load("k7/8/a7/8/8/2W5/8/7K w 0 1 A6 Breached { D4 }", Siege1);
  EXPECT_EQ(captures(C3), "");
  EXPECT_TRUE(holds(quiets(C3), "d4")) << quiets(C3);
}

TEST_F(CaptiveMovesTest, TakingTheCarrierPicksTheCaptiveUp) {
  load("k7/8/8/8/3a4/2W5/8/7K w 0 1 D4 Breached { D4 }", Siege1);
  EXPECT_EQ(captures(C3), "d4^p");
  capturePromotions = 1;  // an Archer that takes a mount is promoted on the way
  load("k7/8/8/8/3w4/2A5/8/7K w 0 1 D4 Breached { D4 }", Siege1);
  EXPECT_EQ(captures(C3), "d4=^p");
}

TEST_F(CaptiveMovesTest, CarrierMovesAreTransfersButItsDemotionsAreNot) {
  load("k7/8/8/2a5/8/2M5/8/7K w 0 1 C3", Siege1);  // e5 is a tower square
  EXPECT_EQ(nonEvasions(C3), "c5< e5< c2^t b3^t d3^t c4^t");
  // With hand-overs on, own neighbours are targets of the quiet list.
  load("k7/8/8/8/8/2WA4/8/7K w 0 1 C3", Siege1);
  EXPECT_TRUE(holds(quiets(C3), "d3^t")) << quiets(C3);
  EXPECT_FALSE(reaches(captures(C3), "d3")) << captures(C3);
  siegeExchanges = 0;
  EXPECT_FALSE(reaches(nonEvasions(C3), "d3")) << nonEvasions(C3);
}

TEST_F(CaptiveMovesTest, MagicianCarrierExchangesWithAPartnerInsteadOfHandingOver) {
  // The Warrior on b3 is an exchange partner and gets no hand-over; the Archer on d3 gets one.
  load("k7/8/8/8/8/1WMA4/8/7K w 0 1 C3", Siege1);
  EXPECT_EQ(captures(C3), "b3$");
  EXPECT_EQ(quiets(C3), "e5< c2^t d3^t c4^t");
  EXPECT_EQ(nonEvasions(C3), "e5< b3$ c2^t d3^t c4^t");
  exchanges = 0;
  EXPECT_EQ(captures(C3), "");
  EXPECT_EQ(nonEvasions(C3), "e5< c2^t b3^t d3^t c4^t");
}

TEST_F(CaptiveMovesTest, CarrierReachingItsWinSquareListsItAmongTheCaptures) {
  load("k7/8/8/8/8/1W6/8/7K w 0 1 B3", Siege1);
  EXPECT_EQ(captures(B3), "a4^t");
  EXPECT_FALSE(reaches(quiets(B3), "a4")) << quiets(B3);
  // A Sword does not take a mount on its win square while the rule forbids it.
  load("k7/8/8/w7/1S6/8/8/7K w 0 1 B4", Siege1);
  EXPECT_EQ(nonEvasions(B4), "a3^t c3^t c5^t");
  load("k7/8/8/8/a7/1S6/8/7K w 0 1 B3", Siege1);
  EXPECT_EQ(captures(B3), "a4^t");
}

TEST_F(CaptiveMovesTest, MagicianStepsOntoBreachesAndWinSquaresInSiegeOne) {
  // d3 steps onto an empty breach that no longer holds the captive: still a captures word.
  // b4 may step onto its own win square only in the full list.
  load("k7/8/8/8/1M6/3M4/8/7K w 0 1 A8 Breached { D4 }", Siege1);
  EXPECT_EQ(captures(D3), "d4");
  EXPECT_EQ(quiets(D3), "d5< d2 c3 e3");  // the breach of d5 is quiet
  EXPECT_EQ(captures(B4), "");
  EXPECT_EQ(quiets(B4), "b3 c4 b5");
  EXPECT_EQ(nonEvasions(B4), "b3 a4 c4 b5");
  // A Magician2 tests its walker steps: d4 two squares away is a pick-up.
  load("k7/8/8/8/1H6/8/8/7K w 0 1 - Breached { D4 }", Siege1);
  EXPECT_EQ(captures(B4), "d4^p");
  EXPECT_FALSE(reaches(quiets(B4), "d4")) << quiets(B4);
}

// ---------------------------------------------------------------- Siege 2

TEST_F(CaptiveMovesTest, CarrierOnTheCaptivesDropOffSquareMustDropItOff) {
  // A Black Warrior carries White's captive onto a1: every move leaves it there, and none stays
  // in the quiet list. The standing tower square a3 is no drop-off target.
  load("k7/8/8/8/8/8/8/w6F b 0 1 A1 1 - 1", Siege2);
  EXPECT_EQ(captures(A1), "b1^d c1^d a2^d b2^d c2^d b3^d c3^d");
  EXPECT_EQ(quiets(A1), "");
  load("k7/8/8/8/8/8/w7/7F b 0 1 A2 1 - 1", Siege2);
  EXPECT_EQ(captures(A2), "");
  EXPECT_TRUE(holds(quiets(A2), "b3^t")) << quiets(A2);
  // A Magician form keeps its steps in the quiet list; both lists hold them.
  load("k7/8/8/8/8/8/8/M6F w 0 1 A1 1 - 1", Siege2);
  EXPECT_EQ(captures(A1), "b1^d a2^d");
  EXPECT_EQ(quiets(A1), "b1^d a2^d");
}

TEST_F(CaptiveMovesTest, OwnTowerFirstWhenBothCanBeEntered) {
  load("k7/8/8/8/8/4W3/8/7F w 0 1 - 1 - 1 TowerWhite { D4 D5 } BreachedWhite { D4 } TowerBlack { F4 F5 } "
       "BreachedBlack { F4 }",
       Siege2);
  EXPECT_EQ(captures(E3), "d4^p");
  EXPECT_TRUE(holds(quiets(E3), "f4^p")) << quiets(E3);
  // With the own captive out of play the enemy tower is taken, and a Magician steps into it
  // through the captures list while the own breach stays quiet.
  load("k7/8/8/8/4M3/8/8/7F w 0 1 - 0 - 1 TowerWhite { D4 D5 } BreachedWhite { D4 } TowerBlack { F4 F5 } "
       "BreachedBlack { F4 }",
       Siege2);
  EXPECT_EQ(captures(E4), "f4^p");
  EXPECT_EQ(quiets(E4), "e3 d4 e5");
}

TEST_F(CaptiveMovesTest, DeadCaptiveLeavesItsBreachesPlain) {
  load("k7/8/8/8/6W1/8/8/7F w 0 1 - 0 - 1 BreachedWhite { H5 }", Siege2);
  EXPECT_EQ(captures(G4), "");
  EXPECT_TRUE(holds(quiets(G4), "h5")) << quiets(G4);
}

TEST_F(CaptiveMovesTest, NoHandOverFromTheOwnGoalSquare) {
  // White carries Black's captive: on a1, White's own drop-off square, it may not hand over.
  load("k7/8/8/8/8/8/8/WA5F w 0 1 - 1 A1 1", Siege2);
  EXPECT_FALSE(reaches(nonEvasions(A1), "b1")) << nonEvasions(A1);
  load("k7/8/8/8/8/8/W7/1A5F w 0 1 - 1 A2 1", Siege2);
  EXPECT_TRUE(holds(quiets(A2), "b1^t")) << quiets(A2);
}

TEST_F(CaptiveMovesTest, LeaderHasNoDropOffCase) {
  // The Dorn carries Black's captive on Black's drop-off square: its moves drop it off, yet they
  // stay quiet moves. The tower square h6 is closed to the sole leader.
  load("7K/8/8/8/8/8/8/f7 w 0 1 - 1 H8 1", Siege2);
  EXPECT_EQ(quiets(H8), "e5^d f6^d g6^d f7^d g7^d h7^d e8^d f8^d g8^d");
  EXPECT_EQ(captures(H8), "");
  // Any other piece there has its moves among the captures only, and walks into the tower only
  // in the full list.
  load("7W/8/8/8/8/8/8/f2K4 w 0 1 - 1 H8 1", Siege2);
  EXPECT_EQ(quiets(H8), "");
  EXPECT_EQ(captures(H8), "f6^d g6^d f7^d g7^d h7^d f8^d g8^d");
  EXPECT_EQ(nonEvasions(H8), "f6^d g6^d h6^d f7^d g7^d h7^d f8^d g8^d");
}

}  // namespace

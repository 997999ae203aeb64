// Siege scoring by term, the imminent win and captive safety.
#include <gtest/gtest.h>

#include "eval/siege.h"
#include "eval_support.h"

using namespace eval_test;

namespace {

constexpr int Siege1 = 3, Siege2 = 4;

class SiegeTest : public EvalFixture {
 protected:
  std::string report() {
    CaptureStdout out;
    scoreSiege(pos, true);
    return out.text();
  }
  bool imminentWin() {
    Color c;
    return siege1ImminentWin(pos, c);
  }
};

TEST_F(SiegeTest, FirstGameScoresTowerHalvesAndTheCarrier) {
  loadIn(Siege1, gameTypeTable[Siege1].startFen);
  EXPECT_EQ(scoreSiege(pos), 0);
  pos.siege1Tower &= ~(Bitboard(1) << D4 | Bitboard(1) << D5 | Bitboard(1) << E5);  // more breached above
  EXPECT_EQ(scoreSiege(pos), makeScore(-120, -120));

  // A White Dorn with the captive three squares from its goal a4, the diagonal to it open.
  loadIn(Siege1, "k7/8/8/8/8/8/8/3K4 w 0 1 D1");
  EXPECT_EQ(report(), "scoreSiege1:captivePositionBonus=100, captiveValueBonus=240, captiveImminentWinBonus=100, "
                      "captiveAsSwordPenalty=0, towerBonus=0, final=440\n");
  // A Sword carrier on a dark square, where neither goal lies: 120, or 360 with no hand-over.
  loadIn(Siege1, "k7/8/8/8/8/8/8/K1S5 w 0 1 C1");
  EXPECT_EQ(scoreSiege(pos), makeScore(-120 + 105 + 100, -120 + 105 + 100));
  siegeExchanges = 0;
  EXPECT_EQ(scoreSiege(pos), makeScore(-360 + 105 + 100, -360 + 105 + 100));
}

TEST_F(SiegeTest, FirstGameWinsAtOnceOnlyOntoAGoalNothingCanTake) {
  loadIn(Siege1, "k7/8/8/1s6/8/8/8/3K4 w 0 1 D1");  // a Sword next to a4 cannot take a mounted leader
  EXPECT_TRUE(imminentWin());
  swordsCaptureMounts = 1;
  EXPECT_FALSE(imminentWin());
  loadIn(Siege1, "k7/8/w7/8/8/8/8/3K4 w 0 1 D1");  // a Warrior guards a4 through a5
  EXPECT_FALSE(imminentWin());
  EXPECT_EQ(scoreSiege(pos), makeScore(340, 340));
  loadIn(Siege1, "k7/8/8/8/8/1A6/8/3K4 w 0 1 D1");  // an own piece blocks the way
  EXPECT_FALSE(imminentWin());
  loadIn(Siege1, "k7/8/8/8/8/G7/8/K7 w 0 1 A3");  // a Magician1 steps onto a4 ...
  EXPECT_TRUE(imminentWin());
  loadIn(Siege1, "k7/8/8/8/w7/G7/8/K7 w 0 1 A3");  // ... but would only demote a piece standing there
  EXPECT_FALSE(imminentWin());
}

TEST_F(SiegeTest, SecondGameScoresEachCaptiveForItsColour) {
  // White's captive on its drop-off square a1, carried by a White Warrior; Black's captive is dead.
  loadIn(Siege2, "5f2/8/8/8/8/8/8/W1F5 w 0 1 A1 1 - 0");
  const std::string text = report();
  EXPECT_EQ(text.substr(text.find("scoreSiege2")),
            "scoreSiege2(WHITE):magicianBonus=-50, captivePositionBonus=175, captiveValueBonus=200, "
            "captiveImminentDropoffBonus=100, captiveEnemyKilledBonus=150, captiveAsSwordPenalty=0, towerBonus=0, "
            "final=575\nscoreSiege2(BLACK):magicianBonus=0, captivePositionBonus=0, captiveValueBonus=0, "
            "captiveImminentDropoffBonus=0, captiveEnemyKilledBonus=0, captiveAsSwordPenalty=0, towerBonus=0, "
            "final=0\nfinal bonus=575\n");
  loadIn(Siege2, "5f2/8/8/8/8/8/W7/2F5 w 0 1 A2 1 - 0");  // a step away: 100 for arriving, 25 for distance
  EXPECT_EQ(scoreSiege(pos), makeScore(450, 450));

  // Magicians count while a tower is whole, and nothing against a side without any.
  loadIn(Siege2, gameTypeTable[Siege2].startFen);
  EXPECT_EQ(scoreSiege2(pos, NoPiece, WHITE, false), 250);
  loadIn(Siege2, "5f2/8/8/8/8/8/8/H1F5 w 0 1");
  EXPECT_EQ(scoreSiege2(pos, NoPiece, WHITE, false), 0);
  EXPECT_EQ(scoreSiege2(pos, NoPiece, BLACK, false), 50);  // Black has none and pays 50
  for (Color c : {WHITE, BLACK}) {  // no tower whole: a breach with the captive inside scores 120
    pos.siege2Breached[c] = Bitboard(1) << lowestSquare(siege2TowerSquares[c]);
    pos.siege2Tower[c] &= ~pos.siege2Breached[c];
  }
  EXPECT_EQ(scoreSiege2(pos, NoPiece, BLACK, false), -120);
}

TEST_F(SiegeTest, CarrierSafetyCountsAttackersThatCanTakeIt) {
  // A White Warrior carries on c2, attacked by Black Swords on b3 and d3 and a Warrior on c4.
  loadIn(Siege1, "k7/8/8/8/2w5/1s1s4/2W5/K7 w 0 1 C2");
  EXPECT_EQ(captiveSafety(pos, WHITE), makeScore(-50, -50));
  EXPECT_EQ(captiveSafety(pos, BLACK), 0);
  swordsCaptureMounts = 1;
  EXPECT_EQ(captiveSafety(pos, WHITE), makeScore(-150, -150));
}

}  // namespace

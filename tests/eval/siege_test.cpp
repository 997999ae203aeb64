// Siege scoring by term, the imminent win, captive safety, and the siege score that moves keep.
#include <gtest/gtest.h>

#include "eval/siege.h"
#include "eval_support.h"

using namespace eval_test;

namespace {

constexpr int Siege1 = 3, Siege2 = 4;

class SiegeTest : public EvalFixture {
 protected:
  std::string siege1Report() {
    CaptureStdout out;
    scoreSiege(pos, true);
    return out.text();
  }
  bool imminentWin() {
    Color c = BLACK;
    return siege1ImminentWin(pos, c);
  }
};

TEST_F(SiegeTest, FirstGameTowerTermCountsStandingSquaresByHalf) {
  loadIn(Siege1, gameTypeTable[Siege1].startFen);
  EXPECT_EQ(siege1Report(),
            "scoreSiege1:captivePositionBonus=0, captiveValueBonus=0, captiveImminentWinBonus=0, "
            "captiveAsSwordPenalty=0, towerBonus=0, final=0\n");
  pos.siege1Tower &= ~Bitboard(1) << D4;  // a breach in the low half favours White
  EXPECT_EQ(scoreSiege(pos), makeScore(120, 120));
  pos.siege1Tower &= ~(Bitboard(1) << D5 | Bitboard(1) << E5);
  EXPECT_EQ(scoreSiege(pos), makeScore(-120, -120));
}

TEST_F(SiegeTest, FirstGameCarrierTermsFollowItsColour) {
  // A White Dorn with the captive three squares from a4, the goal open on the line d1-a4.
  loadIn(Siege1, "k7/8/8/8/8/8/8/3K4 w 0 1 D1");
  EXPECT_EQ(siege1Report(),
            "scoreSiege1:captivePositionBonus=100, captiveValueBonus=240, captiveImminentWinBonus=100, "
            "captiveAsSwordPenalty=0, towerBonus=0, final=440\n");
  loadIn(Siege1, "4k3/8/8/8/8/8/8/K7 w 0 1 E8");  // the mirror image for Black, towards h5
  EXPECT_EQ(siege1Report(),
            "scoreSiege1:captivePositionBonus=-100, captiveValueBonus=-240, captiveImminentWinBonus=-100, "
            "captiveAsSwordPenalty=0, towerBonus=0, final=-440\n");
}

TEST_F(SiegeTest, FirstGameLeaderWinsAtOnceOnlyOntoAGoalNothingCanTake) {
  loadIn(Siege1, "k7/8/8/8/8/8/8/3K4 w 0 1 D1");
  EXPECT_TRUE(imminentWin());
  loadIn(Siege1, "k7/8/8/1s6/8/8/8/3K4 w 0 1 D1");  // a Sword cannot take a mounted leader
  EXPECT_TRUE(imminentWin());
  swordsCaptureMounts = 1;
  EXPECT_FALSE(imminentWin());
  swordsCaptureMounts = 0;
  loadIn(Siege1, "k7/8/w7/8/8/8/8/3K4 w 0 1 D1");  // a Warrior guards a4 through a5
  EXPECT_FALSE(imminentWin());
  EXPECT_EQ(scoreSiege(pos), makeScore(340, 340));
  loadIn(Siege1, "k7/8/8/8/8/1A6/8/3K4 w 0 1 D1");  // an own piece blocks the way
  EXPECT_FALSE(imminentWin());
}

TEST_F(SiegeTest, FirstGameMagicianArrivesOnlyByAStep) {
  loadIn(Siege1, "k7/8/8/8/8/G7/8/K7 w 0 1 A3");
  EXPECT_TRUE(imminentWin());
  loadIn(Siege1, "k7/8/8/8/w7/G7/8/K7 w 0 1 A3");  // on a4 it would demote the Warrior instead
  EXPECT_FALSE(imminentWin());
}

TEST_F(SiegeTest, SwordCarrierOnAColourWithoutGoalSquaresPays) {
  // c1 is dark; both goal squares, a4 and h5, are light.
  loadIn(Siege1, "k7/8/8/8/8/8/8/K1S5 w 0 1 C1");
  EXPECT_EQ(scoreSiege(pos), makeScore(-120 + 105 + 100, -120 + 105 + 100));
  siegeExchanges = 0;
  EXPECT_EQ(scoreSiege(pos), makeScore(-360 + 105 + 100, -360 + 105 + 100));
  loadIn(Siege1, "k7/8/8/8/8/8/8/KS6 w 0 1 B1");  // light: no penalty
  EXPECT_EQ(scoreSiege(pos), makeScore(105 + 100, 105 + 100));
}

TEST_F(SiegeTest, SecondGameScoresEachCaptiveForItsColour) {
  // White's captive on its drop-off square a1, carried by a White Warrior; Black's captive is dead.
  loadIn(Siege2, "5f2/8/8/8/8/8/8/W1F5 w 0 1 A1 1 - 0");
  CaptureStdout out;
  EXPECT_EQ(scoreSiege(pos, true), makeScore(575, 575));
  EXPECT_NE(out.text().find("scoreSiege2(WHITE):magicianBonus=-50, captivePositionBonus=175, captiveValueBonus=200, "
                            "captiveImminentDropoffBonus=100, captiveEnemyKilledBonus=150, captiveAsSwordPenalty=0, "
                            "towerBonus=0, final=575\nscoreSiege2(BLACK):magicianBonus=0, captivePositionBonus=0, "
                            "captiveValueBonus=0, captiveImminentDropoffBonus=0, captiveEnemyKilledBonus=0, "
                            "captiveAsSwordPenalty=0, towerBonus=0, final=0\nfinal bonus=575\n"),
            std::string::npos)
      << out.text();
  // One step off the drop-off square: 100 less for arriving, 25 less for the distance.
  loadIn(Siege2, "5f2/8/8/8/8/8/W7/2F5 w 0 1 A2 1 - 0");
  EXPECT_EQ(scoreSiege(pos), makeScore(450, 450));
}

TEST_F(SiegeTest, SecondGameMagicianBonusNeedsAWholeTower) {
  // Both towers whole, each side with a Magician2: 250 for each.
  loadIn(Siege2, gameTypeTable[Siege2].startFen);
  EXPECT_EQ(scoreSiege2(pos, NoPiece, WHITE, false), 250);
  EXPECT_EQ(scoreSiege2(pos, NoPiece, BLACK, false), -250);
  // Against a side without any Magician form a Magician counts nothing, and that side pays 50.
  loadIn(Siege2, "5f2/8/8/8/8/8/8/H1F5 w 0 1");
  EXPECT_EQ(scoreSiege2(pos, NoPiece, WHITE, false), 0);
  EXPECT_EQ(scoreSiege2(pos, NoPiece, BLACK, false), 50);
  // No tower whole any more: only the breach of a tower with its captive inside scores.
  for (Color c : {WHITE, BLACK}) {
    pos.siege2Breached[c] = Bitboard(1) << lowestSquare(siege2TowerSquares[c]);
    pos.siege2Tower[c] &= ~pos.siege2Breached[c];
  }
  EXPECT_EQ(scoreSiege2(pos, NoPiece, WHITE, false), 120);
  EXPECT_EQ(scoreSiege2(pos, NoPiece, BLACK, false), -120);
}

TEST_F(SiegeTest, CaptiveSafetyCountsAttackersThatCanTakeTheCarrier) {
  // A White Warrior carries on c2; Black Swords on b3 and d3 and a Warrior on c4 attack it.
  loadIn(Siege1, "k7/8/8/8/2w5/1s1s4/2W5/K7 w 0 1 C2");
  EXPECT_EQ(captiveSafety(pos, WHITE), makeScore(-50, -50));
  EXPECT_EQ(captiveSafety(pos, BLACK), 0);
  swordsCaptureMounts = 1;
  EXPECT_EQ(captiveSafety(pos, WHITE), makeScore(-150, -150));
}

TEST_F(SiegeTest, KeptSiegeScoreMatchesAFreshOneAfterEveryMoveAndUndo) {
  int compared = 0;
  auto matches = [&](Position& p) {
    ++compared;
    EXPECT_EQ(p.state()->siegeScore, scoreSiege(p)) << p.fen();
  };
  for (int type : {Siege1, Siege2})
    for (const EvalRules& rules : evalRuleSets) {
      resetRuleFlags();
      rules.apply();
      playRandomGames(type, 2, 120, matches, [&](Position& p, Move m) {
        StateInfo st;
        p.do_move(m, st);
        matches(p);
        p.undo_move(m);
        matches(p);
      });
    }
  EXPECT_GT(compared, 10000);
}

}  // namespace

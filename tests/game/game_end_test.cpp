// Game end: lost leaders, Siege 1 goals, and every kind of draw with its words.
#include <gtest/gtest.h>

#include <deque>

#include "game/game_end.h"
#include "game/piece_values.h"
#include "game/position.h"
#include "game/rules.h"
#include "movegen/notation.h"
#include "../support/capture_stdout.h"
#include "../support/position_fixture.h"

namespace {

class GameEndTest : public PositionFixture {
 protected:
  void SetUp() override { initPromotableTypes(); }

  void load(const std::string& fen) {
    states.clear();
    PositionFixture::load(fen);
  }

  void play(const std::string& moves) {
    std::istringstream is(moves);
    for (std::string w; is >> w;) {
      Move m = moveFromSquares(pos, w);
      ASSERT_NE(m, MoveNone) << w;
      states.emplace_back();
      pos.do_move(m, states.back());
    }
  }

  std::string drawReason() {
    std::string reason;
    return isDrawPV(pos, &reason) ? reason : "";
  }

  std::deque<StateInfo> states;
};

}  // namespace

TEST_F(GameEndTest, HundredQuietPlies) {
  load("k7/8/8/8/8/8/8/WK6 w 99 1");
  EXPECT_EQ(drawReason(), "");
  load("k7/8/8/8/8/8/8/WK6 w 100 1");
  EXPECT_EQ(drawReason(), "100 moves and no captures");
  EXPECT_TRUE(isDrawNonPV(pos));
  EXPECT_TRUE(isDrawQuiescence(pos));
  // In check with no reply the mate stands.
  load("k7/8/2WA4/8/8/8/8/7K b 100 1");
  ASSERT_TRUE(pos.inCheck());
  EXPECT_EQ(drawReason(), "");
  // In check with a reply it is a draw.
  load("k7/8/2W5/8/8/8/8/7K b 100 1");
  ASSERT_TRUE(pos.inCheck());
  EXPECT_EQ(drawReason(), "100 moves and no captures");
}

TEST_F(GameEndTest, RepetitionNeedsTwoEarlierOccurrencesOnAPvLine) {
  load("k7/8/8/8/8/8/W7/7K w 0 1");
  play("a2a3 a8b8 a3a2 b8a8");
  EXPECT_TRUE(isDrawNonPV(pos));  // one earlier occurrence
  EXPECT_EQ(drawReason(), "");
  EXPECT_FALSE(isDrawQuiescence(pos));
  play("a2a3 a8b8 a3a2 b8a8");
  EXPECT_EQ(drawReason(), "three move repetition");
}

TEST_F(GameEndTest, RepetitionDoesNotReachAcrossACapture) {
  load("k7/8/8/8/8/8/W7/7K w 0 1");
  play("a2a3 a8b8 a3a2");
  EXPECT_FALSE(isDrawNonPV(pos));  // only three plies back
}

TEST_F(GameEndTest, MaterialWithBasePromotions) {
  load("k7/8/8/8/8/8/8/7K w 0 1");
  EXPECT_EQ(drawReason(), "not enough material for anyone to win");
  load("k7/8/8/8/8/8/8/G6K w 0 1");  // a Magician1 is no promotable type, but it is material
  EXPECT_EQ(drawReason(), "");
  load("j7/8/8/8/8/8/8/7K w 0 1");  // a Dorn_archer can still be promoted
  EXPECT_EQ(drawReason(), "");
  load("kf6/8/8/8/8/8/8/7K w 0 1");  // two leaders of one colour
  EXPECT_EQ(drawReason(), "");
}

TEST_F(GameEndTest, MaterialWithoutBasePromotions) {
  basePromotions = 0;
  setPieceValues(Position());
  load("k7/8/8/8/8/8/8/A6K w 0 1");
  EXPECT_EQ(drawReason(), "not enough material for anyone to win");
  load("k7/8/8/8/8/8/8/NS5K w 0 1");
  EXPECT_EQ(drawReason(), "");
  load("k7/8/8/8/8/8/8/W6K w 0 1");
  EXPECT_EQ(drawReason(), "");
}

TEST_F(GameEndTest, SiegeOneTowerThatNobodyCanOpen) {
  setSiegeModes(3);
  load("k7/8/8/8/8/8/8/W6K w 0 1");
  EXPECT_EQ(drawReason(), "no magicians left to breach the tower");
  load("k7/8/8/8/8/8/8/G6K w 0 1");
  EXPECT_EQ(drawReason(), "");
  // Once the captive is out, the rule never holds again.
  load("k7/8/8/8/8/8/8/W6K w 0 1 a1");
  EXPECT_EQ(drawReason(), "");
}

TEST_F(GameEndTest, SiegeTwoTowersThatNobodyCanOpen) {
  setSiegeModes(4);
  load("f7/8/8/8/8/8/8/W6F w 0 1");
  EXPECT_EQ(drawReason(), "no magicians left to breach the tower");
  load("f7/8/8/8/8/8/8/W6F w 0 1 - 1 - 1 BreachedWhite { H5 }");
  EXPECT_EQ(drawReason(), "");
  load("f7/8/8/8/8/8/8/W6F w 0 1 - 0 - 1");
  EXPECT_EQ(drawReason(), "");
}

TEST_F(GameEndTest, GoalsAndLostLeaders) {
  setSiegeModes(3);
  load("k7/8/8/8/W7/8/8/7K w 0 1 a4");
  Color winner = BLACK;
  EXPECT_TRUE(captiveOnGoal(pos, winner));
  EXPECT_EQ(winner, WHITE);
  {
    CaptureStdout out;
    int w = -1;
    EXPECT_TRUE(gameOver(pos, w));
    EXPECT_EQ(w, WHITE);
    EXPECT_EQ(out.text(), "Game is over, WHITE wins...\n");
  }
  // A Black carrier on White's goal wins for White too.
  load("k7/8/8/8/w7/8/8/7K w 0 1 a4");
  EXPECT_TRUE(captiveOnGoal(pos, winner));
  EXPECT_EQ(winner, WHITE);
  load("k7/8/8/8/8/8/8/7K w 0 1 a4");  // nobody carries it there
  EXPECT_FALSE(captiveOnGoal(pos, winner));
  EXPECT_FALSE(leaderLost(pos));
}

// Taking the last move off a game text: markers and FEN counters are no moves, the redo stack has a bound.
#include <gtest/gtest.h>

#include <string>

#include "frontend/game_history.h"
#include "frontend/settings.h"

namespace {

class StripLastMove : public ::testing::Test {
 protected:
  void TearDown() override { redoCount = 0; }
};

}  // namespace

TEST_F(StripLastMove, TakesTheLastWordUnlessItIsAMarkerOrACounter) {
  redoCount = 0;
  std::string game = "fen 8/8/8/8/8/8/8/K6k w 0 1 startpos moves  d2c3 b6d6 \n";
  EXPECT_EQ(stripLastMove(game, true), "b6d6");
  EXPECT_EQ(game, "fen 8/8/8/8/8/8/8/K6k w 0 1 startpos moves  d2c3 ");
  EXPECT_EQ(stripLastMove(game, false), "d2c3");
  EXPECT_EQ(redoCount, 1);
  EXPECT_EQ(redoMoves[0], " b6d6");

  const std::string empty = game;
  EXPECT_EQ(stripLastMove(game, true), "");
  EXPECT_EQ(game, empty);
  std::string counters = "fen 8/8/8/8/8/8/8/K6k w 0 1";
  EXPECT_EQ(stripLastMove(counters, true), "");
  EXPECT_EQ(counters, "fen 8/8/8/8/8/8/8/K6k w 0 1");
  std::string blank = "   ";
  EXPECT_EQ(stripLastMove(blank, true), "");
  EXPECT_EQ(redoCount, 1);
}

TEST_F(StripLastMove, AFullRedoStackStopsRecordingButTheMoveIsTakenOff) {
  redoCount = MaxGameMoves;
  std::string game = "fen 8/8/8/8/8/8/8/K6k w 0 1 startpos moves a1a2";
  EXPECT_EQ(stripLastMove(game, true), "a1a2");
  EXPECT_EQ(game, "fen 8/8/8/8/8/8/8/K6k w 0 1 startpos moves ");
  EXPECT_EQ(redoCount, MaxGameMoves);
}

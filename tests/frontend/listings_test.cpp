// The listing commands: title, Black's mark, promotion and demotion marks and captive words; the
// exchange values of the legal moves.
#include "frontend/listings.h"
#include "../movegen/move_list_text.h"
#include "../support/capture_stdout.h"
#include "../support/run_dorn.h"

namespace {

using ListingsTest = PositionUnderRules;

TEST_F(ListingsTest, EachListOnOneLineWithItsMarksAndCaptiveWords) {
  load("k7/1a6/SM6/8/8/8/8/7I w 0 1", 1);
  CaptureStdout out;
  listCaptures(pos);
  listQuiets(pos);
  EXPECT_EQ(out.text(), "\ncaptures moves: SA6B7= MB6B7< \n\nquiet moves: SA6B5 MB6B5 MB6C6 IH1G2 \n");

  load("i7/8/8/8/8/8/8/W6F b 0 1 A1 1 - 1", 4);
  CaptureStdout black;
  listLegal(pos);
  EXPECT_EQ(black.text(), "\nlegal moves: ..iA8B7 \n");
  pos.sideToMove = WHITE;
  CaptureStdout white;
  listNonEvasions(pos);
  EXPECT_EQ(white.text().rfind("\nnon evasions moves: WA1B1 Dropoff WA1C1 Dropoff WA1A2 Dropoff ", 0), 0u)
      << white.text();
}

// The exchange value of each legal move, in the legal list's order; a side without a move gets the
// head line alone.
TEST(SeeCommand, ListsEachLegalMoveWithItsExchangeValue) {
  std::string out = runDorn("sp 7k/8/8/3a4/4A3/8/8/I7 w 0 1\nsee\n");
  EXPECT_NE(out.find("\nsee values:\ne4d3 0\ne4e3 0\ne4f3 0\ne4d4 -650\ne4f4 0\ne4d5 650\ne4e5 -650\ne4f5 0\na1b2 0\n"),
            std::string::npos)
      << out;
  // The carrier stands on its win square: the game is over and nobody moves.
  out = runDorn("new rescuegeneral\nsp 7k/8/8/8/W7/8/8/7K b 0 1 A4\nsee\nisready\n");
  EXPECT_NE(out.find("\nsee values:\nreadyok\n"), std::string::npos) << out;
}

}  // namespace

// The listing commands: title, Black's mark, promotion and demotion marks and captive words.
#include "frontend/listings.h"
#include "../movegen/move_list_text.h"
#include "../support/capture_stdout.h"

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

}  // namespace

// Move text in all its forms, words read back from squares, and the score and time texts.
#include <gtest/gtest.h>

#include "game/piece_values.h"
#include "game/position.h"
#include "game/rules.h"
#include "movegen/notation.h"
#include "../support/capture_stdout.h"
#include "../support/position_fixture.h"

namespace {

class NotationTest : public PositionFixture {
 protected:
  Move word(const std::string& text) {
    std::string w = text;
    return moveFromSquares(pos, w);
  }
};

}  // namespace

TEST_F(NotationTest, SpecialWordsHaveFixedTexts) {
  load("7k/8/8/8/8/8/8/K7 w 0 1");
  EXPECT_EQ(moveToUci(MoveNone), "(none)");
  EXPECT_EQ(moveToUci(MoveNull), "0000");
  EXPECT_EQ(moveToSan(pos, MoveNull), "(null)");
  EXPECT_EQ(moveToSan(pos, MoveNone), "(none)");
}

TEST_F(NotationTest, PromotionHasALetterInGameTextAndAnEqualsSignInSan) {
  load("7k/8/1S6/8/8/8/8/K7 w 0 1");
  Move m = word("b6a7");
  ASSERT_TRUE(isPromotion(m));
  EXPECT_EQ(moveToUci(m), "b6a7");
  EXPECT_EQ(moveToUci(m, &pos), "b6a7w");
  EXPECT_EQ(moveToSan(pos, m), "Sa7=W");
}

TEST_F(NotationTest, DemotionIsMarkedAndCountsAsACapture) {
  load("7k/8/3w4/8/3M4/8/8/K7 w 0 1");
  Move m = word("d4d6");
  ASSERT_TRUE(isDemotion(m));
  EXPECT_EQ(moveToUci(m, &pos), "d4d6a");
  EXPECT_EQ(moveToUci(m, &pos, true), "d4xd6a");
  EXPECT_EQ(moveToSan(pos, m), "Mxd6<A");
}

TEST_F(NotationTest, BreachOfAnEmptyTowerSquare) {
  setSiegeModes(3);
  load("7k/8/8/8/8/8/3M4/K7 w 0 1");
  Move m = word("d2d4");
  ASSERT_TRUE(isDemotion(m));
  // Type 0 has a blank letter: the game text ends in a blank.
  EXPECT_EQ(moveToUci(m, &pos), "d2d4 ");
  EXPECT_EQ(moveToSan(pos, m), "Md4<%");
}

TEST_F(NotationTest, ExchangeWritesNoCaptureSign) {
  load("7k/8/8/8/8/8/4MW2/K7 w 0 1");
  Move m = word("e2f2");
  ASSERT_TRUE(isExchange(m));
  EXPECT_EQ(moveToUci(m, &pos, true), "e2xf2");
  EXPECT_EQ(moveToSan(pos, m), "Mf2$A");
}

TEST_F(NotationTest, HandOverOfTheCaptiveIsMarked) {
  setSiegeModes(3);
  load("7k/8/8/8/8/8/1AS5/K7 w 0 1 b2");
  Move m = word("b2c2");
  ASSERT_TRUE(isTransfer(m));
  EXPECT_TRUE(isSiege1Exchange(pos, m));
  EXPECT_EQ(moveToSan(pos, m), "Ac2^");
}

TEST_F(NotationTest, CheckAndMateMarks) {
  // The Warrior on c6 is guarded, so the walking Dorn cannot take it.
  load("k7/8/3A4/3W4/8/8/8/7K w 0 1");
  EXPECT_EQ(moveToSan(pos, word("d5c6")), "Wc6#");
  load("k7/a7/8/3W4/8/8/8/7K w 0 1");
  EXPECT_EQ(moveToSan(pos, word("d5c6")), "Wc6+");
  EXPECT_EQ(moveToSan(pos, word("d5e6")), "We6");
}

TEST_F(NotationTest, WinningTransferInSiegeOneIsMarkedAsMate) {
  setSiegeModes(3);
  load("7k/8/8/8/1W6/8/8/K7 w 0 1 b4");
  EXPECT_EQ(moveToSan(pos, word("b4a4")), "Wa4#");
}

TEST_F(NotationTest, TwinsAreToldApartByFileThenRank) {
  load("7k/8/8/8/8/8/8/K1W1W3 w 0 1");
  EXPECT_EQ(moveToSan(pos, word("c1d2")), "Wcd2");
  load("7k/8/8/8/2W5/8/2W5/K7 w 0 1");
  EXPECT_EQ(moveToSan(pos, word("c2c3")), "W2c3");
  load("7k/8/8/8/2W5/8/2W1W3/K7 w 0 1");
  EXPECT_EQ(moveToSan(pos, word("c2d3")), "Wc2d3");
  // A pinned twin does not count.
  load("7k/8/8/8/8/8/8/K1W1W3 w 0 1");
  EXPECT_EQ(moveToSan(pos, word("c1c3")), "Wcc3");
}

TEST_F(NotationTest, WordsBackToMoves) {
  load("7k/8/1S6/8/8/8/8/K7 w 0 1");
  {
    CaptureStdout out;
    EXPECT_EQ(word("b6"), MoveNone);
    EXPECT_EQ(out.text(), "?Illegal move b6\n");
  }
  CaptureStdout out;
  EXPECT_EQ(word("z6a7"), MoveNone);
  EXPECT_EQ(word("c3c4"), MoveNone);  // nothing on the from square
  EXPECT_EQ(out.text(), "");
  // A fifth letter is folded and ignored by the square reader, but matches no wire form.
  EXPECT_EQ(word("b6a7X"), makeMove(B6, A7, Promotion));
  std::string text = "b6a7w";
  EXPECT_EQ(moveFromLegalList(pos, text), MoveNone);
  text = "b6a7";
  EXPECT_EQ(moveFromLegalList(pos, text), makeMove(B6, A7, Promotion));
}

TEST(ScoreText, UciForm) {
  setPieceValues(Position());
  EXPECT_EQ(scoreToUci(-30000, -ValueInfinite, ValueInfinite), "mate 0");
  EXPECT_EQ(scoreToUci(29995, -ValueInfinite, ValueInfinite), "mate 3");
  EXPECT_EQ(scoreToUci(-29990, -ValueInfinite, ValueInfinite), "mate -5");
  EXPECT_EQ(scoreToUci(0, -ValueInfinite, ValueInfinite), "cs 0");
  int shown = 0;
  EXPECT_EQ(scoreToUci(250, -ValueInfinite, ValueInfinite, &shown), "cs 125");
  EXPECT_EQ(shown, 125);
  EXPECT_EQ(scoreToUci(10, 10, 20), "cs 5 upperbound");
  EXPECT_EQ(scoreToUci(5, 10, 20), "cs 2 upperbound");
  EXPECT_EQ(scoreToUci(20, 10, 20), "cs 10 lowerbound");
  EXPECT_EQ(scoreToUci(10, 10, 10), "cs 5 lowerbound");
}

TEST(ScoreText, ConsoleForm) {
  setPieceValues(Position());
  EXPECT_EQ(scoreToText(250), "+1.25");
  EXPECT_EQ(scoreToText(-60), "-0.30");
  EXPECT_EQ(scoreToText(0), "+0.00");
  EXPECT_EQ(scoreToText(29995), "#3");
  EXPECT_EQ(scoreToText(-29990), "-#5");
}

TEST(TimeText, MinutesSecondsAndHours) {
  EXPECT_EQ(timeToText(7000), "00:07");
  EXPECT_EQ(timeToText(754999), "12:34");
  EXPECT_EQ(timeToText(3723000), "1:02:03");
}

TEST_F(NotationTest, PrettyPvWrapsAt80Columns) {
  load("7k/8/8/8/8/8/8/K7 w 0 1");
  const Move none[] = {MoveNone};
  EXPECT_EQ(prettyPv(pos, 3, 250, 7000, none), " 3   +1.25   00:07       0  ");
  // Leaders walking back and forth: a long line that must wrap.
  std::vector<Move> line;
  for (int i = 0; i < 8; ++i) {
    line.push_back(makeMove(i % 2 ? B2 : A1, i % 2 ? A1 : B2));
    line.push_back(makeMove(i % 2 ? G7 : H8, i % 2 ? H8 : G7));
  }
  line.push_back(MoveNone);
  Key before = pos.key();
  std::string text = prettyPv(pos, 12, 0, 1000, line.data());
  EXPECT_EQ(pos.key(), before);
  size_t header = std::string(" 3   +1.25   00:07       0  ").size();
  size_t start = 0;
  int rows = 0;
  for (size_t nl; (nl = text.find('\n', start)) != std::string::npos; start = nl + 1, ++rows) {
    EXPECT_LE(nl - start, 80u);
    EXPECT_EQ(text.substr(nl + 1, header), std::string(header, ' '));
  }
  EXPECT_GE(rows, 1);
  EXPECT_EQ(text.find("Kb2 Kg7 Ka1 Kh8 "), header);
}

// Move words, score packing and square text forms.
#include <gtest/gtest.h>

#include "core/prng.h"
#include "core/types.h"

TEST(MoveWord, NullMoveIsFromEqualsToB1) {
  EXPECT_EQ(moveFrom(MoveNull), B1);
  EXPECT_EQ(moveTo(MoveNull), B1);
  EXPECT_EQ(captiveKind(MoveNull), 0);
  EXPECT_EQ(specialKind(MoveNull), 0);
}

TEST(MoveWord, FlagFieldsAreIndependent) {
  Move m = makeMove(B6, B7, Promotion | Dropoff);
  EXPECT_EQ(m & 0xF000, 0x5000);
  EXPECT_TRUE(isPromotion(m));
  EXPECT_TRUE(isDropoff(m));
  EXPECT_FALSE(isPickup(m));
  EXPECT_FALSE(isExchange(m));
  EXPECT_EQ(moveFrom(m), B6);
  EXPECT_EQ(moveTo(m), B7);
  Move x = makeMove(E2, E3, Exchange | Pickup);
  EXPECT_TRUE(isExchange(x));
  EXPECT_FALSE(isDemotion(x));
  EXPECT_FALSE(isPromotion(x));
  EXPECT_TRUE(isPickup(x));
  EXPECT_FALSE(isTransfer(x));
}

TEST(ScorePacking, SurvivesNegativeHalves) {
  for (int mg : {-3000, -1, 0, 1, 10, 2500})
    for (int eg : {-3000, -1, 0, 1, 2500}) {
      Score s = makeScore(mg, eg);
      EXPECT_EQ(mgValue(s), mg) << mg << "," << eg;
      EXPECT_EQ(egValue(s), eg) << mg << "," << eg;
    }
  Score sum = makeScore(10, -1) + makeScore(-30, -5) - makeScore(5, 7);
  EXPECT_EQ(mgValue(sum), -25);
  EXPECT_EQ(egValue(sum), -13);
}

TEST(SquareText, ParseAndPrint) {
  EXPECT_EQ(parseSquare("e2"), E2);
  EXPECT_EQ(parseSquare("E2"), E2);
  EXPECT_EQ(parseSquare("h8xyz"), H8);
  EXPECT_EQ(parseSquare("i1"), NoSquare);
  EXPECT_EQ(parseSquare("a9"), NoSquare);
  EXPECT_EQ(parseSquare("a0"), NoSquare);
  EXPECT_EQ(parseSquare("a"), NoSquare);
  EXPECT_EQ(parseSquare(""), NoSquare);
  EXPECT_EQ(squareToString(A1), "a1");
  EXPECT_EQ(squareToString(NoSquare), "-");
  EXPECT_EQ(squareToStringUpper(H8), "H8");
  EXPECT_EQ(squareToStringUpper(NoSquare), "-");
  EXPECT_EQ(squareToStringUpper(65), "??");
}

TEST(PieceNumbering, ColourIsBitFour) {
  Piece p = makePiece(BLACK, Dorn_sword);
  EXPECT_EQ(p, 27);
  EXPECT_EQ(colorOf(p), BLACK);
  EXPECT_EQ(typeOf(p), Dorn_sword);
  EXPECT_EQ(fenLetters[p], 'i');
  EXPECT_EQ(fenLetters[makePiece(WHITE, Magician2)], 'H');
  EXPECT_EQ(boardLetters[makePiece(WHITE, Dorn_archer)], 'K');
  EXPECT_EQ(firstMarks[makePiece(WHITE, Dorn_archer)], 'A');
  EXPECT_EQ(secondMarks[makePiece(BLACK, Dorn_sword)], '-');
}

TEST(PrngTest, IsDeterministic) {
  Prng a(73), b(73);
  for (int i = 0; i < 10; ++i) EXPECT_EQ(a.next(), b.next());
  Prng c(0), d(1);
  c.next();
  EXPECT_EQ(c.next(), d.next());
}

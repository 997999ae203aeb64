// Piece terms on hand-built positions: mobility rows, attack sets of mounts behind friends,
// Sword penalties and areas, outposts with their support, and pins against one or two leaders.
#include <gtest/gtest.h>

#include "core/bitboard.h"
#include "game/attacks.h"
#include "piece_passes.h"

using namespace eval_test;

namespace {

constexpr Bitboard bb(Square s) { return Bitboard(1) << s; }

class PiecesTest : public PiecePassesTest {
 protected:
  Score whiteMobility(const std::string& fen) {
    loadAndPass(fen);
    return ei.mobility[WHITE];
  }
  Score whiteTerm(const std::string& fen, PieceType t) {
    loadAndPass(fen);
    return terms[WHITE][t];
  }
};

TEST_F(PiecesTest, MobilityRowOfEachFamily) {
  // Leaders alone count nothing; each case adds one White piece (the Dorns on h1 and a8 are not counted).
  EXPECT_EQ(whiteMobility("k7/8/8/8/8/8/8/7K w 0 1"), 0);
  EXPECT_EQ(whiteMobility("k7/8/8/8/8/2s5/8/S6K w 0 1"), makeScore(-30, -25));  // b2 is covered by c3
  EXPECT_EQ(whiteMobility("k7/8/8/7K/7G/8/8/8 w 0 1"), makeScore(18, 12));      // h3, g4: h5 is own
  EXPECT_EQ(whiteMobility("k7/8/8/8/8/8/K7/N7 w 0 1"), makeScore(-12, -13));    // b1, c1; a3 is behind a2
  EXPECT_EQ(whiteMobility("k7/8/8/8/8/8/8/M6K w 0 1"), makeScore(10, 17));      // a2 a3 b1 c1 c3
  EXPECT_EQ(whiteMobility("k7/8/8/8/8/8/8/W6K w 0 1"), makeScore(8, 23));
  EXPECT_EQ(whiteMobility("k7/8/8/8/3W4/8/8/7K w 0 1"), makeScore(28, 42));  // 24 squares, the row's end
  // The leaps follow the demotion reach in force: one extended square adds a4, d1 and d4.
  magicianExtendedDemotionSqs = 1;
  EXPECT_EQ(whiteMobility("k7/8/8/8/8/8/8/M6K w 0 1"), makeScore(25, 30));
  // A Bondsman counts only while it does not lead: 24 near squares and 4 at distance 3.
  EXPECT_EQ(whiteMobility("k7/8/8/8/3F4/8/8/7K w 0 1"), 0);
  bondsmenLeaders = 0;
  EXPECT_EQ(whiteMobility("k7/8/8/8/3F4/8/8/7K w 0 1"), makeScore(30, 44));
}

TEST_F(PiecesTest, SwordsKeepMountsAwayOnlyWhereTheyTakeThem) {
  // The Black Sword on b2 attacks the Warrior on a1 and its squares a3 and c1.
  const char* fen = "k7/8/8/8/8/8/1s6/W6K w 0 1";
  EXPECT_EQ(whiteMobility(fen), makeScore(5, 19));  // a2 a3 b1 b2 b3 c1 c2; c3 only through b2
  EXPECT_EQ(terms[WHITE][Warrior], 0);
  swordsCaptureMounts = 1;
  EXPECT_EQ(whiteMobility(fen), makeScore(0, 7));  // a3 and c1 drop out
  EXPECT_EQ(terms[WHITE][Warrior], makeScore(-56, -70));
}

TEST_F(PiecesTest, MountsCountSquaresBehindFriends) {
  // A Dorn counts f6 behind its Warrior on e5, and g7 once a second Warrior stands on f6.
  loadAndPass("k7/8/8/4W3/3K4/8/8/8 w 0 1");
  EXPECT_TRUE(ei.attackedBy[WHITE][Dorn] & bb(F6));
  EXPECT_FALSE(ei.attackedBy[WHITE][Dorn] & bb(G7));
  loadAndPass("k7/8/5W2/4W3/3K4/8/8/8 w 0 1");
  EXPECT_TRUE(ei.attackedBy[WHITE][Dorn] & bb(G7));
  // An orthogonal neighbour opens nothing: the set is the Dorn's plain one.
  loadAndPass("k7/8/8/8/3KW3/8/8/8 w 0 1");
  EXPECT_EQ(ei.attackedBy[WHITE][Dorn], dornAttacks(pos, D4, pos.pieces()));
  // An own Archer is looked through, an enemy one is not.
  whiteMobility("k7/8/8/4A3/3W4/8/8/7K w 0 1");
  EXPECT_TRUE(ei.attackedBy[WHITE][Warrior] & bb(F6));
  whiteMobility("k7/8/8/4a3/3W4/8/8/7K w 0 1");
  EXPECT_FALSE(ei.attackedBy[WHITE][Warrior] & bb(F6));
  // A Bondsman reaches g4 behind its Warrior on f4.
  whiteMobility("k7/8/8/8/3F1W2/8/8/7K w 0 1");
  EXPECT_TRUE(ei.attackedBy[WHITE][Bondsman] & bb(G4));
}

TEST_F(PiecesTest, OutpostSupportCountsAsTheSetsStandWhenThePieceIsReached) {
  // Assassin d5 (table 26), covered by the Sword on c4 and the Archer on e6. Archers come after
  // Assassins, so only the Sword supports it: 26 * 3 / 4 = 19, doubled and a half with no enemy
  // Assassin left: 47.
  EXPECT_EQ(whiteTerm("k7/8/4A3/3N4/2S5/8/8/7K w 0 1", Assassin), makeScore(47, 23));
  EXPECT_EQ(whiteTerm("k6n/8/4A3/3N4/2S5/8/8/7K w 0 1", Assassin), makeScore(28, 14));
  // No Sword: unsupported, the plain table value.
  EXPECT_EQ(whiteTerm("k7/8/4A3/3N4/8/8/8/7K w 0 1", Assassin), makeScore(26, 13));
  // An enemy Magician1 one step away spoils the outpost and attacks the Assassin.
  EXPECT_EQ(whiteTerm("k7/8/3g4/3N4/2S5/8/8/7K w 0 1", Assassin), makeScore(-30, -35));
  // Black reads the table by rank flip: Archer d4 for Black is d5 for White (30), supported by
  // the Assassin on d3 and contested by a White Archer: 30 + 15.
  loadAndPass("k7/8/8/8/3a4/3n4/8/A6K w 0 1");
  EXPECT_EQ(terms[BLACK][Archer], makeScore(45, 22));
}

TEST_F(PiecesTest, PinsAgainstOneOrTwoLeaders) {
  // The Archer on e7 stands between the Warrior on e6 and the sole leader on e8.
  EXPECT_EQ(whiteTerm("4k3/4a3/4W3/8/8/8/8/7K b 0 1", Warrior), makeScore(15, 39));
  // With a second leader the three ways in must all be held, and all three pieces pay.
  EXPECT_EQ(whiteTerm("f3k3/4a3/4W3/8/8/8/8/7K b 0 1", Warrior), 0);
  EXPECT_EQ(whiteTerm("f3k3/3sas2/4W3/8/8/8/8/7K w 0 1", Warrior), makeScore(7 + 7 + 15, 25 + 25 + 39));
  // A dearer pinner does not count against a cheaper leader, one of several, but does against a sole one.
  EXPECT_EQ(whiteTerm("f3i3/3sas2/4W3/8/8/8/8/7K w 0 1", Warrior), 0);
  EXPECT_EQ(whiteTerm("4i3/4a3/4W3/8/8/8/8/7K b 0 1", Warrior), makeScore(15, 39));
  // The Bondsman on e8 beside the Dorn on a8 is a target of its own while Bondsmen lead.
  const char* second = "k3f3/4a3/4N3/8/8/8/8/7K w 0 1";
  EXPECT_EQ(whiteTerm(second, Assassin), makeScore(24, 49));
  bondsmenLeaders = 0;
  EXPECT_EQ(whiteTerm(second, Assassin), 0);
}

}  // namespace

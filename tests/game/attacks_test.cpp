// Attacks in a position: standing towers block like pieces, breached ones do not, and the long
// lines of Bondsman and Dorn are looked up only when the caller's targets meet them.
#include <gtest/gtest.h>

#include "game/attacks.h"
#include "game/position.h"
#include "game/rules.h"
#include "../support/position_fixture.h"

namespace {

constexpr Bitboard bb(Square s) { return Bitboard(1) << s; }

class AttacksTest : public PositionFixture {
 protected:
  void load(int gameType, const std::string& fen) {
    setSiegeModes(gameType);
    PositionFixture::load(fen);
  }
};

}  // namespace

TEST_F(AttacksTest, StandingTowersBlockWalkersRunnersAndLines) {
  // Siege 1 tower d4 e4 d5 e5; a Dorn on c3 and a Bondsman on c6.
  load(3, "k7/8/2F5/8/8/2K5/8/8 w 0 1");
  Bitboard dorn = dornAttacks(pos, C3, pos.pieces());
  EXPECT_TRUE(dorn & bb(D4));          // the tower square itself is reached
  EXPECT_FALSE(dorn & bb(E5));         // only through d4, which stands
  EXPECT_FALSE(dorn & bb(F6));         // the diagonal line stops at d4
  EXPECT_TRUE(dorn & bb(F3));          // the rank is open
  EXPECT_EQ(warriorAttacks(pos, C3, pos.pieces()) & bb(E5), 0u);
  EXPECT_TRUE(warriorAttacks(pos, C3, pos.pieces(), true) & bb(E5));  // caller's occupancy lacks the tower
  EXPECT_TRUE(bondsmanAttacks(pos, C6, pos.pieces()) & bb(F6));  // rank 6 runs above the tower
  Bitboard assassinOnD3 = assassinAttacks(pos, D3, pos.pieces());
  EXPECT_TRUE(assassinOnD3 & bb(D4));
  EXPECT_FALSE(assassinOnD3 & bb(D5));
}

TEST_F(AttacksTest, BreachedSquaresAreOpen) {
  load(3, "k7/8/8/8/8/2K5/8/8 w 0 1 - Tower { D4 E4 D5 E5 } Breached { D4 E5 }");
  Bitboard dorn = dornAttacks(pos, C3, pos.pieces());
  EXPECT_TRUE(dorn & bb(E5));
  EXPECT_TRUE(dorn & bb(F6));
}

TEST_F(AttacksTest, SiegeTwoTowersOfBothColoursBlock) {
  load(4, "f7/8/8/8/8/8/8/7F w 0 1");
  // White's tower h5 h6 and Black's a3 a4 both stand.
  EXPECT_FALSE(dornAttacks(pos, H3, pos.pieces()) & bb(H6));
  EXPECT_FALSE(dornAttacks(pos, A1, pos.pieces()) & bb(A4));
  EXPECT_TRUE(dornAttacks(pos, A1, pos.pieces()) & bb(A3));
}

TEST_F(AttacksTest, LongLinesOnlyWhenTheTargetsMeetThem) {
  load(1, "k7/8/8/8/8/8/8/7K w 0 1");
  EXPECT_TRUE(dornAttacks(pos, D4, pos.pieces()) & bb(G7));
  EXPECT_TRUE(dornAttacks(pos, D4, pos.pieces(), bb(G7)) & bb(G7));
  EXPECT_FALSE(dornAttacks(pos, D4, pos.pieces(), bb(E5)) & bb(G7));
  EXPECT_FALSE(dornAttacks(pos, D4, pos.pieces(), bb(G7)) & bb(D7));  // rook lines skipped
  EXPECT_TRUE(bondsmanAttacks(pos, D4, pos.pieces(), bb(D7)) & bb(D7));
  EXPECT_FALSE(bondsmanAttacks(pos, D4, pos.pieces()) & bb(G7));
}

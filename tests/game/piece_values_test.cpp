// Rule-dependent piece values and the order of types by value.
#include <gtest/gtest.h>

#include "core/bitboard.h"
#include "core/psqt.h"
#include "game/piece_values.h"
#include "game/position.h"
#include "game/rules.h"

namespace {

struct RulesGuard {
  ~RulesGuard() {
    resetRuleFlags();
    setSiegeModes(1);
    setPieceValues(Position());
  }
};

std::pair<Value, Value> valuesOf(PieceType t) { return {pieceValueMg[t], pieceValueEg[t]}; }

}  // namespace

TEST(PieceValues, LeadingBondsmenWithoutSwordCaptures) {
  RulesGuard guard;
  bondsmenLeaders = 1;
  swordsCaptureMounts = 0;
  setPieceValues(Position());
  EXPECT_EQ(valuesOf(Sword), std::make_pair(200, 205));
  EXPECT_EQ(valuesOf(Bondsman), std::make_pair(2100, 2200));
  EXPECT_EQ(valuesOf(Dorn), std::make_pair(2300, 2500));
  EXPECT_EQ(valuesOf(Dorn_archer), std::make_pair(1150, 1170));
  EXPECT_EQ(valuesOf(Dorn_sword), std::make_pair(825, 835));
}

TEST(PieceValues, FlagsChangeDerivedRowsAndBlackTwins) {
  RulesGuard guard;
  bondsmenLeaders = 0;
  swordsCaptureMounts = 1;
  magicianExtendedDemotionSqs = 2;
  powerMagicianExtendedDemotionSqs = 1;
  setPieceValues(Position());
  EXPECT_EQ(valuesOf(Sword), std::make_pair(275, 275));
  EXPECT_EQ(valuesOf(Bondsman), std::make_pair(1800, 1900));
  EXPECT_EQ(valuesOf(Dorn), std::make_pair(2000, 2200));
  EXPECT_EQ(valuesOf(Dorn_sword), std::make_pair(275 + 2000 - 1675, 275 + 2000 - 1665));
  EXPECT_EQ(valuesOf(Magician), std::make_pair(2250, 1800));
  EXPECT_EQ(valuesOf(Magician2), std::make_pair(1850, 1550));
  for (int t = 1; t < PieceTypeNb; ++t) {
    EXPECT_EQ(pieceValueMg[t + 16], pieceValueMg[t]);
    EXPECT_EQ(pieceValueEg[t + 16], pieceValueEg[t]);
  }
  // psq carries the new material, mirrored by a rank flip for Black.
  EXPECT_EQ(mgValue(psq[makePiece(WHITE, Magician)][D4]), 2250 + 41);
  EXPECT_EQ(psq[makePiece(BLACK, Magician)][flipRank(D4)], -psq[makePiece(WHITE, Magician)][D4]);
  // The demotion reach follows the extension: row 40 reaches four squares away.
  EXPECT_TRUE(reach[Magician][D5] & squareBit[H5]);
  EXPECT_FALSE(reach[Magician2][D5] & squareBit[H5]);
  EXPECT_TRUE(reach[Magician2][D5] & squareBit[G5]);
}

TEST(PieceValues, WholeSiegeTowerRaisesMagicians) {
  RulesGuard guard;
  setSiegeModes(3);
  applySiegeGeometryDefaults();
  Position pos;
  pos.siege1Tower = siege1TowerSquares;
  setPieceValues(pos);
  EXPECT_EQ(valuesOf(Magician), std::make_pair(1225, 775));
  EXPECT_EQ(valuesOf(Magician2), std::make_pair(1750, 1450));
  pos.siege1Tower &= ~squareBit[D4];
  setPieceValues(pos);
  EXPECT_EQ(valuesOf(Magician), std::make_pair(1025, 575));
  EXPECT_EQ(valuesOf(Magician2), std::make_pair(1450, 1150));
}

TEST(PieceValues, TypeOrderPutsMagiciansAfterTheFiveCheapest) {
  RulesGuard guard;
  setPieceValues(Position());
  const PieceType usual[PieceTypeNb] = {NoPieceType, Sword, Magician1, Assassin, Archer, Magician,
                                        Magician2, Dorn_sword, Dorn_archer, Warrior, Bondsman, Dorn};
  for (int i = 0; i < PieceTypeNb; ++i) EXPECT_EQ(valueTypeOrder[i], usual[i]) << i;
  // A dear Magician stays in the Magician slots even when it outvalues the Warrior.
  magicianExtendedDemotionSqs = 2;
  setPieceValues(Position());
  EXPECT_EQ(valueTypeOrder[5], Magician2);
  EXPECT_EQ(valueTypeOrder[6], Magician);
  EXPECT_EQ(valueTypeOrder[7], Dorn_sword);
}

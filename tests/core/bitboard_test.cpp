// Geometry tables and the hashed walker, runner and line lookups against independent definitions.
#include <gtest/gtest.h>

#include <cstdlib>
#include <initializer_list>

#include "core/bitboard.h"
#include "core/prng.h"

namespace {

class BitboardEnvironment : public ::testing::Environment {
 public:
  void SetUp() override { initBitboards(); }
};
[[maybe_unused]] const auto* const bitboardEnvironment =
    ::testing::AddGlobalTestEnvironment(new BitboardEnvironment);

Bitboard bits(std::initializer_list<Square> squares) {
  Bitboard b = 0;
  for (Square s : squares) b |= Bitboard(1) << s;
  return b;
}

int dist(Square a, Square b) {
  return std::max(std::abs(fileOf(a) - fileOf(b)), std::abs(rankOf(a) - rankOf(b)));
}

// Coordinate-based references that share nothing with the tables under test.
Bitboard walkerReference(Square s, Bitboard occ) {
  Bitboard result = 0;
  for (Square t = 0; t < 64; ++t) {
    if (dist(s, t) == 1) result |= Bitboard(1) << t;
    if (dist(s, t) != 2) continue;
    for (Square n = 0; n < 64; ++n)
      if (dist(s, n) == 1 && dist(n, t) == 1 && !(occ >> n & 1)) result |= Bitboard(1) << t;
  }
  return result;
}

Bitboard runnerReference(Square s, Bitboard occ) {
  Bitboard result = 0;
  for (Square t = 0; t < 64; ++t) {
    bool orthogonal = fileOf(s) == fileOf(t) || rankOf(s) == rankOf(t);
    if (orthogonal && (dist(s, t) == 1 || (dist(s, t) == 2 && !(occ >> ((s + t) / 2) & 1))))
      result |= Bitboard(1) << t;
  }
  return result;
}

Bitboard rayReference(Square s, Bitboard occ, bool diagonal) {
  Bitboard result = 0;
  for (int df = -1; df <= 1; ++df)
    for (int dr = -1; dr <= 1; ++dr) {
      if ((df == 0 && dr == 0) || ((df != 0 && dr != 0) != diagonal)) continue;
      for (int f = fileOf(s) + df, r = rankOf(s) + dr; f >= 0 && f < 8 && r >= 0 && r < 8; f += df, r += dr) {
        result |= Bitboard(1) << makeSquare(f, r);
        if (occ >> makeSquare(f, r) & 1) break;
      }
    }
  return result;
}

}  // namespace

TEST(Bitboard, BuildReportsNoClashAndIsRepeatable) {
  Bitboard rookMagic = rookMagics[37].magic, bishopMagic = bishopMagics[5].magic;
  testing::internal::CaptureStdout();
  initBitboards();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(rookMagics[37].magic, rookMagic);
  EXPECT_EQ(bishopMagics[5].magic, bishopMagic);
  // Each square's part follows the previous one and the parts fill the fixed sizes exactly.
  for (Square s = 1; s < 64; ++s) {
    EXPECT_EQ(rookMagics[s].attacks, rookMagics[s - 1].attacks + (1 << (64 - rookMagics[s - 1].shift)));
    EXPECT_EQ(bishopMagics[s].attacks, bishopMagics[s - 1].attacks + (1 << (64 - bishopMagics[s - 1].shift)));
  }
  EXPECT_EQ(rookMagics[63].attacks + (1 << (64 - rookMagics[63].shift)) - rookMagics[0].attacks, 102400);
  EXPECT_EQ(bishopMagics[63].attacks + (1 << (64 - bishopMagics[63].shift)) - bishopMagics[0].attacks, 5248);
}

TEST(Bitboard, HashedWalkerAndRunnerMatchDefinitionForEveryPattern) {
  Prng rng(7);
  for (Square s = 0; s < 64; ++s) {
    Bitboard ring = reach[NeighbourRow][s];
    Bitboard b = 0;
    do {
      // Far-away pieces must not disturb the key.
      Bitboard occ = b | (rng.next() & ~ring & ~squareBit[s]);
      Bitboard expected = walkerReference(s, b);
      ASSERT_EQ(warriorAttacksSlow(s, occ), expected) << squareToString(s) << " occ " << occ;
      ASSERT_EQ(warriorLookup(s, occ), expected) << squareToString(s) << " occ " << occ;
      b = (b - ring) & ring;
    } while (b);

    Bitboard cross = reach[Assassin][s];
    b = 0;
    do {
      Bitboard occ = b | (rng.next() & ~cross & ~squareBit[s]);
      Bitboard expected = runnerReference(s, b);
      ASSERT_EQ(assassinAttacksSlow(s, occ), expected) << squareToString(s) << " occ " << occ;
      ASSERT_EQ(assassinLookup(s, occ), expected) << squareToString(s) << " occ " << occ;
      b = (b - cross) & cross;
    } while (b);
  }
}

TEST(Bitboard, EmptySlotLooksUpAsZero) {
  Bitboard key = warriorKey(D4, 0);
  Bitboard& slot = warriorTable[D4][key % WarriorSlots];
  Bitboard saved = slot;
  slot = 0;
  EXPECT_EQ(warriorLookup(D4, 0), 0u);
  slot = saved;
  Bitboard& runnerSlot = assassinTable[A1][assassinKey(A1, 0) % AssassinSlots];
  saved = runnerSlot;
  runnerSlot = 0;
  EXPECT_EQ(assassinLookup(A1, 0), 0u);
  runnerSlot = saved;
}

TEST(Bitboard, LinesMatchRayWalk) {
  Prng rng(11);
  for (Square s = 0; s < 64; ++s)
    for (int i = 0; i < 600; ++i) {
      // Sparse, medium and dense boards.
      Bitboard occ = rng.next();
      if (i % 3 == 0) occ &= rng.next() & rng.next();
      if (i % 3 == 1) occ &= rng.next();
      ASSERT_EQ(rookLines(s, occ), rayReference(s, occ, false)) << squareToString(s) << " occ " << occ;
      ASSERT_EQ(bishopLines(s, occ), rayReference(s, occ, true)) << squareToString(s) << " occ " << occ;
    }
}

TEST(Bitboard, WalkerBlockingCases) {
  EXPECT_EQ(warriorLookup(A1, 0), bits({A2, A3, B1, B2, B3, C1, C2, C3}));
  EXPECT_EQ(warriorLookup(A1, bits({B1, A2, B2})), bits({B1, A2, B2}));
  // f5 from d5 has three ways in; it falls only when all three are closed.
  for (int mask = 0; mask < 8; ++mask) {
    Bitboard occ = (mask & 1 ? squareBit[E4] : 0) | (mask & 2 ? squareBit[E5] : 0) | (mask & 4 ? squareBit[E6] : 0);
    EXPECT_EQ(bool(warriorLookup(D5, occ) & squareBit[F5]), mask != 7) << mask;
  }
  // The diagonal corner f7 has e6 as its only way in.
  EXPECT_FALSE(warriorLookup(D5, squareBit[E6]) & squareBit[F7]);
  EXPECT_TRUE(warriorLookup(D5, squareBit[E5] | squareBit[D6]) & squareBit[F7]);
  // A key on the h-file holds no wrapped square.
  EXPECT_EQ(warriorKey(H4, ~0ULL), reach[NeighbourRow][H4] | squareBit[H4]);
  EXPECT_EQ(warriorLookup(H4, ~0ULL), bits({G3, G4, G5, H3, H5}));

  EXPECT_EQ(assassinLookup(A1, 0), bits({A2, B1, A3, C1}));
  EXPECT_EQ(assassinLookup(A1, squareBit[A2]), bits({A2, B1, C1}));
  EXPECT_EQ(assassinLookup(A1, bits({A2, B1})), bits({A2, B1}));
}

TEST(Bitboard, ReachRows) {
  // Demotion reach leaps two squares orthogonally and diagonally but has no diagonal neighbour.
  EXPECT_EQ(reach[Magician][D4], bits({C4, E4, D3, D5, B4, F4, D2, D6, B2, F2, B6, F6}));
  Bitboard row40 = reach[DemotionReach0 + 2][D5];
  EXPECT_EQ(row40 & bits({H5, D1, H1}), bits({H5, D1, H1}));
  EXPECT_FALSE(row40 & bits({C4, C6, E4, E6}));
  EXPECT_EQ(popcount(row40), 12 + 8 + 3);  // distance 4 adds only h5, d1 and h1
  EXPECT_EQ(reach[DemotionReach0 + 1][A1], bits({A2, B1, A3, C1, C3, A4, D1, D4}));

  EXPECT_EQ(reach[WarriorRing][A1], bits({A3, C1, B3, C2}));
  EXPECT_EQ(popcount(reach[WarriorRing][D4]), 12);
  EXPECT_EQ(popcount(reach[DistanceTwo][D4]), 16);
  EXPECT_EQ(reach[DornLong][D4], bits({A4, G4, D1, D7, A1, G1, A7, G7}));
  EXPECT_EQ(reach[BondsmanLong][H8], bits({E8, H5}));
  EXPECT_EQ(reach[DornDiagonalLong][B2], squareBit[E5]);
  // Black rows mirror white rows; the long rows live only in the white slots.
  for (int t = 0; t < 12; ++t)
    for (Square s = 0; s < 64; ++s)
      if (t == BondsmanLong || t == DornLong)
        ASSERT_EQ(reach[t + 16][s], 0u);
      else
        ASSERT_EQ(reach[t + 16][s], reach[t][s]) << t;
}

TEST(Bitboard, ViaSets) {
  EXPECT_EQ(warriorVia[D4][F4], bits({E3, E4, E5}));
  EXPECT_EQ(warriorVia[D4][F5], bits({E4, E5}));
  EXPECT_EQ(warriorVia[D4][E6], bits({D5, E5}));
  EXPECT_EQ(warriorVia[A1][C1], bits({B1, B2}));
  EXPECT_EQ(warriorViaCount[D4][D6], 3);
  EXPECT_EQ(warriorVia[D4][F6], 0u);
  EXPECT_EQ(warriorViaCount[D4][F6], 0);
  EXPECT_EQ(assassinVia[D4][D6], squareBit[D5]);
  EXPECT_EQ(assassinVia[D4][B4], squareBit[C4]);
  EXPECT_EQ(assassinVia[D4][F5], 0u);
}

TEST(Bitboard, BetweenAndDistance) {
  EXPECT_EQ(between[A1][H8], bits({B2, C3, D4, E5, F6, G7}));
  EXPECT_EQ(between[H1][A8], bits({G2, F3, E4, D5, C6, B7}));
  EXPECT_EQ(between[D4][F6], squareBit[E5]);
  EXPECT_EQ(between[A2][H1], 0u);  // neighbours in numbering, not on a line
  EXPECT_EQ(between[A1][B3], 0u);
  for (Square s = 0; s < 64; ++s)
    for (Square t = 0; t < 64; ++t) {
      ASSERT_EQ(squareDistance[s][t], dist(s, t));
      ASSERT_EQ(between[s][t], between[t][s]);
      bool onLine = s != t && ((rayReference(s, 0, false) | rayReference(s, 0, true)) >> t & 1);
      ASSERT_EQ(popcount(between[s][t]), onLine ? dist(s, t) - 1 : 0) << s << " " << t;
    }
}

TEST(Bitboard, PseudoAttacksAndZones) {
  const int fromD4[12] = {0, 4, 4, 8, 8, 12, 24, 12, 28, 32, 8, 4};
  for (int t = 0; t < 12; ++t) EXPECT_EQ(popcount(pseudoAttacks[t][D4]), fromD4[t]) << t;
  EXPECT_EQ(pseudoAttacks[Assassin][D4], reach[Assassin][D4] | reach[AssassinSecond][D4]);
  EXPECT_EQ(pseudoAttacks[Dorn][A1], reach[Warrior][A1] | bits({A4, D1, D4}));

  EXPECT_EQ(promotionZone[WHITE], bits({A7, B7, A8, B8}));
  EXPECT_EQ(promotionZone[BLACK], bits({G1, H1, G2, H2}));
}

TEST(Bitboard, DemotionReachIsRewrittenButPseudoAttacksAreNot) {
  setDemotionReach(Magician, DemotionReach0 + 2);
  setDemotionReach(Magician2, DemotionReach0 + 1);
  for (Square s = 0; s < 64; ++s) {
    ASSERT_EQ(reach[Magician][s], reach[DemotionReach0 + 2][s]);
    ASSERT_EQ(reach[Magician + 16][s], reach[DemotionReach0 + 2][s]);
    ASSERT_EQ(reach[Magician2 + 16][s], reach[DemotionReach0 + 1][s]);
    ASSERT_EQ(pseudoAttacks[Magician][s], reach[DemotionReach0][s]);
    ASSERT_EQ(pseudoAttacks[Magician2][s], reach[DemotionReach0][s]);
  }
  setDemotionReach(Magician, DemotionReach0);
  setDemotionReach(Magician2, DemotionReach0);
  EXPECT_EQ(reach[Magician][D4], reach[DemotionReach0][D4]);
}

TEST(Bitboard, PrintFormat) {
  testing::internal::CaptureStdout();
  printBitboard("b=\n", bits({A1, H8, C2}));
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "b=\n"
            "0 0 0 0 0 0 0 1 \n"
            "0 0 0 0 0 0 0 0 \n"
            "0 0 0 0 0 0 0 0 \n"
            "0 0 0 0 0 0 0 0 \n"
            "0 0 0 0 0 0 0 0 \n"
            "0 0 0 0 0 0 0 0 \n"
            "0 0 1 0 0 0 0 0 \n"
            "1 0 0 0 0 0 0 0 \n");
}

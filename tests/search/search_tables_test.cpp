// The search's tables against numbers worked out by hand.
#include "search/search_tables.h"

#include <gtest/gtest.h>

TEST(SearchTables, FutilityMarginsStepWithTheSquareOfTheDepth) {
  const int firstColumn[] = {45, 269, 381, 493, 493, 605, 605, 717};
  for (int d = 1; d <= 8; ++d) EXPECT_EQ(futilityMargin(d, 0), firstColumn[d - 1]) << d;
  EXPECT_EQ(futilityMargin(0, 0), 45);    // depths below 1 read row 1
  EXPECT_EQ(futilityMargin(-3, 2), 29);
  EXPECT_EQ(futilityMargin(3, 5), 381 - 40);
  EXPECT_EQ(futilityMargin(3, 200), 381 - 8 * 63);  // the move count is capped
  EXPECT_EQ(futilityMargin(13, 0), FutilityMargins[13][0]);
  EXPECT_EQ(futilityMargin(14, 0), 60002);  // nothing is pruned that deep
}

TEST(SearchTables, FutilityMoveCountsAndReductions) {
  const int counts[] = {3, 3, 4, 5, 7, 9, 12, 15, 19, 23, 28, 33, 39, 45, 52, 59, 67};
  for (int d = 0; d < 17; ++d) EXPECT_EQ(FutilityMoveCounts[d], counts[d]) << d;

  for (int i = 0; i < 64; ++i) {
    EXPECT_EQ(ReductionsNonPV[0][i] | ReductionsNonPV[i][0] | ReductionsPV[0][i] | ReductionsPV[i][0], 0);
  }
  // ln 2 * ln 2 is small: no reduction in either kind; the first reductions are whole plies.
  EXPECT_EQ(ReductionsNonPV[2][2], 0);
  EXPECT_EQ(ReductionsPV[2][2], 0);
  // ln 3 * ln 4 / 2.25 + 0.33 = 1.19 -> 2 half plies; / 3.0 = 0.51 -> none.
  EXPECT_EQ(ReductionsNonPV[3][4], 2);
  EXPECT_EQ(ReductionsPV[3][4], 0);
  // ln 63 squared: 17.17 / 2.25 + 0.33 = 7.96 -> 15; / 3.0 = 5.72 -> 11.
  EXPECT_EQ(ReductionsNonPV[63][63], 15);
  EXPECT_EQ(ReductionsPV[63][63], 11);
  for (int x = 1; x < 64; ++x)
    for (int y = 1; y < 64; ++y) EXPECT_GE(ReductionsNonPV[x][y], ReductionsPV[x][y]);
}

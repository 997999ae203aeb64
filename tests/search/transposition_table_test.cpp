// The transposition table: sizes, the replacement order, generations and the fatal allocation failure.
#include "search/transposition_table.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

constexpr uint64_t PerMegabyte = 1 << 14;  // clusters
const Move SomeMove = makeMove(A1, B2);

// Keys of cluster 7 that differ in their check bits.
Key key(uint32_t high) { return Key(high) << 32 | 7; }

class TranspositionTableTest : public ::testing::Test {
 protected:
  void SetUp() override { table.setSize(1); }
  void put(uint32_t high, Depth d, Bound b = BoundLower, Move m = SomeMove) {
    table.store(key(high), 0, b, d, m, 0, 0);
  }
  // Stores a new key with no move and tells which entry of the cluster it took.
  int victim() {
    put(99, 0, BoundUpper, MoveNone);
    for (int i = 0; i < ClusterSize; ++i)
      if (table.clusters()[7].entry[i].keyHigh() == 99) return i;
    return -1;
  }
  TranspositionTable table;
};

TEST_F(TranspositionTableTest, SizesArePowersOfTwoAndOnlyANewCountWipes) {
  table.setSize(8);
  put(5, 12);
  table.setSize(12);  // still 8 megabytes of clusters
  EXPECT_EQ(table.clusterCount(), 8 * PerMegabyte);
  EXPECT_NE(table.probe(key(5)), nullptr);
  table.setSize(4);
  EXPECT_EQ(table.probe(key(5)), nullptr);
  table.setSize((uint64_t(1) << 44) + 2);  // only 44 bits of the size count
  EXPECT_EQ(table.clusterCount(), 2 * PerMegabyte);
  table.setSize(0);
  put(5, 12);
  EXPECT_EQ(table.probe(key(5)), nullptr);
}

TEST_F(TranspositionTableTest, TheSameKeyTakesAllNewFieldsButKeepsTheMoveWhenGivenNone) {
  table.store(key(5), 40, BoundExact, 20, SomeMove, 3, 1);
  table.store(key(5), -7, BoundUpper, 2, MoveNone, 9, 4);
  const TTEntry* e = table.probe(key(5));
  ASSERT_NE(e, nullptr);
  EXPECT_EQ(e->move(), SomeMove);
  EXPECT_EQ(std::vector<int>({e->value(), e->bound(), e->depth(), e->staticValue(), e->staticMargin()}),
            std::vector<int>({-7, BoundUpper, 2, 9, 4}));
  // Keys with the same check bits in one cluster are one position; check bits of 0 match a free entry.
  EXPECT_EQ(table.probe(key(5) | uint64_t(1) << 31), e);
  EXPECT_EQ(table.probe(key(0)), e + 1);
}

TEST_F(TranspositionTableTest, ReplacementTakesOlderSearchesFirstThenShallowerEntries) {
  struct Slot {
    Depth depth;
    bool current;  // written in this search rather than the one before
    Bound bound = BoundLower;
  };
  const std::pair<std::vector<Slot>, int> cases[] = {
      {{{8, true}, {4, true}, {6, true}, {4, true}}, 1},     // the shallowest, the earlier of equals
      {{{30, false}, {2, true}, {20, false}, {1, true}}, 2},  // the shallowest of the older ones
      // An exact bound guards an older entry against the candidate, but not once it is the candidate.
      {{{10, false}, {2, false, BoundExact}, {1, true}, {1, true}}, 0},
      {{{10, true}, {2, false, BoundExact}, {20, false}, {1, true}}, 1},
  };
  for (const auto& [slots, expected] : cases) {
    table.clear();
    for (uint32_t i = 0; i < 4; ++i) put(i + 1, slots[i].depth, slots[i].bound);
    table.newSearch();
    for (uint32_t i = 0; i < 4; ++i)
      if (slots[i].current) table.refresh(table.probe(key(i + 1)));
    EXPECT_EQ(victim(), expected);
    EXPECT_EQ(table.clusters()[7].entry[expected].move(), MoveNone);  // the given move, even none
  }
}

TEST_F(TranspositionTableTest, GenerationWrapsAfter256SearchesAndOldEntriesLookCurrent) {
  const uint8_t start = table.generation();
  put(1, 1);
  table.newSearch();
  for (uint32_t high = 2; high <= 4; ++high) put(high, 8);
  for (int i = 0; i < 255; ++i) table.newSearch();
  EXPECT_EQ(table.generation(), start);
  // The shallow first entry looks current again, so the first of the deep, older ones goes instead.
  EXPECT_EQ(victim(), 1);
  table.clear();
  EXPECT_EQ(table.generation(), start);
}

#if !defined(__SANITIZE_ADDRESS__)  // the sanitizer's allocator aborts on such a size by itself
TEST(TranspositionTableDeathTest, FailedAllocationEndsTheProgramWithOneLine) {
  TranspositionTable table;
  EXPECT_EXIT(table.setSize(uint64_t(1) << 43), ::testing::ExitedWithCode(1),
              "^Failed to allocate 8796093022208MB for transposition table.\n$");
}
#endif

}  // namespace

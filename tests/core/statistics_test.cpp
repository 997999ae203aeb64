// The developer's counters: silent at zero, then a line for each pair that counts.
#include <gtest/gtest.h>

#include "core/statistics.h"

namespace {

TEST(DebugCounters, ReportOnlyThePairsThatCount) {
  EXPECT_EQ(debugCounterReport(), "");
  for (bool hit : {true, false, false, false}) debugHit(hit);
  EXPECT_EQ(debugCounterReport(), "Total 4 Hits 1 hit rate (%) 25\n");
  debugMean(2);
  debugMean(5);
  EXPECT_EQ(debugCounterReport(), "Total 4 Hits 1 hit rate (%) 25\nTotal 2 Mean 3.5\n");
  for (auto* c : {&debugCounters.total, &debugCounters.hits, &debugCounters.count, &debugCounters.sum}) c->store(0);
}

}  // namespace

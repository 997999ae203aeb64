// Time budgets: the reserve, the horizon of moves to go, the minimum and the pondering bonus.
#include <gtest/gtest.h>

#include "core/options.h"
#include "search/time_manager.h"

namespace {

struct Budget {
  int optimum, maximum;
};

Budget budget(GoLimits limits, int ply = 0, bool ponder = false) {
  Options["Ponder"] = ponder ? "true" : "false";
  TimeManager tm;
  tm.init(limits, ply, true);
  Options["Ponder"] = "true";
  return {tm.optimumTime, tm.maximumTime};
}

TEST(TimeManagerTest, OneMoveToGoGetsTheWholeTimeAfterTheReserve) {
  GoLimits limits{};
  limits.wtime = 10000;
  limits.btime = 1;  // the other side's clock is not read
  limits.movestogo = 1;
  Budget b = budget(limits);
  EXPECT_EQ(b.optimum, 20 + 10000 - 200 - 70);
  EXPECT_EQ(b.maximum, b.optimum);
}

TEST(TimeManagerTest, HorizonStopsAtFiftyMovesAndMaximumExceedsOptimum) {
  GoLimits limits{};
  limits.wtime = 60000;
  limits.movestogo = 100;
  Budget far = budget(limits, 40);
  limits.movestogo = 50;
  Budget fifty = budget(limits, 40);
  EXPECT_EQ(far.optimum, fifty.optimum);
  EXPECT_EQ(far.maximum, fifty.maximum);
  EXPECT_LT(fifty.optimum, fifty.maximum);
  EXPECT_LT(fifty.maximum, 60000 / 3);
}

TEST(TimeManagerTest, LowClockLeavesTheMinimumThinkingTimeCappedByTheClock) {
  GoLimits limits{};
  limits.wtime = 150;  // below the emergency base time: nothing remains to share
  EXPECT_EQ(budget(limits).optimum, 20);
  EXPECT_EQ(budget(limits).maximum, 20);
  limits.wtime = 10;
  EXPECT_EQ(budget(limits).maximum, 10);
  limits.wtime = 0;  // no clock at all: the first tick stops the search
  EXPECT_EQ(budget(limits).optimum, 0);
  EXPECT_EQ(budget(limits).maximum, 0);
}

TEST(TimeManagerTest, PonderingAddsAQuarterButNeverPassesTheMaximum) {
  GoLimits limits{};
  limits.wtime = 60000;
  limits.winc = 1000;
  Budget plain = budget(limits, 20), pondering = budget(limits, 20, true);
  EXPECT_EQ(pondering.optimum, std::min(plain.optimum + plain.optimum / 4, plain.maximum));
  limits.movestogo = 1;
  EXPECT_EQ(budget(limits, 20, true).optimum, budget(limits, 20, true).maximum);
}

TEST(TimeManagerTest, LateGamePliesReadTheLastWeight) {
  EXPECT_EQ(moveImportance(600), 1);
  EXPECT_EQ(moveImportance(511), 1);
  EXPECT_EQ(moveImportance(0), 7780);
  // Slow Mover 200 doubles this move's weight against the rest.
  EXPECT_GT(remainingTime(10000, 30, 60, 200, 1.0f, 0.0f), remainingTime(10000, 30, 60, 100, 1.0f, 0.0f));
  // A weight that rounds to nothing does not divide by zero.
  EXPECT_EQ(remainingTime(500, 1, 600, 10, 1.0f, 0.0f), 500);
}

}  // namespace

// Searches through the program's input and output: limits, stop, ponder, refusal and MultiPV lines.
#include <gtest/gtest.h>

#include <chrono>
#include <regex>
#include <sstream>

#include "../support/dorn_session.h"
#include "../support/run_dorn.h"

namespace {

std::vector<std::string> linesStartingWith(const std::string& text, const std::string& prefix) {
  std::vector<std::string> found;
  std::istringstream is(text);
  for (std::string line; std::getline(is, line);)
    if (line.rfind(prefix, 0) == 0) found.push_back(line);
  return found;
}

int field(const std::string& line, const std::string& name) {
  std::smatch m;
  std::regex re(" " + name + " (-?[0-9]+)");
  return std::regex_search(line, m, re) ? std::stoi(m[1]) : -1;
}

const std::regex BestMoveLine("bestmove [a-h][1-8][a-h][1-8] ponder ([a-h][1-8][a-h][1-8]|\\(none\\))");

TEST(GoCommandTest, DepthLimitEndsByItselfWithOneLinePerIterationAndAPonderMove) {
  DornSession s;
  s.send("setoption name OwnBook value false");  // searches, not set-up moves
  s.send("go depth 4");
  std::string out;
  for (const std::string& line : s.waitFor("bestmove", 20000)) out += line + "\n";
  auto info = linesStartingWith(out, "info depth");
  ASSERT_EQ(info.size(), 4u);
  for (int d = 1; d <= 4; ++d) {
    EXPECT_EQ(field(info[d - 1], "depth"), d);
    EXPECT_EQ(field(info[d - 1], "multipv"), 1);
    EXPECT_GE(field(info[d - 1], "seldepth"), d);
  }
  auto best = linesStartingWith(out, "bestmove");
  ASSERT_EQ(best.size(), 1u);
  EXPECT_TRUE(std::regex_match(best[0], BestMoveLine)) << best[0];
  // The move played heads the last line reported.
  EXPECT_NE(info.back().find(" pv " + best[0].substr(9, 4)), std::string::npos);
}

TEST(GoCommandTest, MultiPvPrintsEveryLineBestFirstAndSearchMovesNarrowTheRoot) {
  DornSession s;
  s.send("setoption name OwnBook value false");  // searches, not set-up moves
  s.send("setoption name MultiPV value 3");
  s.send("go depth 3");
  auto lines = s.waitFor("bestmove", 20000);
  ASSERT_FALSE(lines.empty());
  std::vector<std::string> depth3;
  for (const auto& l : lines)
    if (l.rfind("info depth 3 ", 0) == 0) depth3.push_back(l);
  ASSERT_EQ(depth3.size(), 3u);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(field(depth3[i], "multipv"), i + 1);
  EXPECT_GE(field(depth3[0], "cs"), field(depth3[1], "cs"));
  EXPECT_GE(field(depth3[1], "cs"), field(depth3[2], "cs"));

  s.send("setoption name MultiPV value 1");
  s.send("go depth 2 searchmoves d1c2 zzzz");
  lines = s.waitFor("bestmove", 20000);
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back().substr(0, 13), "bestmove d1c2");
}

TEST(GoCommandTest, NoMoveToSearchReportsDepthZeroAndNoMove) {
  DornSession s;
  s.send("go depth 3 searchmoves zzzz");
  auto lines = s.waitFor("bestmove", 20000);
  ASSERT_GE(lines.size(), 2u);
  EXPECT_EQ(lines[lines.size() - 2], "info depth 0 score cs 0");
  EXPECT_EQ(lines.back().substr(0, 18), "bestmove (none) po");
}

TEST(GoCommandTest, InfiniteWaitsForStopAndServesIsreadyAndRefusesGoMeanwhile) {
  DornSession s;
  s.send("go infinite");
  ASSERT_FALSE(s.waitFor("info depth 3", 5000).empty());
  s.send("isready");
  ASSERT_FALSE(s.waitFor("readyok", 2000).empty());
  s.send("go depth 1");
  auto refused = s.waitFor("WHITE is still making a move...please wait (type q to quit search)", 2000);
  ASSERT_FALSE(refused.empty());
  for (const auto& l : refused) EXPECT_EQ(l.rfind("bestmove", 0), std::string::npos);
  s.send("stop");
  auto lines = s.waitFor("bestmove", 3000);
  ASSERT_FALSE(lines.empty());
  EXPECT_TRUE(std::regex_match(lines.back(), BestMoveLine)) << lines.back();
  // The limits stay in force: the next go is endless too, and the engine takes it.
  s.send("go depth 1");
  EXPECT_TRUE(s.waitFor("bestmove", 300).empty());
  s.send("stop");
  EXPECT_FALSE(s.waitFor("bestmove", 3000).empty());
}

TEST(GoCommandTest, PonderHoldsTheMoveUntilPonderhit) {
  DornSession s;
  s.send("go ponder depth 2");
  EXPECT_TRUE(s.waitFor("bestmove", 600).empty());
  s.send("ponderhit");
  EXPECT_FALSE(s.waitFor("bestmove", 3000).empty());
}

TEST(GoCommandTest, MovetimeIsKeptWithinTheTimersTick) {
  DornSession s;
  s.send("setoption name OwnBook value false");  // searches, not set-up moves
  s.send("isready");
  ASSERT_FALSE(s.waitFor("readyok", 5000).empty());
  auto start = std::chrono::steady_clock::now();
  s.send("go movetime 400");
  auto lines = s.waitFor("bestmove", 5000);
  auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count();
  ASSERT_FALSE(lines.empty());
  EXPECT_GE(ms, 400);
  EXPECT_LE(ms, 400 + 100 + 150);  // one tick of 100 ms, and slack for a busy machine
}

TEST(GoCommandTest, NodeLimitStopsTheSearchSoonAfterTheCount) {
  DornSession s;
  s.send("setoption name OwnBook value false");  // searches, not set-up moves
  s.send("go nodes 20000");
  auto lines = s.waitFor("bestmove", 10000);
  ASSERT_FALSE(lines.empty());
  int lastNodes = 0;
  for (const auto& l : lines)
    if (l.rfind("info depth", 0) == 0) lastNodes = field(l, "nodes");
  EXPECT_GT(lastNodes, 0);
  // The timer looks every 10 ms; a finished line may not report the overshoot, but no line can
  // start far past the limit.
  EXPECT_LT(lastNodes, 20000 + 200000);
}

TEST(GoCommandTest, SeveralThreadsSplitTheTreeAndFinishEveryIteration) {
  DornSession s;
  s.send("setoption name OwnBook value false");  // searches, not set-up moves
  s.send("setoption name Threads value 3");
  s.send("setoption name Min Split Depth value 4");
  s.send("go depth 9");
  auto lines = s.waitFor("bestmove", 30000);
  ASSERT_FALSE(lines.empty());
  int depth = 0;
  for (const auto& l : lines) {
    if (l.rfind("info depth", 0) == 0) {
      EXPECT_EQ(field(l, "depth"), ++depth) << l;
    }
  }
  EXPECT_EQ(depth, 9);
  EXPECT_TRUE(std::regex_match(lines.back(), BestMoveLine)) << lines.back();
  // Fewer threads between searches: the surplus ones end and the pool goes on.
  s.send("setoption name Threads value 1");
  s.send("go depth 3");
  EXPECT_FALSE(s.waitFor("bestmove", 10000).empty());
}

TEST(GoCommandTest, QuitDuringASearchStillGivesTheMove) {
  auto best = linesStartingWith(runDorn("setoption name OwnBook value false\ngo depth 60\nquit\n"), "bestmove");
  ASSERT_EQ(best.size(), 1u);
  EXPECT_TRUE(std::regex_match(best[0], BestMoveLine)) << best[0];
}

}  // namespace

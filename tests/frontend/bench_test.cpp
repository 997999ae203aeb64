// bench through the program: repeatable node counts, game types named per line, the nodes limit,
// bad files and limits.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "../support/dorn_session.h"
#include "../support/run_dorn.h"
#include "../support/scratch_dir.h"

namespace {

const std::string Plain = "basic 8/1k1fwa2/1wwsa3/1wa2AAF/1a2AW2/2AWSWW1/6K1/8 w 12 1";
const std::string Siege1 = "rescuegeneral 3k4/8/1fwh4/2s3W1/6K1/3N4/8/6F1 w 10 1 D8 Tower { D4 E4 D5 E5 } "
                           "Breached { D4 E4 D5 } WinSquaresWhite { A4 } WinSquaresBlack { H5 }";
const std::string Siege2Fen = "1f6/2sa4/3h1W2/a7/1aa1A3/5N2/2A2S2/5AF1 w 1 1 - 1 D6 1 TowerWhite { H5 H6 } "
                              "BreachedWhite { } TowerBlack { A3 A4 } BreachedBlack { A3 } DropoffSquaresWhite { A1 } "
                              "DropoffSquaresBlack { H8 }";

// The number behind each `label` in the text, in order.
std::vector<long long> numbersAfter(const std::string& text, const std::string& label) {
  std::vector<long long> found;
  for (size_t at = text.find(label); at != std::string::npos; at = text.find(label, at + 1))
    found.push_back(std::atoll(text.c_str() + at + label.size()));
  return found;
}

TEST(BenchTest, RepeatsItsNodeCountAndShowsInfoLinesFromMessageLevelOne) {
  ScratchDir dir;
  dir.write("three.fen", Plain + "\n" + Siege1 + "\nrescuedorn " + Siege2Fen + "\n");
  // The second run finds nothing of the first in the table.
  std::string out = runDorn("bench 16 1 6 three.fen depth\nmsglevel 1\nbench 16 1 6 three.fen depth\n", "", true);
  auto totals = numbersAfter(out, "Nodes searched  : ");
  ASSERT_EQ(totals.size(), 2u) << out;
  EXPECT_GT(totals[0], 0);
  EXPECT_EQ(totals[0], totals[1]);
  EXPECT_EQ(out.find("refused"), std::string::npos) << out;
  // Console searches: a bestmove line at every level, info lines only from level 1.
  EXPECT_EQ(numbersAfter(out, "\nbestmove ").size(), 6u);
  const size_t levelOne = out.find("ok, Message level set to 1");
  EXPECT_EQ(out.find("info depth"), out.find("info depth 1 ", levelOne));
}

TEST(BenchTest, AGameTypeNamedOnALineRulesThatPositionOnly) {
  ScratchDir dir;
  dir.write("siege.fen", "rescuedorn " + Siege2Fen + "\n");
  auto byHand = numbersAfter(runDorn("new rescuedorn\nsp " + Siege2Fen + "\nperft 2\n", "", true), "leaf nodes: ");
  auto counts = numbersAfter(runDorn("perft 2\nbench 16 1 2 siege.fen perft\nperft 2\n", "", true), "leaf nodes: ");
  ASSERT_EQ(byHand.size(), 1u);
  ASSERT_EQ(counts.size(), 3u);
  EXPECT_EQ(counts[1], byHand[0]);
  EXPECT_EQ(counts[2], counts[0]);  // the loop's own game is as it was
}

TEST(BenchTest, NodesLimitEndsTheSearch) {
  ScratchDir dir;
  dir.write("one.fen", Plain + "\n");
  auto totals = numbersAfter(runDorn("", "bench 16 1 20000 one.fen nodes", true), "Nodes searched  : ");
  ASSERT_EQ(totals.size(), 1u);
  EXPECT_GE(totals[0], 20000);
}

TEST(BenchTest, TheLoopsPositionOutlivesTheSearchesOfABench) {
  // The moves of the last `position` stay the loop's after bench has started searches of its own.
  ScratchDir dir;
  DornSession engine;
  engine.send("setoption name OwnBook value false\nposition startpos moves f2e3\ngo depth 2");
  ASSERT_FALSE(engine.waitFor("bestmove", 20000).empty());
  engine.send("bench 16 1 1 current depth");
  ASSERT_FALSE(engine.waitFor("bestmove", 20000).empty());
  engine.send("leg");
  EXPECT_FALSE(engine.waitFor("legal moves: ..", 20000).empty());
}

TEST(BenchTest, BadFilesAndLimitsAreReportedAndPlayGoesOn) {
  ScratchDir dir;
  std::filesystem::create_directory(dir.path / "folder");
  // Blank lines are no positions; one without leaders is refused and skipped.
  dir.write("mixed.fen", "\n" + Plain + "\n   \n8/8/8/8/8/8/8/8 w 0 1\n\n");
  std::string out = runDorn("bench 16 1 1 missing.fen depth\nbench 16 1 1 folder depth\n"
                            "bench 16 1 1 mixed.fen perft\nbench 16 1 0 current depth\nisready\n", "", true);
  EXPECT_NE(out.find("Unable to open file missing.fen\n"), std::string::npos) << out;
  EXPECT_NE(out.find("Unable to open file folder\n"), std::string::npos) << out;
  EXPECT_NE(out.find("\nPosition: 1/2\n"), std::string::npos) << out;
  EXPECT_NE(out.find("Position 2/2 refused by the reader, skipped\n"), std::string::npos) << out;
  EXPECT_EQ(numbersAfter(out, "leaf nodes: ").size(), 1u);
  EXPECT_EQ(numbersAfter(out, "Nodes searched  : ").size(), 1u);
  // A zero limit would be none at all.
  EXPECT_NE(out.find("Bench limit must be a whole number of at least 1, not '0'\n"), std::string::npos);
  EXPECT_NE(out.find("readyok"), std::string::npos);
}

}  // namespace

// bench through the program: repeatable node counts, the nodes limit, positions of other game
// types, and the files it cannot use.
#include <gtest/gtest.h>

#include <iterator>
#include <regex>
#include <string>
#include <vector>

#include "../support/run_dorn.h"
#include "../support/scratch_dir.h"

namespace {

const std::string PlainMiddleGame = "basic 8/1k1fwa2/1wwsa3/1wa2AAF/1a2AW2/2AWSWW1/6K1/8 w 12 1";
const std::string Siege1CaptiveOut =
    "3k4/8/1fwh4/2s3W1/6K1/3N4/8/6F1 w 10 1 D8 Tower { D4 E4 D5 E5 } Breached { D4 E4 D5 } "
    "WinSquaresWhite { A4 } WinSquaresBlack { H5 }";
const std::string Siege2CaptiveOut =
    "1f6/2sa4/3h1W2/a7/1aa1A3/5N2/2A2S2/5AF1 w 1 1 - 1 D6 1 TowerWhite { H5 H6 } BreachedWhite { } "
    "TowerBlack { A3 A4 } BreachedBlack { A3 } DropoffSquaresWhite { A1 } DropoffSquaresBlack { H8 }";

// Every number behind `label` in the text, in order.
std::vector<long long> numbersAfter(const std::string& text, const std::string& label) {
  std::vector<long long> found;
  std::regex re(label + "(-?[0-9]+)");
  for (auto it = std::sregex_iterator(text.begin(), text.end(), re); it != std::sregex_iterator(); ++it)
    found.push_back(std::stoll((*it)[1]));
  return found;
}

TEST(BenchTest, RepeatsItsNodeCountWithOneThreadBecauseTheTableIsCleared) {
  ScratchDir dir;
  dir.write("three.fen", PlainMiddleGame + "\nrescuegeneral " + Siege1CaptiveOut + "\nrescuedorn " +
                             Siege2CaptiveOut + "\n");
  std::string out = runDorn("bench 16 1 6 three.fen depth\nbench 16 1 6 three.fen depth\n", "", true);
  auto totals = numbersAfter(out, "Nodes searched  : ");
  ASSERT_EQ(totals.size(), 2u) << out;
  EXPECT_GT(totals[0], 0);
  EXPECT_EQ(totals[0], totals[1]);
  EXPECT_EQ(numbersAfter(out, "Position: 3/").size(), 2u);
  EXPECT_EQ(out.find("refused"), std::string::npos) << out;
  // Each search ends as a console search does, with its move.
  const std::regex bestMove("\nbestmove [a-h][1-8]");
  EXPECT_EQ(std::distance(std::sregex_iterator(out.begin(), out.end(), bestMove), std::sregex_iterator()), 6);
}

TEST(BenchTest, AGameTypeNamedOnTheLineRulesItsPositionAndNoLonger) {
  ScratchDir dir;
  dir.write("siege.fen", "rescuedorn " + Siege2CaptiveOut + "\n");
  // The same position set up by hand in its game, and the loop's own start position before and after.
  std::string byHand = runDorn("new rescuedorn\nsp " + Siege2CaptiveOut + "\nperft 2\n", "", true);
  std::string bench = runDorn("perft 2\nbench 16 1 2 siege.fen perft\nperft 2\n", "", true);
  auto expected = numbersAfter(byHand, "leaf nodes: ");
  auto counts = numbersAfter(bench, "leaf nodes: ");
  ASSERT_EQ(expected.size(), 1u) << byHand;
  ASSERT_EQ(counts.size(), 3u) << bench;
  EXPECT_EQ(counts[1], expected[0]);
  EXPECT_EQ(counts[2], counts[0]);
}

TEST(BenchTest, ItsConsoleSearchesShowInfoLinesFromMessageLevelOne) {
  std::string out = runDorn("bench 16 1 2 current depth\nmsglevel 1\nbench 16 1 2 current depth\n");
  const size_t levelOne = out.find("ok, Message level set to 1\n");
  ASSERT_NE(levelOne, std::string::npos);
  EXPECT_EQ(out.find("info depth"), out.find("info depth", levelOne)) << out;
  EXPECT_NE(out.find("info depth 2 "), std::string::npos) << out;
  EXPECT_NE(out.substr(0, levelOne).find("\nbestmove "), std::string::npos);  // at every level
}

TEST(BenchTest, NodesLimitEndsEachSearch) {
  ScratchDir dir;
  dir.write("one.fen", PlainMiddleGame + "\n");
  // Without the limit the search would go on to depth 100.
  std::string out = runDorn("", "bench 16 1 20000 one.fen nodes", true);
  auto totals = numbersAfter(out, "Nodes searched  : ");
  ASSERT_EQ(totals.size(), 1u) << out;
  EXPECT_GE(totals[0], 20000);
}

TEST(BenchTest, BadFilesAndLimitsAreReportedAndPlayGoesOn) {
  ScratchDir dir;
  std::filesystem::create_directory(dir.path / "folder");
  // Blank lines are not positions; a position without leaders is refused and skipped.
  dir.write("mixed.fen", "\n" + PlainMiddleGame + "\n   \n8/8/8/8/8/8/8/8 w 0 1\n\n");
  std::string out = runDorn("bench 16 1 1 missing.fen depth\nbench 16 1 1 folder depth\n"
                            "bench 16 1 1 mixed.fen perft\nbench 16 1 0 current depth\nisready\n", "", true);
  EXPECT_NE(out.find("Unable to open file missing.fen\n"), std::string::npos) << out;
  EXPECT_NE(out.find("Unable to open file folder\n"), std::string::npos) << out;
  EXPECT_NE(out.find("\nPosition: 1/2\n"), std::string::npos) << out;
  EXPECT_NE(out.find("Position 2/2 refused by the reader, skipped\n"), std::string::npos) << out;
  EXPECT_EQ(out.find("Position: 3/"), std::string::npos) << out;
  EXPECT_EQ(numbersAfter(out, "leaf nodes: ").size(), 1u);
  EXPECT_EQ(numbersAfter(out, "Nodes searched  : ").size(), 1u);
  // A zero limit would be no limit at all.
  EXPECT_NE(out.find("Bench limit must be a whole number of at least 1, not '0'\n"), std::string::npos);
  EXPECT_NE(out.find("readyok"), std::string::npos);
}

}  // namespace

// The search log through the program: start, one line per iteration and end, appended to the file.
#include <gtest/gtest.h>

#include <regex>
#include <string>

#include "../support/dorn_session.h"
#include "../support/scratch_dir.h"

namespace {

TEST(SearchLogTest, StartEachIterationAndEndAreAppended) {
  ScratchDir dir;
  dir.write("search.log", "kept\n");
  {
    DornSession engine;
    engine.send("setoption name Use Search Log value true\nsetoption name Search Log Filename value search.log");
    engine.send("go depth 3 wtime 5000 btime 4000 winc 100 binc 50 movestogo 20");
    ASSERT_FALSE(engine.waitFor("bestmove", 20000).empty());
  }
  // White's clock; the move played heads the last line, both in SAN.
  std::regex entries(
      "kept\n\nSearching: wfwwa3/wksma3/wn6/aa6/6AA/6NW/3AMSKW/3AWWFW w 0 1\n"
      "infinite: 0 ponder: 0 time: 5000 increment: 100 moves to go: 20\n"
      " 1 .{25}\\S.*\n 2 .{25}\\S.*\n 3 .{25}(\\S+) .*\n"
      "Nodes: [0-9]+\nNodes/second: [0-9]+\nBest move: \\1\nPonder move: \\S+\n");
  EXPECT_TRUE(std::regex_match(dir.read("search.log"), entries)) << dir.read("search.log");
}

}  // namespace

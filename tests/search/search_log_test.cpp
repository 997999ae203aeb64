// The search log through the program: its three entries for a search, appended to the named file.
#include <gtest/gtest.h>

#include <regex>
#include <sstream>
#include <string>

#include "../support/dorn_session.h"
#include "../support/scratch_dir.h"

namespace {

TEST(SearchLogTest, StartEachIterationAndEndAreAppended) {
  ScratchDir dir;
  dir.write("search.log", "kept\n");
  {
    DornSession engine;
    engine.send("setoption name Use Search Log value true");
    engine.send("setoption name Search Log Filename value search.log");
    engine.send("go depth 3 wtime 5000 btime 4000 winc 100 binc 50 movestogo 20");
    ASSERT_FALSE(engine.waitFor("bestmove", 20000).empty());
  }
  std::string log = dir.read("search.log");

  const std::string start = "kept\n\nSearching: wfwwa3/wksma3/wn6/aa6/6AA/6NW/3AMSKW/3AWWFW w 0 1\n"
                            "infinite: 0 ponder: 0 time: 5000 increment: 100 moves to go: 20\n";
  ASSERT_EQ(log.rfind(start, 0), 0u) << log;
  std::istringstream rest(log.substr(start.size()));
  std::string line, lastLine;
  for (int depth = 1; depth <= 3; ++depth) {
    std::getline(rest, line);
    EXPECT_EQ(line.size() > 2 ? std::stoi(line.substr(0, 2)) : 0, depth) << line;
    lastLine = line;
  }
  // The move played heads the last line, in SAN behind a header of 28 columns.
  ASSERT_GT(lastLine.size(), 28u);
  const std::string firstMove = lastLine.substr(28, lastLine.find(' ', 28) - 28);
  std::getline(rest, line);
  EXPECT_EQ(line.rfind("Nodes: ", 0), 0u);
  std::getline(rest, line);
  EXPECT_TRUE(std::regex_match(line, std::regex("Nodes/second: [0-9]+"))) << line;
  std::getline(rest, line);
  EXPECT_EQ(line, "Best move: " + firstMove);
  std::getline(rest, line);
  EXPECT_EQ(line.rfind("Ponder move: ", 0), 0u);
  EXPECT_FALSE(std::getline(rest, line));
}

}  // namespace

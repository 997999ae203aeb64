// The search log through the program: start, one line per iteration and end, appended to the file.
#include <gtest/gtest.h>

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
    engine.send("setoption name OwnBook value false");  // a search, not a set-up move
    engine.send("setoption name Use Search Log value true\nsetoption name Search Log Filename value search.log");
    engine.send("go depth 3 wtime 5000 btime 4000 winc 100 binc 50 movestogo 20");
    ASSERT_FALSE(engine.waitFor("bestmove", 20000).empty());
  }
  // White's clock, a line per iteration, and the move played at the head of the last line, in SAN.
  const std::string start = "kept\n\nSearching: wfwwa3/wksma3/wn6/aa6/6AA/6NW/3AMSKW/3AWWFW w 0 1\n"
                            "infinite: 0 ponder: 0 time: 5000 increment: 100 moves to go: 20\n";
  const std::string log = dir.read("search.log");
  ASSERT_EQ(log.rfind(start, 0), 0u) << log;
  std::istringstream rest(log.substr(start.size()));
  std::string line[7];
  for (std::string& l : line) std::getline(rest, l);
  for (int i : {0, 1, 2}) EXPECT_EQ(line[i].rfind(std::string{' ', char('1' + i), ' '}, 0), 0u) << log;
  const std::string played = line[2].substr(28, line[2].find(' ', 28) - 28);  // behind a 28-column header
  EXPECT_EQ(line[3].rfind("Nodes: ", 0), 0u) << log;
  EXPECT_EQ(line[4].rfind("Nodes/second: ", 0), 0u) << log;
  EXPECT_EQ(line[5], "Best move: " + played) << log;
  EXPECT_EQ(line[6].rfind("Ponder move: ", 0), 0u) << log;
  EXPECT_FALSE(std::getline(rest, line[0]));
}

}  // namespace

// The I/O log through the program: a dialogue with one prefix per line, one file across off and on,
// and input and output unharmed when the file cannot be opened.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "../support/dorn_session.h"
#include "../support/run_dorn.h"
#include "../support/scratch_dir.h"

namespace {

const std::string On = "setoption name Use Debug Log value true\n";
const std::string Off = "setoption name Use Debug Log value false\n";

TEST(IoLogTest, ASearchIsADialogueWithOnePrefixPerLine) {
  ScratchDir dir;
  {
    DornSession engine;
    engine.send("setoption name OwnBook value false\n" + On + "go depth 1");  // a search, not a set-up move
    ASSERT_FALSE(engine.waitFor("bestmove", 20000).empty());
  }
  std::istringstream log(dir.read("io_log.txt"));
  std::vector<std::string> lines;
  for (std::string line; std::getline(log, line);) {
    EXPECT_EQ(line.find(">> ", 1), std::string::npos) << line;
    EXPECT_EQ(line.find("<< ", 1), std::string::npos) << line;
    lines.push_back(line);
  }
  ASSERT_EQ(lines.size(), 4u) << log.str();
  EXPECT_EQ(lines[0], ">> go depth 1");
  EXPECT_EQ(lines[1].rfind("<< info depth 1 ", 0), 0u);
  EXPECT_EQ(lines[2].rfind("<< bestmove ", 0), 0u);
  EXPECT_EQ(lines[3], ">> quit");
}

TEST(IoLogTest, OnTwiceOffAndOnAgainAppendToOneFile) {
  ScratchDir dir;
  dir.write("io_log.txt", "older\n");
  std::string out = runDorn(On + On + "isready\n" + Off + "d\n" + On + "isready\n");
  EXPECT_EQ(dir.read("io_log.txt"), "older\n>> " + On + ">> isready\n<< readyok\n>> " + Off + ">> isready\n<< readyok\n");
  EXPECT_NE(out.find("WHITE to move"), std::string::npos);

  std::filesystem::remove(dir.path / "io_log.txt");
  std::filesystem::create_directory(dir.path / "io_log.txt");
  out = runDorn(On + "isready\n" + Off + On + "isready\n");
  EXPECT_NE(out.find("readyok\n"), out.rfind("readyok\n"));
}

}  // namespace

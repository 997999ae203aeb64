// The I/O log through the program: a dialogue with one prefix per line, kept in one file across
// off and on, and no harm to input and output when the file cannot be opened.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "../support/dorn_session.h"
#include "../support/run_dorn.h"
#include "../support/scratch_dir.h"

namespace {

const std::string LogOn = "setoption name Use Debug Log value true\n";
const std::string LogOff = "setoption name Use Debug Log value false\n";

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream is(text);
  for (std::string line; std::getline(is, line);) lines.push_back(line);
  return lines;
}

TEST(IoLogTest, RecordsCommandsAndAnswersWithOnePrefixPerLine) {
  ScratchDir dir;
  {
    DornSession engine;
    engine.send(LogOn + "go depth 1");
    ASSERT_FALSE(engine.waitFor("bestmove", 20000).empty());
    engine.send("isready");
    ASSERT_FALSE(engine.waitFor("readyok", 20000).empty());
  }
  auto lines = linesOf(dir.read("io_log.txt"));
  ASSERT_EQ(lines.size(), 6u);
  EXPECT_EQ(lines[0], ">> go depth 1");
  EXPECT_EQ(lines[1].rfind("<< info depth 1 ", 0), 0u) << lines[1];
  EXPECT_EQ(lines[2].rfind("<< bestmove ", 0), 0u) << lines[2];
  EXPECT_EQ(lines[3], ">> isready");
  EXPECT_EQ(lines[4], "<< readyok");
  EXPECT_EQ(lines[5], ">> quit");
  for (const std::string& line : lines) {
    EXPECT_TRUE(line.rfind(">> ", 0) == 0 || line.rfind("<< ", 0) == 0) << line;
    EXPECT_EQ(line.find(">> ", 3), std::string::npos) << line;
    EXPECT_EQ(line.find("<< ", 3), std::string::npos) << line;
  }
}

TEST(IoLogTest, OnTwiceOffAndOnAgainKeepsOneFileWithoutTheSilentPart) {
  ScratchDir dir;
  dir.write("io_log.txt", "an older session\n");
  std::string out = runDorn(LogOn + LogOn + "isready\n" + LogOff + "d\n" + LogOn + "isready\n");
  EXPECT_EQ(dir.read("io_log.txt"),
            "an older session\n>> " + LogOn + ">> isready\n<< readyok\n>> " + LogOff + ">> isready\n<< readyok\n");
  // Standard output went on as usual throughout.
  EXPECT_NE(out.find("readyok\n"), out.rfind("readyok\n"));
  EXPECT_NE(out.find("WHITE to move"), std::string::npos);
}

TEST(IoLogTest, AFileThatCannotBeOpenedLeavesInputAndOutputAlone) {
  ScratchDir dir;
  std::filesystem::create_directory(dir.path / "io_log.txt");
  std::string out = runDorn(LogOn + "isready\n" + LogOff + LogOn + "isready\n");
  EXPECT_NE(out.find("readyok\n"), out.rfind("readyok\n"));
}

}  // namespace

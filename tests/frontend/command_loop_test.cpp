// The command loop driven through the real program's standard input and output.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "../support/capture_stdout.h"
#include "../support/run_dorn.h"
#include "../support/start_picture.h"
#include "game/position.h"

namespace {

const std::string Greeting = "Dorn 0.25 64bit by Alda Reve\n";

const std::string StartBoard = DefaultStartPicture;

// What the program prints before it reads its first line.
const std::string Opening = Greeting + StartBoard + "\nType ? for help\n";

// The output after the opening lines, which every run starts with.
std::string replies(const std::string& input, const std::string& args = "") {
  std::string output = runDorn(input, args);
  EXPECT_EQ(output.substr(0, Opening.size()), Opening);
  return output.substr(std::min(output.size(), Opening.size()));
}

std::string hex(Key k) {
  std::ostringstream out;
  out << std::hex << k;
  return out.str();
}

TEST(CommandLoop, OpensWithIdentificationBoardAndHelpHint) {
  EXPECT_EQ(runDorn(""), Opening);  // end of input counts as quit
}

TEST(CommandLoop, EmptyLinesAndUnknownWords) {
  EXPECT_EQ(replies("\n   \t\nfoo  bar\nq\nQuit\nstop\nisready\n"),
            "Type ? for help\nType ? for help\nUnknown command: foo  bar\nUnknown command: q\n"
            "Unknown command: Quit\nreadyok\n");
}

TEST(CommandLoop, QuitEndsTheLoop) { EXPECT_EQ(replies("isready\nquit\nisready\n"), "readyok\n"); }

TEST(CommandLoop, BadFenTextsAreRefusedWithTheirMessages) {
  EXPECT_EQ(replies("position fen 8/8/8/8/8/8/8/8 w\n"
                    "position fen k7/8/8/8/8/8/8/K7/8 w\n"
                    "position fen 88/8/8/8/8/8/8/K7 w\n"
                    "position fen kj6/8/8/8/8/8/8/K7 w\n"
                    "position fen K7/8 w\n"
                    "position nonsense\n"
                    "position\n"),
            "No white dorn on board\n"
            "Too many ranks on board, maximum 8 rows on board\n"
            "? illegal board configuration, encountered '8' at rank=8\n"
            "Two or more black dorns on board\n"
            "No black dorn on board\n");
}

TEST(CommandLoop, KeysOfTheLoopPosition) {
  Position start, small;
  {
    CaptureStdout quiet;
    ASSERT_TRUE(start.set("wfwwa3/wksma3/wn6/aa6/6AA/6NW/3AMSKW/3AWWFW w 0 1", nullptr));
    ASSERT_TRUE(small.set("k7/8/8/8/8/8/8/K7 b 0 1", nullptr));
  }
  EXPECT_EQ(replies("key\nposition fen k7/8/8/8/8/8/8/K7 b 0 1\nkey\nposition startpos\nkey\n"),
            "position key: " + hex(start.key()) + "\nmaterial key: " + hex(start.materialKey()) + "\n" +
                "position key: " + hex(small.key()) + "\nmaterial key: " + hex(small.materialKey()) + "\n" +
                "position key: " + hex(start.key()) + "\nmaterial key: " + hex(start.materialKey()) + "\n");
}

TEST(CommandLoop, ShowBoardReplaysTheGameText) {
  // `position` sets only the loop's position; `d` rebuilds it from the game text.
  EXPECT_EQ(replies("position fen k7/8/8/8/8/8/8/K7 w\nd\n"), StartBoard + "\n");
}

TEST(CommandLoop, MovesThatNameNoMoveAreRefused) {
  EXPECT_EQ(replies("position startpos moves ab\nposition startpos moves z9z9\nposition fen "
                    "wfwwa3/wksma3/wn6/aa6/6AA/6NW/3AMSKW/3AWWFW w 0 1 moves a1a2\n"),
            "?Illegal move ab\n?Illegal move ab\n?Illegal move z9z9\n?Illegal move a1a2\n");
}

TEST(CommandLoop, CommandLineRunsOneCommandAndEnds) {
  EXPECT_EQ(replies("key\n", "isready"), "readyok\n");
  EXPECT_EQ(replies("", "position fen 8/8/8/8/8/8/8/8 w"), "No white dorn on board\n");
  EXPECT_EQ(replies("", "no such"), "Unknown command: no such \n");
}

TEST(CommandLoop, HostileLinesNeverCrashTheLoop) {
  std::string longLine(1 << 20, 'x');
  std::string control = "\x01\x02\x1b[2J\x7f";
  EXPECT_EQ(replies(longLine + "\n" + control + "\nposition fen " + std::string(5000, '8') + "\nisready"),
            "Unknown command: " + longLine + "\nUnknown command: " + control +
                "\n? illegal board configuration, encountered '8' at rank=8\nreadyok\n");
}

}  // namespace

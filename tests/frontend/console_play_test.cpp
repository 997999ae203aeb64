// Playing at the console through the program: user and computer moves, going back and forth, refusals.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "../support/dorn_session.h"
#include "../support/position_fixture.h"
#include "../support/run_dorn.h"
#include "../support/scratch_dir.h"
#include "../support/start_picture.h"
#include "frontend/console_play.h"

namespace {

// Every move writes backup.txt into the working directory: each test runs in a folder of its own.
class ConsolePlay : public ::testing::Test {
 protected:
  static std::string backup() { return ScratchDir::readHere("backup.txt"); }
  static bool backupEndsWith(const std::string& moves) {
    const std::string text = backup(), tail = "startpos moves " + moves + "\n";
    return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
  }

  ScratchDir scratch;
};

const std::string Opening = "Dorn 0.25 64bit by Alda Reve\n" + DefaultStartPicture + "\nType ? for help\n";

// The squares of a move in the console's form, without its capture sign.
std::string squares(std::string move) {
  move.erase(std::remove(move.begin(), move.end(), 'x'), move.end());
  return move.substr(0, 4);
}

std::vector<std::string> tail(const std::vector<std::string>& lines, size_t n) {
  return {lines.end() - std::min(n, lines.size()), lines.end()};
}

}  // namespace

TEST_F(ConsolePlay, AGameWithTheComputerGoesBackAndForth) {
  DornSession s;
  s.send("skillb 1");
  s.send("hint");
  ASSERT_FALSE(s.waitFor("Computer must make a move first...type 'g'", 5000).empty());
  s.send("m d2c3");
  ASSERT_FALSE(s.waitFor("ok, moved d2c3", 5000).empty());
  EXPECT_TRUE(backupEndsWith("d2c3")) << backup();

  s.send("g");
  auto lines = s.waitFor("  BLACK moves ", 10000);
  ASSERT_GE(lines.size(), 3u);
  EXPECT_EQ(lines[0], "thinking...");
  std::smatch best;
  const std::string bestLine = lines[lines.size() - 2];
  ASSERT_TRUE(std::regex_match(bestLine, best, std::regex("bestmove ([a-h][1-8][a-h][1-8]) ponder ([a-h][1-8][a-h][1-8])")))
      << bestLine;
  const std::string reply = best[1], expected = best[2];
  EXPECT_EQ(squares(lines.back().substr(14)), reply);
  EXPECT_EQ(lines[lines.size() - 3], "");
  EXPECT_TRUE(backupEndsWith("d2c3 " + reply)) << backup();

  s.send("hint");
  lines = s.waitFor("  Hint ", 5000);
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(squares(lines.back().substr(7)), expected);

  // Back and forth: the moves undone stay listed, and backup.txt keeps the game as played.
  s.send("undo");
  ASSERT_FALSE(s.waitFor("  Undid > " + reply, 5000).empty());
  s.send("hint");
  ASSERT_FALSE(s.waitFor("Computer must make a move first...type 'g'", 5000).empty());
  s.send("showmoves");
  EXPECT_FALSE(s.waitFor("1.. d2c3 " + reply, 5000).empty());
  s.send("redo");
  ASSERT_FALSE(s.waitFor("  Redid > " + reply, 5000).empty());
  s.send("start");
  ASSERT_FALSE(s.waitFor("WHITE to move", 5000).empty());
  s.send("start 1");
  ASSERT_FALSE(s.waitFor("BLACK to move", 5000).empty());
  s.send("end");
  ASSERT_FALSE(s.waitFor("WHITE to move", 5000).empty());
  s.send("showmoves");
  EXPECT_FALSE(s.waitFor("1.. d2c3 " + reply, 5000).empty());
  EXPECT_TRUE(backupEndsWith("d2c3 " + reply)) << backup();

  // A new move after going back ends the redo list.
  s.send("undo");
  s.send("undo");
  ASSERT_FALSE(s.waitFor("  Undid > d2c3", 5000).empty());
  s.send("m d1c2");
  ASSERT_FALSE(s.waitFor("ok, moved d1c2", 5000).empty());
  s.send("redo");
  EXPECT_FALSE(s.waitFor("No moves to redo", 5000).empty());
  s.send("showmoves");
  lines = s.waitFor("1.. ", 5000);
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back(), "1.. d1c2");
  EXPECT_TRUE(backupEndsWith("d1c2")) << backup();
}

// The words of a text, from `first` on.
std::vector<std::string> wordsFrom(const std::string& text, const std::string& first) {
  std::istringstream is(text.substr(text.find(first)));
  std::vector<std::string> words;
  for (std::string w; is >> w;) words.push_back(w);
  return words;
}

TEST_F(ConsolePlay, ComputerAgainstComputerPlaysAWholeGameAndKeepsItsRecord) {
  DornSession s;
  s.send("cc");
  ASSERT_FALSE(s.waitFor("ok, computer on computer mode turned on, mem size: ", 5000).empty());
  s.send("skill 1");
  s.send("skillb 1");
  std::vector<std::string> played;
  std::string ending;
  while (ending.empty() && played.size() < 600) {
    s.send("g");
    auto lines = s.waitFor("bestmove ", 10000);
    ASSERT_FALSE(lines.empty()) << "ply " << played.size();
    played.push_back(lines.back().substr(9, 4));
    const std::string next = s.waitFor("", 5000).at(0);
    if (next.rfind("  ", 0) != 0) ending = s.waitFor("Game is ", 5000).at(0);
  }
  EXPECT_TRUE(std::regex_match(ending, std::regex("Game is (a draw\\.\\.\\..+|over, (WHITE|BLACK) wins\\.\\.\\.)")))
      << ending;

  // showmoves, backup.txt and the moves reported tell the same game.
  s.send("showmoves");
  const std::string lastLine = std::to_string((played.size() + 1) / 2) + "..";
  std::string listing;
  for (const std::string& line : s.waitFor(lastLine, 5000)) listing += line + " ";
  std::vector<std::string> listed;
  for (const std::string& w : wordsFrom(listing, "1..")) 
    if (w.find("..") == std::string::npos) listed.push_back(w);
  const std::vector<std::string> saved = wordsFrom(backup(), "moves");
  ASSERT_EQ(listed.size(), played.size());
  EXPECT_EQ(std::vector<std::string>(saved.begin() + 1, saved.end()), listed);
  for (size_t i = 0; i < played.size(); ++i) EXPECT_EQ(listed[i].substr(0, 4), played[i]) << "ply " << i;
}

TEST_F(ConsolePlay, TheComputersMateEndsTheGameForBothPlayers) {
  DornSession s;
  s.send("sp 8/8/8/W7/8/5K2/8/f7 w 15 1");
  s.send("skill 2");
  s.send("g");
  auto lines = s.waitFor("WHITE wins in", 10000);
  ASSERT_GE(lines.size(), 5u);
  EXPECT_EQ(tail(lines, 5), (std::vector<std::string>{"bestmove a5c3 ponder (none)", "", "Game is over, WHITE wins...",
                                                     "", "WHITE wins in 1 move(s)..."}));
  s.send("g");
  EXPECT_FALSE(s.waitFor("BLACK can't move, game is over", 5000).empty());
  s.send("m a1a2");
  lines = s.waitFor("[ c3 ] threatens [ a1 ]", 5000);
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.front(), "Invalid Move: a1a2");
  // The computer's last move is in the record like any other.
  s.send("showmoves");
  EXPECT_FALSE(s.waitFor("1.. a5c3", 5000).empty());
  EXPECT_TRUE(backupEndsWith("a5c3")) << backup();

  s.send("undo");
  ASSERT_FALSE(s.waitFor("  Undid > a5c3", 5000).empty());
  s.send("m a5c3");
  lines = s.waitFor("Game is over, WHITE wins...", 5000);
  ASSERT_GE(lines.size(), 2u);
  EXPECT_EQ(lines[lines.size() - 2], "");
}

TEST_F(ConsolePlay, MessageLevelTwoShowsStatisticsScoreAndGameTextAndAHostSeesOnlyBestmove) {
  DornSession s;
  s.send("msglevel 2");
  s.send("skillb 1");
  s.send("m d2c3");
  auto lines = s.waitFor("searchFen = ", 5000);
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back(), "searchFen = fen wfwwa3/wksma3/wn6/aa6/6AA/6NW/3AMSKW/3AWWFW w 0 1 startpos moves  d2c3");

  s.send("g");
  lines = s.waitFor("  BLACK moves ", 10000);
  ASSERT_GE(lines.size(), 3u);
  EXPECT_TRUE(std::regex_match(lines[lines.size() - 3],
                               std::regex("nodes searched:[0-9]+  evaluated:[0-9]+  PLT:[0-9]+ FPL:[0-9]+  FPLN:[0-9]+ "
                                          "FPLD:[0-9]+ FPLP:[0-9]+  FPLE:[0-9]+  FPLS1:[0-9]+  SNS:[0-9]+ SNL:[0-9]+  "
                                          "see:[0-9]+ fen .* startpos moves  d2c3 [a-h][1-8][a-h][1-8][a-z]?")))
      << lines[lines.size() - 3];
  EXPECT_TRUE(std::regex_match(lines.back(), std::regex("  BLACK moves [a-h][1-8]x?[a-h][1-8][a-z]? score \\(-?[0-9]+\\)")))
      << lines.back();
  const std::string reply = squares(lines.back().substr(14));

  // A host's search shows only its info and bestmove lines; the move still goes to backup.txt,
  // and then the game text starts afresh.
  s.send("go depth 1");
  lines = s.waitFor("bestmove", 5000);
  ASSERT_FALSE(lines.empty());
  for (size_t i = 0; i + 1 < lines.size(); ++i) EXPECT_EQ(lines[i].rfind("info ", 0), 0u) << lines[i];
  EXPECT_TRUE(backupEndsWith("d2c3 " + reply + " " + lines.back().substr(9, 4))) << backup();
  s.send("d");
  EXPECT_FALSE(s.waitFor("Fen: wfwwa3/wksma3/wn6/aa6/6AA/6NW/3AMSKW/3AWWFW w 0 1", 5000).empty());
}

TEST_F(ConsolePlay, BadInputAtThePromptsChangesNeitherTheGameNorTheBackup) {
  const std::string before = runDorn("d\n").substr(Opening.size());
  const std::string afterMove = runDorn("m d2c3\nd\n");
  const std::string board = afterMove.substr(afterMove.find("ok, moved d2c3\n") + 15);
  std::string out = runDorn(
      "showmoves\nundo\nredo\nstart\nend\nhint\n"
      "m d2c3\n"
      "m\nm abc\nm b6d6x\nm B6D6\nm abcd\nm d1c2\n"
      "g 0\ng 181\ng abc\ng -5\n"
      "start 0\nstart 1000\nd\nshowmoves\n");
  ASSERT_EQ(out.substr(0, Opening.size()), Opening);
  EXPECT_EQ(out.substr(Opening.size()),
            "No moves\nNo moves to undo\nNo moves to redo\nNo moves\nNo moves\n"
            "Computer must make a move first...type 'g'\n" +
                board + "ok, moved d2c3\n"
                "No move specified... type: m e2e3 for example\n"
                "Moves must be 4 characters long, ex a2b3 <square from> + <square to>\n"
                "Invalid Move: b6d6x\n[ n ] cannot move like that\n"
                "Invalid Move: B6D6\n[ n ] cannot move like that\n"
                "Invalid Move: abcd\nThere is no BLACK piece at square ab\n"
                "Invalid Move: d1c2\nYou cannot move the enemy [ A ]\n"
                "moveTime (s) is out of range (0) Valid range[0-180s]\n"
                "moveTime (s) is out of range (181) Valid range[0-180s]\n"
                "moveTime (s) is out of range (0) Valid range[0-180s]\n"
                "moveTime (s) is out of range (-5) Valid range[0-180s]\n" +
                before + board + board + "\n1.. d2c3\n");
  EXPECT_TRUE(backupEndsWith("d2c3")) << backup();
}

namespace {

class InvalidMoveExplanation : public PositionFixture {
 protected:
  std::string explain(const std::string& fen, const std::string& word) {
    load(fen);
    return invalidMoveExplanation(pos, word);
  }
};

}  // namespace

TEST_F(InvalidMoveExplanation, NamesTheAttackersOfTheLeaderOrWhatStandsOnTheFromSquare) {
  // The leader walks into the Warrior's reach; the Archer leaves the leader open to the Dorn.
  EXPECT_EQ(explain("k7/8/8/8/8/8/1w6/K7 w 0 1", "a1a2"), "Invalid Move: a1a2\n[ b2 ] threatens [ a1 ]\n");
  EXPECT_EQ(explain("8/8/8/8/k7/8/A7/K7 w 0 1", "a2b2"), "Invalid Move: a2b2\n[ a4 ] threatens [ a1 ]\n");
  EXPECT_EQ(explain("k7/8/8/8/8/8/1w6/K7 w 0 1", "a1h8"), "Invalid Move: a1h8\n[ K ] cannot move like that\n");
  EXPECT_EQ(explain("k7/8/8/8/8/8/1w6/K7 w 0 1", "b2b3"), "Invalid Move: b2b3\nYou cannot move the enemy [ w ]\n");
  EXPECT_EQ(explain("k7/8/8/8/8/8/8/7K w 0 1", "e4e5"), "Invalid Move: e4e5\nThere is no WHITE piece at square e4\n");
  // A word that names no move reads as a1a1, and what stands on a1 answers for it.
  EXPECT_EQ(explain("k7/8/8/8/8/8/1w6/K7 w 0 1", "e4e5"), "Invalid Move: e4e5\n[ K ] cannot move like that\n");
}

// Game files: save and open through the program, the options section, and ucinewgame's game options.
#include <gtest/gtest.h>

#include <string>

#include "../support/run_dorn.h"
#include "../support/scratch_dir.h"
#include "frontend/game_options.h"

namespace {

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// A folder of its own for the files a test writes.
class GameFiles : public ::testing::Test {
 protected:
  std::string file(const std::string& name) const { return (scratch.path / name).string(); }
  std::string read(const std::string& name) const { return scratch.read(name); }
  void write(const std::string& name, const std::string& text) const { scratch.write(name, text); }

  ScratchDir scratch;
  const std::string dir = scratch.path.string();
};

const char* const MagicianStart = "wfwwa3/wksma3/wn6/aa6/6AA/6NW/3AMSKW/3AWWFW w 0 1";

}  // namespace

TEST_F(GameFiles, SaveWritesTheFenTheOptionsAndTheMoves) {
  runDorn(std::string("sp ") + MagicianStart + "    startpos moves f2e3  c7d6\nsave " + file("g") + "\n");
  EXPECT_EQ(read("g"),
            std::string(MagicianStart) +
                " \ngameoptions [\n board magician\n rules:\n  bondsmenLeaders 1\n  basePromotions 1\n"
                "  capturePromotions 0\n  exchanges 1\n  swordsCaptureMounts 0\n  magicianDemotesDorn 1\n"
                "  magicianExtendedDemotionSqs 0\n  powerMagicianExtendedDemotionSqs 0\n  siegeExchanges 1\n"
                " search:\n  defaultMoveTime 3\n  blackMoveTime 0\n  defaultDepth 0\n  blackDepth 0\n"
                "  computerOnComputer 0\n  msgLevel 0\n ]\n startpos moves f2e3 c7d6\n");
  EXPECT_TRUE(contains(runDorn("save " + file("g") + "\n"), "Saved game to " + file("g") + "\n"));
}

TEST_F(GameFiles, EverySettingSurvivesSaveAndOpen) {
  runDorn("new rescuegeneral\nrules noexchanges swordscapturemounts magicianextendeddemotionsqs 2\n"
          "mt 2.5\nmtb 7\nskill 4\nskillb 9\ncc\nmsglevel 1\nsave " + file("a") + "\n");
  // A program that starts afresh reads it all back and writes the same file again.
  std::string out = runDorn("open " + file("a") + "\ngame\nsave " + file("b") + "\n");
  EXPECT_EQ(read("a"), read("b"));
  EXPECT_TRUE(contains(read("b"), " defaultMoveTime 2.5\n  blackMoveTime 7\n  defaultDepth 4\n  blackDepth 9\n"
                                  "  computerOnComputer 1\n  msgLevel 1\n"));
  EXPECT_TRUE(contains(out, "Game is currently set to 'rescuegeneral'...\nComputer on Computer is set to: ON\n"
                            "Skill level (White): 4\nMove time   (White): 2.5s\nSkill level (Black): 9\n"
                            "Move time   (Black): 7s\n"))
      << out;
  EXPECT_TRUE(contains(out, "Exchanges moves are: OFF")) << out;
  // The Siege 1 tower stands on the board that was opened.
  EXPECT_TRUE(contains(out, "4|   | . |   | # | # | . | A | A |")) << out;
}

TEST_F(GameFiles, OpenTakesBareFensAndMoveListsAndKeepsTheSettings) {
  write("fen", std::string(MagicianStart) + "\n");
  write("moves", std::string(MagicianStart) + "\r\nstartpos moves f2e3\r\n");
  std::string out = runDorn("mt 9\nmsglevel 2\nopen " + file("fen") + "\nopen " + file("moves") + "\n");
  EXPECT_TRUE(contains(out, std::string("fen ") + MagicianStart + "  startpos moves \n")) << out;
  EXPECT_TRUE(contains(out, std::string("fen ") + MagicianStart + " startpos moves f2e3 \n")) << out;
  EXPECT_TRUE(contains(out, "BLACK to move")) << out;
  out = runDorn("mt 9\nopen " + file("fen") + "\ngame\n");
  EXPECT_TRUE(contains(out, "Move time   (White): 9s")) << out;
}

TEST_F(GameFiles, BrokenSectionsFallBackAsTheFileSays) {
  // No closing brace: the message, and the FEN is still read from the text.
  write("nobrace", std::string(MagicianStart) + " gameoptions [ board basic startpos moves a2a3\n");
  std::string out = runDorn("open " + file("nobrace") + "\ngame\n");
  EXPECT_TRUE(contains(out, "?game file has no matching end brace ']' for '['\n")) << out;
  EXPECT_TRUE(contains(out, "Game is currently set to 'magician'")) << out;

  // An unknown board and absent keys: magician, every rule and time 0.
  write("sparse", std::string(MagicianStart) + " gameoptions [ board chess ] startpos moves\n");
  out = runDorn("open " + file("sparse") + "\ngame\n");
  EXPECT_TRUE(contains(out, "? unknown gameType 1, using default 1\n")) << out;
  EXPECT_TRUE(contains(out, "Game is currently set to 'magician'...\nComputer on Computer is set to: OFF\n\n"
                            "Current game rules:"))
      << out;
  EXPECT_TRUE(contains(out, "Exchanges moves are: OFF")) << out;

  // A move that is no legal move: the replay's message, then the start position of the game type.
  write("badmove", std::string(MagicianStart) + " startpos moves f2e3 g2f3\n");
  out = runDorn("open " + file("badmove") + "\nsave " + file("after") + "\n");
  EXPECT_TRUE(contains(out, "?Illegal move...g2f3, fen file is broken, fix it..\n")) << out;
  EXPECT_TRUE(contains(read("after"), "]\n startpos moves\n"));

  write("level", std::string(MagicianStart) + " gameoptions [ board magician msgLevel 7 ] startpos moves\n");
  EXPECT_TRUE(contains(runDorn("open " + file("level") + "\n"), "Message level must be between [0-2]\n"));
}

TEST_F(GameFiles, UnreadableFilesAndRefusedGamesLoseNothing) {
  runDorn(std::string("sp ") + MagicianStart + " startpos moves f2e3\nsave " + file("game") + "\n");
  // Two Dorns side by side: the side to move could take the enemy leader.
  write("refused", "8/8/8/3kK3/8/8/8/8 w 0 1 gameoptions [ board basic msgLevel 2 ] startpos moves\n");
  std::string out = runDorn("open " + file("game") + "\nopen\nopen " + file("missing") + "\nopen " + dir +
                            "\nopen " + file("refused") + "\nsave\nsave " + dir + "/no/such\nsave " +
                            file("again") + "\ngame\n");
  EXPECT_TRUE(contains(out, "?No filename entered\nUnable to open file " + file("missing") + "\n")) << out;
  EXPECT_TRUE(contains(out, "Unable to open file " + dir + "\n")) << out;
  EXPECT_TRUE(contains(out, "Illegal position: the side to move can capture the enemy leader")) << out;
  EXPECT_TRUE(contains(out, "?No filename entered\nCan't create file " + dir + "/no/such\n")) << out;
  EXPECT_TRUE(contains(out, "Game is currently set to 'magician'")) << out;
  EXPECT_EQ(read("again"), read("game"));
}

TEST(GameOptions, UcinewgameChangesOnlyWhatItNames) {
  std::string out = runDorn("mt 5\nucinewgame board rescuedorn exchanges 0 defaultMoveTime 9\ngame\nboardtypes\n"
                            "ucinewgame capturePromotions 1\ngame\n");
  EXPECT_TRUE(contains(out, "Game is currently set to 'rescuedorn'...\nComputer on Computer is set to: OFF\n"
                            "Move time   (White): 5s\n"))
      << out;
  EXPECT_TRUE(contains(out, "Exchanges moves are: OFF")) << out;
  EXPECT_TRUE(contains(out, "basic magician powermagician rescuegeneral rescuedorn \n")) << out;
  // Without a board word the game type stays.
  EXPECT_TRUE(contains(out, "Game is currently set to 'rescuedorn'...\nComputer on Computer is set to: OFF\n"
                            "Move time   (White): 5s\n\nCurrent game rules:\n===================\n"
                            "bondsmen leaders are: ON\t..[bondsmenleaders/nobondsmenleaders]\n"
                            "Enemy base promotions are: ON\t..[basepromotions/nobasepromotions]\n"
                            "Capture promotions are: ON"))
      << out;
}

TEST(GameOptions, KeysAreFoundAsPlainTextAndSpacesCollapse) {
  const std::string section = "board basic siegeExchanges 0 powerMagicianExtendedDemotionSqs 2 exchanges 1";
  EXPECT_EQ(optionValueOf(section, "exchanges"), "1");
  EXPECT_EQ(optionValueOf(section, "magicianExtendedDemotionSqs"), "");
  EXPECT_EQ(optionValueOf(section, "siegeExchanges"), "0");
  EXPECT_EQ(optionValueOf("a exchanges", "exchanges"), "");
  EXPECT_EQ(collapseSpaces("a  b\n\n c \t"), "a b\nc");
  EXPECT_EQ(collapseSpaces("   "), "");
}

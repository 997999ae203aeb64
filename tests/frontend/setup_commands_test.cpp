// Console set-up commands, settings and perft, driven through the program's standard input.
#include <gtest/gtest.h>

#include <string>

#include "../support/run_dorn.h"

namespace {

const std::string DefaultRules =
    "\nCurrent game rules:\n===================\n"
    "bondsmen leaders are: ON\t..[bondsmenleaders/nobondsmenleaders]\n"
    "Enemy base promotions are: ON\t..[basepromotions/nobasepromotions]\n"
    "Capture promotions are: OFF\t..[capturepromotions/nocapturepromotions]\n"
    "Exchanges moves are: ON\t\t..[exchanges/noexchanges]\n"
    "Swords capture mounts is: OFF\t..[swordscapturemounts/noswordscapturemounts]\n"
    "Magician demotes Dorn is: ON\t..[magiciandemotesdorn/nomagiciandemotesdorn]\n"
    "# Magician extended demotions squares is: 0 ..[magicianextendeddemotionsqs  0-2]\n"
    "# Power magician extended demotions squares is: 0 ..[powermagicianextendeddemotionsqs  0-2]\n"
    "siege exchanges are: ON\t..[siegeexchanges/nosiegeexchanges]\n";

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

}  // namespace

TEST(SetupCommands, GameShowsSettingsAndRules) {
  std::string out = runDorn("game\n");
  EXPECT_TRUE(contains(out,
                       "\nGame settings:\n==============\n\nGame is currently set to 'magician'...\n"
                       "Computer on Computer is set to: OFF\nMove time   (White): 3s\n" +
                           DefaultRules))
      << out;
}

TEST(SetupCommands, NewSelectsTheGameTypeAndFallsBackToMagician) {
  std::string out = runDorn("new rescuegeneral\n");
  EXPECT_TRUE(contains(out, "8| w | f | w | m+| a | . |   | . |")) << out;
  EXPECT_TRUE(contains(out, "4|   | . |   | # | # | . | A | A |")) << out;
  EXPECT_TRUE(contains(out, "Game is currently set to 'rescuegeneral'...")) << out;
  out = runDorn("new rescuedorn\nnew nosuchgame\n");
  EXPECT_TRUE(contains(out, "Game is currently set to 'magician'...")) << out;
}

TEST(SetupCommands, RulesReportUnknownWordsAndKeepTheRest) {
  std::string out = runDorn("rules capturepromotions nonsense nobasepromotions\n");
  EXPECT_TRUE(contains(out, "Unknown directive 'nonsense'\n")) << out;
  EXPECT_TRUE(contains(out, "Enemy base promotions are: OFF")) << out;
  EXPECT_TRUE(contains(out, "Capture promotions are: ON")) << out;
  out = runDorn("rules on\nrules nocapturepromotions\n");
  EXPECT_TRUE(contains(out, "Unknown directive 'on'\n")) << out;
  EXPECT_TRUE(contains(out, "Unknown directive 'nocapturepromotions'\n")) << out;
  out = runDorn("rules magicianextendeddemotionsqs 3 powermagicianextendeddemotionsqs 2\n");
  EXPECT_TRUE(contains(out, "? magician extended demotion squares must be in range [0-2]\n")) << out;
  EXPECT_TRUE(contains(out, "# Magician extended demotions squares is: 0 ")) << out;
  EXPECT_TRUE(contains(out, "# Power magician extended demotions squares is: 2 ")) << out;
  EXPECT_TRUE(contains(runDorn("rules\n"), DefaultRules));
}

TEST(SetupCommands, RulesChangeTheMovesOfAReplayedGame) {
  // With lone Dorns the Warrior's line check must be answered: seven replies, not forty.
  std::string out = runDorn("new basic\nrules nobondsmenleaders\nposition startpos moves f2e3 b7d6 e2d3\nperft 1\n",
                            "", true);
  EXPECT_TRUE(contains(out, "\nPerft 1 leaf nodes: 7\n")) << out;
}

TEST(SetupCommands, TimesSkillAndMessageLevel) {
  std::string out = runDorn("mt 0\nmt 8\nmtb 0\nmtb 200\nmtb 2.5\nskill 99\nskill x\nskillb 2\nmsglevel 3\nmsglevel\nmsglevel 2\n");
  EXPECT_TRUE(contains(out,
                       "moveTime (s) is out of range (0) Valid range[0-180s]\n"
                       "ok, move time set to 8 seconds\n"
                       "ok, BLACK move time reset, same as white 8 seconds\n"
                       "moveTime (s) is out of range (200) Valid range[0-180s]\n"
                       "ok, BLACK move time set to 2.5 seconds\n"
                       "ok, new skill level is 99\n"
                       "ok, skill level reset to the default skill level\n"
                       "ok, new skill level for BLACK is 2\n"
                       "Message level must be between [0-2]\n"
                       "Message level is currently 0\n"
                       "ok, Message level set to 2\n"))
      << out;
}

TEST(SetupCommands, TimesThatAreNoNumbersReadAsZero) {
  std::string out = runDorn("mtb nan\nmt 0x10\nmt 2.5x\n");
  EXPECT_TRUE(contains(out,
                       "ok, BLACK move time reset, same as white 3 seconds\n"
                       "moveTime (s) is out of range (0) Valid range[0-180s]\n"
                       "ok, move time set to 2.5 seconds\n"))
      << out;
}

TEST(SetupCommands, SetPositionAcceptsMovesAndFallsBackOnBadText) {
  std::string out = runDorn("sp\nsp k7/8/8/8/8/8/8/7K w 0 1\n");
  EXPECT_TRUE(contains(out, "?No fen string entered\n")) << out;
  EXPECT_TRUE(contains(out, "8| k | . |   | . |   | . |   | . |")) << out;
  out = runDorn("sp k7/8/8/8/8/8/8/7K w 0 1 startpos moves h1g1\nd\n");
  EXPECT_TRUE(contains(out, "1|   | . |   | . |   | . | K | . |\n +---+---+---+---+---+---+---+---+\n---a---b---c---d---e---f---g---h--\nBLACK to move"))
      << out;
  out = runDorn("sp 8/8/8/8/8/8/8/7K w 0 1\n");
  EXPECT_TRUE(contains(out, "No black dorn on board\n")) << out;
  EXPECT_TRUE(contains(out, "8| w | f | w | w | a | . |   | . |")) << out;
}

TEST(SetupCommands, PerftCountsTheCurrentPosition) {
  std::string out = runDorn("perft 2\nperft\n", "", true);
  EXPECT_TRUE(contains(out, "\nPosition: 1/1\n\nPerft 2 leaf nodes: 626\n")) << out;
  EXPECT_TRUE(contains(out, "\n===========================\nTotal time (ms) : ")) << out;
  EXPECT_TRUE(contains(out, "\nNodes searched  : 626\nNodes/second    : ")) << out;
  EXPECT_TRUE(contains(out, "Unknown command: perft\n")) << out;
  out = runDorn("", "perft 1", true);
  EXPECT_TRUE(contains(out, "Perft 1 leaf nodes: 25\n")) << out;
}

TEST(SetupCommands, HelpTextUsesTheMoveTime) {
  std::string out = runDorn("mt 5\n?\n");
  EXPECT_TRUE(contains(out, "m a2c3    [Moves piece from square A2 to C3]\ng         [computer makes move in 5s]\n")) << out;
  EXPECT_TRUE(contains(out, "setmem 64 [set size in MB of memory used, default 32MB, min 4MB]\nquit      [exits dorn]\n"))
      << out;
}

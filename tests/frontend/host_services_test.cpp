// The host's legality and notation services on positions of every game type and on bad input.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "../support/capture_stdout.h"
#include "frontend/host_game_setup.h"
#include "frontend/host_services.h"
#include "frontend/settings.h"
#include "game/piece_values.h"
#include "game/position.h"
#include "game/rules.h"

namespace {

class HostServices : public ::testing::Test {
 protected:
  void TearDown() override {
    selectGame("magician");
    resetRuleFlags();
    setPieceValues(Position());
  }

  // As a host picks the game: ucinewgame board <type>.
  void selectGame(const std::string& type) {
    CaptureStdout quiet;
    std::istringstream words("board " + type);
    ucinewgameCommand(pos, words);
  }

  LegalityReport check(const std::string& move, const std::string& positionText) {
    CaptureStdout quiet;
    return checkProposedMove(pos, move, positionText);
  }

  std::string san(const std::string& text) {
    std::istringstream words(text);
    return movesToSan(pos, words);
  }

  Position pos;
};

const std::string TwoWarriors = "k7/8/8/2W5/2W5/8/8/7K w 0 1";

}  // namespace

TEST_F(HostServices, MateCaptureDemotionAndPromotionInThePlainGames) {
  selectGame("basic");
  LegalityReport r = check("e3d4", "k7/8/8/8/3a4/4A3/8/7K w 0 1");
  EXPECT_TRUE(r.legal);
  EXPECT_EQ(r.san, "Axd4");

  selectGame("magician");
  r = check("c5b6", TwoWarriors);
  EXPECT_TRUE(r.legal && r.ended);
  EXPECT_EQ(r.san, "W5b6#");
  EXPECT_EQ(r.checkersAfter, "[ b6 ] threatens [ a8 ]");
  EXPECT_EQ(r.movesAfter, "");
  EXPECT_EQ(r.draw, "");
  // A Sword promoted on arrival gives check; the game goes on.
  r = check("b6a7", "k7/8/1S6/8/8/8/8/7K w 0 1");
  EXPECT_TRUE(r.legal);
  EXPECT_FALSE(r.ended);
  EXPECT_EQ(r.san, "Sa7=W+");
  EXPECT_EQ(r.checkersAfter, "[ a7 ] threatens [ a8 ]");
  EXPECT_EQ(r.movesAfter, "a8d5 a8a7 a8d8 ");

  selectGame("powermagician");
  r = check("e3e5", "k7/8/8/4w3/8/4H3/8/7K w 0 1");
  EXPECT_EQ(r.san, "M+xe5<A");
  EXPECT_EQ(r.movesBefore.substr(0, 5), "e3e5 ");
}

TEST_F(HostServices, SiegeBreachPickUpAndGoal) {
  selectGame("rescuegeneral");
  EXPECT_EQ(check("c4d4", "k7/8/8/8/2M5/8/8/7K w 0 1").san, "Md4<%");
  LegalityReport r = check("c4d4", "k7/8/8/8/2A5/8/8/7K w 0 1 - Breached { D4 }");
  EXPECT_EQ(r.san, "Ad4");
  EXPECT_FALSE(r.ended);
  // The goal ends the game whichever side carried the captive there.
  r = check("b4a4", "k7/8/8/8/1A6/8/8/7K w 0 1 B4");
  EXPECT_TRUE(r.legal && r.ended);
  EXPECT_EQ(r.san, "Aa4#");
  EXPECT_EQ(r.checkersAfter, "");
  r = check("b5a4", "k7/8/8/1a6/8/8/8/7K b 0 1 B5");
  EXPECT_TRUE(r.ended);

  selectGame("rescuedorn");
  r = check("g5h5", "f7/8/8/6A1/8/8/8/6F1 w 0 1 - 1 - 1 BreachedWhite { H5 }");
  EXPECT_TRUE(r.legal);
  EXPECT_EQ(r.san, "Ah5");
  EXPECT_EQ(san("f7/8/8/6A1/8/8/8/6F1 w 0 1 - 1 - 1 BreachedWhite { H5 } moves g5h5 a8b8 h5g4"), "Ah5 Fb8 Ag4 ");
}

TEST_F(HostServices, DrawsAreJudgedOnThePositionTheMoveIsProposedIn) {
  EXPECT_EQ(check("h1h2", "k7/8/8/8/8/8/8/7K w 0 1").draw, "not enough material for anyone to win");
  EXPECT_EQ(check("h1g1", "k7/8/8/2W5/2W5/8/8/7K w 100 1").draw, "100 moves and no captures");
  // A move that ends the game is not asked about a draw.
  LegalityReport mate = check("c5b6", "k7/8/8/2W5/2W5/8/8/7K w 100 1");
  EXPECT_TRUE(mate.ended);
  EXPECT_EQ(mate.draw, "");
  LegalityReport r = check("h1g1", TwoWarriors + " moves h1h2 a8b8 h2h1 b8a8 h1h2 a8b8 h2h1 b8a8");
  EXPECT_EQ(r.draw, "three move repetition");
  EXPECT_FALSE(r.ended);
  // Taking the last enemy piece leaves two bare leaders, but the position asked about is no draw.
  r = check("h1g2", "k7/8/8/8/8/8/6w1/7K w 0 1");
  EXPECT_EQ(r.draw, "");
  EXPECT_EQ(r.san, "Kxg2");
  EXPECT_EQ(r.checkersBefore, "[ g2 ] threatens [ h1 ]");
  EXPECT_EQ(r.phase, 0);

  selectGame("rescuegeneral");
  EXPECT_EQ(check("h1h2", "k7/8/8/8/8/8/8/7K w 0 1").draw, "no magicians left to breach the tower");
}

TEST_F(HostServices, OneReportLineWithEveryField) {
  EXPECT_EQ(legalityLine(check("h1h2", "k7/8/8/8/8/8/8/7K w 0 1")),
            "1 0 ^not enough material for anyone to win ^ ^ "
            "^h1e1 h1f1 h1g1 h1f2 h1g2 h1h2 h1f3 h1g3 h1h3 h1e4 h1h4  "
            "^a8a5 a8d5 a8a6 a8b6 a8c6 a8a7 a8b7 a8c7 a8b8 a8c8 a8d8  "
            "^a8a5 a8d5 a8a6 a8b6 a8c6 a8a7 a8b7 a8c7 a8b8 a8c8 a8d8  ^0 ^Kh2 ^");
  EXPECT_EQ(legalityLine(check("f2e3", "startpos moves")).substr(0, 11), "1 0 ^ ^ ^ ^");
  EXPECT_EQ(check("f2e3", "startpos moves").phase, 128);
}

TEST_F(HostServices, EnemyMovesAreTheOtherSidesAndLeaveThePositionAsItWas) {
  LegalityReport black = check("a8b8", "k7/8/1S6/8/8/8/8/7K b 0 1");
  LegalityReport white = check("b6c7", "k7/8/1S6/8/8/8/8/7K w 0 1");
  EXPECT_EQ(white.enemyMoves, black.movesBefore);
  EXPECT_EQ(white.enemyMoves, white.movesAfter);  // the Sword on c7 takes no square from the Dorn
  EXPECT_EQ(white.san, "Sc7");

  // With no move made, pos is the replayed position again: side, key, counters and checkers.
  const std::string inCheck = "k7/8/8/8/8/8/6w1/7K w 7 1";
  Position fresh;
  ASSERT_TRUE(fresh.set(inCheck, nullptr));
  EXPECT_NE(check("zzzz", inCheck).enemyMoves, "");
  EXPECT_EQ(pos.side(), WHITE);
  EXPECT_EQ(pos.key(), fresh.key());
  EXPECT_EQ(pos.checkers(), fresh.checkers());
  EXPECT_NE(pos.checkers(), 0u);
  EXPECT_EQ(pos.state()->pliesSinceCapture, 7);
  EXPECT_EQ(pos.state()->pliesSinceNull, fresh.state()->pliesSinceNull);
}

TEST_F(HostServices, RefusedTextsAndWordsThatMatchNoMove) {
  const LegalityReport broken = check("a1a2", "xyz w 0 1");
  EXPECT_EQ(legalityLine(broken), "0 0 ^ ^ ^ ^ ^ ^ ^0 ^ ^");
  EXPECT_EQ(legalityLine(check("h1h2", TwoWarriors + " moves h1h1")), "0 0 ^ ^ ^ ^ ^ ^ ^0 ^ ^");
  EXPECT_EQ(legalityLine(check("", "")), "0 0 ^ ^ ^ ^ ^ ^ ^0 ^ ^");

  // Only the exact four-character wire form is a move, as at the console.
  for (const char* word : {"zzzz", "c5b6w", "C5B6", "c5b", "c5c5"}) {
    LegalityReport r = check(word, TwoWarriors);
    EXPECT_FALSE(r.legal) << word;
    EXPECT_NE(r.movesBefore, "") << word;
    EXPECT_EQ(r.san, "") << word;
    EXPECT_EQ(r.movesAfter, "") << word;
  }

  // The host's replay names an enemy leader left en prise in words of its own, and only it does.
  {
    CaptureStdout out;
    checkProposedMove(pos, "h1h2", "k7/1W6/8/8/8/8/8/7K w 0 1");
    EXPECT_EQ(out.text(), "BLACK leader capture error\n");
  }
  EXPECT_FALSE(checkLeaderCapture);
  EXPECT_FALSE(checkDornCount);
}

TEST_F(HostServices, NotationOfAMoveList) {
  EXPECT_EQ(san(TwoWarriors + " moves c5b6"), "W5b6# ");
  {
    // A word with no move ends the list; only the reader's own line for a short word comes with it.
    CaptureStdout out;
    EXPECT_EQ(san(TwoWarriors + " moves h1h2 a8b8 zz c5b6"), "Kh2 Kb8 ");
    EXPECT_EQ(out.text(), "?Illegal move zz\n");
  }
  EXPECT_EQ(san(TwoWarriors + " moves"), "<none>");
  EXPECT_EQ(san(TwoWarriors), "<none>");
  EXPECT_EQ(san(TwoWarriors + " moves e2e4"), "<none>");  // an empty from square parses to no move
  EXPECT_EQ(san("k7/8/1S6/8/8/8/8/7K w 0 1 moves b6a7 a8b8 a7b7"), "Sa7=W+  ?Illegal move...a8b8\n");
  EXPECT_EQ(san(TwoWarriors + " moves a8b8"), " ?Illegal move...a8b8\n");

  {
    CaptureStdout out;
    EXPECT_EQ(san("xyz w 0 1 moves a1a2"), "");
    EXPECT_NE(out.text(), "");  // the reader's reason
  }
  gameMoveCount = 7;
  san(TwoWarriors + " moves h1h2 a8b8");
  EXPECT_EQ(gameMoveCount, 7);

  selectGame("rescuegeneral");
  EXPECT_EQ(san("k7/8/8/8/2M5/8/8/7K w 0 1 moves c4d4 a8b8 c4c5 b8a8 c5d5 a8b8 c5b5"),
            "Md4<% Kb8 Mc5 Ka8 Md5<% Kb8 Mb5 ");
}

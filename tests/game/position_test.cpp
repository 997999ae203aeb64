// FEN reading and writing, siege tails, refusals, keys, copies and the board picture.
#include <gtest/gtest.h>

#include "core/messages.h"
#include "core/psqt.h"
#include "core/zobrist.h"
#include "game/position.h"
#include "game/rules.h"
#include "../support/capture_stdout.h"
#include "../support/start_picture.h"

namespace {

constexpr Bitboard bb(Square s) { return Bitboard(1) << s; }

const std::string MagicianStart = "wfwwa3/wksma3/wn6/aa6/6AA/6NW/3AMSKW/3AWWFW";
const std::string RescueDornTail =
    " -  1  -  1 TowerWhite { H5 H6  } BreachedWhite {  } TowerBlack { A3 A4  } BreachedBlack {  } "
    "DropoffSquaresWhite { A1  } DropoffSquaresBlack { H8  } ";

class PositionTest : public ::testing::Test {
 protected:
  void TearDown() override {
    resetRuleFlags();
    setSiegeModes(DefaultGameType);
    msgFlags = msgFlagsByLevel[0];
    checkDornCount = checkLeaderCapture = false;
  }

  // Sets the FEN and returns what the reader printed.
  std::string load(const std::string& fen, bool expectOk = true) {
    CaptureStdout out;
    bool ok = pos.set(fen, nullptr);
    EXPECT_EQ(ok, expectOk) << fen << "\n" << out.text();
    return out.text();
  }

  Position pos;
};

// ---------------------------------------------------------------- round trips

TEST_F(PositionTest, StartPositionsOfAllGameTypesRoundTrip) {
  for (const GameType& type : gameTypeTable) {
    setSiegeModes(type.number);
    EXPECT_EQ(load(type.startFen), "") << type.name;
    std::string expected = std::string(type.startFen) + (type.number == 4 ? RescueDornTail : "");
    EXPECT_EQ(pos.fen(), expected) << type.name;
    load(pos.fen());
    EXPECT_EQ(pos.fen(), expected) << type.name;
  }
}

TEST_F(PositionTest, SiegeOneTailsRoundTrip) {
  setSiegeModes(3);
  // A captive outside the tower with the default tower: the tail is the captive alone.
  load(MagicianStart + " w 0 1 E6");
  EXPECT_EQ(pos.siege1CaptiveSquare, E6);
  EXPECT_EQ(pos.siege1LastCaptiveSquare, E6);
  EXPECT_EQ(pos.fen(), MagicianStart + " w 0 1 E6 ");

  // A breached tower writes every entry; squares read in either case.
  load(MagicianStart + " b 4 9 - Tower { d4 E4 D5 e5 } Breached { D4 } WinSquaresWhite { A4 B4 } "
                       "WinSquaresBlack { H5 }");
  EXPECT_EQ(pos.siege1Tower, bb(E4) | bb(D5) | bb(E5));
  EXPECT_EQ(pos.siege1Breached, bb(D4));
  EXPECT_EQ(goalSquareCount[WHITE], 2);
  EXPECT_EQ(firstGoalSquare[WHITE], A4);
  std::string expected = MagicianStart +
                         " b 4 9 - Tower { D4 E4 D5 E5  } Breached { D4  } WinSquaresWhite { A4 B4  } "
                         "WinSquaresBlack { H5  } ";
  EXPECT_EQ(pos.fen(), expected);
  EXPECT_EQ(load(expected), "");
  EXPECT_EQ(pos.fen(), expected);

  // A captive inside a standing tower square is unknown to the reader.
  load(MagicianStart + " w 0 1 D4");
  EXPECT_EQ(pos.fen(), MagicianStart + " w 0 1");
}

TEST_F(PositionTest, SiegeTwoTailsRoundTrip) {
  setSiegeModes(4);
  std::string fen = "wfwwa3/w1sah3/wn6/aa6/6AA/6NW/3HAS1W/3AWWFW b 2 5 H6 1 b6 0 TowerWhite { H5 H6 } "
                    "BreachedWhite { H6 } TowerBlack { A3 A4 B4 } BreachedBlack { } DropoffSquaresWhite { A1 B1 } "
                    "DropoffSquaresBlack { H8 }";
  load(fen);
  EXPECT_EQ(pos.siege2CaptiveSquare[WHITE], H6);
  EXPECT_EQ(pos.siege2LastCaptiveSquare[WHITE], H6);
  EXPECT_EQ(pos.siege2CaptiveSquare[BLACK], B6);
  EXPECT_TRUE(pos.siege2CaptiveAlive[WHITE]);
  EXPECT_FALSE(pos.siege2CaptiveAlive[BLACK]);
  EXPECT_FALSE(pos.siege2CaptiveReleased[WHITE]);
  EXPECT_EQ(pos.siege2Tower[WHITE], bb(H5));
  EXPECT_EQ(pos.siege2Tower[BLACK], bb(A3) | bb(A4) | bb(B4));
  EXPECT_EQ(goalSquares[WHITE], bb(A1) | bb(B1));
  std::string expected = "wfwwa3/w1sah3/wn6/aa6/6AA/6NW/3HAS1W/3AWWFW b 2 5 H6  1  B6  0 TowerWhite { H5 H6  } "
                         "BreachedWhite { H6  } TowerBlack { A3 A4 B4  } BreachedBlack {  } "
                         "DropoffSquaresWhite { A1 B1  } DropoffSquaresBlack { H8  } ";
  EXPECT_EQ(pos.fen(), expected);
  EXPECT_EQ(load(expected), "");
  EXPECT_EQ(pos.fen(), expected);
}

TEST_F(PositionTest, SiegeDefaultsComeBackWithEverySetUp) {
  setSiegeModes(4);
  load("wfwwa3/w1sah3/wn6/aa6/6AA/6NW/3HAS1W/3AWWFW w 0 1 - 0 - 0 TowerWhite { H4 } DropoffSquaresBlack { G8 }");
  EXPECT_EQ(siege2TowerSquares[WHITE], bb(H4));
  load(gameTypeTable[4].startFen);
  EXPECT_EQ(pos.fen(), std::string(gameTypeTable[4].startFen) + RescueDornTail);
  EXPECT_TRUE(pos.siege2CaptiveAlive[WHITE] && pos.siege2CaptiveAlive[BLACK]);
}

TEST_F(PositionTest, StartposAfterCountersEndsTheTailInBothModes) {
  for (int type : {3, 4}) {
    setSiegeModes(type);
    load(gameTypeTable[type].startFen);
    std::string plain = pos.fen();
    EXPECT_EQ(load(std::string(gameTypeTable[type].startFen) + " startpos Tower { A1 }"), "");
    EXPECT_EQ(pos.fen(), plain);
  }
  // Behind a captive square the word is read as an option name like any other.
  setSiegeModes(3);
  EXPECT_EQ(load(MagicianStart + " w 0 1 E6 startpos"), "Unknown fen option 'startpos'\n");
  EXPECT_EQ(pos.siege1CaptiveSquare, E6);
}

TEST_F(PositionTest, LastOptionOfEachModeEndsTheList) {
  setSiegeModes(3);
  EXPECT_EQ(load(MagicianStart + " w 0 1 - WinSquaresWhite { B4 } Tower { C3 } WinSquaresBlack { G5 } Bogus { A1 }"),
            "");
  EXPECT_EQ(goalSquares[WHITE], bb(B4));
  EXPECT_EQ(goalSquares[BLACK], bb(G5));
  EXPECT_EQ(pos.siege1Tower, bb(C3));
  setSiegeModes(4);
  EXPECT_EQ(load(std::string(gameTypeTable[4].startFen) + " - 1 - 1 DropoffSquaresBlack { G8 } TowerWhite { A1 }"),
            "");
  EXPECT_EQ(pos.siege2Tower[WHITE], bb(H5) | bb(H6));
  // Names of the other mode are unknown.
  setSiegeModes(3);
  EXPECT_EQ(load(MagicianStart + " w 0 1 - TowerWhite { A1 }"), "Unknown fen option 'TowerWhite'\n");
}

// ---------------------------------------------------------------- refusals and odd input

TEST_F(PositionTest, BoardErrorsPrintTheirMessages) {
  struct Case {
    std::string fen, message;
  } cases[] = {
    {"wfwwa3/wksma4/8/8/8/8/8/K7 w", "Too many squares specified on rank 7, max is 8 squares per row\n"},
    {"wfwwa4/8/8/8/8/8/8/K7 w", "Too many squares specified on rank 8, max is 8 squares per row\n"},
    {"8/8/8/8/8/8/8/K6KK w", "Too many squares specified on rank 1, max is 8 squares per row\n"},
    {"wfwwa3w/8/8/8/8/8/8/K7 w", "? illegal board configuration, encountered 'w' at rank=8\n"},
    {"81/8/8/8/8/8/8/K7 w", "? illegal board configuration, encountered '1' at rank=8\n"},
    {"k7/8/8/8/8/8/8/K7/8 w", "Too many ranks on board, maximum 8 rows on board\n"},
    {"k7/8/8/8/8/8/8/8 w", "No white dorn on board\n"},
    {"8/8/8/8/8/8/8/8 w", "No white dorn on board\n"},
    {"8/8/8/8/8/8/8/K7 w", "No black dorn on board\n"},
    {"kj6/8/8/8/8/8/8/KI6 w", "Two or more white dorns on board\n"},
    {"kj6/8/8/8/8/8/8/K7 w", "Two or more black dorns on board\n"},
    // Another game's letters: p is a White Dorn, r no piece at all.
    {"k7/8/8/8/8/8/8/Kp6 w", "Two or more white dorns on board\n"},
    {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", "? illegal board configuration, letter 'r' names no piece\n"},
  };
  for (const Case& c : cases) EXPECT_EQ(load(c.fen, false), c.message) << c.fen;
}

TEST_F(PositionTest, BondsmenLeadOnlyWhenTheRuleSaysSo) {
  setSiegeModes(4);
  load(gameTypeTable[4].startFen);
  bondsmenLeaders = 0;
  EXPECT_EQ(load(gameTypeTable[4].startFen, false), "No white dorn on board\n");
}

TEST_F(PositionTest, SiegeTailErrorsKeepWhatWasRead) {
  setSiegeModes(3);
  Bitboard defaultTower = bb(D4) | bb(E4) | bb(D5) | bb(E5);
  EXPECT_EQ(load(MagicianStart + " w 0 1 - Tower D4"), "Error: fen missing '{' after Tower\n");
  EXPECT_EQ(pos.siege1Tower, defaultTower);
  EXPECT_EQ(load(MagicianStart + " w 0 1 - Breached { D4 Z9 } Tower { A1 }"),
            "Error: illegal square 'Z9' in fen option list for Breached\n");
  EXPECT_EQ(pos.siege1Breached, 0u);
  EXPECT_EQ(pos.siege1Tower, defaultTower);
  EXPECT_EQ(load(MagicianStart + " w 0 1 - Breached { E5 } Bogus { A1 } Breached { D4 }"),
            "Unknown fen option 'Bogus'\n");
  EXPECT_EQ(pos.siege1Breached, bb(E5));
  // Truncated tails: the end of the text closes a list or ends the reading.
  EXPECT_EQ(load(MagicianStart + " w 0 1 - Tower { D4 E4"), "");
  EXPECT_EQ(pos.siege1Tower, bb(D4) | bb(E4));
  EXPECT_EQ(load(MagicianStart + " w 0 1 - Tower"), "Error: fen missing '{' after Tower\n");
  setSiegeModes(4);
  EXPECT_EQ(load(std::string(gameTypeTable[4].startFen) + " C3 1 F6"), "");
  EXPECT_EQ(pos.siege2CaptiveSquare[BLACK], F6);
  EXPECT_TRUE(pos.siege2CaptiveAlive[BLACK]);
}

TEST_F(PositionTest, OddBoardTextNeverBreaksTheReader) {
  // A rank may stop short; letters of no table are passed over.
  load("wfwwa/wksma3/wn6/aa/6AA/6NW/3AMSKW/3AWWFW w");
  EXPECT_EQ(pos.fen(), MagicianStart + " w 0 1");
  load("wfwwxa3/wksma3/wn6/aa6/6AA/6NW/3AMSKW/3AWWFW\x01 w");
  EXPECT_EQ(pos.fen().substr(0, MagicianStart.size()), MagicianStart);
  load(std::string(100000, 'x') + "/k7/8/8/8/8/8/K7");
  EXPECT_EQ(pos.fen(), "8/k7/8/8/8/8/8/K7 b 0 1");
  load("", false);
  load("   " + MagicianStart);
  EXPECT_EQ(pos.fen(), MagicianStart + " b 0 1");
  load(MagicianStart + " w 99999999999999999999 99999999999999999999");
  load(MagicianStart + " w -5 -3");
  EXPECT_EQ(pos.gamePly, 0);
  // P, B, R and Q stand for the types of their place in another game's letters.
  load("k7/8/8/8/8/8/8/KPBRQ3 w");
  EXPECT_EQ(pos.fen(), "k7/8/8/8/8/8/8/KSNAM3 w 0 1");
}

TEST_F(PositionTest, CountersAndSideToMove) {
  load(MagicianStart + " b");
  EXPECT_EQ(pos.sideToMove, BLACK);
  EXPECT_EQ(pos.gamePly, 1);
  EXPECT_EQ(pos.state()->pliesSinceCapture, 0);
  load(MagicianStart + " w");
  EXPECT_EQ(pos.gamePly, 0);
  load(MagicianStart + " x 7 12");
  EXPECT_EQ(pos.sideToMove, BLACK);
  EXPECT_EQ(pos.gamePly, 23);
  EXPECT_EQ(pos.fen(), MagicianStart + " b 7 12");
  load(MagicianStart + " w 3 40");
  EXPECT_EQ(pos.gamePly, 78);
  EXPECT_EQ(pos.fen(), MagicianStart + " w 3 40");
}

// ---------------------------------------------------------------- keys and values

TEST_F(PositionTest, KeysFromScratchMatchAHandXor) {
  load("k7/8/8/8/8/8/SS6/6KF b");
  using namespace Zobrist;
  Key key = pieceKeys[BLACK][Dorn][A8] ^ pieceKeys[WHITE][Sword][A2] ^ pieceKeys[WHITE][Sword][B2] ^
            pieceKeys[WHITE][Dorn][G1] ^ pieceKeys[WHITE][Bondsman][H1] ^ sideKey;
  EXPECT_EQ(pos.key(), key);
  Key material = pieceKeys[BLACK][Dorn][0] ^ pieceKeys[WHITE][Sword][0] ^ pieceKeys[WHITE][Sword][1] ^
                 pieceKeys[WHITE][Dorn][0] ^ pieceKeys[WHITE][Bondsman][0];
  EXPECT_EQ(pos.materialKey(), material);

  int mg = 0, eg = 0;
  for (auto [p, s] : {std::pair{makePiece(BLACK, Dorn), A8}, {makePiece(WHITE, Sword), A2},
                      {makePiece(WHITE, Sword), B2}, {makePiece(WHITE, Dorn), G1}, {makePiece(WHITE, Bondsman), H1}}) {
    mg += mgValue(psq[p][s]);
    eg += egValue(psq[p][s]);
  }
  EXPECT_EQ(pos.state()->psqScore, makeScore(mg, eg));
  EXPECT_EQ(pos.state()->npMaterial[WHITE], pieceValueMg[Dorn] + pieceValueMg[Bondsman]);
  EXPECT_EQ(pos.state()->npMaterial[BLACK], pieceValueMg[Dorn]);
}

TEST_F(PositionTest, SiegeFieldsStayOutOfTheKey) {
  setSiegeModes(3);
  load(MagicianStart + " w 0 1");
  Key plain = pos.key();
  load(MagicianStart + " w 0 1 E6 Tower { D4 } Breached { D4 } WinSquaresWhite { } WinSquaresBlack { }");
  EXPECT_EQ(pos.key(), plain);
}

// ---------------------------------------------------------------- copies and queries

TEST_F(PositionTest, CopiesFollowTheirOwnStartRecord) {
  load(MagicianStart + " w 5 1");
  Position copy = pos;
  EXPECT_EQ(copy.state(), &copy.startState);
  Position assigned;
  assigned = pos;
  EXPECT_EQ(assigned.state(), &assigned.startState);
  EXPECT_EQ(assigned.fen(), pos.fen());

  // A position whose record lies outside keeps pointing there; a thread copy takes it in.
  StateInfo later = pos.startState;
  later.previous = &pos.startState;
  later.pliesSinceCapture = 6;
  pos.st = &later;
  pos.nodes = 42;
  Position flat = pos;
  EXPECT_EQ(flat.state(), &later);
  EvalTables* owner = reinterpret_cast<EvalTables*>(&later);
  Position forThread(pos, owner);
  EXPECT_EQ(forThread.state(), &forThread.startState);
  EXPECT_EQ(forThread.state()->pliesSinceCapture, 6);
  EXPECT_EQ(forThread.state()->previous, &pos.startState);
  EXPECT_EQ(forThread.nodes, 0u);
  EXPECT_EQ(forThread.thisThread, owner);
  pos.st = &pos.startState;
}

TEST_F(PositionTest, LeaderQueriesFollowTheBondsmanRule) {
  load("kf6/8/8/8/8/8/8/FF5J w");
  EXPECT_FALSE(pos.soleLeader(WHITE));
  EXPECT_FALSE(pos.soleLeader(BLACK));
  EXPECT_EQ(pos.leaderSquare(WHITE), H1);
  EXPECT_EQ(pos.dornType(WHITE), Dorn_archer);
  EXPECT_FALSE(pos.noDorn(WHITE));
  load("8/1f6/8/8/8/8/8/F7 w");
  EXPECT_TRUE(pos.soleLeader(WHITE));
  EXPECT_TRUE(pos.noDorn(BLACK));
  EXPECT_EQ(pos.leaderSquare(BLACK), B7);
  EXPECT_EQ(pos.dornType(BLACK), Bondsman);
  bondsmenLeaders = 0;
  load("kf6/8/8/8/8/8/8/FF4I1 w");
  EXPECT_TRUE(pos.soleLeader(WHITE));
  EXPECT_EQ(pos.leaderSquare(WHITE), G1);
  EXPECT_EQ(pos.dornType(WHITE), Dorn_sword);
}

TEST_F(PositionTest, TowerAndDropoffQueries) {
  setSiegeModes(4);
  load(std::string(gameTypeTable[4].startFen) + " A1 1 H8 0 BreachedWhite { H6 }");
  EXPECT_TRUE(pos.onStandingTower(H5));
  EXPECT_FALSE(pos.onStandingTower(H6));
  EXPECT_TRUE(pos.onStandingTower(A3));
  EXPECT_FALSE(pos.onStandingTower(NoSquare));
  EXPECT_TRUE(pos.onDropoff(WHITE, A1));
  EXPECT_FALSE(pos.onDropoff(BLACK, H8));  // that captive is dead
  EXPECT_FALSE(pos.onDropoff(WHITE, B1));
}

TEST_F(PositionTest, BoardEditingKeepsListsAndIndexInStep) {
  load("k7/8/8/8/8/8/8/SSS4K w");
  pos.removePiece(A1);
  EXPECT_EQ(pos.count(WHITE, Sword), 2);
  EXPECT_EQ(pos.pieceList[WHITE][Sword][2], NoSquare);
  for (int i = 0; i < 2; ++i) EXPECT_EQ(pos.index[pos.pieceList[WHITE][Sword][i]], i);
  pos.movePiece(C1, C5);
  EXPECT_EQ(pos.pieceOn(C5), makePiece(WHITE, Sword));
  EXPECT_TRUE(pos.empty(C1));
  EXPECT_EQ(pos.pieceList[WHITE][Sword][pos.index[C5]], C5);
  EXPECT_EQ(pos.pieces(WHITE, Sword), bb(B1) | bb(C5));
  EXPECT_EQ(pos.pieces(), pos.pieces(WHITE) | pos.pieces(BLACK));
}

// A type may fill as many squares as the board has: promotions can never overrun its list.
TEST_F(PositionTest, ManyPiecesOfOneType) {
  load("k7/8/SSSSSSSS/SSSSSSSS/SSSSSSSS/SSSSSSSS/SSSSSSSS/K7 w 0 1");
  EXPECT_EQ(pos.count(WHITE, Sword), 40);
  EXPECT_EQ(pos.pieceList[WHITE][Sword][40], NoSquare);
  EXPECT_EQ(pos.pieceList[WHITE][Sword][pos.index[H6]], H6);
  EXPECT_TRUE(pos.isConsistent());
}

// ---------------------------------------------------------------- picture

TEST_F(PositionTest, PictureOfTheDefaultStart) {
  load(MagicianStart + " w 0 1");
  const std::string& expected = DefaultStartPicture;
  EXPECT_EQ(pos.pretty(MoveNone, true, false), expected);
  std::string boardOnly = pos.pretty(MoveNone, true, true);
  EXPECT_EQ(boardOnly + "\n", expected);
}

TEST_F(PositionTest, PictureMarksOfTypesTowersAndCaptives) {
  setSiegeModes(3);
  load("k7/8/8/8/8/8/8/7K b 0 1 E6 Tower { D4 E4 D5 E5 } Breached { E5 } WinSquaresWhite { A4 } "
       "WinSquaresBlack { H5 }");
  std::string text = pos.pretty(MoveNone, false, false);
  EXPECT_NE(text.find("\n5|   | . |   | # |   | . |   | . |"), std::string::npos) << text;
  EXPECT_NE(text.find("\n6|   | . |   | . |@  | . |   | . |"), std::string::npos) << text;
  EXPECT_NE(text.find("BLACK to move, captive square: E6, last square: E6, state=2\n"), std::string::npos);

  load("hgkW4/8/8/8/8/8/8/ISM5 w 0 1 D4");
  text = pos.pretty(MoveNone, false, true);
  EXPECT_NE(text.find("\n8| m+| m-| k | W |"), std::string::npos) << text;
  EXPECT_NE(text.find("\n1|-KS| S | M |"), std::string::npos) << text;
  EXPECT_NE(text.find("\n4|   | . |   |@# | # | . |   | . |"), std::string::npos) << text;
  EXPECT_NE(text.find("captive square: D4, last square: D4, state=1"), std::string::npos);
  load("i7/8/8/8/8/8/8/7J w");
  text = pos.pretty(MoveNone, false, true);
  EXPECT_NE(text.find("\n8|-ks|"), std::string::npos) << text;
  EXPECT_NE(text.find("| KA|\n"), std::string::npos) << text;
  EXPECT_NE(text.find("captive square: -, last square: -, state=0"), std::string::npos);

  setSiegeModes(4);
  load("k7/8/8/8/8/8/8/7K w 0 1 A1 1 H8 0");
  text = pos.pretty(MoveNone, false, true);
  EXPECT_NE(text.find("\n6|   | . |   | . |   | . |   | # |"), std::string::npos) << text;
  EXPECT_NE(text.find("\n3| * | . |"), std::string::npos) << text;
  EXPECT_NE(text.find("\n8| k | . |   | . |   | . |   |&. |"), std::string::npos) << text;
  EXPECT_NE(text.find("\n1|@  | . |   | . |   | . |   | K |"), std::string::npos) << text;
  EXPECT_NE(text.find("WHITE to move, captive square (white): A1, last square (white): A1, captive alive (white): 1, "
                      "captive square (black): H8, last square (black): H8, captive alive (black): 0"),
            std::string::npos)
      << text;
}

TEST_F(PositionTest, PictureComplainsOfAPieceOnATower) {
  setSiegeModes(3);
  load("k7/8/8/8/3W4/8/8/7K w");
  CaptureStdout out;
  std::string text = pos.pretty(MoveNone, false, true);
  EXPECT_EQ(out.text(), "?Piece on siege1 tower square =D4,piece=6\n");
  EXPECT_NE(text.find("\n4|   | . |   | # |"), std::string::npos);
}

TEST_F(PositionTest, CheckersOfASoleLeader) {
  load("k7/8/1W6/8/8/8/8/7K b");
  EXPECT_EQ(pos.checkers(), bb(B6));
  std::string text = pos.pretty(MoveNone, true, false);
  EXPECT_NE(text.find("BLACK to move, [ b6 ] threatens [ a8 ]\nLegal moves: "), std::string::npos) << text;
  EXPECT_TRUE(text.ends_with("\nLegal moves: Kxb6 ")) << text;
  // Two leaders: no check.
  load("kf6/8/1W6/8/8/8/8/7K b");
  EXPECT_EQ(pos.checkers(), 0u);
  // A Magician next to the leader gives none either.
  load("k7/M7/8/8/8/8/8/7K b");
  EXPECT_EQ(pos.checkers(), 0u);
}

TEST_F(PositionTest, PictureTailLines) {
  load("k7/8/8/8/8/8/8/7K b 0 1");
  pos.st->checkers = bb(B7) | bb(C8);
  EXPECT_EQ(pos.pretty(MoveNone, false, false).substr(pos.pretty(MoveNone, false, true).size()),
            ", [ b7 c8 ] threatens [ a8 ]\n");
  EXPECT_NE(pos.pretty(MoveNone, true, false).find("]\nLegal moves: "), std::string::npos);
  pos.st->checkers = 0;
  EXPECT_EQ(pos.pretty(MoveNone, true, false).find("Legal moves: "), std::string::npos);
  msgFlags = msgFlagsByLevel[2];
  std::string text = pos.pretty(MoveNone, true, false);
  EXPECT_NE(text.find("to move\nFen: k7/8/8/8/8/8/8/7K b 0 1\nLegal moves: "), std::string::npos) << text;
  EXPECT_EQ(pos.pretty(makeMove(B2, B3), false, true).substr(0, 10), "\nMove: ..b");
}

}  // namespace

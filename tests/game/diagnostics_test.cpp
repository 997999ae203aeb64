// Consistency check, colour flip and the dumps that end internal error reports.
#include <gtest/gtest.h>

#include "../support/capture_stdout.h"
#include "game/move_stack.h"
#include "game/position.h"
#include "game/rules.h"

namespace {

class DiagnosticsTest : public ::testing::Test {
 protected:
  void TearDown() override {
    resetRuleFlags();
    setSiegeModes(DefaultGameType);
    checkDornCount = checkLeaderCapture = false;
    moveStackCount = 0;
  }

  void load(const std::string& fen) {
    CaptureStdout out;
    ASSERT_TRUE(pos.set(fen, nullptr)) << out.text();
  }

  Position pos;
};

const std::string Start = "wfwwa3/wksma3/wn6/aa6/6AA/6NW/3AMSKW/3AWWFW w 0 1";

TEST_F(DiagnosticsTest, DornCountIsCheckedOnlyOnRequest) {
  load("k7/8/8/8/8/8/8/K7 w");
  pos.putPiece(makePiece(WHITE, Dorn), H1);
  lastPositionError = "earlier";
  EXPECT_TRUE(pos.isConsistent());
  EXPECT_EQ(lastPositionError, "earlier");  // a success keeps the last reason

  checkDornCount = true;
  EXPECT_FALSE(pos.isConsistent());
  EXPECT_EQ(lastPositionError, "Too many white dorns on the board.");
  pos.removePiece(H1);
  pos.putPiece(makePiece(BLACK, Dorn_sword), H8);
  EXPECT_FALSE(pos.isConsistent());
  EXPECT_EQ(lastPositionError, "Too many black dorns on the board.");
}

TEST_F(DiagnosticsTest, LeaderMustStandOnItsSquare) {
  load("k7/8/8/8/8/8/8/K7 w");
  pos.board[A1] = NoPiece;  // the list still names a1
  EXPECT_FALSE(pos.isConsistent());
  EXPECT_EQ(lastPositionError, "No white leader on the board");
  load("k7/8/8/8/8/8/8/F7 w");
  bondsmenLeaders = 0;
  EXPECT_FALSE(pos.isConsistent());
  EXPECT_EQ(lastPositionError, "No white leader on the board");
  bondsmenLeaders = 1;
  pos.board[A8] = makePiece(WHITE, Dorn);
  EXPECT_FALSE(pos.isConsistent());
  EXPECT_EQ(lastPositionError, "No black leader on the board");
}

TEST_F(DiagnosticsTest, LeaderCaptureIsCheckedOnRequest) {
  // Set up with the check off, then ask with it on.
  auto passes = [&](const std::string& fen) {
    checkLeaderCapture = false;
    load(fen);
    checkLeaderCapture = true;
    return pos.isConsistent();
  };
  load("k7/8/1W6/8/8/8/8/7K w");
  EXPECT_TRUE(pos.isConsistent());
  EXPECT_FALSE(passes("k7/8/1W6/8/8/8/8/7K w"));
  EXPECT_EQ(lastPositionError, "BLACK leader capture error");
  EXPECT_FALSE(passes("k7/8/8/8/8/8/6w1/7K b"));
  EXPECT_EQ(lastPositionError, "WHITE leader capture error");
  {
    CaptureStdout out;
    EXPECT_FALSE(pos.set("k7/8/1W6/8/8/8/8/7K w", nullptr));
    EXPECT_EQ(out.text(), "BLACK leader capture error\n");
  }
  // Several leaders: none of them is royal.
  EXPECT_TRUE(passes("kf6/8/1W6/8/8/8/8/7K w"));
  // Magician forms never capture; a Sword takes no mounted leader unless the rules allow it.
  EXPECT_TRUE(passes("k7/M7/1S6/8/8/8/8/7K w"));
  EXPECT_FALSE(passes("j7/1S6/8/8/8/8/8/7K w"));
  swordsCaptureMounts = 1;
  EXPECT_FALSE(passes("k7/1S6/8/8/8/8/8/7K w"));
}

TEST_F(DiagnosticsTest, FlipMirrorsByRanksAndSwapsColours) {
  load(Start);
  pos.flip();
  const std::string flipped = "3awwfw/3amskw/6nw/6aa/AA6/WN6/WKSMA3/WFWWA3 b 0 1";
  EXPECT_EQ(pos.fen(), flipped);
  Position direct;
  {
    CaptureStdout out;
    ASSERT_TRUE(direct.set(flipped, nullptr));
  }
  EXPECT_EQ(pos.key(), direct.key());
  EXPECT_EQ(pos.materialKey(), direct.materialKey());
  EXPECT_EQ(pos.state()->psqScore, direct.state()->psqScore);
  EXPECT_EQ(pos.state()->npMaterial[WHITE], direct.state()->npMaterial[WHITE]);
  for (int c = 0; c < 2; ++c)
    for (int t = 0; t < TypeSlots; ++t)
      for (int i = 0; i < 16; ++i) EXPECT_EQ(pos.pieceList[c][t][i], direct.pieceList[c][t][i]);

  pos.flip();
  EXPECT_EQ(pos.fen(), Start);
}

TEST_F(DiagnosticsTest, FlipAddsPliesSinceNullAndDropsSiegeFields) {
  setSiegeModes(3);
  load("k7/8/8/8/8/8/8/7K b 3 4 E6");
  pos.st->pliesSinceNull = 5;
  pos.nodes = 17;
  pos.flip();
  EXPECT_EQ(pos.gamePly, 7 + 5);
  EXPECT_EQ(pos.nodes, 17u);
  EXPECT_EQ(pos.sideToMove, WHITE);
  EXPECT_EQ(pos.siege1Tower, 0u);
  EXPECT_EQ(pos.state(), &pos.startState);
  EXPECT_EQ(pos.state()->pliesSinceCapture, 0);
}

TEST_F(DiagnosticsTest, ShortMoveForms) {
  load(Start);
  EXPECT_EQ(pos.printMoveShort(makeMove(E2, E3)), "ME2E3");
  EXPECT_EQ(pos.printMoveShort(makeMove(G4, G5, Promotion | Pickup)), "AG4G5=");
  EXPECT_EQ(pos.printMoveShort(makeMove(E2, E4, Demotion)), "ME2E4<");
  EXPECT_EQ(pos.printMoveShort(makeMove(E2, D2, Exchange)), "ME2D2");
  EXPECT_EQ(pos.printMoveShort(makeMove(A1, A2)), " A1A2");
}

TEST_F(DiagnosticsTest, MoveStackDump) {
  load(Start);
  moveStackCount = 3;
  {
    CaptureStdout out;
    pos.dumpMoveStack();
    EXPECT_EQ(out.text(), " -- MOVE STACK -- ply=3\n_initialFen=\n-- ---------- --\n\n");
  }
  pos.searchLine[0] = makeMove(E2, E3, Promotion);
  pos.searchLine[1] = makeMove(E2, E4, Demotion);
  pos.searchLine[2] = makeMove(G3, G5);
  pos._initialFen = "some fen";
  CaptureStdout out;
  pos.dumpMoveStack();
  EXPECT_EQ(out.text(),
            " -- MOVE STACK -- ply=3\nME2E3=+\nME2E4<-\nNG3G5\n_initialFen=some fen\n"
            "-- ---------- --\ne2e3 e2e4 g3g5 \n");
}

TEST_F(DiagnosticsTest, MoveStackDumpStopsAtThirtyEntries) {
  load(Start);
  std::fill(std::begin(pos.searchLine), std::end(pos.searchLine), makeMove(G3, G5));
  CaptureStdout out;
  pos.dumpMoveStack();
  std::string text = out.text();
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1 + 30 + 3);
}

TEST_F(DiagnosticsTest, MoveDumpShowsFlagsAndCaptives) {
  setSiegeModes(4);
  load("wfwwa3/w1sah3/wn6/aa6/6AA/6NW/3HAS1W/3AWWFW w 0 1 G2 1 - 0");
  CaptureStdout out;
  pos.dumpMove(makeMove(E2, F2, Transfer));
  EXPECT_EQ(out.text(),
            "Move:AE2F2 dropoff:0,transfer:1,pickup:0,isDemotion:0,isPromotion:0,isExchange:0,isSiege1Exchange:1\n"
            ",siege2CaptiveSquare[WHITE]:G2,siege2LastCaptiveSquare[WHITE]:G2,siege2CaptiveAlive[WHITE]:1,"
            "siege2CaptiveReleased[WHITE]:0\n"
            ",siege2CaptiveSquare[BLACK]:-,siege2LastCaptiveSquare[BLACK]:-,siege2CaptiveAlive[BLACK]:0,"
            "siege2CaptiveReleased[BLACK]:0\n"
            "st->siege2_color=0,st->isSuccessfulDropoff=0,st->isSiege2EnemyTransferKill=0\n");
}

TEST_F(DiagnosticsTest, PieceListDumpFindsAWrongCount) {
  load("k7/8/8/8/8/8/8/SS5K w");
  std::string expectedWhite =
      "\nWHITE\nSword A1 B1 2\nMagician1 0\nAssassin 0\nArcher 0\nMagician 0\nWarrior 0\nMagician2 0\n"
      "Bondsman 0\nDorn H1 1\nDorn_archer 0\nDorn_sword 0\n";
  {
    CaptureStdout out;
    EXPECT_FALSE(pos.dumpPieceLists());
    std::string text = out.text();
    EXPECT_EQ(text.substr(0, expectedWhite.size()), expectedWhite);
    EXPECT_NE(text.find("Dorn A8 1\n"), std::string::npos);
    EXPECT_NE(text.find("byType[ALL]\n1 0 0 0 0 0 0 0 \n"), std::string::npos);
    EXPECT_NE(text.find("byColor[BLACK]\n1 0 0 0 0 0 0 0 \n0 0"), std::string::npos);
  }
  pos.pieceCount[WHITE][Sword] = 3;
  CaptureStdout out;
  EXPECT_TRUE(pos.dumpPieceLists());
  EXPECT_NE(out.text().find("Sword A1 B1 3\nPiece Count mismatch! WHITE Sword\nactual 2 Piececount[c][pt]=3\n"),
            std::string::npos);
}

}  // namespace

// Set-up moves of every game type: only safe moves of the pieces the type allows, from the start
// board or one White move after it, and nothing once the game has left its start.
#include "search/opening_moves.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "../support/position_fixture.h"
#include "game/piece_values.h"
#include "movegen/movegen.h"
#include "search/see.h"

namespace {

constexpr int Basic = 0, RescueGeneral = 3, RescueDorn = 4;
constexpr int Draws = 150;

class OpeningMovesTest : public PositionFixture {
 protected:
  void start(int type, const char* fen = nullptr) {
    setSiegeModes(type);
    load(fen ? fen : gameTypeTable[type].startFen);
    setPieceValues(pos);
    load(fen ? fen : gameTypeTable[type].startFen);
  }

  bool isLegal(Move m) {
    ScoredMove list[MaxMoves];
    ScoredMove* end = generateLegal(pos, list);
    return std::any_of(list, end, [m](const ScoredMove& sm) { return sm.move == m; });
  }

  // The properties every set-up move has, whatever the type.
  void expectSafe(Move m) {
    const Color us = pos.side();
    const Square from = moveFrom(m), to = moveTo(m);
    EXPECT_TRUE(isLegal(m));
    EXPECT_NE(from, pos.leaderSquare(us));
    if (!isMagicianForm(typeOf(pos.pieceOn(from)))) {
      EXPECT_FALSE(pos.onStandingTower(to));
    }
    EXPECT_EQ(pos.attackersTo(to, pos.pieces(), pos.pieces(~us), ~us), 0u);
    EXPECT_GE(see(pos, m), 0);
  }

  // Draws set-up moves of the start board of `type` and checks each with its reply; gives the
  // moves drawn.
  std::set<std::string> drawFromStart(int type, int pair = 0) {
    const std::string before = pos.fen();
    std::set<std::string> drawn;
    for (int i = 0; i < Draws; ++i) {
      Move reply = MoveNone;
      const Move m = openingMove(pos, reply, gameTypeTable[type], pair);
      if (m == MoveNone) {
        ADD_FAILURE() << gameTypeTable[type].name << ": no set-up move";
        break;
      }
      expectSafe(m);
      if (type == Basic) {
        EXPECT_NE(typeOf(pos.pieceOn(moveFrom(m))), Bondsman);
      }
      drawn.insert(moveToWire(m));

      StateInfo st;
      pos.do_move(m, st);
      if (type == RescueDorn)
        EXPECT_EQ(reply, MoveNone);
      else if (reply != MoveNone)
        expectSafe(reply);
      pos.undo_move(m);
      EXPECT_EQ(pos.fen(), before);
    }
    return drawn;
  }
};

TEST_F(OpeningMovesTest, EveryTypeOpensWithSafeMovesOfItsAllowedPieces) {
  for (int type = 0; type < GameTypeCount; ++type) {
    SCOPED_TRACE(gameTypeTable[type].name);
    start(type);
    std::set<std::string> drawn = drawFromStart(type);
    EXPECT_GT(drawn.size(), 1u);
    if (type == RescueDorn) {
      const std::set<std::string> five = {"d2d4", "d2e4", "d2f4", "d2f3", "h1f3"};
      EXPECT_TRUE(std::includes(five.begin(), five.end(), drawn.begin(), drawn.end()));
    }
    if (type == RescueGeneral) {
      for (const std::string& m : drawn) EXPECT_TRUE(m.rfind("e2", 0) == 0 || m.rfind("d2", 0) == 0) << m;
      EXPECT_NE(drawn.begin()->substr(0, 2), drawn.rbegin()->substr(0, 2));  // both pieces are drawn
    }
  }
}

TEST_F(OpeningMovesTest, RescueGeneralTellsItsTwoStartBoardsApartByTheBoard) {
  // The second start board, with a Magician where the first has a Magician2: only e2 opens, and the
  // first pair does not take this board for its own.
  start(RescueGeneral, gameTypeTable[RescueGeneral].secondStartFen);
  Move reply;
  EXPECT_EQ(openingMove(pos, reply, gameTypeTable[RescueGeneral], 0), MoveNone);
  for (const std::string& m : drawFromStart(RescueGeneral, 1)) EXPECT_EQ(m.substr(0, 2), "e2");
  EXPECT_NE(setupMove(pos, reply, gameTypeTable[RescueGeneral]), MoveNone);

  // A breached tower is no start.
  start(RescueGeneral);
  pos.siege1Tower &= ~(Bitboard(1) << D4);
  pos.siege1Breached |= Bitboard(1) << D4;
  EXPECT_EQ(setupMove(pos, reply, gameTypeTable[RescueGeneral]), MoveNone);
}

TEST_F(OpeningMovesTest, BlackAnswersOneWhiteMoveAndNothingAnswersLater) {
  for (int type = 0; type < GameTypeCount; ++type) {
    SCOPED_TRACE(gameTypeTable[type].name);
    const GameType& row = gameTypeTable[type];
    start(type);
    Move reply;
    const Move white = setupMove(pos, reply, row);
    ASSERT_NE(white, MoveNone);
    StateInfo st1, st2;
    pos.do_move(white, st1);
    const Move black = setupMove(pos, reply, row);
    if (type == RescueDorn) {
      EXPECT_EQ(black, MoveNone);
      continue;
    }
    ASSERT_NE(black, MoveNone);
    expectSafe(black);
    pos.do_move(black, st2);
    EXPECT_EQ(setupMove(pos, reply, row), MoveNone);
  }

  // A White move that moves no piece, or a board with a piece missing, is not one move from the start.
  start(1);
  StateInfo st;
  Move exchange = makeExchangeMove(pos, E2, E1), reply;
  ASSERT_TRUE(isLegal(exchange));
  pos.do_move(exchange, st);
  EXPECT_EQ(setupMove(pos, reply, gameTypeTable[1]), MoveNone);
  start(1, "wfwwa3/wksma3/wn6/aa6/6AA/6NW/3AMSKW/3AWWF1 w 0 1");
  EXPECT_EQ(setupMove(pos, reply, gameTypeTable[1]), MoveNone);
  start(1, "wfwwa3/wksma3/wn6/aa6/6AA/6NW/3AMSKW/3AWWF1 b 0 1");
  EXPECT_EQ(setupMove(pos, reply, gameTypeTable[1]), MoveNone);
}

}  // namespace

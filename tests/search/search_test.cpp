// The node search end to end on one thread: forced wins of every game type, repeatable node counts,
// and the node-kind rules that a wrong branch would break silently.
#include <gtest/gtest.h>

#include <deque>
#include <vector>

#include "../support/capture_stdout.h"
#include "../support/dorn_session.h"
#include "../support/position_fixture.h"
#include "../support/random_games.h"
#include "fixed_depth_search.h"
#include "eval/evaluate.h"
#include "eval/siege.h"
#include "game/game_end.h"
#include "game/piece_values.h"
#include "movegen/movegen.h"

namespace {

struct ForcedWin {
  int gameType;
  const char* fen;
  int moves;  // the side to move wins with its n-th move, whatever the other side does
};

// Found in random games and confirmed by the brute-force test below, so each has no shorter win.
const ForcedWin forcedWins[] = {
    {1, "K7/8/8/8/4W3/k7/4W3/6S1 w 5 1", 1},
    {1, "K7/8/8/8/8/3W2W1/8/k5S1 w 1 1", 2},
    {1, "1sw5/8/6K1/2w5/8/3f4/8/8 b 17 1", 3},
    {2, "1a6/4a3/8/f7/5w2/2w5/8/7K b 1 1", 2},
    {2, "6a1/1n6/1a6/8/8/8/2J5/4Sf2 b 1 1", 3},
    {5, "8/1fs5/8/4F3/a3W3/8/6A1/4A3 w 1 1", 1},
    {5, "8/2W5/8/a3F3/8/1f6/7A/4A3 w 1 1", 2},
    {5, "3h4/8/4J3/8/8/8/8/5f2 b 21 1", 3},
    // first siege game: a captive carried home
    {3,
     "ww1a4/8/na6/8/1F6/6f1/8/6S1 b 0 1 G3 Tower { D4 E4 D5 E5  } Breached { D4 D5  } WinSquaresWhite { A4  } "
     "WinSquaresBlack { H5  }",
     1},
    {3,
     "wf2a3/ww1a4/n1a5/a7/6AA/1A5W/3H1S1W/5F2 w 0 1 B3 Tower { D4 E4 D5 E5  } Breached { D4 D5  } WinSquaresWhite "
     "{ A4  } WinSquaresBlack { H5  }",
     1},
    {3,
     "wf2a3/wwsa4/1na5/a7/6AA/7W/1A1H1S1W/5F2 w 2 1 B2 Tower { D4 E4 D5 E5  } Breached { D4 D5  } WinSquaresWhite "
     "{ A4  } WinSquaresBlack { H5  }",
     2},
    {3,
     "w1a5/5A1j/8/8/8/8/8/2F1A3 w 23 1 H7 Tower { D4 E4 D5 E5  } Breached { E4 E5  } WinSquaresWhite { A4  } "
     "WinSquaresBlack { H5  }",
     3},
    // second siege game
    {4,
     "1w1w4/4n3/2a4F/8/7A/4f3/3S4/8 b 4 1 E3  1  -  1 TowerWhite { H5 H6  } BreachedWhite { H6  } TowerBlack { A3 A4  "
     "} BreachedBlack {  } DropoffSquaresWhite { A1  } DropoffSquaresBlack { H8  }",
     1},
    {4,
     "1w1w4/4n3/2a4F/3f4/7A/8/8/4S3 b 6 1 D5  1  -  1 TowerWhite { H5 H6  } BreachedWhite { H6  } TowerBlack { A3 A4  "
     "} BreachedBlack {  } DropoffSquaresWhite { A1  } DropoffSquaresBlack { H8  }",
     2},
};

// Has the side that just moved won: the other side's last leader gone, a captive home, or mate?
bool moverHasWon(const Position& pos) {
  Color winner;
  if (siege1 && captiveOnGoal(pos, winner)) return winner != pos.side();
  if (leaderLost(pos)) return true;
  ScoredMove list[MaxMoves];
  return pos.inCheck() && generateLegal(pos, list) == list;
}

// Brute force over every legal reply, so that it shares nothing with the search under test.
bool winsWithin(Position& pos, Move first, int moves) {
  StateInfo st;
  pos.do_move(first, st);
  bool won = moverHasWon(pos);
  Color winner;
  if (!won && moves > 1 && !leaderLost(pos) && !(siege1 && captiveOnGoal(pos, winner))) {
    ScoredMove replies[MaxMoves];
    ScoredMove* end = generateLegal(pos, replies);
    won = end != replies;
    for (ScoredMove* r = replies; won && r != end; ++r) {
      StateInfo st2;
      pos.do_move(r->move, st2);
      ScoredMove ours[MaxMoves];
      ScoredMove* oursEnd = generateLegal(pos, ours);
      bool found = false;
      for (ScoredMove* o = ours; !found && o != oursEnd; ++o) found = winsWithin(pos, o->move, moves - 1);
      won = found;
      pos.undo_move(r->move);
    }
  }
  pos.undo_move(first);
  return won;
}

class SearchTest : public PositionFixture {
 protected:
  void loadType(int gameType, const std::string& fen) {
    setSiegeModes(gameType);
    load(fen);
    setPieceValues(pos);
  }
};

TEST_F(SearchTest, FindsForcedWinsOfEveryGameTypeWithAMateScore) {
  for (const ForcedWin& w : forcedWins) {
    SCOPED_TRACE(w.fen);
    loadType(w.gameType, w.fen);
    FixedDepthResult r = searchFixedDepth(pos, 2 * w.moves);
    // A win on move n is scored at ply 2n from the root (2n - 1 when the last leader is taken).
    EXPECT_GE(r.score, ValueMate - 2 * w.moves);
    EXPECT_LE(r.score, ValueMate - 2 * w.moves + 1);
    if (w.moves <= 2) {
      EXPECT_TRUE(winsWithin(pos, r.move, w.moves)) << moveToWire(r.move);
    }
  }
}

// The same search twice gives the same move and the same node count: the search reads no clock,
// no stale table and no stale history on one thread.
TEST_F(SearchTest, FixedDepthSearchIsRepeatable) {
  for (const GameType& type : gameTypeTable) {
    SCOPED_TRACE(type.name);
    loadType(type.number, type.startFen);
    FixedDepthResult first = searchFixedDepth(pos, 4);
    FixedDepthResult second = searchFixedDepth(pos, 4);
    EXPECT_NE(first.move, MoveNone);
    EXPECT_GT(first.nodes, 100u);
    EXPECT_EQ(first.move, second.move);
    EXPECT_EQ(first.nodes, second.nodes);
    EXPECT_EQ(first.score, second.score);
  }
}

// Searches one node of the kind given from `pos`, as if a root one ply up had made the last move.
class NodeSearchTest : public SearchTest {
 protected:
  void SetUp() override {
    std::memset(static_cast<void*>(stack), 0, sizeof stack);
    ss = stack + 1;
    (ss - 1)->currentMove = MoveNull;
    if (currentTable->clusterCount() == 0) currentTable->setSize(16);
    currentTable->clear();
    Signals.stop = false;
    splitDepth = Threads.minimumSplitDepth;
    Threads.minimumSplitDepth = 1000;  // the test thread is no member of the pool
  }
  void TearDown() override {
    Threads.minimumSplitDepth = splitDepth;
    SearchTest::TearDown();
  }
  Position owned() { return Position(pos, &testSearchThread()); }

  SearchStack stack[104];
  SearchStack* ss = nullptr;
  Depth splitDepth = 0;
};

// A side in check with one reply, and that reply excluded, has no move: that is no mate.
TEST_F(NodeSearchTest, ExcludingTheOnlyReplyGivesAlphaNotAMate) {
  std::string fen;
  int type = 0;
  forRandomPositions(4, 120, 5, [&](Position& p, const std::string&) {
    ScoredMove list[MaxMoves];
    if (fen.empty() && p.inCheck() && generateLegal(p, list) - list == 1) {
      fen = p.fen();
      type = siege1 ? 3 : siege2 ? 4 : 1;
    }
  });
  ASSERT_FALSE(fen.empty());
  loadType(type, fen);
  Position p = owned();
  ScoredMove list[MaxMoves];
  generateLegal(p, list);
  ss->excludedMove = list[0].move;
  EXPECT_EQ(searchNonPV(p, ss, -301, -300, 4), -301);
  EXPECT_EQ(searchNonPV(p, ss, 500, 501, 6), 500);
}


// Plays a quiet move and its way back for each side, so the position recurs every four plies.
class RepetitionTest : public NodeSearchTest {
 protected:
  // A quiet move of the side to move that can go straight back after any reply; none if absent.
  static Move quietShuttle(const Position& p) {
    ScoredMove list[MaxMoves];
    for (ScoredMove *sm = list, *end = generateLegal(p, list); sm != end; ++sm)
      if (!specialKind(sm->move) && !captiveKind(sm->move) && p.empty(moveTo(sm->move)) && !p.inCheck())
        return sm->move;
    return MoveNone;
  }
  void playCycle(Position& p) {
    Move white = quietShuttle(p);
    p.do_move(white, states.emplace_back());
    Move black = quietShuttle(p);
    p.do_move(black, states.emplace_back());
    p.do_move(makeMove(moveTo(white), moveFrom(white)), states.emplace_back());
    p.do_move(makeMove(moveTo(black), moveFrom(black)), states.emplace_back());
  }
  std::deque<StateInfo> states;
};

// A non-PV node takes one earlier occurrence as a draw, a PV node wants two.
TEST_F(RepetitionTest, PvNodesNeedTwoEarlierOccurrencesNonPvOne) {
  loadType(1, gameTypeTable[0].startFen);
  Position p = owned();
  const Key start = p.key();
  playCycle(p);
  ASSERT_EQ(p.key(), start);
  drawValue[p.side()] = 777;
  drawValue[~p.side()] = -777;

  EXPECT_EQ(searchNonPV(p, ss, 700, 701, 4), 777);
  currentTable->clear();
  EXPECT_NE(searchPV(p, ss, -ValueInfinite, ValueInfinite, 4), 777);
  playCycle(p);
  ASSERT_EQ(p.key(), start);
  currentTable->clear();
  EXPECT_EQ(searchPV(p, ss, -ValueInfinite, ValueInfinite, 4), 777);
}

// In check with no legal reply the quiescence search scores a mate at the node's ply.
TEST_F(NodeSearchTest, QuiescenceInCheckWithoutRepliesIsMated) {
  loadType(1, forcedWins[0].fen);
  Position p = owned();
  ScoredMove list[MaxMoves];
  Move mating = MoveNone;
  for (ScoredMove *sm = list, *end = generateLegal(p, list); sm != end && !mating; ++sm) {
    StateInfo st;
    p.do_move(sm->move, st);
    ScoredMove replies[MaxMoves];
    if (p.inCheck() && generateLegal(p, replies) == replies) mating = sm->move;
    p.undo_move(sm->move);
  }
  ASSERT_NE(mating, MoveNone);
  StateInfo st;
  p.do_move(mating, st);
  EXPECT_EQ(qsearchNonPVInCheck(p, ss, -ValueInfinite, ValueInfinite, 0, 0), 1 - ValueMate);
  EXPECT_EQ(qsearchPVInCheck(p, ss, -ValueInfinite, ValueInfinite, -4, 1), 1 - ValueMate);
  // The table now holds no cut for the main search that would hide the mate.
  EXPECT_EQ(searchPV(p, ss, -ValueInfinite, ValueInfinite, 4), 1 - ValueMate);
}


// An enemy carrier one step from its goal: the quiescence search may not stand pat on a calm
// static value, and finds that nothing stops the carrier.
TEST_F(NodeSearchTest, QuiescenceDoesNotStandPatBeforeAnEnemyCarrierGoesHome) {
  loadType(3,
           "ww1a4/8/na6/8/1F6/6f1/8/6S1 w 0 1 G3 Tower { D4 E4 D5 E5  } Breached { D4 D5  } WinSquaresWhite { A4  } "
           "WinSquaresBlack { H5  }");
  Position p = owned();
  Color carrier;
  ASSERT_TRUE(siege1ImminentWin(p, carrier));
  ASSERT_EQ(carrier, BLACK);
  Value margin;
  ASSERT_GT(evaluate(p, margin), -20000);
  EXPECT_LE(qsearchNonPV(p, ss, -20001, -20000, 0), -ValueMateInMaxPly);
  // Past the emergency depth the static value stands again.
  currentTable->clear();
  EXPECT_GT(qsearchNonPV(p, ss, -20001, -20000, -12), -20000);
}


// A side with nothing but its leader may be in zugzwang, so it never passes: the null move is
// tried only with more material. A node that ends in a null-move cutoff leaves MoveNull behind.
TEST_F(NodeSearchTest, NoNullMoveWithTheLeaderAlone) {
  for (Color side : {WHITE, BLACK}) {
    loadType(1, std::string("k7/8/8/8/8/8/4W3/K5S1 ") + (side == WHITE ? "w" : "b") + " 5 1");
    Position p = owned();
    ASSERT_FALSE(p.inCheck());
    currentTable->clear();
    searchNonPV(p, ss, -29001, -29000, 8);
    if (side == WHITE) EXPECT_EQ(ss->currentMove, MoveNull);
    else EXPECT_NE(ss->currentMove, MoveNull);
  }
}


// A mate score goes into the table as a distance from the node and comes out as one from the root.
TEST(TableValues, MateScoresMoveWithThePly) {
  EXPECT_EQ(valueToTT(ValueMate - 8, 5), ValueMate - 3);
  EXPECT_EQ(valueFromTT(ValueMate - 3, 2), ValueMate - 5);
  EXPECT_EQ(valueToTT(8 - ValueMate, 5), 3 - ValueMate);
  EXPECT_EQ(valueFromTT(3 - ValueMate, 2), 5 - ValueMate);
  EXPECT_EQ(valueToTT(-ValueMateInMaxPly, 4), -ValueMateInMaxPly - 4);
  for (Value plain : {ValueMateInMaxPly - 1, -ValueMateInMaxPly + 1, 0}) {
    EXPECT_EQ(valueToTT(plain, 9), plain);
    EXPECT_EQ(valueFromTT(plain, 9), plain);
  }
  EXPECT_EQ(valueFromTT(ValueNone, 7), ValueNone);
}


// The whole engine on one thread: the same `go depth` from the start of every game type prints
// the same last line and best move in two fresh processes.
TEST(EngineSearch, GoDepthOnOneThreadIsRepeatable) {
  auto run = [](const std::string& type) {
    DornSession engine;
    engine.send("setoption name Threads value 1");
    engine.send("setoption name OwnBook value false");
    engine.send("new " + type);
    engine.send("position startpos");
    engine.send("go depth 6");
    std::vector<std::string> lines = engine.waitFor("bestmove", 60000);
    std::string lastInfo;
    for (const std::string& line : lines)
      if (line.rfind("info depth 6 seldepth", 0) == 0) lastInfo = line.substr(0, line.find(" nps "));
    return lines.empty() ? std::string() : lastInfo + " / " + lines.back();
  };
  for (const GameType& type : gameTypeTable) {
    std::string first = run(type.name);
    EXPECT_NE(first.find("bestmove "), std::string::npos) << type.name << ": " << first;
    EXPECT_NE(first.find(" nodes "), std::string::npos) << type.name << ": " << first;
    EXPECT_EQ(run(type.name), first) << type.name;
  }
}

}  // namespace

// Making and unmaking moves: exact restoration, running values against from-scratch ones, checkers.
#include <gtest/gtest.h>

#include <iostream>
#include <random>
#include <sstream>

#include "../support/capture_stdout.h"
#include "core/psqt.h"
#include "core/zobrist.h"
#include "make_unmake_support.h"
#include "movegen/movegen.h"

using namespace make_unmake;
using Zobrist::pieceKeys;
using Zobrist::sideKey;

namespace {

// The nine rule flags, in the order of RuleSet::flags.
int* const ruleFlags[] = {&bondsmenLeaders, &basePromotions, &capturePromotions, &exchanges, &swordsCaptureMounts,
                          &magicianDemotesDorn, &magicianExtendedDemotionSqs, &powerMagicianExtendedDemotionSqs,
                          &siegeExchanges};
struct RuleSet {
  const char* name;
  int flags[9];
};
const RuleSet ruleSets[] = {
  {"defaults", {1, 1, 0, 1, 0, 1, 0, 0, 1}},
  {"capture promotions, Swords take mounts, long reach", {1, 1, 1, 1, 1, 1, 1, 2, 1}},
  {"no exchanges or base promotions, Dorns not demoted", {1, 0, 1, 0, 0, 0, 2, 1, 0}},
  {"Bondsmen do not lead", {0, 1, 1, 1, 0, 1, 0, 0, 1}},
};

// How often the random games met each kind of move, so that they cannot pass by testing nothing.
enum Event {
  Captures, Demotions, Exchanges, Promotions, Checks, Breaches, Deaths, Pickups, Transfers, Handovers, Dropoffs, Kills,
  EventNb
};

// How far the running piece-square sum moves away from the board's own sum: the first breach adds
// its bonus, and a carrier that travels in a siege game leaves the sum where it was.
Score expectedPsqDrift(const Position& pos, Move m) {
  Square from = moveFrom(m), to = moveTo(m);
  Color us = pos.side();
  Score drift = 0;
  if (isDemotion(m) && pos.onStandingTower(to)) {
    bool first = siege1 ? pos.siege1Tower == siege1TowerSquares && (us == WHITE ? to < A5 : to >= A5)
                        : (pos.siege2Tower[us] & bb(to)) && !pos.siege2Breached[WHITE] && !pos.siege2Breached[BLACK] &&
                              pos.siege2Tower[WHITE] == siege2TowerSquares[WHITE] &&
                              pos.siege2Tower[BLACK] == siege2TowerSquares[BLACK];
    if (first) drift = us == WHITE ? makeScore(120, 120) : -makeScore(120, 120);
  }
  if (siegeGame() && isTransfer(m) && !isSiege1Exchange(pos, m) && !pos.onStandingTower(to))
    drift -= psq[pos.pieceOn(from)][to] - psq[pos.pieceOn(from)][from];
  return drift;
}

// Makes m, holds the new position against from-scratch values, unmakes it and holds the old
// position against what it was. Returns false on a failure. After an illegal move, which leaves
// the own leader open, the enemy's checkers do not count: no search ever sees that position.
bool makeUnmake(Position& pos, Move m, bool legal, int events[], const char* rules) {
  const PositionSnapshot before = snapshotOf(pos);
  const int stackCount = moveStackCount;
  const bool onTower = pos.onStandingTower(moveTo(m));
  const Score drift = pos.state()->psqScore - pos.computePsqScore() + expectedPsqDrift(pos, m);
  const int gamePly = pos.gamePly;

  StateInfo st;
  pos.do_move(m, st);
  events[Captures] += st.capturedType && !isDemotion(m) && !isExchange(m) && !st.isSiege1Exchange;
  events[Demotions] += isDemotion(m) && !onTower;
  events[Exchanges] += isExchange(m);
  events[Promotions] += isPromotion(m);
  events[Checks] += st.checkers != 0;
  events[Breaches] += isDemotion(m) && onTower;
  events[Deaths] += !isDemotion(m) && onTower;
  events[Pickups] += isPickup(m) && !isDemotion(m) && !isExchange(m);
  events[Transfers] += isTransfer(m) && !st.isSiege1Exchange;
  events[Handovers] += st.isSiege1Exchange;
  events[Dropoffs] += isDropoff(m);
  events[Kills] += st.isSiege2EnemyTransferKill != 0;

  bool ok = true;
  auto check = [&](bool good, const char* what) {
    if (!good) ADD_FAILURE() << what << " after " << rules << ": move " << m << " of " << st.previous;
    ok = ok && good;
  };
  const std::string fault = positionFault(pos, Vouch::Board);
  check(fault.empty(), fault.c_str());
  check(st.materialKey == pos.computeMaterialKey(), "materialKey");
  check(st.npMaterial[WHITE] == pos.computeNpMaterial(WHITE) && st.npMaterial[BLACK] == pos.computeNpMaterial(BLACK),
        "npMaterial");
  check(st.psqScore - pos.computePsqScore() == drift, "psqScore");
  check(siegeGame() || st.key == pos.computeKey(), "key");  // siege keys carry captive and tower keys
  check(!legal || st.checkers == expectedCheckers(pos), "checkers");
  check(pos.gamePly == gamePly, "gamePly");
  pos.undo_move(m);
  const std::string lost = snapshotDifference(before, snapshotOf(pos));
  EXPECT_EQ(lost, "") << "not restored by undo, rules " << rules;
  EXPECT_EQ(moveStackCount, stackCount) << "move stack, rules " << rules;
  if (!ok || !lost.empty()) ADD_FAILURE() << "in " << pos.fen() << " with " << pos.printMoveShort(m);
  return ok && lost.empty();
}

// Moves that touch what the siege and type rules are about: the random games prefer them.
bool eventful(const Position& pos, Move m) {
  return captiveKind(m) || specialKind(m) || pos.onStandingTower(moveTo(m)) || !pos.empty(moveTo(m));
}

// Random games from the start of a game type: every legal move, and when not in check every
// pseudo-legal one, is made and unmade at each ply; at the end the game is taken back move by move.
void playRandomGames(int gameType, const RuleSet& rules, int games, int maxPlies, int events[]) {
  RulesGuard guard;
  for (int i = 0; i < 9; ++i) *ruleFlags[i] = rules.flags[i];
  std::mt19937 rng(1234u + gameType * 17u);
  for (int g = 0; g < games; ++g) {
    Position pos;
    setUp(pos, gameType, gameTypeTable[gameType].startFen);
    const PositionSnapshot start = snapshotOf(pos);
    std::vector<StateInfo> states(maxPlies);
    std::vector<Move> played;
    for (int ply = 0; ply < maxPlies; ++ply) {
      ScoredMove legal[MaxMoves], all[MaxMoves];
      ScoredMove* end = generateLegal(pos, legal);
      if (end == legal) break;
      ScoredMove* allEnd = pos.inCheck() ? std::copy(legal, end, all) : generateNonEvasions(pos, all);
      for (ScoredMove* sm = all; sm != allEnd; ++sm) {
        bool legalMove = std::any_of(legal, end, [&](const ScoredMove& l) { return l.move == sm->move; });
        if (!makeUnmake(pos, sm->move, legalMove, events, rules.name)) return;
      }
      std::vector<Move> preferred;
      for (ScoredMove* sm = legal; sm != end; ++sm)
        if (eventful(pos, sm->move)) preferred.push_back(sm->move);
      Move m = !preferred.empty() && rng() % 3 ? preferred[rng() % preferred.size()]
                                               : legal[rng() % (end - legal)].move;
      pos.do_move(m, states[ply]);
      played.push_back(m);
      moveStackCount = 0;  // as each search starts it: the list stops growing at 199 moves
    }
    for (; !played.empty(); played.pop_back()) pos.undo_move(played.back());
    EXPECT_EQ(snapshotDifference(start, snapshotOf(pos)), "") << "not restored: " << gameTypeTable[gameType].name << ", " << rules.name;
  }
}

TEST(MakeUnmake, RandomGamesOfThePlainTypes) {
  int events[EventNb] = {};
  for (int type = 0; type < 3; ++type)
    for (const RuleSet& rules : ruleSets) playRandomGames(type, rules, 3, 150, events);
  for (Event e : {Captures, Demotions, Exchanges, Promotions, Checks}) EXPECT_GT(events[e], 20) << e;
}

TEST(MakeUnmake, RandomGamesOfTheSiegeTypes) {
  int events[EventNb] = {};
  for (int type = 3; type < 5; ++type)
    for (const RuleSet& rules : ruleSets)
      if (type == 3 || rules.flags[0]) playRandomGames(type, rules, 4, 200, events);  // type 4 needs leading Bondsmen
  for (Event e : {Breaches, Deaths, Pickups, Transfers, Handovers, Dropoffs, Kills}) EXPECT_GT(events[e], 2) << e;
}

// ---------------------------------------------------------------- single moves

class DoMoveTest : public ::testing::Test {
 protected:
  RulesGuard guard;
  Position pos;
  StateInfo st1, st2;
};

TEST_F(DoMoveTest, TypeChangesInPlace) {
  // A demotion changes only the target: the Magician stays, the key holds the new type.
  setUp(pos, 1, "k7/8/8/8/3w4/8/3M4/7K w 5 1");
  Key key = pos.key();
  pos.do_move(makeMove(D2, D4, Demotion), st1);
  EXPECT_EQ(pos.pieceOn(D2), makePiece(WHITE, Magician));
  EXPECT_EQ(pos.pieceOn(D4), makePiece(BLACK, Archer));
  EXPECT_EQ(pos.key(), key ^ sideKey ^ pieceKeys[BLACK][Warrior][D4] ^ pieceKeys[BLACK][Archer][D4]);
  EXPECT_EQ(st1.priorType, Warrior);
  EXPECT_EQ(st1.pliesSinceCapture, 0);

  // An exchange: the Dorn_archer takes its Warrior neighbour's mount; both stay where they are.
  setUp(pos, 1, "k7/8/8/8/8/7W/6J1/8 w 7 1");
  pos.do_move(makeMove(G2, H3, Exchange), st1);
  EXPECT_EQ(pos.pieceOn(G2), makePiece(WHITE, Dorn));
  EXPECT_EQ(pos.pieceOn(H3), makePiece(WHITE, Archer));
  EXPECT_EQ(pos.count(WHITE, Dorn_archer) + pos.count(WHITE, Warrior), 0);
  EXPECT_EQ(st1.pliesSinceCapture, 0);
  EXPECT_EQ(st1.priorType, Dorn_archer);

  // A promotion by arrival with a capture runs through both updates.
  setUp(pos, 0, "7k/1a6/2S5/8/8/8/8/7K w 3 1");
  pos.do_move(makeMove(C6, B7, Promotion), st1);
  EXPECT_EQ(pos.pieceOn(B7), makePiece(WHITE, Warrior));
  EXPECT_EQ(st1.capturedType, Archer);
  EXPECT_EQ(st1.priorType, Sword);
  EXPECT_EQ(st1.psqScore, pos.computePsqScore());
}

TEST_F(DoMoveTest, LeaderCaptureReportReadsNoInput) {
  // Only a position that no game reaches lets a move take the sole leader; the report must not eat
  // the next command.
  setUp(pos, 0, "8/8/8/8/8/8/8/Kk6 w 0 1");
  const PositionSnapshot before = snapshotOf(pos);
  std::istringstream input("isready\n");
  std::streambuf* keyboard = std::cin.rdbuf(input.rdbuf());
  std::string report;
  {
    CaptureStdout out;
    pos.do_move(makeMove(A1, B1), st1);
    report = out.text();
  }
  std::cin.rdbuf(keyboard);
  std::string next;
  EXPECT_TRUE(std::getline(input, next));
  EXPECT_EQ(next, "isready");
  EXPECT_NE(report.find("Capture of Dorn, type=9\n"), std::string::npos) << report;
  EXPECT_NE(report.find("captures: a1b1 "), std::string::npos) << report;
  pos.undo_move(makeMove(A1, B1));
  EXPECT_EQ(snapshotDifference(before, snapshotOf(pos)), "");
}

TEST_F(DoMoveTest, QuietPlyCounters) {
  setUp(pos, 0, "7k/8/2S5/8/8/8/S7/7K w 40 9");
  pos.do_move(makeMove(A2, B3), st1);
  EXPECT_EQ(st1.pliesSinceCapture, 41);
  pos.do_move(makeMove(H8, G8), st2);
  pos.undo_move(makeMove(H8, G8));
  pos.undo_move(makeMove(A2, B3));
  pos.do_move(makeMove(C6, B7, Promotion), st1);  // no capture: the count goes on
  EXPECT_EQ(st1.pliesSinceCapture, 41);
  EXPECT_EQ(pos.gamePly, 16);
  pos.undo_move(makeMove(C6, B7, Promotion));

  // A null move counts the quiet ply and restarts its own count.
  setUp(pos, 0, "7k/8/8/8/8/8/S7/7K w 99 1");
  const PositionSnapshot before = snapshotOf(pos);
  pos.do_null_move(st1);
  EXPECT_EQ(pos.side(), BLACK);
  EXPECT_EQ(pos.key(), st1.key ^ sideKey);
  EXPECT_EQ(pos.state()->pliesSinceCapture, 100);
  EXPECT_EQ(pos.state()->pliesSinceNull, 0);
  pos.undo_null_move(st1);
  EXPECT_EQ(snapshotDifference(before, snapshotOf(pos)), "");
}

TEST_F(DoMoveTest, MoveStackRecordsMovesAndCapturesUpTo199) {
  setUp(pos, 0, "7k/8/8/8/8/1a6/S7/7K w 0 1");
  Move m = makeMove(A2, B3);
  pos.do_move(m, st1);
  EXPECT_EQ(moveStackCount, 1);
  EXPECT_EQ(moveStack[0], m);
  EXPECT_EQ(moveStack[1], MoveNone);
  EXPECT_TRUE(moveStackCapture[0]);
  pos.undo_move(m);
  EXPECT_EQ(moveStackCount, 0);
  moveStackCount = MoveStackSize - 1;
  pos.do_move(m, st1);
  EXPECT_EQ(moveStackCount, MoveStackSize - 1);
}

// A leader that stops being a mount is attacked by the Swords beside it, whatever flag let the
// Magician demote it.
TEST_F(DoMoveTest, DemotedSoleBondsmanIsCheckedByNeighbouringSwords) {
  for (int demotesDorn : {1, 0}) {
    magicianDemotesDorn = demotesDorn;
    setUp(pos, 1, "8/8/5S2/4f3/3S4/4M3/8/7K w 0 1");
    pos.do_move(makeMove(E3, E5, Demotion), st1);
    EXPECT_EQ(pos.pieceOn(E5), makePiece(BLACK, Dorn_archer));
    EXPECT_EQ(pos.checkers(), bb(D4) | bb(F6)) << "magicianDemotesDorn " << demotesDorn;
  }
}

TEST_F(DoMoveTest, ChecksFoundAfterTheMove) {
  // Taking one of two leaders: the Warrior that took the Bondsman reaches the Dorn left alone.
  setUp(pos, 1, "k7/8/2f5/8/2W5/8/8/7K w 0 1");
  pos.do_move(makeMove(C4, C6), st1);
  EXPECT_EQ(pos.checkers(), bb(C6));

  // Discovered: once the Sword leaves e4, the Bondsman on e3 reaches e6 along the file; the Sword
  // itself does not check a mount.
  setUp(pos, 0, "8/8/4k3/8/4S3/4F3/8/7K w 0 1");
  pos.do_move(makeMove(E4, D5), st1);
  EXPECT_EQ(pos.checkers(), bb(E3));
}

}  // namespace

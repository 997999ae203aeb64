// Making and unmaking moves: exact restoration, running values against from-scratch ones, checkers.
#include <gtest/gtest.h>

#include <random>

#include "core/psqt.h"
#include "core/zobrist.h"
#include "game/move_making.h"
#include "make_unmake_support.h"
#include "movegen/movegen.h"

using namespace make_unmake;

namespace {

const RuleSet ruleSets[] = {
  {"defaults", 1, 1, 0, 1, 0, 1, 0, 0, 1},
  {"capture promotions, Swords take mounts, long reach", 1, 1, 1, 1, 1, 1, 1, 2, 1},
  {"no exchanges or base promotions, Dorns not demoted", 1, 0, 1, 0, 0, 0, 2, 1, 0},
  {"Bondsmen do not lead", 0, 1, 1, 1, 0, 1, 0, 0, 1},
};

// What kinds of moves a random game went through, so that a test cannot pass by testing nothing.
struct Coverage {
  int moves = 0, captures = 0, demotions = 0, exchanges = 0, promotions = 0, checks = 0;
  int breaches = 0, deaths = 0, pickups = 0, transfers = 0, handovers = 0, dropoffs = 0, releases = 0, kills = 0;
};

// The first breach bonus a move earns, judged on the position before it.
Score expectedBreachBonus(const Position& pos, Move m) {
  Square to = moveTo(m);
  Color us = pos.side();
  if (!isDemotion(m) || !pos.onStandingTower(to)) return 0;
  bool first;
  if (siege1)
    first = pos.siege1Tower == siege1TowerSquares && (us == WHITE ? to < A5 : to >= A5);
  else
    first = (pos.siege2Tower[us] & bb(to)) && !pos.siege2Breached[WHITE] && !pos.siege2Breached[BLACK] &&
            pos.siege2Tower[WHITE] == siege2TowerSquares[WHITE] && pos.siege2Tower[BLACK] == siege2TowerSquares[BLACK];
  return !first ? 0 : us == WHITE ? makeScore(120, 120) : -makeScore(120, 120);
}

// How far the running piece-square sum moves away from the board's own sum: a carrier that
// travels in a siege game leaves the sum where it was, and the first breach adds its bonus.
Score expectedPsqDrift(const Position& pos, Move m) {
  Square from = moveFrom(m), to = moveTo(m);
  Score drift = expectedBreachBonus(pos, m);
  bool travels = siegeGame() && isTransfer(m) && !isSiege1Exchange(pos, m) && !pos.onStandingTower(to);
  if (travels) drift -= psq[pos.pieceOn(from)][to] - psq[pos.pieceOn(from)][from];
  return drift;
}

void count(const Position& before, Move m, const Position& after, Coverage& cov) {
  Square to = moveTo(m);
  const StateInfo* st = after.state();
  ++cov.moves;
  cov.captures += st->capturedType != NoPieceType && !isDemotion(m) && !isExchange(m);
  cov.demotions += isDemotion(m) && !before.onStandingTower(to);
  cov.breaches += isDemotion(m) && before.onStandingTower(to);
  cov.exchanges += isExchange(m);
  cov.promotions += isPromotion(m);
  cov.checks += st->checkers != 0;
  cov.deaths += !isDemotion(m) && before.onStandingTower(to);
  cov.pickups += isPickup(m) && !isDemotion(m) && !isExchange(m);
  cov.handovers += st->isSiege1Exchange;
  cov.transfers += isTransfer(m) && !st->isSiege1Exchange;
  cov.dropoffs += isDropoff(m);
  cov.releases += st->isSuccessfulDropoff;
  cov.kills += st->isSiege2EnemyTransferKill != 0;
}

int failedChecks() {
  const ::testing::TestResult* result = ::testing::UnitTest::GetInstance()->current_test_info()->result();
  int failed = 0;
  for (int i = 0; i < result->total_part_count(); ++i) failed += result->GetTestPartResult(i).failed();
  return failed;
}

// Makes m, holds the new position against from-scratch values, unmakes it and holds the old
// position against its snapshot. Returns false at the first failure.
bool makeUnmake(Position& pos, Move m, Coverage& cov, const char* context) {
  const int failedBefore = failedChecks();
  const Snapshot before(pos);
  const Position copy(pos);
  Score driftBefore = pos.state()->psqScore - pos.computePsqScore();
  Score drift = expectedPsqDrift(pos, m);

  StateInfo st;
  pos.do_move(m, st);
  count(copy, m, pos, cov);
  std::string where = std::string(context) + ": " + copy.fen() + " move " + copy.printMoveShort(m) + " (" +
                      std::to_string(m) + ")";

  std::string fault = boardFault(pos);
  EXPECT_EQ(fault, "") << where;
  EXPECT_EQ(pos.state()->materialKey, pos.computeMaterialKey()) << where;
  EXPECT_EQ(pos.state()->npMaterial[WHITE], pos.computeNpMaterial(WHITE)) << where;
  EXPECT_EQ(pos.state()->npMaterial[BLACK], pos.computeNpMaterial(BLACK)) << where;
  EXPECT_EQ(pos.state()->psqScore - pos.computePsqScore(), driftBefore + drift) << where;
  if (!siegeGame()) {
    EXPECT_EQ(pos.key(), pos.computeKey()) << where;
  }
  EXPECT_EQ(pos.checkers(), expectedCheckers(pos)) << where;
  EXPECT_EQ(pos.gamePly, copy.gamePly) << where;

  pos.undo_move(m);
  std::string lost = Snapshot(pos).diff(before);
  EXPECT_EQ(lost, "") << where;
  return failedChecks() == failedBefore;
}

// Moves that touch what the siege and type rules are about, preferred by the random games so
// that a few hundred plies reach breaches, pick-ups and drop-offs.
bool eventful(const Position& pos, Move m) {
  return captiveKind(m) || specialKind(m) || pos.onStandingTower(moveTo(m)) || !pos.empty(moveTo(m));
}

// Random games from the start position of a game type, every legal move made and unmade at each
// ply, and the game taken back move by move at its end.
void playRandomGames(int gameType, const RuleSet& rules, int games, int maxPlies, Coverage& cov) {
  RulesGuard guard;
  rules.apply();
  std::mt19937 rng(1234u + gameType * 17u);
  for (int g = 0; g < games; ++g) {
    Position pos;
    setUp(pos, gameType, gameTypeTable[gameType].startFen);
    if (::testing::Test::HasFatalFailure()) return;
    const Snapshot start(pos);
    std::vector<StateInfo> states(maxPlies);
    std::vector<Move> played;
    for (int ply = 0; ply < maxPlies; ++ply) {
      ScoredMove list[MaxMoves];
      ScoredMove* end = generateLegal(pos, list);
      if (end == list) break;
      for (ScoredMove* sm = list; sm != end; ++sm)
        if (!makeUnmake(pos, sm->move, cov, rules.name)) return;
      std::vector<Move> preferred;
      for (ScoredMove* sm = list; sm != end; ++sm)
        if (eventful(pos, sm->move)) preferred.push_back(sm->move);
      Move m = !preferred.empty() && rng() % 3 ? preferred[rng() % preferred.size()] : list[rng() % (end - list)].move;
      pos.do_move(m, states[ply]);
      played.push_back(m);
    }
    while (!played.empty()) {
      pos.undo_move(played.back());
      played.pop_back();
    }
    EXPECT_EQ(Snapshot(pos).diff(start), "") << gameTypeTable[gameType].name << " / " << rules.name;
  }
}

TEST(MakeUnmake, RandomGamesOfThePlainTypesRestoreEverything) {
  Coverage cov;
  for (int type = 0; type < 3; ++type)
    for (const RuleSet& rules : ruleSets) {
      playRandomGames(type, rules, 2, 120, cov);
    }
  EXPECT_GT(cov.captures, 100);
  EXPECT_GT(cov.demotions, 20);
  EXPECT_GT(cov.exchanges, 10);
  EXPECT_GT(cov.promotions, 10);
  EXPECT_GT(cov.checks, 10);
}

TEST(MakeUnmake, RandomGamesOfTheSiegeTypesRestoreEverything) {
  Coverage cov;
  for (int type = 3; type < 5; ++type)
    for (const RuleSet& rules : ruleSets) {
      if (type == 4 && !rules.bondsmenLeaders) continue;  // its start has no leader then
      playRandomGames(type, rules, 3, 160, cov);
    }
  EXPECT_GT(cov.breaches, 10);
  EXPECT_GT(cov.deaths, 10);
  EXPECT_GT(cov.pickups, 5);
  EXPECT_GT(cov.transfers, 5);
  EXPECT_GT(cov.dropoffs, 2);
  EXPECT_GT(cov.kills, 2);
}

// ---------------------------------------------------------------- single moves

class DoMoveTest : public ::testing::Test {
 protected:
  RulesGuard guard;
  Position pos;
  StateInfo st1, st2;
};

TEST_F(DoMoveTest, DemotionChangesOnlyTheTarget) {
  // White Magician d2 demotes the black Warrior on d4 to an Archer.
  setUp(pos, 1, "k7/8/8/8/3w4/8/3M4/7K w 5 1");
  Key before = pos.key();
  Move m = makeMove(D2, D4, Demotion);
  pos.do_move(m, st1);
  EXPECT_EQ(pos.pieceOn(D2), makePiece(WHITE, Magician));
  EXPECT_EQ(pos.pieceOn(D4), makePiece(BLACK, Archer));
  EXPECT_EQ(pos.key(), before ^ Zobrist::sideKey ^ Zobrist::pieceKeys[BLACK][Warrior][D4] ^
                           Zobrist::pieceKeys[BLACK][Archer][D4]);
  EXPECT_EQ(pos.state()->priorType, Warrior);
  EXPECT_EQ(pos.state()->pliesSinceCapture, 0);
  EXPECT_EQ(pos.count(BLACK, Warrior), 0);
  EXPECT_EQ(pos.count(BLACK, Archer), 1);
}

TEST_F(DoMoveTest, ExchangeSwapsPowersInPlace) {
  // The Dorn_archer on g2 takes the mount of its Warrior neighbour on h3.
  setUp(pos, 1, "k7/8/8/8/8/7W/6J1/8 w 7 1");
  pos.do_move(makeMove(G2, H3, Exchange), st1);
  EXPECT_EQ(pos.pieceOn(G2), makePiece(WHITE, Dorn));
  EXPECT_EQ(pos.pieceOn(H3), makePiece(WHITE, Archer));
  EXPECT_EQ(pos.count(WHITE, Dorn_archer), 0);
  EXPECT_EQ(pos.count(WHITE, Warrior), 0);
  EXPECT_EQ(pos.count(WHITE, Dorn), 1);
  EXPECT_EQ(pos.count(WHITE, Archer), 1);
  EXPECT_EQ(pos.state()->pliesSinceCapture, 0);
  EXPECT_EQ(pos.state()->priorType, Dorn_archer);
  EXPECT_EQ(pos.key(), pos.computeKey());
}

TEST_F(DoMoveTest, PromotionByArrivalWithCaptureRunsBothUpdates) {
  // A White Sword takes the Archer on b7 and becomes a Warrior there.
  setUp(pos, 0, "7k/1a6/2S5/8/8/8/8/7K w 3 1");
  pos.do_move(makeMove(C6, B7, Promotion), st1);
  EXPECT_EQ(pos.pieceOn(B7), makePiece(WHITE, Warrior));
  EXPECT_TRUE(pos.empty(C6));
  EXPECT_EQ(pos.state()->capturedType, Archer);
  EXPECT_EQ(pos.state()->priorType, Sword);
  EXPECT_EQ(pos.state()->pliesSinceCapture, 0);
  EXPECT_EQ(pos.state()->psqScore, pos.computePsqScore());
  EXPECT_EQ(pos.state()->npMaterial[WHITE], pos.computeNpMaterial(WHITE));
  EXPECT_EQ(pos.state()->npMaterial[BLACK], pos.computeNpMaterial(BLACK));
}

TEST_F(DoMoveTest, QuietPliesCountOnUnlessMaterialChanges) {
  setUp(pos, 0, "7k/8/8/8/8/8/S7/7K w 40 9");
  pos.do_move(makeMove(A2, B3), st1);  // plain
  EXPECT_EQ(pos.state()->pliesSinceCapture, 41);
  EXPECT_EQ(pos.state()->pliesSinceNull, pos.state()->previous->pliesSinceNull + 1);
  pos.do_move(makeMove(H8, G8), st2);
  EXPECT_EQ(pos.state()->pliesSinceCapture, 42);
  EXPECT_EQ(pos.gamePly, 16);
  EXPECT_EQ(pos.nodes, 2u);

  // A promotion without a capture does not reset the count either.
  Position p2;
  setUp(p2, 0, "7k/8/2S5/8/8/8/8/7K w 12 1");
  p2.do_move(makeMove(C6, B7, Promotion), st1);
  EXPECT_EQ(p2.state()->pliesSinceCapture, 13);
}

TEST_F(DoMoveTest, NullMoveFlipsSideAndKeyAndCountsTheQuietPly) {
  setUp(pos, 0, "7k/8/8/8/8/8/S7/7K w 99 1");
  Key key = pos.key();
  StateInfo backup;
  pos.do_null_move(backup);
  EXPECT_EQ(pos.side(), BLACK);
  EXPECT_EQ(pos.key(), key ^ Zobrist::sideKey);
  EXPECT_EQ(pos.state()->pliesSinceCapture, 100);
  EXPECT_EQ(pos.state()->pliesSinceNull, 0);
  pos.undo_null_move(backup);
  EXPECT_EQ(pos.side(), WHITE);
  EXPECT_EQ(pos.key(), key);
  EXPECT_EQ(pos.state()->pliesSinceCapture, 99);
}

TEST_F(DoMoveTest, MoveStackRecordsMovesAndCaptures) {
  moveStackCount = 0;
  setUp(pos, 0, "7k/8/8/8/8/1a6/S7/7K w 0 1");
  Move m = makeMove(A2, B3);
  pos.do_move(m, st1);
  EXPECT_EQ(moveStackCount, 1);
  EXPECT_EQ(moveStack[0], m);
  EXPECT_EQ(moveStack[1], MoveNone);
  EXPECT_TRUE(moveStackCapture[0]);
  pos.undo_move(m);
  EXPECT_EQ(moveStackCount, 0);

  // The list stops one short of its size.
  moveStackCount = MoveStackSize - 1;
  pos.do_move(m, st1);
  EXPECT_EQ(moveStackCount, MoveStackSize - 1);
  moveStackCount = 0;
}

// A leader that stops being a mount is attacked by the Swords beside it, whatever flag let the
// Magician demote it.
TEST_F(DoMoveTest, DemotedLeadingBondsmanIsCheckedByNeighbouringSwords) {
  for (int demotesDorn : {1, 0}) {
    magicianDemotesDorn = demotesDorn;
    // Black's only leader is the Bondsman on e5; White Swords on d4 and f6 stand diagonally next to it.
    Position p;
    setUp(p, 1, "8/8/5S2/4f3/3S4/4M3/8/7K w 0 1");
    Move m = makeMove(E3, E5, Demotion);
    StateInfo st;
    p.do_move(m, st);
    EXPECT_EQ(p.pieceOn(E5), makePiece(BLACK, Dorn_archer));
    EXPECT_EQ(p.checkers(), bb(D4) | bb(F6)) << "magicianDemotesDorn " << demotesDorn;
    EXPECT_EQ(p.checkers(), expectedCheckers(p));
  }
}

// With two leaders a colour has no check; losing one leaves a sole leader that may be attacked at once.
TEST_F(DoMoveTest, CaptureOfOneOfTwoLeadersChecksTheOther) {
  // Black leads with the Dorn on a8 and the Bondsman on c6; White's Warrior takes the Bondsman
  // and now attacks the Dorn two squares away.
  setUp(pos, 1, "k7/8/2f5/8/2W5/8/8/7K w 0 1");
  EXPECT_TRUE(pos.severalLeaders(BLACK));
  pos.do_move(makeMove(C4, C6), st1);
  EXPECT_TRUE(pos.soleLeader(BLACK));
  EXPECT_EQ(pos.checkers(), bb(C6));

  // Demoting one of two Bondsmen makes it an Archer, and the other one the sole leader.
  Position p;
  setUp(p, 1, "8/8/2f5/8/8/2f5/2S5/2M4K w 0 1");
  p.do_move(makeMove(C1, C3, Demotion), st2);
  EXPECT_EQ(p.pieceOn(C3), makePiece(BLACK, Archer));
  EXPECT_EQ(p.checkers(), expectedCheckers(p));
}

TEST_F(DoMoveTest, DiscoveredCheckThroughAVacatedSquare) {
  // The Sword on e4 stands between the Bondsman on e3 and the black Dorn on e6; once it steps
  // aside the Bondsman reaches along the file. The Sword itself gives no check to a mount.
  setUp(pos, 0, "8/8/4k3/8/4S3/4F3/8/7K w 0 1");
  pos.do_move(makeMove(E4, D5), st1);
  EXPECT_EQ(pos.checkers(), bb(E3));
}

}  // namespace

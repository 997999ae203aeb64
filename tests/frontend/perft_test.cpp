// Perft counts, each checked against a second count made from the pseudo-legal generators,
// make/unmake and a direct look at the mover's sole leader.
#include <gtest/gtest.h>

#include <deque>

#include "core/prng.h"
#include "frontend/bench.h"
#include "game/piece_values.h"
#include "game/attacks.h"
#include "game/position.h"
#include "game/rules.h"
#include "movegen/movegen.h"
#include "../support/position_fixture.h"
#include "../support/rule_sets.h"

namespace {

constexpr Bitboard bb(Square s) { return Bitboard(1) << s; }

// What the legal list leaves out by design while the side to move is in check:
//  - exchanges, and so hand-overs: no reply to check changes types or passes the captive;
//  - leader moves onto a square that a checking mount reaches from a neighbour of the leader on
//    an empty board, closed even where a third piece shields it;
//  - every non-leader move in double check, which the evasion survey mostly gives up on.
// A non-leader's block in the enemy base is a plain word among the evasions and a promotion
// among the non-evasions: one word either way, so the counts agree.
// The squares a checking mount closes to the leader: from a neighbour, all it could reach on an
// empty board; from further off, its walk and the open long lines that meet the leader's reach.
Bitboard closedToTheLeader(const Position& pos, Square ksq) {
  Bitboard closed = 0, occ = pos.pieces() | pos.standingTowers();
  for (Bitboard b = pos.checkers(); b;) {
    Square q = popLowest(b);
    PieceType t = typeOf(pos.pieceOn(q));
    if (!isMount(t)) continue;
    if (squareDistance[q][ksq] == 1) {
      closed |= pseudoAttacks[t][q];
      continue;
    }
    closed |= warriorAttacks(pos, q, pos.pieces());
    if (t == Warrior) continue;
    for (Bitboard lines = reach[t == Dorn ? DornLong : BondsmanLong][q] & pseudoAttacks[Dorn][ksq]; lines;) {
      Square s = popLowest(lines);
      if (!(between[s][q] & occ)) closed |= bb(s);
    }
  }
  return closed;
}

bool leftOutInCheck(const Position& pos, Move m) {
  if (!pos.inCheck()) return false;
  if (isExchange(m) || isSiege1Exchange(pos, m)) return true;
  Square ksq = pos.leaderSquare(pos.side());
  Bitboard checkers = pos.checkers();
  if (moveFrom(m) != ksq) return (checkers & (checkers - 1)) != 0;
  return closedToTheLeader(pos, ksq) & bb(moveTo(m));
}

// Moves that leave the sole leader safe, yet the legality rules refuse by their letter:
//  - a piece that shields its leader on a line from an enemy mount or Assassin may leave the line
//    only by a move between the two, even when a second piece also blocks that line, and even by a
//    demotion, which moves nothing;
//  - a leader's exchange is judged by whether its partner's square is attacked.
bool refusedByTheRules(const Position& pos, Move m) {
  Color us = pos.side(), them = ~us;
  Square ksq = pos.leaderSquare(us), from = moveFrom(m), to = moveTo(m);
  if (!pos.soleLeader(us)) return false;
  if (from == ksq)
    return isExchange(m) && (pos.checkableBy(us) & pos.attackersTo(to, pos.pieces() & ~bb(from), ~0ULL, them));
  if (!(CheckInfo(pos).pinned & bb(from))) return false;
  Bitboard shooters = pos.pieces(them) & ~bb(to) &
                      ((pos.pieces(Warrior) & pseudoAttacks[Warrior][ksq]) | (pos.pieces(Bondsman) & pseudoAttacks[Bondsman][ksq]) |
                       (pos.pieces(Dorn) & pseudoAttacks[Dorn][ksq]) | (pos.pieces(Assassin) & pseudoAttacks[Assassin][ksq]));
  for (Bitboard b = shooters; b;) {
    Square q = popLowest(b);
    bool besideLeader = squareDistance[from][ksq] == 1 && squareDistance[from][q] == 1;
    if (!besideLeader && (between[q][ksq] & bb(from)) && !(between[q][ksq] & bb(to))) return true;
  }
  return false;
}

// The second count: every pseudo-legal word, played, kept when the mover's sole leader is safe.
uint64_t bruteCount(Position& pos, int plies) {
  if (pos.leaderSquare(WHITE) == NoSquare || pos.leaderSquare(BLACK) == NoSquare) return 0;
  if (siege1) {
    Square c = pos.siege1CaptiveSquare;
    if (c != NoSquare && !pos.empty(c) && ((goalSquares[WHITE] | goalSquares[BLACK]) & bb(c))) return 0;
  }
  ScoredMove list[MaxMoves];
  ScoredMove* end = generateNonEvasions(pos, list);
  Color us = pos.side();
  uint64_t count = 0;
  for (ScoredMove* it = list; it != end; ++it) {
    Move m = it->move;
    if (leftOutInCheck(pos, m) || refusedByTheRules(pos, m)) continue;
    // A sole leader may neither walk into a tower nor hand the captive over.
    bool soleLeaderMoves = moveFrom(m) == pos.leaderSquare(us) && pos.soleLeader(us);
    if (soleLeaderMoves && (isSiege1Exchange(pos, m) || pos.onStandingTower(moveTo(m)))) continue;
    StateInfo st;
    pos.do_move(m, st);
    if (!leaderTakers(pos, us)) count += plies > 1 ? bruteCount(pos, plies - 1) : 1;
    pos.undo_move(m);
  }
  return count;
}

class PerftTest : public PositionFixture {
 protected:
  void load(int gameType, const std::string& fen) {
    setSiegeModes(gameType);
    PositionFixture::load(fen);
    setPieceValues(pos);
  }

  // perft to each depth, checked against the brute count and, where given, a known figure.
  void expectCounts(const std::vector<uint64_t>& known, int plies) {
    for (int d = 1; d <= plies; ++d) {
      uint64_t count = perft(pos, 2 * d);
      EXPECT_EQ(count, bruteCount(pos, d)) << "depth " << d << ": " << pos.fen();
      if (d <= int(known.size())) {
        EXPECT_EQ(count, known[d - 1]) << "depth " << d;
      }
    }
  }

};

}  // namespace

TEST_F(PerftTest, StartPositionsOfEveryGameType) {
  const std::vector<uint64_t> known[GameTypeCount] = {
      {32, 1022, 45840, 2039925},  {25, 626, 22010, 769707},     {31, 960, 41521, 1783081},
      {30, 900, 35386, 1389831},   {40, 1599, 72255, 3252582}};
  for (const GameType& type : gameTypeTable) {
    SCOPED_TRACE(type.name);
    load(type.number, type.startFen);
    expectCounts(known[type.number], 4);
  }
}

TEST_F(PerftTest, CheckOfALoneDornAlongItsLine) {
  bondsmenLeaders = 0;
  load(0, gameTypeTable[0].startFen);
  std::deque<StateInfo> states(3);
  for (Move m : {makeMove(F2, E3), makeMove(B7, D6), makeMove(E2, D3)}) {
    states.emplace_back();
    pos.do_move(m, states.back());
  }
  ASSERT_TRUE(pos.inCheck());
  expectCounts({7}, 3);
}

TEST_F(PerftTest, SiegePositionsWithBreachesAndCarriers) {
  struct Case {
    int gameType;
    const char* fen;
  };
  const Case cases[] = {
      // Siege 1: two squares breached, the captive still inside.
      {3, "wfw1a3/wksha3/wn6/aa6/6AA/6NW/3AWSKW/3AHWFW w 0 1 - Tower { D4 E4 D5 E5 } Breached { D4 E5 }"},
      // Siege 1: a White Warrior carries the captive near Black's goal.
      {3, "wfwha3/wksw4/wn6/a5W1/2A3A1/6N1/3AWSKW/3AHWF1 b 0 1 g5 Tower { D4 E4 D5 E5 } Breached { D4 }"},
      // Siege 2: both towers breached, White carries its own captive, Black's still inside.
      {4, "wfwwa3/w1sa4/wn6/aa5A/6A1/6NW/3HAS1W/3AWWFW w 0 1 h5 1 - 1 TowerWhite { H5 H6 } BreachedWhite { H5 } "
          "TowerBlack { A3 A4 } BreachedBlack { A4 } DropoffSquaresWhite { A1 } DropoffSquaresBlack { H8 }"},
      // Siege 2: a Black carrier stands on White's drop-off square with White's captive.
      {4, "f7/8/8/8/8/8/8/w5F1 b 0 1 a1 1 - 1 TowerWhite { H5 H6 } BreachedWhite { H6 } TowerBlack { A3 A4 } "
          "BreachedBlack {  } DropoffSquaresWhite { A1 } DropoffSquaresBlack { H8 }"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.fen);
    load(c.gameType, c.fen);
    expectCounts({}, 3);
  }
}

// Middle games reached by random legal moves under every rule setting, counted three plies deep.
TEST_F(PerftTest, RandomMiddleGamesUnderEveryRuleSetting) {
  Prng rng(2026);
  for (const GameType& type : gameTypeTable)
    for (const RuleSet& rules : ruleSets) {
      resetRuleFlags();
      rules.apply();
      if (type.number == 4 && !bondsmenLeaders) continue;  // nobody would lead
      load(type.number, type.startFen);
      std::deque<StateInfo> states;
      for (int ply = 0; ply < 30; ++ply) {
        ScoredMove list[MaxMoves];
        ScoredMove* end = generateLegal(pos, list);
        if (end == list) break;
        states.emplace_back();
        pos.do_move(list[rng.next() % (end - list)].move, states.back());
      }
      SCOPED_TRACE(std::string(type.name) + ", " + rules.name + ": " + pos.fen());
      expectCounts({}, 3);
    }
}

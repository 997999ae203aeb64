// Replies to check: the checker survey, blocks on walker paths, double checks, and a cross-check of
// the evasion list against all pseudo-legal moves over random games of every type.
#include <algorithm>
#include <deque>
#include <random>

#include "../support/capture_stdout.h"
#include "../support/random_games.h"
#include "frontend/listings.h"
#include "game/attack_queries.h"
#include "move_list_text.h"

namespace {

constexpr Bitboard bb(Square s) { return Bitboard(1) << s; }

// The sole leader of c is safe once m has been made: played out, not reasoned about.
bool leavesLeaderSafe(Position& pos, Move m) {
  Color us = pos.side();
  StateInfo st;
  pos.do_move(m, st);
  bool safe = pos.leaderSquare(us) != NoSquare && !leaderTakers(pos, us);
  pos.undo_move(m);
  return safe;
}

class EvasionsTest : public PositionUnderRules {
 protected:
  std::string evasions(Square from = NoSquare) const { return listText(movesOf(pos, generateEvasions), from); }
};

// ---------------------------------------------------------------- the checkers

TEST_F(EvasionsTest, TwoContactCheckersLeaveOnlyTheLeader) {
  load("k7/8/8/3a4/3J4/2s5/8/4W3 w 0 1");  // the Warrior could take the Sword: no help
  EXPECT_EQ(pos.checkers(), bb(C3) | bb(D5));
  EXPECT_EQ(evasions(), "d4c3 d4d3 d4e3 d4c4 d4e4 d4c5 d4d5 d4e5");
}

// A Warrior two files away has three ways in: only the last open one can be shut. A piece that
// stands on a way cannot shut another one by stepping across.
TEST_F(EvasionsTest, WalkerAtTwoZeroIsBlockedOnlyOnItsLastOpenWay) {
  load("k7/8/8/8/3J1w2/6A1/4A3/8 w 0 1");  // three open ways
  EXPECT_EQ(evasions(E2), "");
  EXPECT_EQ(evasions(G3), "f4");
  load("k7/8/8/4S3/3J1w2/8/4A3/8 w 0 1");  // two of them open
  EXPECT_EQ(evasions(E2), "");
  load("k7/8/8/4S3/3J1w2/4AA2/8/8 w 0 1");  // only e4 open
  EXPECT_EQ(evasions(E3), "f4");
  EXPECT_EQ(evasions(F3), "e4 f4");
  EXPECT_EQ(legal(F3), "e4 f4");
}

TEST_F(EvasionsTest, WalkerAtTwoOneAndTwoTwo) {
  load("k7/8/8/4Aw2/3J4/4A3/8/8 w 0 1");  // e5 shut, e4 open
  EXPECT_EQ(evasions(E5), "f5");
  EXPECT_EQ(evasions(E3), "e4");
  load("k7/8/5w2/8/3JA3/8/8/8 w 0 1");  // one way, through e5
  EXPECT_EQ(evasions(E4), "e5");
  load("k7/8/8/3f4/8/8/3J4/2A5 w 0 1");  // a Bondsman's range-3 line
  EXPECT_EQ(evasions(C1), "");
  load("k7/8/8/3f4/2A5/8/3J4/8 w 0 1");
  EXPECT_EQ(evasions(C4), "d3 d4 d5");
}

TEST_F(EvasionsTest, AssassinIsTakenOrBlockedBetween) {
  load("k7/8/3n4/2A5/3J4/8/8/8 w 0 1");
  EXPECT_EQ(evasions(C5), "d5 d6");
}

TEST_F(EvasionsTest, DemotingTheCheckerAnswersUnlessItIsASword) {
  load("k7/8/8/8/3J1w2/8/5M2/8 w 0 1", 1);
  EXPECT_EQ(evasions(F2), "f4<");
  EXPECT_EQ(legal(F2), "f4<");
  load("k7/8/8/2s5/3J4/2M5/8/8 w 0 1", 1);
  EXPECT_EQ(evasions(C3), "");
}

TEST_F(EvasionsTest, SwordsTakeACheckingWalkerOnlyWhenAllowed) {
  load("k7/8/8/8/3J1w2/6S1/8/8 w 0 1");
  EXPECT_EQ(evasions(G3), "");
  swordsCaptureMounts = 1;
  EXPECT_EQ(evasions(G3), "f4");
  capturePromotions = 1;
  EXPECT_EQ(evasions(G3), "f4=");
}

// A walker next to the leader closes all it could reach on an empty board, also c6 here, which
// the Archers on d5 and d6 shield.
TEST_F(EvasionsTest, WalkerNextToTheLeaderClosesItsWholeReach) {
  load("8/8/3A4/3Aw3/3K4/8/8/7k w 0 1");
  Move c6 = makeMove(D4, C6);
  EXPECT_TRUE(pos.pseudo_legal(c6) && pos.legal(c6, pinnedPieces(pos)));
  EXPECT_FALSE(reaches(evasions(D4), "c6"));
  EXPECT_TRUE(holds(legal(D4), "e5"));  // taking the checker
  EXPECT_TRUE(holds(legal(D4), "b2"));  // beyond its reach
}

// Against two checkers one block may still shut both: here d5 is the Assassin's way and the
// Warrior's last open one. With the Assassin away from the Warrior nothing is looked for.
TEST_F(EvasionsTest, DoubleCheckAnsweredByOneBlock) {
  load("k7/8/2wn4/2A1A3/3J4/8/8/8 w 0 1");
  EXPECT_EQ(pos.checkers(), bb(C6) | bb(D6));
  EXPECT_EQ(evasions(E5), "d5");
  EXPECT_EQ(evasions(C5), "");
  EXPECT_EQ(legal(E5), "d5");
  load("k7/8/3n4/4A3/3J1w2/8/8/8 w 0 1");
  EXPECT_EQ(evasions(E5), "");
}

TEST_F(EvasionsTest, CarrierKeepsItsWinSquareThoughTheCheckerClosesIt) {
  load("7k/8/1w6/8/1J6/8/8/8 w 0 1 B4", 3);
  EXPECT_EQ(evasions(B4), "a3^t b3^t c3^t a4^t");
  EXPECT_EQ(legal(B4), "a3^t b3^t c3^t");  // a4 is attacked all the same
}

TEST_F(EvasionsTest, LegalListMovesTheLastEntryIntoAGap) {
  load("7k/8/8/8/8/8/2s5/J7 w 0 1");  // b1 is attacked
  EXPECT_EQ(nonEvasions(A1), "b1 a2 b2");
  EXPECT_EQ(legal(A1), "b2 a2");
  pos.removePiece(A1);
  EXPECT_TRUE(movesOf(pos, generateLegal).empty());
}

TEST_F(EvasionsTest, ListingSaysWhenThereIsNoCheck) {
  load("k7/8/8/8/3J1w2/8/5M2/8 w 0 1", 1);
  CaptureStdout inCheck;
  listEvasions(pos);
  EXPECT_EQ(inCheck.text(), "\nevasions moves: JD4C3 JD4C4 JD4C5 MF2F4< \n");
  load("k7/8/8/8/3J4/8/8/8 b 0 1");
  CaptureStdout quiet;
  listEvasions(pos);
  EXPECT_EQ(quiet.text(), "Side is not in check\n");
}

// ---------------------------------------------------------------- random games


// Squares a checking walker may close to the leader though a piece shields them.
Bitboard mountReach(const Position& pos) {
  Bitboard closed = 0;
  for (Bitboard b = pos.checkers(); b;) {
    Square q = popLowest(b);
    PieceType t = typeOf(pos.pieceOn(q));
    if (isMount(t)) closed |= pseudoAttacks[t][q];
  }
  return closed;
}

struct Tally {
  int positions = 0, doubles = 0, blocks = 0, leaderMoves = 0;
};

// In check: every evasion that `legal` keeps is really legal, and every real reply among the
// non-evasions is an evasion, but for what the evasion generator leaves out by design:
//  - a leader move onto a square that a checking walker reaches on an empty board, which the
//    survey closes even when a piece shields it;
//  - in double check, every move but the leader's: the survey gives up on contact checkers and on
//    Assassin pairs, and counts a capture of one checker only as a block of the other;
//  - a non-leader's arrival in the enemy base, a promotion among the non-evasions and a plain
//    word among the evasions.
void crossCheck(Position& pos, Tally& tally) {
  std::vector<Move> evasions = movesOf(pos, generateEvasions);
  Bitboard pinned = pinnedPieces(pos);
  Square ksq = pos.leaderSquare(pos.side());
  bool single = !(pos.checkers() & (pos.checkers() - 1));
  ++tally.positions;
  tally.doubles += !single;
  for (Move m : evasions) {
    // Against two checkers a block of one way is listed though the other checker stays.
    if (single) {
      EXPECT_TRUE(pos.pseudo_legal(m)) << wordText(m);
    }
    if (pos.legal(m, pinned)) {
      EXPECT_TRUE(leavesLeaderSafe(pos, m)) << wordText(m);
      tally.leaderMoves += moveFrom(m) == ksq;
      tally.blocks += moveFrom(m) != ksq && !(pos.checkers() & bb(moveTo(m)));
    }
  }
  EXPECT_EQ(std::count_if(evasions.begin(), evasions.end(),
                          [&](Move m) { return std::count(evasions.begin(), evasions.end(), m) > 1; }),
            0)
      << listText(evasions);
  for (Move m : movesOf(pos, generateNonEvasions)) {
    if (!pos.pseudo_legal(m) || !pos.legal(m, pinned) || !leavesLeaderSafe(pos, m)) continue;
    if (std::find(evasions.begin(), evasions.end(), m) != evasions.end()) continue;
    bool leader = moveFrom(m) == ksq;
    if (leader && (mountReach(pos) & bb(moveTo(m)))) continue;
    if (!leader && !single) continue;
    if (!leader && isPromotion(m) &&
        std::find(evasions.begin(), evasions.end(), Move(m & ~SpecialMask)) != evasions.end())
      continue;
    ADD_FAILURE() << "missing reply " << wordText(m) << " among " << listText(evasions);
  }
}

TEST(EvasionsCrossCheck, RandomGamesOfEveryType) {
  Tally tally;
  // Checks are sought, so that the games meet many of them.
  auto givesCheck = [](const Position& pos, Move m) { return pos.gives_check(m, CheckInfo(pos)); };
  forRandomPositions(16, 200, 20261123u, [&](Position& pos, const std::string& where) {
    SCOPED_TRACE(where);
    if (pos.inCheck()) crossCheck(pos, tally);
  }, givesCheck);
  EXPECT_GT(tally.positions, 500);
  EXPECT_GT(tally.doubles, 10);
  EXPECT_GT(tally.blocks, 100);
  EXPECT_GT(tally.leaderMoves, 1000);
}

}  // namespace

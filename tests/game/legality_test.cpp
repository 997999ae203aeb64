// Attack queries, pins through walker paths, legality of leader and demotion moves, gives_check,
// pseudo-legality of stored words, and a cross-check over random games of every type.
#include "core/prng.h"
#include "core/statistics.h"
#include "game/attack_queries.h"
#include "../movegen/move_list_text.h"
#include "../support/random_games.h"
#include "../support/rule_sets.h"
#include "targets/position_invariants.h"

namespace {

constexpr Bitboard bb(Square s) { return Bitboard(1) << s; }

class LegalityTest : public PositionUnderRules {
 protected:
  // Both tests a word must pass to stand in the legal list.
  bool playable(Move m) const { return pos.pseudo_legal(m) && pos.legal(m, pinnedPieces(pos)); }
};

// ---------------------------------------------------------------- check and pins

TEST_F(LegalityTest, WalkerTwoAwayChecksThroughAnyOpenWayAndPinsAllItsShields) {
  load("k7/8/8/4S3/3JAw2/4S3/8/8 w 0 1");  // all three ways from f4 to d4 are shut
  EXPECT_FALSE(pos.inCheck());
  EXPECT_EQ(pinnedPieces(pos), bb(E3) | bb(E4) | bb(E5));
  EXPECT_FALSE(playable(makeMove(E3, F2)));
  EXPECT_FALSE(playable(makeMove(E4, D5)));
  EXPECT_TRUE(playable(makeMove(E4, F4)));  // takes the walker

  load("k7/8/5A2/8/3JAw2/4S3/8/8 w 0 1");  // e5 open: check
  EXPECT_EQ(pos.checkers(), bb(F4));
  EXPECT_TRUE(playable(makeMove(F6, E5)));   // shuts the last open way
  EXPECT_FALSE(playable(makeMove(E4, E5)));  // opens e4 while shutting e5
}

TEST_F(LegalityTest, StraightShieldsStayOnTheirLine) {
  load("k7/8/5w2/4A3/3J4/8/8/8 w 0 1");  // a walker at (2,2) has one way in
  EXPECT_EQ(pinnedPieces(pos), bb(E5));
  EXPECT_EQ(legal(E5), "f6");
  load("k7/3f4/8/3A4/3J4/8/8/8 w 0 1");  // a range-3 line
  EXPECT_EQ(pinnedPieces(pos), bb(D5));
  EXPECT_EQ(legal(D5), "d6");
}

TEST_F(LegalityTest, SeveralLeadersAreNeverInCheckAndMagiciansNeverCheck) {
  const char* fen = "k7/8/8/4w3/3K4/8/8/7F w 0 1";
  load(fen);
  EXPECT_FALSE(pos.inCheck());
  EXPECT_EQ(pinnedPieces(pos), 0u);
  EXPECT_TRUE(playable(makeMove(D4, E4)));  // a leader may walk into attack
  bondsmenLeaders = 0;
  load(fen);
  EXPECT_EQ(pos.checkers(), bb(E5));
  EXPECT_FALSE(playable(makeMove(D4, E4)));

  load("k7/8/8/3m4/3J4/8/8/8 w 0 1");
  EXPECT_NE(pos.allAttackersTo(D4, pos.pieces(), 0) & bb(D5), 0u);  // it reaches d4 by demotion
  EXPECT_FALSE(pos.inCheck());
  EXPECT_TRUE(playable(makeMove(D4, C5)));
}

// With two leaders a move that costs one of them is judged by the one that stays; a move that
// costs the enemy one may check the other.
TEST_F(LegalityTest, LosingALeaderIsJudgedByTheOneThatStays) {
  load("7k/8/8/8/2F5/w7/8/K7 w 0 1", 3);  // the Bondsman dies on d4; the Dorn on a1 is attacked
  EXPECT_TRUE(pos.pseudo_legal(makeMove(C4, D4)));
  EXPECT_FALSE(playable(makeMove(C4, D4)));
  load("7k/8/8/8/2F5/8/8/K7 w 0 1", 3);
  EXPECT_TRUE(playable(makeMove(C4, D4)));

  load("7k/8/8/8/8/w7/1F6/J7 w 0 1");  // the exchange leaves a sole Dorn on the attacked a1
  EXPECT_FALSE(playable(makeMove(A1, B2, Exchange)));
  load("7k/8/8/8/8/8/1F6/J7 w 0 1");
  EXPECT_TRUE(playable(makeMove(A1, B2, Exchange)));

  load("8/8/8/8/3f4/2k5/1A6/7K w 0 1");  // taking the Dorn, the Archer lands next to the Bondsman
  CheckInfo capture(pos);
  EXPECT_TRUE(pos.gives_check(makeMove(B2, C3), capture));
  load("8/8/8/4f3/8/2k5/1A6/7K w 0 1");
  EXPECT_FALSE(pos.gives_check(makeMove(B2, C3), CheckInfo(pos)));

  load("7K/8/8/8/8/3f4/6W1/1M5k w 0 1", 1);  // demoting the Bondsman leaves the Dorn beside the Warrior
  EXPECT_TRUE(pos.gives_check(makeMove(B1, D3, Demotion), CheckInfo(pos)));
  load("7K/8/8/8/8/3f4/8/1M5k w 0 1", 1);
  EXPECT_FALSE(pos.gives_check(makeMove(B1, D3, Demotion), CheckInfo(pos)));
}

// ---------------------------------------------------------------- leader moves and demotions

TEST_F(LegalityTest, LeaderTakesBesideASwordOnlyAsAMount) {
  load("k7/8/5s2/4a3/3K4/8/8/8 w 0 1");
  EXPECT_TRUE(playable(makeMove(D4, E5)));
  load("k7/8/5s2/4a3/3J4/8/8/8 w 0 1");
  EXPECT_FALSE(playable(makeMove(D4, E5)));
  load("k7/8/5s2/4w3/3J4/8/8/8 w 0 1");  // unless the capture makes it a Dorn
  capturePromotions = 1;
  EXPECT_TRUE(playable(makeMove(D4, E5, Promotion)));
  swordsCaptureMounts = 1;
  load("k7/8/5s2/4a3/3K4/8/8/8 w 0 1");
  EXPECT_FALSE(playable(makeMove(D4, E5)));
}

TEST_F(LegalityTest, DemotedPieceMustNotReachTheLeader) {
  load("k7/8/8/8/3Jw3/8/4M3/8 w 0 1");  // checked from e4: an Archer there still checks
  EXPECT_TRUE(pos.pseudo_legal(makeMove(E2, E4, Demotion)));
  EXPECT_FALSE(playable(makeMove(E2, E4, Demotion)));
  load("k7/8/8/8/3J1w2/8/5M2/8 w 0 1");  // checked from f4: an Archer there does not
  EXPECT_EQ(legal(F2), "f4<");
  load("k7/8/8/4n3/3J4/4M3/8/8 w 0 1");  // the Assassin would become a Sword beside the leader
  EXPECT_FALSE(playable(makeMove(E3, E5, Demotion)));
  load("k7/8/8/4n3/3K4/4M3/8/8 w 0 1");  // harmless to a mounted leader
  EXPECT_TRUE(playable(makeMove(E3, E5, Demotion)));
}

TEST_F(LegalityTest, SoleLeaderNeitherEntersATowerNorHandsOver) {
  load("k7/8/8/8/2M5/2K5/8/8 w 0 1", 3);
  EXPECT_FALSE(pos.pseudo_legal(makeMove(C3, D4)));
  EXPECT_FALSE(pos.pseudo_legal(makeMove(C4, D4)));  // a Magician steps onto no tower
  EXPECT_TRUE(pos.pseudo_legal(makeMove(C4, D4, Demotion)));
  load("k7/8/8/8/8/2K5/2W5/8 w 0 1 C3", 3);  // the leader carries
  EXPECT_TRUE(pos.pseudo_legal(makeMove(C3, C2, Transfer)));
  EXPECT_FALSE(pos.legal(makeMove(C3, C2, Transfer), 0));
  EXPECT_TRUE(pos.legal(makeMove(C3, B3, Transfer), 0));
}

// ---------------------------------------------------------------- gives_check

TEST_F(LegalityTest, GivesCheckAlongALineByDiscoveryAndByPromotion) {
  load("3j4/8/8/1F6/8/8/8/7K w 0 1");  // b5-d5 opens the file to d8
  CheckInfo line(pos);
  EXPECT_TRUE(pos.gives_check(makeMove(B5, D5), line));
  StateInfo st;
  pos.do_move(makeMove(B5, D5), st);
  EXPECT_EQ(pos.checkers(), bb(D5));

  load("3j4/3S4/3N4/8/8/8/8/7K w 0 1");  // the Sword shields d8 from the Assassin
  CheckInfo discovery(pos);
  EXPECT_EQ(discovery.dcCandidates, bb(D7));
  EXPECT_TRUE(pos.gives_check(makeMove(D7, E6), discovery));

  load("1j6/8/2S5/8/8/8/8/7K w 0 1");  // a Warrior on b7 reaches b8, a Sword does not
  CheckInfo promotion(pos);
  EXPECT_TRUE(pos.gives_check(makeMove(C6, B7, Promotion), promotion));
  EXPECT_FALSE(pos.gives_check(makeMove(C6, B7), promotion));
}

TEST_F(LegalityTest, AMagician2ThatStepsAlongTheLineStillShields) {
  bondsmenLeaders = 0;
  load("3k4/8/3H4/3F4/8/8/8/7K w 0 1");  // the Bondsman's file to d8 is shut by the Magician2
  CheckInfo ci(pos);
  ASSERT_EQ(ci.dcCandidates, bb(D6));
  EXPECT_FALSE(pos.gives_check(makeMove(D6, D7), ci));  // lands on the line again
  EXPECT_TRUE(pos.gives_check(makeMove(D6, C6), ci));
  StateInfo st;
  pos.do_move(makeMove(D6, C6), st);
  EXPECT_EQ(pos.checkers(), bb(D5));
}

// ---------------------------------------------------------------- pseudo-legality

TEST_F(LegalityTest, AnExchangeIsWithANeighbourAndNoReplyToCheck) {
  load("k7/8/8/8/8/8/4A2A/3I4 w 0 1", 1);  // a Dorn_sword with an Archer beside it and one far off
  EXPECT_TRUE(playable(makeMove(D1, E2, Exchange)));
  EXPECT_FALSE(pos.pseudo_legal(makeMove(D1, H2, Exchange)));
  load("k7/8/8/8/8/8/4A2A/3Iw3 w 0 1", 1);  // in check, it stays where the Warrior takes it
  ASSERT_TRUE(pos.inCheck());
  EXPECT_FALSE(pos.pseudo_legal(makeMove(D1, E2, Exchange)));
}

TEST_F(LegalityTest, WordsWhoseKindDoesNotFitTheSquaresFailAndAreCounted) {
  stats.plFailsPlain = stats.plFailsDemotion = stats.plFailsPromotion = stats.plFailsExchange = 0;
  stats.plFailsSiege = 0;
  load("k7/1a6/1M6/8/8/8/8/7K w 0 1", 1);
  EXPECT_FALSE(pos.pseudo_legal(makeMove(B6, B7)));  // a demotion written as a plain move
  EXPECT_FALSE(pos.pseudo_legal(makeMove(B6, B5, Demotion)));
  load("k7/8/8/8/8/8/4M3/4WF2 w 0 1", 1);
  EXPECT_FALSE(pos.pseudo_legal(makeMove(E2, F1, Exchange)));  // the sole leader is no partner
  load("k7/8/2S5/8/4S3/5a2/8/7K w 0 1");
  EXPECT_FALSE(pos.pseudo_legal(makeMove(E4, D3, Promotion)));
  EXPECT_TRUE(pos.pseudo_legal(makeMove(C6, B7)));  // the quiet list's base arrival
  capturePromotions = 1;
  EXPECT_FALSE(pos.pseudo_legal(makeMove(E4, F3)));  // a capture promotion written plain

  load("k7/8/8/8/8/2W5/8/7K w 0 1 - Breached { D4 }", 3);
  Move pickup = makeMove(C3, D4, Pickup);
  EXPECT_TRUE(pos.pseudo_legal(pickup));
  load("k7/8/8/8/8/2W5/8/5A1K w 0 1 F1 Breached { D4 }", 3);  // once the captive is carried
  EXPECT_FALSE(pos.pseudo_legal(pickup));

  EXPECT_EQ(stats.plFailsPlain.load(), 2u);
  EXPECT_EQ(stats.plFailsDemotion.load(), 1u);
  EXPECT_EQ(stats.plFailsExchange.load(), 1u);
  EXPECT_EQ(stats.plFailsPromotion.load(), 1u);
  EXPECT_EQ(stats.plFailsSiege.load(), 1u);
}

// ---------------------------------------------------------------- random games

// Over random games of every game type: every generated word is pseudo-legal, no legal move leaves
// the mover's sole leader capturable, and gives_check and do_move agree with the leader's attackers found from scratch.
// One exception by design: a Dorn form's hand-over to a neighbour it could exchange with is no
// pseudo-legal word, since those squares make an exchange; legal refuses the leader's hand-over
// anyway.
TEST_F(LegalityTest, RandomGamesKeepTheSoleLeaderSafe) {
  forRandomPositions(6, 200, 7, [](Position& pos, const std::string& where) {
    SCOPED_TRACE(where);
    if (!pos.inCheck())
      for (Generate generate : {generateCaptures, generateQuiets, generateNonEvasions})
        for (Move m : movesOf(pos, generate)) {
          if (isSiege1Exchange(pos, m) && pos.exchangePair(moveFrom(m), moveTo(m))) continue;
          EXPECT_TRUE(pos.pseudo_legal(m)) << wordText(m);
        }
    const Color us = pos.side();
    CheckInfo ci(pos);
    for (Move m : movesOf(pos, generateLegal)) {
      bool check = pos.gives_check(m, ci);
      StateInfo st;
      pos.do_move(m, st, ci, check);
      EXPECT_EQ(leaderTakers(pos, us), 0u) << wordText(m);
      // So a game text of legal moves never reaches a position that the front end refuses.
      EXPECT_FALSE(canTakeEnemyLeader(pos)) << wordText(m);
      // Exact both ways: the search picks its quiescence form by gives_check alone.
      Bitboard takers = leaderTakers(pos, ~us);
      if (!pos.severalLeaders(~us)) {
        EXPECT_EQ(check, takers != 0) << wordText(m);
      }
      EXPECT_EQ(pos.checkers(), takers) << wordText(m);
      pos.undo_move(m);
    }
  });
}

// A move list from outside may name any word. The two tests let through a few that the generators
// never make (a plain word for a base-zone arrival, a Magician2 onto a tower beyond its reach); none
// of them may leave the mover's leader open or the checkers wrong.
TEST_F(LegalityTest, EveryWordFromOutsideThatPassesBothTestsKeepsTheRules) {
  int passed = 0;
  forRandomPositions(2, 150, 99u, [&](Position& pos, const std::string& where) {
    SCOPED_TRACE(where);
    const Bitboard pinned = pinnedPieces(pos);
    const Color us = pos.side();
    for (Bitboard own = pos.pieces(us); own; own &= own - 1)
      for (Square to = 0; to < 64; ++to)
        for (int special : {0, Promotion, Demotion, Exchange})
          for (int kind : {0, Dropoff, Pickup, Transfer}) {
            const Move m = Move(makeMove(lowestSquare(own), to, special) | kind);
            if (!pos.pseudo_legal(m) || !pos.legal(m, pinned)) continue;
            ++passed;
            StateInfo st;
            pos.do_move(m, st);
            EXPECT_EQ(leaderTakers(pos, us), 0u) << wordText(m);
            EXPECT_EQ(pos.checkers(), expectedCheckers(pos)) << wordText(m);
            pos.undo_move(m);
          }
  });
  EXPECT_GT(passed, 10000);
}

}  // namespace

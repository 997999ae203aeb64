// Quiet checks: direct and discovered checks, the leader's own checks, the carrier's threat moves
// in both siege games, and a cross-check against gives_check over random games.
#include <random>

#include "../support/capture_stdout.h"
#include "../support/random_games.h"
#include "frontend/listings.h"
#include "game/attack_queries.h"
#include "move_list_text.h"

namespace {

constexpr Bitboard bb(Square s) { return Bitboard(1) << s; }

class QuietChecksTest : public PositionUnderRules {
 protected:
  std::string quietChecks(Square from = NoSquare) const {
    return listText(movesOf(pos, generateQuietChecks), from);
  }
};

TEST_F(QuietChecksTest, DirectChecksOfEachPiece) {
  load("8/8/8/8/8/2A5/8/3j3K w 0 1");
  EXPECT_EQ(quietChecks(), "c3c2 c3d2");
  load("3j4/8/1S6/8/8/8/8/7K w 0 1");
  EXPECT_EQ(quietChecks(), "b6c7");
  load("3k4/8/1S6/8/8/8/8/7K w 0 1");  // a Sword does not check a mounted leader
  EXPECT_EQ(quietChecks(), "");
  swordsCaptureMounts = 1;
  EXPECT_EQ(quietChecks(), "b6c7");
}

TEST_F(QuietChecksTest, SeveralEnemyLeadersCannotBeChecked) {
  load("jf6/1S6/8/8/8/8/8/7K w 0 1");
  EXPECT_EQ(quietChecks(), "");
}

// The Archer on d5 shields the Dorn_archer on d6 from the Assassin: all its steps are listed.
TEST_F(QuietChecksTest, DiscoveredChecksListEveryStep) {
  load("8/8/3j4/3A4/3N4/8/8/6K1 w 0 1");
  EXPECT_EQ(quietChecks(D5), "c4 e4 c5 e5 c6 e6");
  EXPECT_EQ(quietChecks(D4), "");
}

// The Dorn gives quiet checks only while the Bondsman would stay as a leader.
TEST_F(QuietChecksTest, LeaderChecksOnlyWithALeaderToSpare) {
  load("3j4/8/8/8/3K4/8/8/7F w 0 1");
  EXPECT_EQ(quietChecks(D4), "d5 b6 c6 d6 e6 f6 d7");
  load("3j4/8/8/8/3K4/8/8/8 w 0 1");
  EXPECT_EQ(quietChecks(D4), "");
}

// Siege 2: the own carrier heads for its drop-off square, check or not.
TEST_F(QuietChecksTest, SiegeTwoCarrierHeadsHome) {
  load("k7/8/8/8/8/1W6/8/7F w 0 1 B3 1 - 1", 4);
  EXPECT_EQ(quietChecks(), "b3a1^t");
  load("kf6/8/8/8/8/1W6/8/7F w 0 1 B3 1 - 1", 4);  // two enemy leaders: the threat move stays
  EXPECT_EQ(quietChecks(), "b3a1^t");
  load("k7/8/8/8/8/1W6/8/A6F w 0 1 B3 1 - 1", 4);  // an own piece there takes the captive over
  EXPECT_EQ(quietChecks(), "b3a1^t");
  siegeExchanges = 0;
  EXPECT_EQ(quietChecks(), "");
  siegeExchanges = 1;
  load("k7/8/8/8/8/1W6/8/7F w 0 1 - 1 B3 1", 4);  // the enemy's captive is not brought home
  EXPECT_EQ(quietChecks(), "");
}

// Siege 1: the carrier on d2 steps to where it would reach the win square a4, or hands over to
// the Warrior on c3, which reaches a4 itself. The Archer on a3 stands in the way of the Warrior
// on a2 to a4 and steps aside, though not onto the single win square.
TEST_F(QuietChecksTest, SiegeOneThreatsAndRevealers) {
  load("7k/8/8/8/8/A1W5/W2W4/7K w 0 1 D2", 3);
  SiegeThreatInfo threat(pos);
  EXPECT_TRUE(threat.active);
  EXPECT_EQ(threat.carrier, D2);
  EXPECT_EQ(threat.revealers, bb(A3));
  EXPECT_EQ(quietChecks(D2), "b2^t c2^t b3^t c3^t c4^t");
  EXPECT_EQ(quietChecks(A3), "b2 b3 b4");
  siegeExchanges = 0;  // without hand-overs there is no threat record
  EXPECT_FALSE(SiegeThreatInfo(pos).active);
  EXPECT_EQ(quietChecks(), "");
}

TEST_F(QuietChecksTest, Listing) {
  load("3j4/8/1S6/8/8/8/8/7K w 0 1");
  CaptureStdout out;
  listQuietChecks(pos);
  EXPECT_EQ(out.text(), "\nquiet check moves: SB6C7 \n");
}

// ---------------------------------------------------------------- random games

// Over random games, without check: every quiet move that gives check is a quiet check, but for
// the sole leader's own checks, which are listed only with leaders to spare, and for a drop-off
// whose released Dorn checks. Every quiet check gives check, but for the steps of pieces that may
// uncover one (an upper bound), the carrier's threat moves, and a walk onto a standing tower
// square, which the mover does not survive.
TEST(QuietChecksCrossCheck, RandomGamesOfEveryType) {
  int checks = 0, listed = 0;
  forRandomPositions(3, 200, 777u, [&](Position& pos, const std::string& where) {
    if (pos.inCheck()) return;
    SCOPED_TRACE(where);
    CheckInfo ci(pos);
    SiegeThreatInfo threat(pos);
    Bitboard pinned = pinnedPieces(pos);
    Square ksq = pos.leaderSquare(pos.side());
    std::vector<Move> quietChecks = movesOf(pos, generateQuietChecks);
    Bitboard uncovering = ci.dcCandidates | (siege1 && threat.active ? threat.revealers : 0);
    for (Move m : quietChecks) {
      ++listed;
      EXPECT_TRUE(pos.empty(moveTo(m)) || isSiege1Exchange(pos, m)) << wordText(m);
      bool threatMove = threat.active && moveFrom(m) == threat.carrier;
      if (!threatMove && !(uncovering & bb(moveFrom(m))) && !pos.onStandingTower(moveTo(m)) && pos.legal(m, pinned)) {
        EXPECT_TRUE(pos.gives_check(m, ci)) << wordText(m);
      }
    }
    for (Move m : movesOf(pos, generateQuiets)) {
      if (specialKind(m) || !pos.empty(moveTo(m)) || !pos.legal(m, pinned) || !pos.gives_check(m, ci)) continue;
      ++checks;
      if ((moveFrom(m) == ksq && pos.soleLeader(pos.side())) || isDropoff(m)) continue;
      EXPECT_TRUE(std::find(quietChecks.begin(), quietChecks.end(), m) != quietChecks.end())
          << "missing " << wordText(m) << " among " << listText(quietChecks);
    }
  });
  EXPECT_GT(checks, 200);
  EXPECT_GT(listed, 1000);
}

}  // namespace

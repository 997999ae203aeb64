// The evaluation driver: tempo, blend and rounding, the ending hand-over, the siege fold-in, the
// space term; the colour symmetry of the whole evaluation and the kept siege score.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "eval/eval_tables.h"
#include "eval/siege.h"
#include "eval/trace.h"
#include "eval_support.h"
#include "../support/random_games.h"

using namespace eval_test;

namespace {

constexpr int Basic = 0, Siege1 = 3;

// The score before blending, from White's point of view, as the traced evaluation records it.
Score scoreBeforeBlend(const Position& pos) {
  std::ostringstream closing;
  Value margin;
  std::fill(&tracedScores[0][0], &tracedScores[0][0] + 2 * TraceRows, 0);
  tracedEvaluate(pos, margin, closing);
  return tracedScores[WHITE][TotalRow];
}

const MaterialEntry& entryOf(const Position& pos) {
  EvalTables& t = evalTablesOf(pos);
  return *probeMaterial(pos, t.material, t.endgames);
}

class EvaluateTest : public EvalFixture {};

TEST_F(EvaluateTest, TempoIsBlendedByPhaseAndRoundedToEight) {
  // Mirrored armies leave only Tempo, 24/11, for the side to move.
  load("k7/8/8/8/8/8/8/K7 b 0 1");  // phase 0: 11 rounds to 8
  EXPECT_EQ(eval(), 8);
  load("kn6/ww6/8/8/8/8/WW6/KN6 b 0 1");  // phase 39: (24 * 39 + 11 * 89) / 128 = 14, rounded 16
  ASSERT_EQ(entryOf(pos).gamePhase, 39);
  EXPECT_EQ(eval(), 16);
  load("k7/wwwww3/8/8/8/8/WWWWW3/K7 w 0 1");  // phase 128: 24
  EXPECT_EQ(eval(), 24);
  load("k7/8/8/8/8/8/8/K6W b 0 1");  // an ending evaluator answers alone: no Tempo, no rounding
  EXPECT_EQ(eval(), -(1600 + ValueKnownWin + 10 + 100));
}

TEST_F(EvaluateTest, SiegeFoldInKeepsMaterialAndSiegeScoreWhole) {
  // Mirrored armies in the first siege game: Tempo counts 40 percent, 24 * 0.4 -> 9, rounded 8.
  loadIn(Siege1, "k7/wwwww3/8/8/8/8/WWWWW3/K7 w 0 1");
  EXPECT_EQ(eval(), 8);
  pos.siege1Tower &= ~(Bitboard(1) << E4);  // a breach in the low half: the siege score's 120 in full
  pos.computeStateFromScratch();
  EXPECT_EQ(eval(), 128);

  // Far from the tower the pieces score alike in both games, but for the fold-in.
  const char* fen = "k6w/w7/8/8/8/8/W6W/K5WW w 0 1";
  const int m = 2 * 1600;
  loadIn(Basic, fen);
  const Score positional = scoreBeforeBlend(pos) - makeScore(m, m);
  loadIn(Siege1, fen);
  EXPECT_EQ(scoreBeforeBlend(pos), makeScore(-int(mgValue(positional) * -0.4) + m, -int(egValue(positional) * -0.4) + m));
}

TEST_F(EvaluateTest, SpaceCountsSafeCentreSquaresAndThoseBehindSwords) {
  // Nothing of Black's reaches ranks 2 to 4: White's safe squares are the 12 without its two
  // Swords, and d2 behind the d3 Sword counts twice: 11. All 12 of Black's are safe.
  load("kwwww3/8/a6a/8/8/A2S3A/4S3/KWWWW3 w 0 1");
  ASSERT_EQ(entryOf(pos).spaceWeight, 16);
  scoreBeforeBlend(pos);
  EXPECT_EQ(tracedScores[WHITE][SpaceRow], makeScore(46 * 11 * 16 / 256, 0));
  EXPECT_EQ(tracedScores[BLACK][SpaceRow], makeScore(46 * 12 * 16 / 256, 0));
}

// Over random games of every type: a mirrored position is the same game for the other side, with
// the same value for the side to move and the negative score before blending; and the siege score
// that moves keep equals a fresh one after every move and undo. Two exceptions to the symmetry, by
// construction: rounding sends ties (4 modulo 8) upward for both colours; and the lone-leader
// promotion targets b7 and g2 are point-symmetric, not mirrored, so ending positions are left out.
TEST_F(EvaluateTest, RandomGamesScoreMirrorsAlikeAndKeepTheSiegeScore) {
  auto mirrorRoot = [] {
    std::swap(rootNpMaterial[WHITE], rootNpMaterial[BLACK]);
    rootSwordBalance = -rootSwordBalance;
    rootSideToMove = ~rootSideToMove;
  };
  auto keptSiegeScore = [](Position& p, Move m) {
    StateInfo st;
    p.do_move(m, st);
    EXPECT_EQ(st.siegeScore, scoreSiege(p));
    p.undo_move(m);
    EXPECT_EQ(p.state()->siegeScore, scoreSiege(p));
  };
  int compared = 0, ties = 0, siegeScored = 0, traded = 0;
  forRandomPositions(1, 100, 977u, [&](Position& p, const std::string& where) {
    SCOPED_TRACE(where);
    if (!p.state()->previous) {  // a game's start is the root
      clearRootState();
      setTradeBonusRoot(p);
    }
    if (siegeGame()) {
      ScoredMove list[MaxMoves];
      for (ScoredMove *sm = list, *end = generateLegal(p, list); sm != end; ++sm) keptSiegeScore(p, sm->move);
    }
    if (entryOf(p).evaluationFunction) return;
    const SiegeGeometry geometry = currentSiegeGeometry(), mirrorGeometry = colourMirror(geometry);
    const Position m = colourMirror(p, mirrorGeometry);
    Value margin;
    const Value v = evaluate(p, margin);
    const Score s = scoreBeforeBlend(p);
    traded += tracedScores[WHITE][TradeRow] != tracedScores[BLACK][TradeRow];
    restoreSiegeGeometry(mirrorGeometry);
    mirrorRoot();
    const Value mv = evaluate(m, margin);
    const Score ms = scoreBeforeBlend(m);
    mirrorRoot();
    restoreSiegeGeometry(geometry);

    const int phase = entryOf(p).gamePhase;
    const Value blended = (mgValue(s) * phase + egValue(s) * (128 - phase)) / 128;
    ties += (blended & 7) == 4;
    siegeScored += p.state()->siegeScore != 0;
    ++compared;
    EXPECT_EQ(s, -ms);
    EXPECT_TRUE(v == mv || ((blended & 7) == 4 && std::abs(v - mv) == 8)) << v << " " << mv;
    EXPECT_EQ(v, (p.side() == WHITE ? 1 : -1) * ((blended + 4) & ~7)) << "traced and plain forms differ";
  });
  EXPECT_GT(compared, 1500);
  EXPECT_GT(ties, 0);
  EXPECT_GT(siegeScored, 100);
  EXPECT_GT(traded, 100);
}

}  // namespace

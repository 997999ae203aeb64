// The evaluation driver: tempo, blend and rounding, the ending hand-over, the siege fold-in, the
// space term; and the colour symmetry of the whole evaluation over random games.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "eval/eval_tables.h"
#include "eval/evaluate.h"
#include "eval/trace.h"
#include "eval_support.h"

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

Value blend(Score s, int phase) { return (mgValue(s) * phase + egValue(s) * (128 - phase)) / 128; }

const MaterialEntry& entryOf(const Position& pos) {
  EvalTables& t = evalTablesOf(pos);
  return *probeMaterial(pos, t.material, t.endgames);
}

class EvaluateTest : public EvalFixture {};

TEST_F(EvaluateTest, TempoAloneRoundsToEightForEitherSideToMove) {
  // Bare leaders, mirrored: phase 0, so the end-game Tempo of 11 decides: 11 -> 8, and -11 -> -8.
  load("k7/8/8/8/8/8/8/K7 w 0 1");
  EXPECT_EQ(eval(), 8);
  load("k7/8/8/8/8/8/8/K7 b 0 1");
  EXPECT_EQ(eval(), 8);
}

TEST_F(EvaluateTest, PhaseBlendsMiddleAndEndGameHalves) {
  // Mirrored armies leave only Tempo, 24/11.
  load("k7/wwwww3/8/8/8/8/WWWWW3/K7 w 0 1");  // phase 128: the middle-game 24
  ASSERT_EQ(entryOf(pos).gamePhase, 128);
  EXPECT_EQ(eval(), 24);
  load("kn6/ww6/8/8/8/8/WW6/KN6 b 0 1");  // phase 39: (24 * 39 + 11 * 89) / 128 = 14, rounded 16
  ASSERT_EQ(entryOf(pos).gamePhase, 39);
  EXPECT_EQ(eval(), 16);
}

TEST_F(EvaluateTest, EndingEvaluatorAnswersAloneAndUnrounded) {
  load("k7/8/8/8/8/8/8/K6W b 0 1");
  EXPECT_EQ(eval(), -(1600 + ValueKnownWin + 10 + 100));
}

TEST_F(EvaluateTest, SiegeFoldInKeepsMaterialAndSiegeScoreWhole) {
  // Mirrored armies in the first siege game: Tempo counts 40 percent, 24 * 0.4 -> 9, rounded 8.
  loadIn(Siege1, "k7/wwwww3/8/8/8/8/WWWWW3/K7 w 0 1");
  EXPECT_EQ(eval(), 8);
  pos.siege1Tower &= ~(Bitboard(1) << E4);  // a breach in the low half: the siege score's 120 in full
  pos.computeStateFromScratch();
  EXPECT_EQ(eval(), 128);

  // Far from the tower, the same pieces score alike in both games but for the fold-in.
  const std::string fen = "k6w/w7/8/8/8/8/W6W/K5WW w 0 1";
  const int m = 2 * 1600;
  loadIn(Basic, fen);
  const Score positional = scoreBeforeBlend(pos) - makeScore(m, m);
  loadIn(Siege1, fen);
  EXPECT_EQ(scoreBeforeBlend(pos), makeScore(-int(mgValue(positional) * -0.4) + m, -int(egValue(positional) * -0.4) + m));
}

TEST_F(EvaluateTest, SpaceCountsSafeCentreSquaresAndThoseBehindSwords) {
  // Nothing of Black's reaches ranks 2 to 4: White's safe squares are the 12 less its two Swords,
  // and d2 behind the d3 Sword counts twice: 11. Black's 12 central squares are all safe.
  load("kwwww3/8/a6a/8/8/A2S3A/4S3/KWWWW3 w 0 1");
  ASSERT_EQ(entryOf(pos).spaceWeight, 16);
  scoreBeforeBlend(pos);
  EXPECT_EQ(tracedScores[WHITE][SpaceRow], makeScore(46 * 11 * 16 / 256, 0));
  EXPECT_EQ(tracedScores[BLACK][SpaceRow], makeScore(46 * 12 * 16 / 256, 0));
  load("k7/8/a6a/8/8/A2S3A/4S3/K7 w 0 1");  // too little material: no space term
  scoreBeforeBlend(pos);
  EXPECT_EQ(tracedScores[WHITE][SpaceRow], 0);
}

TEST_F(EvaluateTest, CountsEveryCall) {
  load("k7/8/8/8/8/8/8/K6W w 0 1");
  uint32_t before = evalCount.load();
  eval();
  scoreBeforeBlend(pos);
  EXPECT_EQ(evalCount.load(), before + 2);
}

// The mirror of a position is the same game for the other side, so its value for the side to move
// is the same, and its score before blending is the negative. Exceptions, by construction:
// rounding to 8 sends ties (4 modulo 8) upward for both colours, and the lone-leader promotion
// plan aims at b7 and g2, squares that are point-symmetric, not mirrored; such positions are left out.
class EvaluateSymmetry : public EvalFixture {};

TEST_F(EvaluateSymmetry, MirroredPositionsScoreAlikeForTheSideToMove) {
  int compared = 0, ties = 0, siegeScored = 0, traded = 0;
  for (int type = 0; type < GameTypeCount; ++type)
    for (const EvalRules& rules : evalRuleSets) {
      resetRuleFlags();
      rules.apply();
      clearRootState();
      bool rootSet = false;
      playRandomGames(type, 2, 100, [&](Position& p) {
        if (!rootSet) setTradeBonusRoot(p), rootSet = true;  // the start: both sides equal
        if (entryOf(p).evaluationFunction) return;
        const SiegeGeometry geometry = SiegeGeometry::current(), mirrorGeometry = geometry.colourMirror();
        Position m = colourMirror(p, mirrorGeometry);

        Value margin;
        const Value v = evaluate(p, margin);
        const Score s = scoreBeforeBlend(p);
        mirrorGeometry.apply();
        rootSideToMove = ~rootSideToMove;
        const Value mv = evaluate(m, margin);
        const Score ms = scoreBeforeBlend(m);
        rootSideToMove = ~rootSideToMove;
        geometry.apply();

        const Value before = blend(s, entryOf(p).gamePhase);
        const bool tie = (before & 7) == 4;
        ties += tie;
        ++compared;
        siegeScored += p.state()->siegeScore != 0;
        traded += tracedScores[WHITE][TradeRow] != 0 || tracedScores[BLACK][TradeRow] != 0;
        EXPECT_EQ(s, -ms) << p.fen();
        EXPECT_TRUE(v == mv || (tie && std::abs(v - mv) == 8)) << v << " " << mv << " " << p.fen();
        EXPECT_EQ(v, (p.side() == WHITE ? 1 : -1) * ((before + 4) & ~7)) << "traced and plain forms differ";
      });
    }
  EXPECT_GT(compared, 2000);
  EXPECT_GT(ties, 0);
  EXPECT_GT(siegeScored, 100);
  EXPECT_GT(traded, 100);
}

}  // namespace

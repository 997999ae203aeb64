// The evaluation driver: material and placement, piece terms, mobility, threats, space, trades, the
// siege fold-in, the blend by game phase and the rounding to a multiple of 8.
#include "eval/evaluate.h"

#include <iomanip>

#include "core/bitboard.h"
#include "core/psqt.h"
#include "eval/eval_info.h"
#include "eval/eval_tables.h"
#include "eval/material.h"
#include "eval/pieces.h"
#include "eval/siege.h"
#include "eval/threats.h"
#include "eval/trace.h"
#include "eval/trade_bonus.h"
#include "eval/weights.h"
#include "game/position.h"
#include "game/rules.h"

std::atomic<uint32_t> evalCount{0};
std::atomic<Score> MobilityWeight{0};
std::atomic<Score> SpaceWeight{0};

namespace {

constexpr Score Tempo = makeScore(24, 11);
constexpr Score InternalMobilityWeight = makeScore(252, 344);
constexpr Score InternalSpaceWeight = makeScore(46, 0);
// In the siege games positional terms count at 40 percent; the factor is applied as a negative.
constexpr double SiegeFactor = -0.4;
constexpr int Magician1SiegeValue = 250;

// The central squares of ranks 2 to 4 for White, 5 to 7 for Black, on files c to f.
constexpr Bitboard SpaceMask[2] = {0x3c3c3c00ULL, 0x3c3c3c00000000ULL};

// Each Sword and up to three squares behind it on its file.
Bitboard swordsAndBehind(Bitboard swords, Color c) {
  if (c == WHITE) {
    swords |= swords >> 8;
    return swords | swords >> 16;
  }
  swords |= swords << 8;
  return swords | swords << 16;
}

// Safe central squares of c, those behind its Swords counting twice.
int spaceCount(const Position& pos, const EvalInfo& ei, Color c) {
  const Color them = ~c;
  Bitboard safe = SpaceMask[c] & ~pos.pieces(c, Sword) & ~ei.attackedBy[them][Sword] &
                  (ei.attackedBy[c][0] | ~ei.attackedBy[them][0]);
  Bitboard behind = swordsAndBehind(pos.pieces(c, Sword), c) & safe;
  return popcount(behind) + popcount(safe);
}

// The space term of a count difference (or of one side's count), middle game only.
Score spaceScore(int count, int spaceWeight) {
  int16_t d = int16_t(count * spaceWeight);
  return makeScore(mgValue(SpaceWeight.load(std::memory_order_relaxed)) * d / 256, 0);
}

// Material in the units the siege fold-in keeps at full weight, White minus Black.
int siegeMaterial(const Position& pos) {
  const StateInfo* st = pos.state();
  return (pos.count(WHITE, Sword) - pos.count(BLACK, Sword)) * pieceValueMg[Sword] +
         (pos.count(WHITE, Magician1) - pos.count(BLACK, Magician1)) * Magician1SiegeValue + st->npMaterial[WHITE] -
         st->npMaterial[BLACK];
}

// Material and siege score in full, everything else at 40 percent.
Score foldInSiege(const Position& pos, Score score, Score captiveSafetyBalance) {
  const int m = siegeMaterial(pos);
  const Score positional = score + captiveSafetyBalance - makeScore(m, m);
  const Score siege = pos.state()->siegeScore;
  return makeScore(mgValue(siege) - int(mgValue(positional) * SiegeFactor) + m,
                   egValue(siege) - int(egValue(positional) * SiegeFactor) + m);
}

double inSwords(Value v) { return double(v) / pieceValueMg[Sword]; }

void writeTotalLine(std::ostream& out, Value v) {
  out << "Total evaluation: " << inSwords(v) << "(" << int(inSwords(v) * 100) << ") (v=" << v << ")";
}

template <bool Trace>
Value evaluateWith(const Position& pos, Value& margin, std::ostream* closing) {
  evalCount.store(evalCount.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);

  EvalTables& tables = evalTablesOf(pos);
  EvalInfo ei;
  ei.material = probeMaterial(pos, tables.material, tables.endgames);
  const StateInfo* st = pos.state();
  const Color us = pos.side();
  const int materialValue = ei.material->value;
  Score score = (us == WHITE ? Tempo : -Tempo) + st->psqScore + makeScore(materialValue, materialValue);

  if (ei.material->evaluationFunction) {
    margin = 0;
    Value v = (*ei.material->evaluationFunction)(pos);
    if constexpr (Trace) writeTotalLine(*closing, v);
    return v;
  }

  // White's Sword and Magician1 sets first: Black's pieces, evaluated first, test them.
  for (PieceType t : {Sword, Magician1})
    for (int i = 0; i < pos.count(WHITE, t); ++i) ei.attackedBy[WHITE][t] |= reach[t][pos.pieceList[WHITE][t][i]];

  Score typeTerms[2][TypeSlots] = {};
  score -= evaluatePieces(pos, ei, BLACK, Trace ? typeTerms[BLACK] : nullptr);
  score += evaluatePieces(pos, ei, WHITE, Trace ? typeTerms[WHITE] : nullptr);
  const Score mobilityWeight = MobilityWeight.load(std::memory_order_relaxed);
  score += applyWeight(ei.mobility[WHITE] - ei.mobility[BLACK], mobilityWeight);

  // The leaders' safety adds nothing here: pressure on a leader is scored by the pin bonus.
  const Score threats[2] = {evaluateThreats(pos, ei, WHITE), evaluateThreats(pos, ei, BLACK)};
  score += threats[WHITE] - threats[BLACK];

  const int spaceWeight = ei.material->spaceWeight;
  int space[2] = {0, 0};
  if (spaceWeight) {
    space[WHITE] = spaceCount(pos, ei, WHITE);
    space[BLACK] = spaceCount(pos, ei, BLACK);
    score += spaceScore(space[WHITE] - space[BLACK], spaceWeight);
  }

  const Score trades[2] = {tradeBonus(pos, WHITE), tradeBonus(pos, BLACK)};
  score += trades[WHITE] - trades[BLACK];

  Score safety[2] = {0, 0};
  if (siegeGame()) {
    safety[WHITE] = captiveSafety(pos, WHITE);
    safety[BLACK] = captiveSafety(pos, BLACK);
    score = foldInSiege(pos, score, safety[WHITE] - safety[BLACK]);
  }

  margin = ei.margin[us];

  const int phase = ei.material->gamePhase;
  Value v = (mgValue(score) * phase + egValue(score) * (128 - phase)) / 128;
  v = (v + 4) & ~7;  // to a multiple of 8, ties upward

  if constexpr (Trace) {
    for (Color c : {WHITE, BLACK}) {
      for (int t = Sword; t <= Dorn_sword; ++t) tracedScores[c][t] = typeTerms[c][t];
      tracedScores[c][MobilityRow] = applyWeight(ei.mobility[c], mobilityWeight);
      tracedScores[c][ThreatsRow] = threats[c];
      dornSafetyReport(pos, ei, c, tracedScores[c][DornSafetyRow], tracedScores[c][DornThreatRow]);
      if (spaceWeight) tracedScores[c][SpaceRow] = spaceScore(space[c], spaceWeight);
      tracedScores[c][TradeRow] = trades[c];
      tracedScores[c][CaptiveSafetyRow] = safety[c];
    }
    tracedScores[WHITE][PsqRow] = st->psqScore;
    tracedScores[WHITE][ImbalanceRow] = makeScore(materialValue, materialValue);
    tracedScores[WHITE][TotalRow] = score;

    const double scalePercent = 100.0;  // no scaling reaches the result: the factor is 64 of 64
    *closing << "\nUncertainty margin: White: " << inSwords(ei.margin[WHITE]) << ", Black: " << inSwords(ei.margin[BLACK])
             << "\nScaling: " << std::noshowpos << std::setw(6) << 100.0 * phase / 128.0 << "% MG, " << std::setw(6)
             << 100.0 * (1.0 - phase / 128.0) << "% * " << std::setw(6) << scalePercent << "% EG.\n";
    writeTotalLine(*closing, v);
  }
  return us == WHITE ? v : -v;
}

}  // namespace

Value evaluate(const Position& pos, Value& margin) { return evaluateWith<false>(pos, margin, nullptr); }

Value tracedEvaluate(const Position& pos, Value& margin, std::ostream& closing) {
  return evaluateWith<true>(pos, margin, &closing);
}

void evaluate_init() {
  MobilityWeight.store(weightOption("Mobility (Middle Game)", "Mobility (Endgame)", InternalMobilityWeight),
                       std::memory_order_relaxed);
  SpaceWeight.store(weightOption("Space", "Space", InternalSpaceWeight), std::memory_order_relaxed);
  evaluateThreatsInit();
  installSiegeScoring();
}

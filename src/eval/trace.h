// The evaluation report: each term of the evaluation by colour, and the traced evaluation behind it.
#pragma once

#include <ostream>
#include <string>

#include "core/types.h"

class Position;

// Rows of the traced terms; rows 1 to 11 hold the piece terms by type.
enum TraceRow : int {
  PsqRow = 12,        // White column only
  ImbalanceRow = 13,  // White column only
  MobilityRow = 15,
  ThreatsRow = 16,
  DornSafetyRow = 17,
  SpaceRow = 18,
  TradeRow = 19,
  DornThreatRow = 20,
  CaptiveSafetyRow = 21,
  TotalRow = 22,  // the score before blending, White column only
  TraceRows = 23
};

// Filled by tracedEvaluate. Process-wide: only the command loop writes it, while no search runs.
extern Score tracedScores[2][TraceRows];

// evaluate with the same steps and result, recording every term in tracedScores and writing the
// closing lines (margins, phase, total) to `closing`.
Value tracedEvaluate(const Position& pos, Value& margin, std::ostream& closing);

// The term table with its closing lines; a position in check gets one refusal line.
std::string evaluationReport(const Position& pos);

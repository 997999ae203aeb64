// A fixture that runs the piece passes of both colours in evaluate's order, keeping what they fill.
#pragma once

#include "core/bitboard.h"
#include "eval/pieces.h"
#include "eval_support.h"

namespace eval_test {

class PiecePassesTest : public EvalFixture {
 protected:
  // White's Sword and Magician1 sets first, then Black's pieces, then White's.
  void passes() {
    ei = EvalInfo();
    for (Color c : {WHITE, BLACK})
      for (Score& t : terms[c]) t = 0;
    for (PieceType t : {Sword, Magician1})
      for (int i = 0; i < pos.count(WHITE, t); ++i) ei.attackedBy[WHITE][t] |= reach[t][pos.pieceList[WHITE][t][i]];
    evaluatePieces(pos, ei, BLACK, terms[BLACK]);
    evaluatePieces(pos, ei, WHITE, terms[WHITE]);
  }
  void loadAndPass(const std::string& fen) {
    loadIn(DefaultGameType, fen);
    passes();
  }

  EvalInfo ei;
  Score terms[2][TypeSlots];
};

}  // namespace eval_test

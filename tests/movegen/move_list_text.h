// A position under chosen rules, and compact text of its move lists, for the generator tests.
#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "game/piece_values.h"
#include "game/position.h"
#include "game/rules.h"
#include "movegen/movegen.h"

using Generate = ScoredMove* (*)(const Position&, ScoredMove*);

inline std::vector<Move> movesOf(const Position& pos, Generate generate) {
  ScoredMove list[MaxMoves];
  ScoredMove* end = generate(pos, list);
  std::vector<Move> moves;
  for (ScoredMove* m = list; m != end; ++m) moves.push_back(m->move);
  return moves;
}

// "e2e3" with "=" promotion, "<" demotion, "$" exchange, "^p", "^t", "^d" pick-up, transfer, drop-off.
inline std::string wordText(Move m, bool withFrom = true) {
  std::string text = withFrom ? squareToString(moveFrom(m)) : "";
  text += squareToString(moveTo(m));
  text += isPromotion(m) ? "=" : isDemotion(m) ? "<" : isExchange(m) ? "$" : "";
  text += isPickup(m) ? "^p" : isTransfer(m) ? "^t" : isDropoff(m) ? "^d" : "";
  return text;
}

// The words of the list, or of the piece on `from` without their from square, blank-separated.
inline std::string listText(const std::vector<Move>& moves, Square from = NoSquare) {
  std::string text;
  for (Move m : moves)
    if (from == NoSquare || moveFrom(m) == from) {
      if (!text.empty()) text += ' ';
      text += wordText(m, from == NoSquare);
    }
  return text;
}

// Whether a blank-separated list holds the word.
inline bool holds(const std::string& list, const std::string& word) {
  std::istringstream in(list);
  for (std::string w; in >> w;)
    if (w == word) return true;
  return false;
}

// Whether one piece's list (words without the from square) goes to the square in any word.
inline bool reaches(const std::string& list, const std::string& square) {
  std::istringstream in(list);
  for (std::string w; in >> w;)
    if (w.compare(0, 2, square) == 0) return true;
  return false;
}

// Each test sets its game type and rule flags; all return to the defaults afterwards.
class PositionUnderRules : public ::testing::Test {
 protected:
  void TearDown() override {
    resetRuleFlags();
    setSiegeModes(DefaultGameType);
    setPieceValues(Position());
  }

  void load(const std::string& fen, int gameType = 0) {
    setSiegeModes(gameType);
    ASSERT_TRUE(pos.set(fen, nullptr)) << fen;
    setPieceValues(pos);
  }

  std::string captures(Square from) const { return listText(movesOf(pos, generateCaptures), from); }
  std::string quiets(Square from) const { return listText(movesOf(pos, generateQuiets), from); }
  std::string nonEvasions(Square from) const { return listText(movesOf(pos, generateNonEvasions), from); }
  std::string legal(Square from) const { return listText(movesOf(pos, generateLegal), from); }

  Position pos;
};

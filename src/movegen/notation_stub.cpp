// The square-only forms of move text, until the position-aware notation exists.
#include <cctype>
#include <iostream>

#include "game/position.h"
#include "game/position_text.h"
#include "movegen/movegen.h"
#include "movegen/notation.h"

std::string moveToUci(Move m, const Position* pos, bool withCaptureSign) {
  if (m == MoveNone) return "(none)";
  if (m == MoveNull) return "0000";
  std::string text = squareToString(moveFrom(m));
  if (pos && withCaptureSign && !pos->empty(moveTo(m))) text += 'x';
  return text + squareToString(moveTo(m));
}

std::string moveToSan(const Position&, Move m) { return moveToUci(m); }

// Without move classification no word names a move yet.
Move moveFromSquares(const Position&, std::string& word) {
  if (word.size() == 5) word[4] = char(std::tolower(static_cast<unsigned char>(word[4])));
  if (word.size() < 4) std::cout << "?Illegal move " << word << "\n";
  return MoveNone;
}

std::string moveToNotation(const Position& pos, Move m) { return moveToSan(pos, m); }

std::string legalMovesText(const Position& pos) {
  ScoredMove moves[MaxMoves];
  std::string text;
  for (ScoredMove *m = moves, *end = generateLegal(pos, moves); m != end; ++m)
    text += moveToNotation(pos, m->move) + " ";
  return text;
}

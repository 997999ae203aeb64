// Asking the book, then the set-up moves, before a search starts.
#include "search/opening_choice.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <string>

#include "core/options.h"
#include "game/rules.h"
#include "search/book.h"
#include "search/opening_moves.h"

namespace {

int64_t clockMs() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::system_clock::now().time_since_epoch())
      .count();
}

// Made by the first search that asks it; the file stays open between searches.
PolyglotBook& searchBook() {
  static PolyglotBook book;
  return book;
}

bool bookChoice(Position& pos, RootMove& bestLine) {
  const std::string fileName = Options["Book File"].text();
  if (fileName.empty()) return false;
  const Move m = searchBook().probe(pos, fileName, Options["Best Book Move"].intValue() != 0);
  if (m == MoveNone) return false;
  // With searchmoves the book's move may be no root move.
  auto found = std::find_if(RootMoves.begin(), RootMoves.end(), [m](const RootMove& rm) { return rm.pv[0] == m; });
  if (found == RootMoves.end()) return false;
  std::iter_swap(RootMoves.begin(), found);
  bestLine = RootMoves[0];
  return true;
}

bool setupChoice(Position& pos, RootMove& bestLine, int& reportedScore) {
  if (pos.state()->pliesSinceNull > 1) return false;
  std::srand(unsigned(clockMs()));
  Move reply = MoveNone;
  const Move m = setupMove(pos, reply, gameTypeTable[gameType]);
  if (m == MoveNone) return false;
  bestLine = RootMove(m);
  bestLine.pv = {m, reply, MoveNone};
  bestLine.score = ValueZero;
  reportedScore = ValueZero;
  return true;
}

}  // namespace

bool openingChoice(Position& pos, RootMove& bestLine, int& reportedScore) {
  if (!Options["OwnBook"].intValue() || searchLimits.infinite || searchLimits.mate) return false;
  return bookChoice(pos, bestLine) || setupChoice(pos, bestLine, reportedScore);
}

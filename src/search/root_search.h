// The search of one move: root moves, iterative deepening, the lines it reports and its result.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "core/types.h"
#include "game/position.h"
#include "search/search_limits.h"
#include "search/search_stack.h"

// One move at the root with the line that starts with it, closed by MoveNone.
struct RootMove {
  explicit RootMove(Move m = MoveNone) : pv{m, MoveNone} {}

  // Rebuilds `pv` from its first move by following the table's moves; called when a move raises
  // alpha at the root.
  void extractPvFromTable(Position& pos);
  // Stores the line in the table, so that the next iteration finds it again.
  void insertPvInTable(Position& pos) const;

  Value score = -ValueInfinite;      // the latest search's result; -ValueInfinite if it did not raise alpha
  Value prevScore = -ValueInfinite;  // `score` at the start of the iteration
  std::vector<Move> pv;
};

// Highest score first; used with a stable sort.
inline bool higherScore(const RootMove& a, const RootMove& b) { return a.score > b.score; }

// The search's own state, written by the one that orders it and then by the main search thread.
extern Position rootPosition;
extern GoLimits searchLimits;
extern std::vector<RootMove> RootMoves;  // legal moves in generator order, or the searchmoves
extern size_t pvIndex;                   // the MultiPV line being searched
extern size_t multiPV;                   // lines searched per iteration
extern int bestMoveChanges;              // changes of the best root move in this iteration
extern std::chrono::steady_clock::time_point searchStartTime;

// `ponder` of the running search: the command loop may turn it off while the search reads it.
bool pondering();
void endPonder();

// Milliseconds since the search was ordered.
int64_t elapsedMs();

// Playing below strength: at a level under 20 the move is picked among the first `multiPV` lines.
struct Skill {
  int level = 20;
  Move best = MoveNone;
  bool enabled() const { return level < 20; }
};
// Picks one of the settled lines with a random bonus, each line keeping part of its gap to the
// best; lines more than two Swords below the one before them are left out.
Move pickWeakerMove(Skill& skill);

// The search the main thread runs for each order: iterations, waiting, the report.
void think();
// The text of the info lines for the moment of the call, one per MultiPV line, with no final newline.
std::string printInfoLines(int depth, Value alpha, Value beta, int* reportedScore);
// The reply the opponent is expected to play after `best`; MoveNone if there is none.
Move searchHint(Move best);

// The front end's part of the end of a search: the console report and the bestmove line. It is
// called on the main search thread with the move played (pv[0], reply pv[1]) and the score shown.
using ReportSearchResult = void (*)(const RootMove& bestLine, int reportedScore);
void setSearchReporter(ReportSearchResult reporter);

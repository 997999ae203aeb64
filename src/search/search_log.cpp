// The three entries of the search log; the file is opened and closed again for each.
#include "search/search_log.h"

#include "core/log.h"
#include "core/options.h"
#include "movegen/notation.h"
#include "search/root_search.h"

namespace {

Log openSearchLog() { return Log(Options["Search Log Filename"].text()); }

}  // namespace

bool searchLogOn() { return Options["Use Search Log"].intValue() != 0; }

void logSearchStart(const Position& root, const GoLimits& limits) {
  const bool white = root.side() == WHITE;
  openSearchLog() << "\nSearching: " << root.fen() << "\ninfinite: " << limits.infinite
                  << " ponder: " << int(pondering()) << " time: " << (white ? limits.wtime : limits.btime)
                  << " increment: " << (white ? limits.winc : limits.binc) << " moves to go: " << limits.movestogo
                  << "\n";
}

void logIteration(Position& root, int depth, Value value, int64_t elapsedMs, const Move* pv) {
  openSearchLog() << prettyPv(root, depth, value, elapsedMs, pv) << "\n";
}

void logSearchEnd(Position& root, int64_t elapsedMs, const Move* pv) {
  const uint64_t nodes = root.nodes;
  const Move best = pv[0];
  std::string ponder = moveToSan(root, MoveNone);
  if (best != MoveNone && pv[1] != MoveNone) {
    StateInfo st;
    root.do_move(best, st);
    ponder = moveToSan(root, pv[1]);
    root.undo_move(best);
  }
  openSearchLog() << "Nodes: " << nodes << "\nNodes/second: " << 1000 * nodes / uint64_t(elapsedMs + 1)
                  << "\nBest move: " << moveToSan(root, best) << "\nPonder move: " << ponder << "\n";
}

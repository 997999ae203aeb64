// The limits of one search as the go command fills them, and the flags of a running search.
#pragma once

#include <atomic>
#include <cstdint>

// The one record of search limits; zeroed once at start-up, then only overwritten field by field.
struct GoLimits {
  int32_t wtime, btime, winc, binc, movestogo, depth, nodes, movetime, mate, infinite, ponder;

  // A search with a clock: none of the limits that fix its length by themselves.
  bool useTimeManagement() const { return !(movetime | nodes | depth | mate | infinite); }
};

// A search started by `go` or `g` has not finished; written by the search's last act.
extern std::atomic<bool> searching;
// The running search was started by `go`: it reports by info and bestmove lines only.
extern std::atomic<bool> uciGo;

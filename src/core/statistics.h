// Search and legality statistics: shared counters, relaxed atomics, reset at the start of a search.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>

struct Statistics {
  std::atomic<uint32_t> nodesSearched{0};  // "nodes searched:"
  std::atomic<uint32_t> evaluated{0};      // " evaluated:"
  std::atomic<uint32_t> plTests{0};        // " PLT:" pseudo-legality tests of a move
  std::atomic<uint32_t> plFails{0};        // " FPL:" those that failed
  std::atomic<uint32_t> plFailsPlain{0};   // " FPLN:" a word without a special kind
  std::atomic<uint32_t> plFailsDemotion{0};   // " FPLD:"
  std::atomic<uint32_t> plFailsPromotion{0};  // " FPLP:"
  std::atomic<uint32_t> plFailsExchange{0};   // " FPLE:"
  std::atomic<uint32_t> plFailsSiege{0};      // "  FPLS1:"
  std::atomic<uint32_t> splitsSet{0};         // " SNS:"
  std::atomic<uint32_t> splitsJoined{0};      // " SNL:"
  std::atomic<uint32_t> seeCalls{0};          // " see:"
};

extern Statistics stats;

// Counting may lose nothing by the language's rules yet costs no fence.
inline void bump(std::atomic<uint32_t>& counter) { counter.fetch_add(1, std::memory_order_relaxed); }

// Zeroes every counter; at the start of a search.
void resetStatistics();
// The counters on one line, as a console search shows them after its move, with no newline:
// "nodes searched:12  evaluated:34  PLT:..."; the next output goes on the same line.
std::string statisticsText();

// Counters for a developer's own measurements, reported on the error stream while a search runs.
// Nothing in the program adds to them, so the report stays silent until someone does.
struct DebugCounters {
  std::atomic<uint64_t> total{0}, hits{0};  // how often a condition held
  std::atomic<uint64_t> count{0}, sum{0};   // the mean of a value
};

extern DebugCounters debugCounters;

inline void debugHit(bool condition) {
  debugCounters.total.fetch_add(1, std::memory_order_relaxed);
  if (condition) debugCounters.hits.fetch_add(1, std::memory_order_relaxed);
}
inline void debugMean(uint64_t value) {
  debugCounters.count.fetch_add(1, std::memory_order_relaxed);
  debugCounters.sum.fetch_add(value, std::memory_order_relaxed);
}

// The report of the counters that are not zero, a line each; empty when all are.
std::string debugCounterReport();

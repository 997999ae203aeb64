// The process-wide statistics record.
#include "core/statistics.h"

Statistics stats;

void resetStatistics() {
  for (std::atomic<uint32_t>* c :
       {&stats.nodesSearched, &stats.evaluated, &stats.plTests, &stats.plFails, &stats.plFailsPlain,
        &stats.plFailsDemotion, &stats.plFailsPromotion, &stats.plFailsExchange, &stats.plFailsSiege,
        &stats.splitsSet, &stats.splitsJoined, &stats.seeCalls})
    c->store(0, std::memory_order_relaxed);
}

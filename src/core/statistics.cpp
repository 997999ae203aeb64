// The process-wide statistics record.
#include "core/statistics.h"

#include <sstream>

Statistics stats;
DebugCounters debugCounters;

void resetStatistics() {
  for (std::atomic<uint32_t>* c :
       {&stats.nodesSearched, &stats.evaluated, &stats.plTests, &stats.plFails, &stats.plFailsPlain,
        &stats.plFailsDemotion, &stats.plFailsPromotion, &stats.plFailsExchange, &stats.plFailsSiege,
        &stats.splitsSet, &stats.splitsJoined, &stats.seeCalls})
    c->store(0, std::memory_order_relaxed);
}

std::string statisticsText() {
  struct Field {
    const char* label;
    const std::atomic<uint32_t>& counter;
    bool blankBehind;
  };
  const Field fields[] = {
      {"nodes searched:", stats.nodesSearched, true}, {" evaluated:", stats.evaluated, true},
      {" PLT:", stats.plTests, false},                {" FPL:", stats.plFails, true},
      {" FPLN:", stats.plFailsPlain, false},          {" FPLD:", stats.plFailsDemotion, false},
      {" FPLP:", stats.plFailsPromotion, true},       {" FPLE:", stats.plFailsExchange, false},
      {"  FPLS1:", stats.plFailsSiege, true},         {" SNS:", stats.splitsSet, false},
      {" SNL:", stats.splitsJoined, true},            {" see:", stats.seeCalls, true},
  };
  std::string text;
  for (const Field& f : fields) {
    text += f.label + std::to_string(f.counter.load(std::memory_order_relaxed));
    if (f.blankBehind) text += ' ';
  }
  return text;
}

std::string debugCounterReport() {
  const uint64_t total = debugCounters.total.load(std::memory_order_relaxed);
  const uint64_t hits = debugCounters.hits.load(std::memory_order_relaxed);
  const uint64_t count = debugCounters.count.load(std::memory_order_relaxed);
  const uint64_t sum = debugCounters.sum.load(std::memory_order_relaxed);
  std::ostringstream out;
  if (total) out << "Total " << total << " Hits " << hits << " hit rate (%) " << 100 * hits / total << "\n";
  if (count) out << "Total " << count << " Mean " << double(sum) / double(count) << "\n";
  return out.str();
}

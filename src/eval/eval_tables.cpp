// Which evaluation tables a position uses: its owner's, or a spare set of the calling thread.
#include "eval/eval_tables.h"

#include <memory>

#include "game/position.h"

EvalTables& evalTablesOf(const Position& pos) {
  if (pos.thisThread) return *pos.thisThread;
  // Made once per thread on first use, so evaluate itself never allocates.
  thread_local std::unique_ptr<EvalTables> spare;
  if (!spare) spare = std::make_unique<EvalTables>();
  return *spare;
}

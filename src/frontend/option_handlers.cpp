// The actions options take when assigned, attached at start-up once the layers they act on exist.
#include "frontend/option_handlers.h"

#include "core/options.h"
#include "eval/evaluate.h"
#include "search/transposition_table.h"

void attachOptionHandlers() {
  Options["Hash"].setOnChange([](const Option& o) { currentTable->setSize(uint64_t(o.intValue())); });
  Options["Clear Hash"].setOnChange([](const Option&) { currentTable->clear(); });
  for (const char* weight : {"Mobility (Middle Game)", "Mobility (Endgame)", "Space", "UCI_AnalyseMode"})
    Options[weight].setOnChange([](const Option&) { evaluate_init(); });

  // Still to come, each with the subsystem it drives:
  //   "Use Debug Log"                         starts or stops the I/O log
  //   "Min Split Depth", "Max Threads per Split Point", "Threads"
  //                                           re-read the thread settings and resize the pool
}

// The actions options take when assigned, attached at start-up once the layers they act on exist.
#include "frontend/option_handlers.h"

#include "core/options.h"
#include "eval/evaluate.h"
#include "frontend/io_log.h"
#include "search/thread.h"
#include "search/transposition_table.h"

void attachOptionHandlers() {
  Options["Hash"].setOnChange([](const Option& o) { currentTable->setSize(uint64_t(o.intValue())); });
  Options["Clear Hash"].setOnChange([](const Option&) { currentTable->clear(); });
  for (const char* weight : {"Mobility (Middle Game)", "Mobility (Endgame)", "Space", "UCI_AnalyseMode"})
    Options[weight].setOnChange([](const Option&) { evaluate_init(); });
  // Before the pool exists there is nothing to resize, and during a search the change waits for
  // the next one, which reads the options as it starts.
  for (const char* setting : {"Threads", "Min Split Depth", "Max Threads per Split Point"})
    Options[setting].setOnChange([](const Option&) {
      if (Threads.size() && !searching) readThreadOptions();
    });
  Options["Use Debug Log"].setOnChange([](const Option& o) { logStart(o.intValue() != 0); });
}

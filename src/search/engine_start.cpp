// The start-up of every process-wide table below the front end.
#include "search/engine_start.h"

#include "core/bitboard.h"
#include "core/options.h"
#include "core/zobrist.h"
#include "eval/evaluate.h"
#include "game/game_end.h"
#include "movegen/install_services.h"
#include "search/search_tables.h"

void initEngineTables() {
  // Every later step may read an option.
  buildOptions(Options, processorCount());
  initBitboards();
  initPsqAndKeys();
  installGeneratorServices();
  initSearch();
  evaluate_init();
  initPromotableTypes();
}

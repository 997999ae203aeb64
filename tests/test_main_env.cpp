// Builds the option table and the process-wide tables once before any test runs.
#include <gtest/gtest.h>

#include "core/bitboard.h"
#include "core/options.h"
#include "core/zobrist.h"
#include "eval/evaluate.h"
#include "game/game_end.h"
#include "movegen/install_services.h"
#include "search/search_tables.h"

namespace {

class TablesEnvironment : public ::testing::Environment {
 public:
  void SetUp() override {
    buildOptions(Options, processorCount());
    initBitboards();
    initPsqAndKeys();
    installGeneratorServices();
    initSearch();
    evaluate_init();
    initPromotableTypes();
  }
};

[[maybe_unused]] const auto* const tablesEnvironment = ::testing::AddGlobalTestEnvironment(new TablesEnvironment);

}  // namespace

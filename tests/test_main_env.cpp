// Builds the option table and the process-wide tables once before any test runs.
#include <gtest/gtest.h>

#include "search/engine_start.h"

namespace {

class TablesEnvironment : public ::testing::Environment {
 public:
  void SetUp() override { initEngineTables(); }
};

[[maybe_unused]] const auto* const tablesEnvironment = ::testing::AddGlobalTestEnvironment(new TablesEnvironment);

}  // namespace

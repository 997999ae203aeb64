// The benchmarks' start-up: the program's tables, built once however many benchmarks run.
#pragma once

#include "search/engine_start.h"

inline void initOnce() {
  static const bool done = [] {
    initEngineTables();
    return true;
  }();
  (void)done;
}

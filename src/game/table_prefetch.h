// Cache hints for the table entries a move's new keys lead to, issued before they are probed.
#pragma once

#include "core/table_view.h"
#include "core/types.h"

class Thread;

// A hint only: the memory may not be touched at all.
inline void prefetch(const void* address) { __builtin_prefetch(address); }

// The cluster of a position key in a transposition table, and the line behind it.
inline void prefetchCluster(const TableView& table, Key key) {
  const uintptr_t cluster = table.clusterAddress(key);
  prefetch(reinterpret_cast<const void*>(cluster));
  prefetch(reinterpret_cast<const void*>(cluster + ClusterBytes));
}

inline void prefetchTranspositionEntry(Key key) { prefetchCluster(currentTableView, key); }

// The owning thread's material table entry of a material key. No material table exists yet.
inline void prefetchMaterialEntry(const Thread*, Key) {}

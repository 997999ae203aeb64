// Cache hints for the table entries a move's new keys lead to, issued before they are probed.
#pragma once

#include <cstddef>

#include "core/table_view.h"
#include "core/types.h"

struct EvalTables;

// A hint only: the memory may not be touched at all.
inline void prefetch(const void* address) { __builtin_prefetch(address); }

// The cluster of a position key in a transposition table, and the line behind it.
inline void prefetchCluster(const TableView& table, Key key) {
  const uintptr_t cluster = table.clusterAddress(key);
  prefetch(reinterpret_cast<const void*>(cluster));
  prefetch(reinterpret_cast<const void*>(cluster + ClusterBytes));
}

inline void prefetchTranspositionEntry(Key key) { prefetchCluster(currentTableView, key); }

// The layout of a thread's material table as this layer sees it: the evaluation keeps the table
// at the very start of its per-thread tables, one entry of this size per slot, indexed by the low
// bits of the material key. The evaluation checks both numbers where it defines the table.
constexpr std::size_t MaterialEntryBytes = 48;
constexpr Key MaterialIndexMask = 0x1FFF;

// The owner's material table entry of a material key, and the 64 bytes behind it.
inline void prefetchMaterialEntry(const EvalTables* owner, Key materialKey) {
  if (!owner) return;
  const char* entry = reinterpret_cast<const char*>(owner) + (materialKey & MaterialIndexMask) * MaterialEntryBytes;
  prefetch(entry);
  prefetch(entry + 64);
}

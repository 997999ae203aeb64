// Where the current transposition table's clusters lie, so that layers below the table can prefetch.
#pragma once

#include <cstdint>

#include "core/types.h"

// A cluster is one cache line; its number comes from the low 32 bits of a key, so that it never
// overlaps the 32 check bits an entry keeps.
constexpr int ClusterBytes = 64;
constexpr uint64_t clusterIndex(Key key, uint64_t clusterMask) { return (key & 0xFFFFFFFF) & clusterMask; }

struct TableView {
  uintptr_t clusters = 0;  // address of cluster 0; 0 while no table is allocated
  uint64_t clusterMask = 0;

  // Kept as a number: an unsized table has no block, and a prefetch of any address is harmless.
  uintptr_t clusterAddress(Key key) const { return clusters + clusterIndex(key, clusterMask) * ClusterBytes; }
};

// Written by the table whenever the current table is resized or another becomes current, which
// happens only while no search runs.
inline TableView currentTableView;

// The transposition table: a fixed-size, lossy store of search results, shared by all search threads.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "core/table_view.h"
#include "core/types.h"

// Kind of a stored value.
enum Bound : uint8_t { BoundNone = 0, BoundUpper = 1, BoundLower = 2, BoundExact = 3 };

// Depth of an entry that carries only a static evaluation or a move.
constexpr Depth DepthNone = -254;

// Sixteen bytes; four make a cluster of one cache line.
//
// Threads probe and store without a lock, and a racing store may leave an entry torn: the check
// bits of one position with the other fields of another. The search accepts that, since a stored
// move is validated before use and a stored value is one more heuristic fact. Each field is read
// and written as one relaxed atomic word, which compiles to the same plain loads and stores but keeps
// the race within the language's rules (and quiet under ThreadSanitizer).
class TTEntry {
 public:
  uint32_t keyHigh() const { return load(keyHigh_); }
  Move move() const { return load(move_); }
  Bound bound() const { return Bound(load(bound_)); }
  uint8_t generation() const { return load(generation_); }
  Value value() const { return load(value_); }
  Depth depth() const { return load(depth_); }
  Value staticValue() const { return load(staticValue_); }
  Value staticMargin() const { return load(staticMargin_); }

 private:
  friend class TranspositionTable;

  template <typename T>
  static T load(const T& field) {
    return std::atomic_ref<T>(const_cast<T&>(field)).load(std::memory_order_relaxed);
  }
  template <typename T, typename V>
  static void put(T& field, V v) {
    std::atomic_ref<T>(field).store(T(v), std::memory_order_relaxed);
  }

  void save(uint32_t keyHigh, Value v, Bound b, Depth d, Move m, uint8_t generation, Value statV, Value statM) {
    put(keyHigh_, keyHigh);
    put(move_, m);
    put(bound_, b);
    put(generation_, generation);
    put(value_, v);
    put(depth_, d);
    put(staticValue_, statV);
    put(staticMargin_, statM);
  }

  uint32_t keyHigh_;  // 0 marks a free entry
  uint16_t move_;
  uint8_t bound_;
  uint8_t generation_;
  int16_t value_;
  int16_t depth_;  // half plies
  int16_t staticValue_;
  int16_t staticMargin_;
};

constexpr int ClusterSize = 4;

struct alignas(ClusterBytes) TTCluster {
  TTEntry entry[ClusterSize];
};

static_assert(sizeof(TTEntry) == 16);
static_assert(sizeof(TTCluster) == ClusterBytes);

class TranspositionTable {
 public:
  TranspositionTable() = default;
  TranspositionTable(const TranspositionTable&) = delete;
  TranspositionTable& operator=(const TranspositionTable&) = delete;
  ~TranspositionTable();

  // Sizes the table to the largest power of two of clusters that fits in the megabytes, wiping it;
  // the same cluster count keeps the contents, and 0 releases the block. A failed allocation ends
  // the program.
  void setSize(uint64_t megabytes);
  // Zeroes every cluster; the generation stays.
  void clear();
  // Called once per search, before the helper threads start. Wraps at 256.
  void newSearch() { ++generation_; }

  // The first entry of the key's cluster whose check bits match, or null. The entry lives in the
  // table: it is no copy.
  TTEntry* probe(Key key) const;
  void store(Key key, Value v, Bound b, Depth d, Move m, Value statV, Value statM);
  // Marks an entry the search has just used as written in this search, so that it does not age out.
  void refresh(TTEntry* e) { TTEntry::put(e->generation_, generation_); }
  // Hints the key's cluster and the line behind it into the cache.
  void prefetch(Key key) const;

  uint64_t clusterCount() const { return clusterCount_; }
  uint8_t generation() const { return generation_; }
  // Cluster 0 of the block; null while no block is allocated.
  const TTCluster* clusters() const { return clusters_; }

 private:
  friend void makeCurrent(TranspositionTable& table);

  TTCluster* clusterOf(Key key) const { return clusters_ + clusterIndex(key, view_.clusterMask); }
  void release();
  void publishIfCurrent() const;

  uint64_t clusterCount_ = 0;
  TTCluster* clusters_ = nullptr;
  TableView view_;  // the block as do_move's prefetch sees it once this table is current
  uint8_t generation_ = 0;
};

// The console's computer-on-computer mode gives each side a table of its own; every search works on
// the current one.
extern TranspositionTable firstTable;
extern TranspositionTable secondTable;
extern TranspositionTable* currentTable;  // change only through makeCurrent

// Makes `table` the one searches use, and the one do_move prefetches into. Only while no search runs.
void makeCurrent(TranspositionTable& table);

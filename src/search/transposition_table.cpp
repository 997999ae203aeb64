// The transposition table: sizing, clearing, probing, the replacement rule and the current table.
#include "search/transposition_table.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <new>

#if defined(__linux__)
#include <sys/mman.h>
#endif

#include "game/table_prefetch.h"

TranspositionTable firstTable;
TranspositionTable secondTable;
TranspositionTable* currentTable = &firstTable;

namespace {

// Blocks of a large page or more start on a large page boundary, so that the system can back them
// with large pages: a probe lands anywhere in the block, and small pages would miss the address
// cache at nearly every one.
constexpr size_t LargePageBytes = size_t(2) << 20;
constexpr std::align_val_t ClusterAlignment{ClusterBytes};
constexpr std::align_val_t LargePageAlignment{LargePageBytes};

std::align_val_t alignmentFor(size_t bytes) { return bytes >= LargePageBytes ? LargePageAlignment : ClusterAlignment; }

void adviseLargePages([[maybe_unused]] void* block, [[maybe_unused]] size_t bytes) {
#if defined(__linux__) && defined(MADV_HUGEPAGE)
  if (bytes >= LargePageBytes) madvise(block, bytes, MADV_HUGEPAGE);  // a hint: failure changes nothing
#endif
}
constexpr uint64_t ClustersPerMegabyte = (1 << 20) / ClusterBytes;
constexpr uint64_t MegabyteBits = 44;

uint64_t largestPowerOfTwoAtMost(uint64_t n) { return n ? uint64_t(1) << (63 - __builtin_clzll(n)) : 0; }

uint32_t checkBits(Key key) { return uint32_t(key >> 32); }

}  // namespace

TranspositionTable::~TranspositionTable() { release(); }

void TranspositionTable::release() {
  if (clusters_) ::operator delete(clusters_, alignmentFor(clusterCount_ * ClusterBytes));
  clusters_ = nullptr;
}

void TranspositionTable::setSize(uint64_t megabytes) {
  megabytes &= (uint64_t(1) << MegabyteBits) - 1;
  const uint64_t count = largestPowerOfTwoAtMost(megabytes * ClustersPerMegabyte);
  if (count == clusterCount_) return;

  release();  // sizes the block it frees by the old count
  clusterCount_ = count;
  if (count) {
    // With the size cut to 44 bits the product cannot overflow; were it to, no block could hold it.
    const size_t bytes = count > SIZE_MAX / ClusterBytes ? SIZE_MAX : size_t(count * ClusterBytes);
    clusters_ = static_cast<TTCluster*>(::operator new(bytes, alignmentFor(bytes), std::nothrow));
    if (!clusters_) {
      std::cerr << "Failed to allocate " << megabytes << "MB for transposition table." << std::endl;
      std::exit(1);
    }
    adviseLargePages(clusters_, bytes);
    clear();
  }
  view_ = {reinterpret_cast<uintptr_t>(clusters_), count ? count - 1 : 0};
  publishIfCurrent();
}

void TranspositionTable::clear() {
  if (clusters_) std::memset(static_cast<void*>(clusters_), 0, clusterCount_ * ClusterBytes);
}

TTEntry* TranspositionTable::probe(Key key) const {
  if (!clusters_) return nullptr;
  const uint32_t high = checkBits(key);
  for (TTEntry& e : clusterOf(key)->entry)
    if (e.keyHigh() == high) return &e;
  return nullptr;
}

// The place is the key's own entry or a free one; failing both, an entry of an older search goes
// before one of this search, and a shallower before a deeper one. An exact bound protects an entry
// only as a challenger: once it is the candidate, it is not weighed again.
void TranspositionTable::store(Key key, Value v, Bound b, Depth d, Move m, Value statV, Value statM) {
  if (!clusters_) return;
  const uint32_t high = checkBits(key);
  TTEntry* const first = clusterOf(key)->entry;
  TTEntry* replace = first;

  for (TTEntry* e = first; e != first + ClusterSize; ++e) {
    const uint32_t entryHigh = e->keyHigh();
    if (!entryHigh || entryHigh == high) {
      e->save(high, v, b, d, m ? m : e->move(), generation_, statV, statM);
      return;
    }
    int score = (replace->generation() == generation_ ? 2 : 0) +
                (e->generation() == generation_ || e->bound() == BoundExact ? -2 : 0) +
                (e->depth() < replace->depth() ? 1 : 0);
    if (score > 0) replace = e;
  }
  replace->save(high, v, b, d, m, generation_, statV, statM);
}

void TranspositionTable::prefetch(Key key) const {
  prefetchCluster(view_, key);
}

void TranspositionTable::publishIfCurrent() const {
  if (this == currentTable) currentTableView = view_;
}

void makeCurrent(TranspositionTable& table) {
  currentTable = &table;
  table.publishIfCurrent();
}

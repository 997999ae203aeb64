// Start-up cost of the geometry tables and the speed of the hashed attack lookups.
#include <benchmark/benchmark.h>

#include <vector>

#include "core/bitboard.h"
#include "core/prng.h"

namespace {

// Random boards of mixed density, with a square to look up from.
struct Probe {
  Square s;
  Bitboard occ;
};

const std::vector<Probe>& probes() {
  static const std::vector<Probe> list = [] {
    initBitboards();
    Prng rng(3);
    std::vector<Probe> v(4096);
    for (size_t i = 0; i < v.size(); ++i) {
      Bitboard occ = rng.next();
      if (i & 1) occ &= rng.next();
      v[i] = {Square(rng.next() & 63), occ};
    }
    return v;
  }();
  return list;
}

void BM_InitBitboards(benchmark::State& state) {
  for (auto _ : state) {
    initBitboards();
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_InitBitboards)->Unit(benchmark::kMillisecond)->Iterations(20);

template <Bitboard (*Attacks)(Square, Bitboard)>
void BM_Lookup(benchmark::State& state) {
  const std::vector<Probe>& v = probes();
  size_t i = 0;
  for (auto _ : state) {
    const Probe& p = v[i++ & 4095];
    benchmark::DoNotOptimize(Attacks(p.s, p.occ));
  }
  state.SetItemsProcessed(state.iterations());
}

Bitboard warrior(Square s, Bitboard occ) { return warriorLookup(s, occ); }
Bitboard assassin(Square s, Bitboard occ) { return assassinLookup(s, occ); }
Bitboard rook(Square s, Bitboard occ) { return rookLines(s, occ); }
Bitboard bishop(Square s, Bitboard occ) { return bishopLines(s, occ); }

BENCHMARK(BM_Lookup<warrior>)->Name("WarriorLookup");
BENCHMARK(BM_Lookup<warriorAttacksSlow>)->Name("WarriorPlainDefinition");
BENCHMARK(BM_Lookup<assassin>)->Name("AssassinLookup");
BENCHMARK(BM_Lookup<assassinAttacksSlow>)->Name("AssassinPlainDefinition");
BENCHMARK(BM_Lookup<rook>)->Name("RookLines");
BENCHMARK(BM_Lookup<bishop>)->Name("BishopLines");

}  // namespace

// Jenkins' small 64-bit generator: the source of hash keys and magic candidates.
#pragma once

#include <cstdint>

class Prng {
 public:
  explicit Prng(int warmupRounds) {
    for (int i = 0; i < warmupRounds; ++i) next();
  }

  uint64_t next() {
    uint64_t e = a - rotl(b, 7);
    a = b ^ rotl(c, 13);
    b = c + rotr(d, 27);
    c = d + e;
    d = e + a;
    return d;
  }

 private:
  static uint64_t rotl(uint64_t x, int k) { return (x << k) | (x >> (64 - k)); }
  static uint64_t rotr(uint64_t x, int k) { return (x >> k) | (x << (64 - k)); }

  uint64_t a = 0xF1EA5EED, b = 0xD4E12C77, c = 0xD4E12C77, d = 0xD4E12C77;
};

// Hash keys and magic searches draw with this many warm-up rounds, so they repeat in every run.
constexpr int KeyWarmupRounds = 73;

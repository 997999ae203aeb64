// A value shared between threads whose races are harmless by design.
#pragma once

#include <atomic>

// A field shared between threads whose races are harmless: relaxed loads and stores that read and
// write like the plain value.
template <typename T>
class Relaxed {
 public:
  Relaxed(T v = T()) : value(v) {}
  Relaxed(const Relaxed& other) : value(T(other)) {}
  operator T() const { return value.load(std::memory_order_relaxed); }
  Relaxed& operator=(T v) {
    value.store(v, std::memory_order_relaxed);
    return *this;
  }
  Relaxed& operator=(const Relaxed& other) { return *this = T(other); }
  // For a counter with one writer: other threads may read it at any time, never a torn value.
  Relaxed& operator+=(T v) { return *this = T(*this) + v; }
  Relaxed& operator++() { return *this += T(1); }

 private:
  std::atomic<T> value;
};

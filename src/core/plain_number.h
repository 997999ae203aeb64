// Numbers in commands and option values: a plain conversion in which a non-number counts as 0.
#pragma once

#include <climits>
#include <cstdlib>
#include <string>

// "64" is 64, "3x" is 3, "abc" is 0; a number beyond the range of int is held at its end.
inline int plainNumber(const std::string& word) {
  long n = std::strtol(word.c_str(), nullptr, 10);
  if (n > INT_MAX) return INT_MAX;
  if (n < INT_MIN) return INT_MIN;
  return int(n);
}

// The opening book: a file of weighted moves by position key, in the published binary layout.
#pragma once

#include <cstdint>
#include <fstream>
#include <string>

#include "core/prng.h"
#include "core/types.h"
#include "game/position.h"

// One 16-byte entry of a book file; every field is stored big-endian and entries are sorted by key.
struct BookEntry {
  Key key;
  uint16_t move;   // bits 0-5 to square, 6-11 from square, with squares numbered as ours (a1 = 0)
  uint16_t count;  // weight of the move
  uint32_t learn;  // read, not used
};
constexpr int BookEntrySize = 16;

// The file stays open from one search to the next; a new name makes the next probe open that one.
class PolyglotBook {
 public:
  // The generator's warm-up; by default it follows the clock, so that choices differ from run to run.
  PolyglotBook();
  explicit PolyglotBook(int warmupRounds) : rng(warmupRounds) {}

  // A move of `pos` chosen among the book's entries for it, with a chance in proportion to its
  // weight; with `pickBest` the last of the heaviest entries is preferred unless a later entry wins
  // the draw. MoveNone when the file cannot be read, has no entry for the position, or names no
  // legal move.
  Move probe(const Position& pos, const std::string& fileName, bool pickBest);

 private:
  bool open(const std::string& fileName);
  bool readEntry(BookEntry& e);
  int64_t entryCount();

  std::ifstream file;
  std::string fileName;  // empty when no file is open
  Prng rng;
};

// Reading the opening book: the file, the search for a key, the weighted choice, the legal match.
#include "search/book.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <system_error>

#include "movegen/movegen.h"
#include "search/book_key.h"

namespace {

int clockWarmupRounds() {
  auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(
                std::chrono::system_clock::now().time_since_epoch()).count();
  return int(ms % 10000);
}

uint64_t bigEndian(const unsigned char* bytes, int size) {
  uint64_t n = 0;
  for (int i = 0; i < size; ++i) n = (n << 8) | bytes[i];
  return n;
}

// The book names a move by its squares alone: the low 12 bits of our move word.
constexpr Move SquareBits = 0x0FFF;

}  // namespace

PolyglotBook::PolyglotBook() : rng(clockWarmupRounds()) {}

bool PolyglotBook::open(const std::string& name) {
  file.close();
  file.clear();
  // Only a plain file: a pipe would block the search and a device might never end.
  std::error_code error;
  if (std::filesystem::is_regular_file(name, error)) file.open(name, std::ios::in | std::ios::binary);
  fileName = file.is_open() ? name : std::string();
  return !fileName.empty();
}

bool PolyglotBook::readEntry(BookEntry& e) {
  unsigned char bytes[BookEntrySize];
  if (!file.read(reinterpret_cast<char*>(bytes), BookEntrySize)) return false;
  e.key = bigEndian(bytes, 8);
  e.move = uint16_t(bigEndian(bytes + 8, 2));
  e.count = uint16_t(bigEndian(bytes + 10, 2));
  e.learn = uint32_t(bigEndian(bytes + 12, 4));
  return true;
}

int64_t PolyglotBook::entryCount() {
  file.seekg(0, std::ios::end);
  std::streamoff size = file.tellg();
  // Trailing bytes short of an entry are no entry; an unreadable size counts as an empty file.
  return size > 0 ? int64_t(size) / BookEntrySize : 0;
}

Move PolyglotBook::probe(const Position& pos, const std::string& name, bool pickBest) {
  if (name != fileName && !open(name)) return MoveNone;
  if (fileName.empty()) return MoveNone;
  file.clear();

  // The first entry with the key, by bisection; a file of one entry needs no read.
  const Key key = bookKey(pos);
  BookEntry e;
  int64_t low = 0, high = entryCount() - 1;
  while (low < high && file.good()) {
    int64_t mid = (low + high) / 2;
    file.seekg(mid * BookEntrySize);
    if (!readEntry(e)) break;
    if (key <= e.key)
      high = mid;
    else
      low = mid + 1;
  }

  // Each entry of the key may take over the choice with a chance of its count out of the counts so
  // far, which makes the final choice proportional to the counts.
  file.clear();
  file.seekg(low * BookEntrySize);
  Move chosen = MoveNone;
  uint16_t best = 0;
  uint64_t sum = 0;
  while (readEntry(e) && e.key == key) {
    best = std::max(best, e.count);
    sum += e.count;
    if (sum != 0 && uint32_t(rng.next()) % sum < e.count) chosen = e.move;
    if (pickBest && e.count == best) chosen = e.move;
  }
  if (chosen == MoveNone) return MoveNone;

  // The special kind is left out of the comparison, so a book can name a promotion, demotion or
  // exchange by its squares; a captive move keeps bits the book never sets and is never matched.
  ScoredMove list[MaxMoves];
  for (ScoredMove *sm = list, *end = generateLegal(pos, list); sm != end; ++sm)
    if ((sm->move & ~SpecialMask) == (chosen & SquareBits)) return sm->move;
  return MoveNone;
}

// Book files written here and read back: keys, the bisection, the weighted choice, damaged files.
#include "search/book.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "../support/position_fixture.h"
#include "core/book_random.h"
#include "core/prng.h"
#include "movegen/movegen.h"
#include "search/book_key.h"

namespace {

namespace fs = std::filesystem;

struct Entry {
  Key key;
  uint16_t move;
  uint16_t count;
};

constexpr uint16_t bookMove(Square from, Square to) { return uint16_t(from << 6 | to); }

class BookTest : public PositionFixture {
 protected:
  void SetUp() override {
    char pattern[] = "/tmp/dorn_book_XXXXXX";
    ASSERT_NE(mkdtemp(pattern), nullptr);
    dir = pattern;
    setSiegeModes(DefaultGameType);
    load(gameTypeTable[DefaultGameType].startFen);
    key = bookKey(pos);
  }
  void TearDown() override {
    fs::remove_all(dir);
    PositionFixture::TearDown();
  }

  // Writes the entries sorted by key (in their given order within a key), big-endian, and then
  // `tail` stray bytes.
  std::string write(const std::string& name, std::vector<Entry> entries, int tail = 0) {
    std::stable_sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.key < b.key; });
    std::string path = (dir / name).string();
    std::ofstream out(path, std::ios::binary);
    auto put = [&](uint64_t n, int bytes) {
      for (int i = bytes - 1; i >= 0; --i) out.put(char(n >> (8 * i)));
    };
    for (const Entry& e : entries) {
      put(e.key, 8);
      put(e.move, 2);
      put(e.count, 2);
      put(0xDEADBEEF, 4);
    }
    for (int i = 0; i < tail; ++i) out.put(char(0xA5));
    return path;
  }

  // Entries of other positions on both sides of the key, so that the bisection has work to do.
  static std::vector<Entry> neighbours(Key key, int n) {
    std::vector<Entry> found;
    Prng rng(5);
    for (int i = 0; i < n; ++i) found.push_back({key + 1 + rng.next() % 1000, bookMove(A1, A2), 7});
    for (int i = 0; i < n; ++i) found.push_back({key - 1 - rng.next() % 1000, bookMove(A1, A2), 7});
    return found;
  }

  // How often each move comes out of `probes` probes.
  std::map<Move, int> tally(PolyglotBook& book, const std::string& path, bool pickBest, int probes) {
    std::map<Move, int> seen;
    for (int i = 0; i < probes; ++i) ++seen[book.probe(pos, path, pickBest)];
    return seen;
  }

  Move legalMove(Square from, Square to) {
    ScoredMove list[MaxMoves];
    for (ScoredMove *sm = list, *end = generateLegal(pos, list); sm != end; ++sm)
      if (moveFrom(sm->move) == from && moveTo(sm->move) == to) return sm->move;
    ADD_FAILURE() << "no legal move " << squareToString(from) << squareToString(to);
    return MoveNone;
  }

  fs::path dir;
  Key key = 0;
};

using BookKeyTest = PositionFixture;

TEST_F(BookKeyTest, TheStartOfAPlainGameXorsOnePublishedNumberPerPieceAndTheTurn) {
  ASSERT_EQ(Random64[0], 0x9D39247E33776D41ULL);
  ASSERT_EQ(Random64[BookTurnEntry], 0xF8D626AAAF278509ULL);
  setSiegeModes(0);
  load(gameTypeTable[0].startFen);

  // "wwwwa3/wksfa3/wn6/aa6/6AA/6NW/3AFSKW/3AWWWW w": entry 64 * (2 * (type - 1) + white) + square.
  const int published[] = {
      696, 697, 698, 699, 688, 680,  // black Warriors a8 b8 c8 d8 a7 a6 (kind 10)
      444, 436, 416, 417,            // black Archers e8 e7 a5 b5 (kind 6)
      50,                            // black Sword c7 (kind 0)
      297,                           // black Assassin b6 (kind 4)
      478, 479, 459, 451,            // white Archers g4 h4 d2 d1 (kind 7)
      342,                           // white Assassin g3 (kind 5)
      727, 719, 708, 709, 710, 711,  // white Warriors h3 h2 e1 f1 g1 h1 (kind 11)
      77,                            // white Sword f2 (kind 1)
  };
  Key expected = Random64[BookTurnEntry];
  for (int i : published) expected ^= Random64[i];
  expected ^= bookPieceKey(Dorn, BLACK, B7) ^ bookPieceKey(Bondsman, BLACK, D7) ^ bookPieceKey(Bondsman, WHITE, E2) ^
              bookPieceKey(Dorn, WHITE, G2);
  EXPECT_EQ(bookKey(pos), expected);
  // Black to move differs by the turn number alone.
  load("wwwwa3/wksfa3/wn6/aa6/6AA/6NW/3AFSKW/3AWWWW b 0 1");
  EXPECT_EQ(bookKey(pos), expected ^ Random64[BookTurnEntry]);
}

TEST_F(BookKeyTest, TypesBeyondThePublishedKindsHaveFixedNumbersOfTheirOwn) {
  std::set<Key> all(Random64, Random64 + BookRandomCount);
  for (int t = Magician2; t <= Dorn_sword; ++t)
    for (Color c : {WHITE, BLACK})
      for (Square s = A1; s <= H8; ++s) EXPECT_TRUE(all.insert(bookPieceKey(PieceType(t), c, s)).second);
  EXPECT_EQ(all.size(), size_t(BookRandomCount + 5 * 2 * 64));

  // Drawn kind by kind from a fixed start, so that books keep their keys from run to run.
  Prng rng(781);
  EXPECT_EQ(bookPieceKey(Magician2, BLACK, A1), rng.next());
  for (int i = 1; i < 10 * 64 - 1; ++i) rng.next();
  EXPECT_EQ(bookPieceKey(Dorn_sword, WHITE, H8), rng.next());
  EXPECT_EQ(bookPieceKey(Archer, WHITE, D1), Random64[64 * 7 + D1]);
}

TEST_F(BookTest, ChoicesFollowTheCountsAndBestPrefersTheHeaviest) {
  const Move a = legalMove(E2, E3), b = legalMove(G4, F4);
  std::vector<Entry> entries = neighbours(key, 40);
  entries.push_back({key, bookMove(E2, E3), 1});
  entries.push_back({key, bookMove(G4, F4), 3});
  const std::string path = write("weights.bin", entries);

  PolyglotBook book(0);
  auto seen = tally(book, path, false, 4000);
  EXPECT_EQ(seen.size(), 2u);
  EXPECT_NEAR(seen[a], 1000, 150);
  EXPECT_EQ(seen[a] + seen[b], 4000);

  // The heaviest entry comes last: with the best-move option nothing else is ever played.
  seen = tally(book, path, true, 200);
  EXPECT_EQ(seen[b], 200);
}

TEST_F(BookTest, MovesAreMatchedByTheirSquaresAlone) {
  // A book names the Magician's exchange with the Warrior by squares; the spare high bits are ignored.
  const Move exchange = legalMove(E2, E1);
  ASSERT_TRUE(isExchange(exchange));
  PolyglotBook book(0);
  EXPECT_EQ(book.probe(pos, write("exchange.bin", {{key, uint16_t(0xF000 | bookMove(E2, E1)), 1}}), false), exchange);
  // Squares that name no legal move give nothing.
  EXPECT_EQ(book.probe(pos, write("illegal.bin", {{key, bookMove(C3, C4), 1}}), false), MoveNone);
}

TEST_F(BookTest, ShortDamagedAndMissingFilesGiveNoMoveAndANewNameIsOpened) {
  PolyglotBook book(0);
  const std::string good = write("good.bin", {{key, bookMove(E2, E3), 1}});
  EXPECT_EQ(book.probe(pos, (dir / "absent.bin").string(), false), MoveNone);
  EXPECT_EQ(book.probe(pos, dir.string(), false), MoveNone);  // a directory
  const std::string pipe = (dir / "pipe").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(book.probe(pos, pipe, false), MoveNone);  // would block a reader that opened it
  EXPECT_EQ(book.probe(pos, write("empty.bin", {}), false), MoveNone);
  EXPECT_EQ(book.probe(pos, write("stub.bin", {}, 5), false), MoveNone);
  EXPECT_EQ(book.probe(pos, "", false), MoveNone);

  // One entry: found at once, or not at all.
  EXPECT_EQ(book.probe(pos, good, false), legalMove(E2, E3));
  EXPECT_EQ(book.probe(pos, write("other.bin", {{key + 1, bookMove(E2, E3), 1}}), false), MoveNone);

  // Stray bytes after the entries: the last whole entry still counts, a key past it finds nothing.
  std::vector<Entry> entries = {{key - 9, bookMove(A1, A2), 1}, {key - 4, bookMove(A1, A2), 1}, {key, bookMove(G4, F4), 2}};
  const std::string ragged = write("ragged.bin", entries, 7);
  EXPECT_EQ(book.probe(pos, ragged, false), legalMove(G4, F4));
  entries.back().key = ~0ULL;
  EXPECT_EQ(book.probe(pos, write("ragged_past.bin", entries, 9), false), MoveNone);

  // A changed name reopens; the old name again reopens the old file.
  EXPECT_EQ(book.probe(pos, ragged, false), legalMove(G4, F4));
  EXPECT_EQ(book.probe(pos, good, false), legalMove(E2, E3));
}

}  // namespace

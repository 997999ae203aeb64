// The engine's first moves through its input and output: book and set-up moves answer without a
// search, and only when the limits and options let them.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "../support/capture_stdout.h"
#include "../support/dorn_session.h"
#include "game/position.h"
#include "search/book_key.h"

namespace {

bool anyStartsWith(const std::vector<std::string>& lines, const std::string& prefix) {
  return std::any_of(lines.begin(), lines.end(), [&](const std::string& l) { return l.rfind(prefix, 0) == 0; });
}

// Asks for a move and tells whether a search ran for it; `move` gets the bestmove line.
bool searched(DornSession& s, const std::string& go, std::string& move) {
  s.send(go);
  auto lines = s.waitFor("bestmove", 20000);
  EXPECT_FALSE(lines.empty()) << go;
  move = lines.empty() ? "" : lines.back();
  return anyStartsWith(lines, "info depth");
}

TEST(OpeningPlay, SetUpMovesAnswerPlainSearchesOnlyAtTheStartAndWithOwnBook) {
  DornSession s;
  std::string move;
  // A set-up move comes with its expected reply as the ponder move.
  EXPECT_FALSE(searched(s, "go depth 1", move));
  EXPECT_EQ(move.find("(none)"), std::string::npos) << move;

  // Black after one White move; not after two moves, nor on another board.
  s.send("position startpos moves d1c2");
  EXPECT_FALSE(searched(s, "go depth 1", move));
  s.send("position startpos moves d1c2 b5b4");
  EXPECT_TRUE(searched(s, "go depth 1", move));
  s.send("sp wfwwa3/wksma3/wn6/aa6/6AA/6NW/3AMSKW/3AWWF1 w 0 1");
  EXPECT_TRUE(searched(s, "go depth 1", move));

  // Nothing but a search once OwnBook is off.
  s.send("position startpos");
  s.send("setoption name OwnBook value false");
  EXPECT_TRUE(searched(s, "go depth 1", move));
  s.send("setoption name OwnBook value true");
  EXPECT_FALSE(searched(s, "go depth 1", move));

  // Mate and endless searches never take them. The limits of one go stay for the next.
  s.send("go depth 0 mate 3");
  EXPECT_FALSE(s.waitFor("info depth 2", 20000).empty());
  s.send("stop");
  EXPECT_FALSE(s.waitFor("bestmove", 20000).empty());
  s.send("go mate 0 infinite");
  EXPECT_FALSE(s.waitFor("info depth 2", 20000).empty());
  s.send("stop");
  EXPECT_FALSE(s.waitFor("bestmove", 20000).empty());
}

TEST(OpeningPlay, ABookMoveComesFirstAndAMissingBookLeavesTheSetUpMoves) {
  // One entry for the start of a "magician" game: the Magician's exchange e2e1, which is no set-up move.
  Position start;
  {
    CaptureStdout quiet;
    ASSERT_TRUE(start.set(gameTypeTable[DefaultGameType].startFen, nullptr));
  }
  char pattern[] = "/tmp/dorn_book_XXXXXX";
  ASSERT_NE(mkdtemp(pattern), nullptr);
  const std::filesystem::path dir = pattern;
  const std::string path = (dir / "my book.bin").string();
  {
    std::ofstream out(path, std::ios::binary);
    const Key key = bookKey(start);
    for (int i = 7; i >= 0; --i) out.put(char(key >> (8 * i)));
    const unsigned char rest[8] = {0x03, 0x04, 0, 1, 0, 0, 0, 0};  // e2 = 12, e1 = 4; count 1
    out.write(reinterpret_cast<const char*>(rest), sizeof rest);
  }

  DornSession s;
  std::string move;
  s.send("setoption name Book File value " + path);
  EXPECT_FALSE(searched(s, "go depth 1", move));
  EXPECT_EQ(move.substr(0, 13), "bestmove e2e1");
  // Without its file the book is silent, and the set-up moves answer.
  s.send("setoption name Book File value " + (dir / "absent.bin").string());
  s.send("go depth 1");
  auto lines = s.waitFor("bestmove", 20000);
  EXPECT_EQ(lines.size(), 1u);
  EXPECT_TRUE(!lines.empty() && lines.back().substr(0, 13) != "bestmove e2e1");
  std::filesystem::remove_all(dir);
}

}  // namespace

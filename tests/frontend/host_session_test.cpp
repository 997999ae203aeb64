// A graphical host's session with the program over pipes: handshake, games of every type, clocks and pondering.
#include <gtest/gtest.h>

#include <chrono>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "../support/dorn_session.h"
#include "game/rules.h"

namespace {

// Each type's start FEN with its siege tail written out, as a host that knows nothing of defaults sends it.
std::string startWithTail(int type) {
  std::string fen = gameTypeTable[type].startFen;
  if (type == 3) fen += " - Tower { D4 E4 D5 E5 } Breached { } WinSquaresWhite { A4 } WinSquaresBlack { H5 }";
  if (type == 4)
    fen += " - 1 - 1 TowerWhite { H5 H6 } BreachedWhite { } TowerBlack { A3 A4 } BreachedBlack { }"
           " DropoffSquaresWhite { A1 } DropoffSquaresBlack { H8 }";
  return fen;
}

// The program's start-up lines come before the host has said anything; a host skips them.
void skipStartup(DornSession& s) { ASSERT_FALSE(s.waitFor("Type ? for help", 10000).empty()); }

// Lines a host never expects: a refused command or move, or a search that was still running.
bool isComplaint(const std::string& line) {
  return line.find("Illegal") != std::string::npos || line.rfind("Unknown command", 0) == 0 ||
         line.find("still making a move") != std::string::npos || line.rfind("?", 0) == 0;
}

const std::regex BestMoveLine("bestmove ([a-h][1-8][a-h][1-8]|\\(none\\)) ponder ([a-h][1-8][a-h][1-8]|\\(none\\))");

// The move of a bestmove line that came in time and alone; empty after a failure.
std::string bestMoveOf(const std::vector<std::string>& lines) {
  if (lines.empty()) {
    ADD_FAILURE() << "no bestmove";
    return "";
  }
  for (const auto& l : lines) EXPECT_FALSE(isComplaint(l)) << l;
  std::smatch m;
  if (!std::regex_match(lines.back(), m, BestMoveLine)) {
    ADD_FAILURE() << lines.back();
    return "";
  }
  return m[1];
}

std::string joined(const std::vector<std::string>& moves) {
  std::string text;
  for (const auto& m : moves) text += " " + m;
  return text;
}

size_t wordCount(const std::string& text) {
  std::istringstream is(text);
  size_t n = 0;
  for (std::string w; is >> w;) ++n;
  return n;
}

}  // namespace

TEST(HostSession, HandshakeThenTwentyPliesOfEveryGameTypeOnTheClock) {
  DornSession s;
  skipStartup(s);
  s.send("uci");
  auto id = s.waitFor("uciok", 5000);
  ASSERT_GE(id.size(), 5u);
  EXPECT_EQ(id[0], "id name Dorn 0.25 64bit");
  EXPECT_EQ(id[1], "id author Alda Reve");
  EXPECT_EQ(id[2], "");
  EXPECT_EQ(id[3].rfind("option name ", 0), 0u) << id[3];
  s.send("isready");
  EXPECT_EQ(s.waitFor("readyok", 5000).size(), 1u);
  s.send("boardtypes");
  EXPECT_EQ(s.waitFor("basic", 5000), std::vector<std::string>{"basic magician powermagician rescuegeneral rescuedorn "});

  // The host keeps the game; the engine is asked for one move at a time, and every move it gives is
  // checked with the engine's own legality service before it is played.
  for (int type = 0; type < GameTypeCount; ++type) {
    SCOPED_TRACE(gameTypeTable[type].name);
    s.send(std::string("ucinewgame board ") + gameTypeTable[type].name);
    const std::string fen = startWithTail(type);
    std::vector<std::string> moves;
    bool ended = false;
    for (int ply = 0; ply < 20 && !ended; ++ply) {
      s.send("position fen " + fen + " moves" + joined(moves));
      s.send("go wtime 1000 btime 1000 winc 10 binc 10");
      std::string best = bestMoveOf(s.waitFor("bestmove", 10000));
      ASSERT_FALSE(best.empty());
      if (best == "(none)") {
        ended = true;
        break;
      }

      s.send("checklegalitymatedraw " + best + " " + fen + " moves" + joined(moves));
      auto report = s.waitFor("", 5000);
      ASSERT_EQ(report.size(), 1u);
      ASSERT_EQ(report[0].substr(0, 2), "1 ") << best << " after" << joined(moves);
      moves.push_back(best);
      ended = report[0][2] == '1';
    }
    EXPECT_TRUE(ended || moves.size() == 20u) << moves.size();
    // The whole game in SAN: one word a move, none refused.
    s.send("convertmovestosan " + fen + " moves" + joined(moves));
    auto san = s.waitFor("", 5000);
    ASSERT_EQ(san.size(), 1u);
    EXPECT_FALSE(isComplaint(san[0])) << san[0];
    EXPECT_EQ(wordCount(san[0]), moves.size()) << san[0];
  }
}

TEST(HostSession, PonderhitThenAnInfiniteSearchThatAnswersIsreadyAndStops) {
  DornSession s;
  skipStartup(s);
  s.send("ucinewgame board magician");
  s.send("position startpos moves f2e3 c7d6");
  // The host ponders on its guess: the move is held back until the guess comes true.
  s.send("go ponder wtime 1000 btime 1000 winc 10 binc 10");
  EXPECT_TRUE(s.waitFor("bestmove", 500).empty());
  s.send("ponderhit");
  bestMoveOf(s.waitFor("bestmove", 5000));

  s.send("position startpos moves f2e3");
  s.send("go infinite");
  ASSERT_FALSE(s.waitFor("info depth 2", 5000).empty());
  auto asked = std::chrono::steady_clock::now();
  s.send("isready");
  auto ready = s.waitFor("readyok", 2000);
  ASSERT_FALSE(ready.empty());
  EXPECT_LT(std::chrono::steady_clock::now() - asked, std::chrono::milliseconds(1000));
  for (const auto& l : ready) EXPECT_EQ(l.rfind("bestmove", 0), std::string::npos) << l;
  s.send("stop");
  bestMoveOf(s.waitFor("bestmove", 5000));
  // Nothing is left over for the next command.
  s.send("isready");
  EXPECT_EQ(s.waitFor("readyok", 2000), std::vector<std::string>{"readyok"});
}

// Positions that no game can reach are refused by every reader, which then keeps what it had.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "../support/capture_stdout.h"
#include "../support/run_dorn.h"
#include "frontend/bench.h"
#include "frontend/command_loop.h"
#include "frontend/settings.h"
#include "frontend/setup_commands.h"
#include "game/rules.h"

namespace {

const std::string Refusal = "Illegal position: the side to move can capture the enemy leader\n";

// Two lone Dorns side by side, with a siege tail that would move the towers and goals if it were read
// into the process-wide geometry for good.
std::string openLeaderFen(int type, char side = 'w') {
  std::string fen = std::string("8/8/8/8/8/8/8/Kk6 ") + side + " 0 1";
  if (type == 3) fen += " - Tower { A8 } WinSquaresBlack { H2 }";
  if (type == 4) fen += " - 1 - 1 TowerWhite { A8 } DropoffSquaresBlack { H2 }";
  return fen;
}

class PositionIntakeTest : public ::testing::Test {
 protected:
  void TearDown() override {
    resetRuleFlags();
    setSiegeModes(DefaultGameType);
    gameType = DefaultGameType;
    startFen = gameTypeTable[DefaultGameType].startFen;
    setGameText(startFen);
  }

  // A game of `type` that is not at its start, so that a fall-back to the start would show.
  void startGame(int type) {
    setSiegeModes(type);
    gameType = type;
    startFen = gameTypeTable[type].startFen;
    std::istringstream fen("k7/8/8/8/8/8/8/7K w 0 1 startpos moves h1g1");
    CaptureStdout quiet;
    setPositionCommand(pos, fen);
    ASSERT_EQ(pos.fen().substr(0, 24), "k7/8/8/8/8/8/8/6K1 b 1 1");
  }

  struct Kept {
    std::string fen, game;
    Key key;
    SiegeGeometry geometry;
    bool operator==(const Kept&) const = default;
  };
  Kept kept() const { return {pos.fen(), searchFen, pos.key(), currentSiegeGeometry()}; }

  Position pos;
};

}  // namespace

TEST_F(PositionIntakeTest, EveryReaderRefusesAnOpenEnemyLeaderAndKeepsWhatItHad) {
  for (int type = 0; type < GameTypeCount; ++type) {
    SCOPED_TRACE(gameTypeTable[type].name);
    startGame(type);
    const Kept before = kept();
    const std::string fen = openLeaderFen(type);
    auto refuses = [&](const char* reader, auto&& read) {
      CaptureStdout out;
      read();
      EXPECT_EQ(out.text(), Refusal) << reader;
      EXPECT_TRUE(kept() == before) << reader;
    };
    for (const std::string& text : {"fen " + fen, "fen " + openLeaderFen(type, 'b'), "fen " + fen + " moves a1a2"})
      refuses("position", [&] {
        std::istringstream in(text);
        Intake why;
        EXPECT_FALSE(applyPositionText(pos, in, &why));
        EXPECT_EQ(why, Intake::Unreachable);
      });
    refuses("position startpos", [&] {
      const std::string unreachableStart = fen;
      startFen = unreachableStart.c_str();
      std::istringstream in("startpos moves");
      EXPECT_FALSE(applyPositionText(pos, in));
      startFen = gameTypeTable[type].startFen;
    });
    refuses("sp", [&] {
      std::istringstream in(fen);
      setPositionCommand(pos, in);
    });
  }
}

TEST_F(PositionIntakeTest, BenchFilesSkipUnreachablePositions) {
  char path[] = "/tmp/dorn_bench_XXXXXX";
  int fd = mkstemp(path);
  ASSERT_GE(fd, 0);
  close(fd);
  std::ofstream(path) << openLeaderFen(0) << "\nk7/8/8/8/8/8/8/7K w 0 1\n";
  startGame(0);
  const Kept before = kept();
  std::ostringstream errors;
  std::streambuf* stderrBuffer = std::cerr.rdbuf(errors.rdbuf());
  std::string out;
  {
    CaptureStdout capture;
    std::istringstream args(std::string("32 1 1 ") + path + " perft");
    benchCommand(pos, args);
    out = capture.text();
  }
  std::cerr.rdbuf(stderrBuffer);
  std::remove(path);
  EXPECT_EQ(out, Refusal);
  EXPECT_TRUE(kept() == before);
  const std::string report = errors.str();
  EXPECT_NE(report.find("Position: 2/2\n\nPerft 1 leaf nodes: 11\n"), std::string::npos) << report;
  EXPECT_NE(report.find("Nodes searched  : 11\n"), std::string::npos) << report;
}

TEST(PositionIntake, ScriptedSessionGoesOnAfterARefusal) {
  // Before, perft took the leader and do_move's report swallowed the next line.
  std::string out = runDorn("position fen 8/8/8/8/8/8/8/Kk6 w 0 1\nperft 2\nsp 8/8/8/8/8/8/8/Kk6 w 0 1\nisready\n");
  EXPECT_EQ(out.find("Capture of Dorn"), std::string::npos) << out;
  const std::string tail = Refusal + Refusal + "readyok\n";
  ASSERT_GE(out.size(), tail.size());
  EXPECT_EQ(out.substr(out.size() - tail.size()), tail) << out;
}

// A test with one position that puts the rules, game type and piece values back afterwards.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "capture_stdout.h"
#include "game/piece_values.h"
#include "game/position.h"
#include "game/rules.h"

class PositionFixture : public ::testing::Test {
 protected:
  void TearDown() override {
    resetRuleFlags();
    setSiegeModes(DefaultGameType);
    setPieceValues(Position());
  }

  // Sets the FEN under the game type in force; the FEN must be accepted. The reader stays quiet.
  void load(const std::string& fen) {
    CaptureStdout quiet;
    ASSERT_TRUE(pos.set(fen, nullptr)) << fen;
  }

  Position pos;
};

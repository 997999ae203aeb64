// Shared by the make/unmake tests: rule set-ups; what undo must restore and the board's invariants
// are the fuzz harnesses' own (position_invariants.h).
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "game/move_stack.h"
#include "game/piece_values.h"
#include "game/position.h"
#include "game/rules.h"
#include "targets/position_invariants.h"

namespace make_unmake {

constexpr Bitboard bb(Square s) { return Bitboard(1) << s; }

// Puts the rules, the game type and the piece values back as the other tests expect them.
struct RulesGuard {
  ~RulesGuard() {
    resetRuleFlags();
    setSiegeModes(DefaultGameType);
    setPieceValues(Position());
    moveStackCount = 0;
  }
};

// Sets up a position of a game type under the rules in force; the FEN must be accepted. Set twice,
// so that the running values are made from the piece values of these rules.
inline void setUp(Position& pos, int gameType, const std::string& fen) {
  moveStackCount = 0;  // as a search starts it: earlier tests may have filled the stack
  setSiegeModes(gameType);
  ASSERT_TRUE(pos.set(fen, nullptr)) << fen;
  setPieceValues(pos);
  ASSERT_TRUE(pos.set(fen, nullptr)) << fen;
}

}  // namespace make_unmake

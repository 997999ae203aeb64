// Shared by the make/unmake tests: what undo must restore, board invariants, checkers, rule set-ups.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <string>

#include "game/move_stack.h"
#include "game/piece_values.h"
#include "game/position.h"
#include "game/rules.h"

namespace make_unmake {

constexpr Bitboard bb(Square s) { return Bitboard(1) << s; }

// Everything a move may change and undo_move must give back. Piece lists count as sets, since an
// undone capture re-enters its piece at the end of its list; the last-captive-square fields serve
// only the display and `nodes` only counts. The state record is compared byte for byte.
struct Restorable {
  std::array<Piece, 64> board;
  std::array<Bitboard, TypeSlots> byType;
  std::array<Bitboard, 2> byColor;
  std::array<std::array<std::array<Square, 16>, TypeSlots>, 2> lists;  // sorted, NoSquare behind
  const StateInfo* st;
  std::array<unsigned char, sizeof(StateInfo)> state;
  int side, gamePly, stackCount;
  Square siege1Captive;
  Bitboard siege1Tower, siege1Breached;
  std::array<Square, 2> siege2Captive;
  std::array<Bitboard, 2> siege2Tower, siege2Breached;
  std::array<bool, 2> alive, released;
  bool operator==(const Restorable&) const = default;
};

inline Restorable restorable(const Position& pos) {
  Restorable r;
  std::copy(std::begin(pos.board), std::end(pos.board), r.board.begin());
  std::copy(std::begin(pos.byType), std::end(pos.byType), r.byType.begin());
  r.byColor = {pos.byColor[WHITE], pos.byColor[BLACK]};
  for (int c = 0; c < 2; ++c)
    for (int t = 0; t < TypeSlots; ++t) {
      auto& list = r.lists[c][t];
      list.fill(NoSquare);
      std::copy(pos.pieceList[c][t], pos.pieceList[c][t] + pos.pieceCount[c][t], list.begin());
      std::sort(list.begin(), list.begin() + pos.pieceCount[c][t]);
    }
  r.st = pos.state();
  std::memcpy(r.state.data(), pos.state(), sizeof(StateInfo));
  r.side = pos.side();
  r.gamePly = pos.gamePly;
  r.stackCount = moveStackCount;
  r.siege1Captive = pos.siege1CaptiveSquare;
  r.siege1Tower = pos.siege1Tower;
  r.siege1Breached = pos.siege1Breached;
  for (int c = 0; c < 2; ++c) {
    r.siege2Captive[c] = pos.siege2CaptiveSquare[c];
    r.siege2Tower[c] = pos.siege2Tower[c];
    r.siege2Breached[c] = pos.siege2Breached[c];
    r.alive[c] = pos.siege2CaptiveAlive[c];
    r.released[c] = pos.siege2CaptiveReleased[c];
  }
  return r;
}

// The board's own invariants: bitboards, board, counts, lists and index agree; towers stay empty.
inline std::string boardFault(const Position& pos) {
  Bitboard typed = 0;
  for (int t = 1; t < PieceTypeNb; ++t) typed |= pos.byType[t];
  if ((pos.byColor[WHITE] | pos.byColor[BLACK]) != pos.byType[ALL] || typed != pos.byType[ALL] ||
      (pos.byColor[WHITE] & pos.byColor[BLACK]))
    return "bitboards disagree";
  for (Square s = 0; s < 64; ++s) {
    Piece p = pos.board[s];
    if (((pos.byType[ALL] >> s) & 1) != (p != NoPiece)) return "board against bitboards at " + squareToString(s);
    if (p && (!((pos.byType[typeOf(p)] & pos.byColor[colorOf(p)]) >> s & 1) ||
              pos.pieceList[colorOf(p)][typeOf(p)][pos.index[s]] != s))
      return "type, colour or list at " + squareToString(s);
  }
  for (int c = 0; c < 2; ++c)
    for (int t = 1; t < PieceTypeNb; ++t)
      if (std::popcount(pos.byType[t] & pos.byColor[c]) != pos.pieceCount[c][t] ||
          pos.pieceList[c][t][pos.pieceCount[c][t]] != NoSquare)
        return "count or list end";
  return pos.byType[ALL] & pos.standingTowers() ? "piece on a standing tower square" : "";
}

// The checkers of the side to move, computed from nothing.
inline Bitboard expectedCheckers(const Position& pos) {
  Color us = pos.side();
  Square k = pos.leaderSquare(us);
  if (pos.severalLeaders(us) || k == NoSquare) return 0;
  return pos.checkableBy(us) & pos.attackersTo(k, pos.pieces(), pos.pieces(~us), ~us);
}

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

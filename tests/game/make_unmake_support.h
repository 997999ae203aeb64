// Shared by the make/unmake tests: position snapshots, from-scratch comparisons and rule set-ups.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <string>
#include <vector>

#include "core/bitboard.h"
#include "game/move_stack.h"
#include "game/piece_values.h"
#include "game/position.h"
#include "game/rules.h"

namespace make_unmake {

constexpr Bitboard bb(Square s) { return Bitboard(1) << s; }

// Everything a move may change and undo_move must give back. Piece lists are kept as sets: an
// undone capture re-enters its piece at the end of its list. The last-captive-square fields only
// serve the display and are left out.
struct Snapshot {
  Piece board[64];
  Bitboard byType[TypeSlots];
  Bitboard byColor[2];
  int pieceCount[2][TypeSlots];
  std::vector<Square> lists[2][TypeSlots];
  int gamePly;
  Color side;
  StateInfo* st;
  StateInfo state;
  int moveStackCount;
  Square siege1CaptiveSquare;
  Bitboard siege1Tower, siege1Breached;
  Square siege2CaptiveSquare[2];
  Bitboard siege2Tower[2], siege2Breached[2];
  bool siege2CaptiveAlive[2], siege2CaptiveReleased[2];

  explicit Snapshot(const Position& pos) {
    std::copy(std::begin(pos.board), std::end(pos.board), board);
    std::copy(std::begin(pos.byType), std::end(pos.byType), byType);
    std::copy(std::begin(pos.byColor), std::end(pos.byColor), byColor);
    for (int c = 0; c < 2; ++c)
      for (int t = 0; t < TypeSlots; ++t) {
        pieceCount[c][t] = pos.pieceCount[c][t];
        lists[c][t].assign(pos.pieceList[c][t], pos.pieceList[c][t] + pos.pieceCount[c][t]);
        std::sort(lists[c][t].begin(), lists[c][t].end());
      }
    gamePly = pos.gamePly;
    side = pos.sideToMove;
    st = pos.st;
    state = *pos.st;
    moveStackCount = ::moveStackCount;
    siege1CaptiveSquare = pos.siege1CaptiveSquare;
    siege1Tower = pos.siege1Tower;
    siege1Breached = pos.siege1Breached;
    for (int c = 0; c < 2; ++c) {
      siege2CaptiveSquare[c] = pos.siege2CaptiveSquare[c];
      siege2Tower[c] = pos.siege2Tower[c];
      siege2Breached[c] = pos.siege2Breached[c];
      siege2CaptiveAlive[c] = pos.siege2CaptiveAlive[c];
      siege2CaptiveReleased[c] = pos.siege2CaptiveReleased[c];
    }
  }

  // The first difference, or an empty text.
  std::string diff(const Snapshot& o) const {
    for (int s = 0; s < 64; ++s)
      if (board[s] != o.board[s]) return "board[" + squareToString(s) + "]";
    for (int t = 0; t < TypeSlots; ++t)
      if (byType[t] != o.byType[t]) return "byType[" + std::to_string(t) + "]";
    for (int c = 0; c < 2; ++c) {
      if (byColor[c] != o.byColor[c]) return "byColor";
      for (int t = 0; t < TypeSlots; ++t)
        if (pieceCount[c][t] != o.pieceCount[c][t] || lists[c][t] != o.lists[c][t])
          return "piece list " + std::to_string(c) + "/" + std::to_string(t);
    }
    if (gamePly != o.gamePly || side != o.side) return "gamePly or side";
    if (st != o.st) return "st";
    const StateInfo &a = state, &b = o.state;
    if (a.key != b.key || a.materialKey != b.materialKey || a.npMaterial[0] != b.npMaterial[0] ||
        a.npMaterial[1] != b.npMaterial[1] || a.pliesSinceCapture != b.pliesSinceCapture ||
        a.pliesSinceNull != b.pliesSinceNull || a.psqScore != b.psqScore || a.siegeScore != b.siegeScore ||
        a.checkers != b.checkers || a.capturedType != b.capturedType || a.priorType != b.priorType ||
        a.isSiege1Exchange != b.isSiege1Exchange || a.siege2_color != b.siege2_color ||
        a.isSiege2EnemyTransferKill != b.isSiege2EnemyTransferKill ||
        a.isSuccessfulDropoff != b.isSuccessfulDropoff || a.priorCaptiveSquare != b.priorCaptiveSquare ||
        a.previous != b.previous)
      return "state record";
    if (moveStackCount != o.moveStackCount) return "moveStackCount";
    if (siege1CaptiveSquare != o.siege1CaptiveSquare || siege1Tower != o.siege1Tower ||
        siege1Breached != o.siege1Breached)
      return "siege 1 fields";
    for (int c = 0; c < 2; ++c)
      if (siege2CaptiveSquare[c] != o.siege2CaptiveSquare[c] || siege2Tower[c] != o.siege2Tower[c] ||
          siege2Breached[c] != o.siege2Breached[c] || siege2CaptiveAlive[c] != o.siege2CaptiveAlive[c] ||
          siege2CaptiveReleased[c] != o.siege2CaptiveReleased[c])
        return "siege 2 fields of " + std::string(colorNames[c]);
    return "";
  }
};

// The board's own invariants: bitboards, board, counts, lists and index agree; towers stay empty.
inline std::string boardFault(const Position& pos) {
  if ((pos.byColor[WHITE] | pos.byColor[BLACK]) != pos.byType[ALL] || (pos.byColor[WHITE] & pos.byColor[BLACK]))
    return "byColor against byType[ALL]";
  Bitboard typed = 0;
  for (int t = 1; t < PieceTypeNb; ++t) typed |= pos.byType[t];
  if (typed != pos.byType[ALL]) return "byType against byType[ALL]";
  for (Square s = 0; s < 64; ++s) {
    Piece p = pos.board[s];
    bool occupied = (pos.byType[ALL] >> s) & 1;
    if (occupied != (p != NoPiece)) return "board against bitboards at " + squareToString(s);
    if (!p) continue;
    if (!((pos.byType[typeOf(p)] & pos.byColor[colorOf(p)]) >> s & 1)) return "type or colour at " + squareToString(s);
    if (pos.pieceList[colorOf(p)][typeOf(p)][pos.index[s]] != s) return "index at " + squareToString(s);
  }
  for (int c = 0; c < 2; ++c)
    for (int t = 1; t < PieceTypeNb; ++t) {
      if (std::popcount(pos.byType[t] & pos.byColor[c]) != pos.pieceCount[c][t]) return "pieceCount";
      if (pos.pieceList[c][t][pos.pieceCount[c][t]] != NoSquare) return "list end";
    }
  if (pos.byType[ALL] & pos.standingTowers()) return "piece on a standing tower square";
  return "";
}

// The checkers of the side to move, computed from nothing.
inline Bitboard expectedCheckers(const Position& pos) {
  Color us = pos.side();
  Square k = pos.leaderSquare(us);
  if (pos.severalLeaders(us) || k == NoSquare) return 0;
  return pos.checkableBy(us) & pos.attackersTo(k, pos.pieces(), pos.pieces(~us), ~us);
}

// A rule set under test, applied before the position is set up.
struct RuleSet {
  const char* name;
  int bondsmenLeaders, basePromotions, capturePromotions, exchanges, swordsCaptureMounts, magicianDemotesDorn,
      magicianExtended, powerMagicianExtended, siegeExchanges;
  void apply() const {
    ::bondsmenLeaders = bondsmenLeaders;
    ::basePromotions = basePromotions;
    ::capturePromotions = capturePromotions;
    ::exchanges = exchanges;
    ::swordsCaptureMounts = swordsCaptureMounts;
    ::magicianDemotesDorn = magicianDemotesDorn;
    ::magicianExtendedDemotionSqs = magicianExtended;
    ::powerMagicianExtendedDemotionSqs = powerMagicianExtended;
    ::siegeExchanges = siegeExchanges;
  }
};

// Puts the rules, the game type and the piece values back as the other tests expect them.
struct RulesGuard {
  ~RulesGuard() {
    resetRuleFlags();
    setSiegeModes(DefaultGameType);
    setPieceValues(Position());
    debug_PL_legal = false;
    ::moveStackCount = 0;
  }
};

// Sets up a position under the given game type; the FEN must be accepted.
inline void setUp(Position& pos, int gameType, const std::string& fen) {
  setSiegeModes(gameType);
  ASSERT_TRUE(pos.set(fen, nullptr)) << fen;
  setPieceValues(pos);
  // Values may have changed with the rules: recompute what depends on them.
  ASSERT_TRUE(pos.set(fen, nullptr)) << fen;
}

}  // namespace make_unmake

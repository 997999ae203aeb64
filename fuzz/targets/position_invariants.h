// What must hold of every position a reader or a move hands on: the board's bookkeeping, the running values
// against their from-scratch values, and a snapshot that unmaking must give back whole.
#pragma once

#include <array>
#include <string>

#include "game/position.h"

// How much of the running values a caller can vouch for.
enum class Vouch {
  // Board, lists, counts, towers and the material key. The key as well in a plain game.
  Board,
  // The position came from a set-up and moves under the rules in force: also npMaterial, the siege
  // score, the checkers and the consistency check, and the piece-square sum in a plain game.
  Played,
  // Straight from a set-up: the key and the piece-square sum equal their from-scratch values even
  // in a siege game, whose towers and captives enter them only move by move.
  SetUp,
};

// The first thing that does not hold, or empty.
std::string positionFault(const Position& pos, Vouch vouch);

// The checkers of the side to move, found from nothing: the attackers of its sole leader.
Bitboard expectedCheckers(const Position& pos);

// A colour with two or more Bondsmen, which no game has: the rules' leader bookkeeping (`nextLeader`)
// answers for one or two Bondsmen and looks past a Dorn beside them, so there a move may lose a
// leader, and the engine reports it and plays on. Reports are no finding in such a position.
bool severalBondsmen(const Position& pos);

// Everything a move may change and undo_move must give back. Piece lists count as sets, since an
// undone capture re-enters its piece at the end of its list; the state record is compared byte by
// byte, and `nodes` and the last-captive squares, which only count or show, are left out.
struct PositionSnapshot {
  std::array<Piece, 64> board;
  std::array<Bitboard, TypeSlots> byType;
  std::array<Bitboard, 2> byColor;
  // Per colour and type, the sorted squares followed by NoSquare; at most 64 pieces stand.
  std::array<uint8_t, 64 + 2 * PieceTypeNb> lists;
  const StateInfo* st;
  std::array<unsigned char, sizeof(StateInfo)> state;
  int side, gamePly;
  Square siege1Captive;
  Bitboard siege1Tower, siege1Breached;
  std::array<Square, 2> siege2Captive;
  std::array<Bitboard, 2> siege2Tower, siege2Breached;
  std::array<bool, 2> alive, released;
  bool operator==(const PositionSnapshot&) const = default;
};
PositionSnapshot snapshotOf(const Position& pos);
// The first field in which two snapshots differ, or empty.
std::string snapshotDifference(const PositionSnapshot& before, const PositionSnapshot& after);

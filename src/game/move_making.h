// What do_move and undo_move share with their siege half in game/captives.cpp.
#pragma once

#include "core/psqt.h"
#include "game/position.h"

// The leader form a demotion must never be aimed at: Dorn_sword, the foot of the ladder, when
// Magicians demote Dorns, else Dorn. Fixed at start-up from the rules then in force; later rule
// changes do not move it.
extern PieceType leaderDemotionFloor;

// One move as do_move sees it before the board changes, and what the siege half did with it.
struct MoveInHand {
  Color us, them;
  Square from, to;
  Piece pc, cp;      // mover and the piece on `to`
  PieceType pt, ct;
  int kind;          // captive kind; the siege half may correct an unflagged carrier move
  int special;
  bool handover;     // the captive passes to a friendly piece and nothing moves
  bool onTower;      // `to` is a standing tower square
  bool moverDied = false;
  bool released = false;  // a new Dorn of releasedColor stands on `from` once the mover has left
  Color releasedColor = WHITE;
};

// Middle-game worth counted in npMaterial: none for Sword and Magician1.
inline Value nonMinorValue(PieceType t) { return isMinor(t) ? 0 : pieceValueMg[t]; }

// Towers and captives at step 6 of do_move. `k` holds the mover's keys unless it stays put.
void doSiegeWork(Position& pos, Move m, MoveInHand& mv, Key& k);
// A Dorn released by a drop-off stands on `from`: it must go before the mover returns there.
void takeBackReleasedDorn(Position& pos, Move m);
// The reversal of doSiegeWork, once the mover is back on `from` or known to be lost.
void undoSiegeWork(Position& pos, Move m, bool lost);

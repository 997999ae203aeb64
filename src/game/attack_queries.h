// What a piece attacks, the type tables of promotion, demotion and exchange, and the pin walk.
#pragma once

#include "game/attacks.h"
#include "game/position.h"

// What a piece of this code attacks from s. A Magician form attacks what it may demote (and
// standing tower squares) and, on empty squares, where it may step.
Bitboard attacksFrom(const Position& pos, Piece piece, Square s, Bitboard occ, bool towersInOcc = false);

// The `blockers` that stand on a way in to k: every one on the several ways of a walker, the one
// piece on a straight way (occupancy `occ`), every one between a runner and k.
Bitboard shieldsOnWaysIn(Square k, Bitboard walkers, Bitboard assassins, Bitboard blockers, Bitboard occ);

// Own pieces of `blocking` that stand on a way in from a mount or Assassin of `pinning` to k. With
// several ways in, every blocker on them is listed: an upper bound that `legal` settles.
Bitboard shieldsOf(const Position& pos, Square k, Color pinning, Color blocking);

// The pieces of the side to move that shield its own sole leader; empty with several leaders.
Bitboard pinnedPieces(const Position& pos);

// The side to move could take the enemy's sole leader. No game reaches such a position: the enemy's
// last move would have left its leader open.
bool canTakeEnemyLeader(const Position& pos);

// Whether three squares lie on one rank, file or diagonal.
bool aligned(Square a, Square b, Square c);

// Piece-type sets that the rules speak of.
inline Bitboard mountSquares(const Position& pos) {
  return pos.pieces(Warrior) | pos.pieces(Bondsman) | pos.pieces(Dorn);
}
inline Bitboard magicianSquares(const Position& pos) {
  return pos.pieces(Magician1) | pos.pieces(Magician) | pos.pieces(Magician2);
}
inline Bitboard swordFormSquares(const Position& pos) { return pos.pieces(Sword) | pos.pieces(Dorn_sword); }

// The base-zone arrival that promotes: the mover's type has a promotion there, and a Magician only
// onto an empty square.
bool isBasePromotion(Piece pc, Square to, Piece cp);
// The new type of a capture promotion, or 0.
PieceType capturePromotionType(PieceType mover, PieceType victim);

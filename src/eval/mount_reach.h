// Mounts' attack sets as the evaluation counts them: also the squares behind friends that could step aside.
#pragma once

#include "core/bitboard.h"
#include "game/attacks.h"
#include "game/position.h"

// The friends a mount looks through, for one side.
struct MountScreens {
  Bitboard ownMounts;  // Warriors, Bondsmen and Dorns
  Bitboard passers;    // Archers, and Swords while Swords capture mounts
  Bitboard runners;    // Archers and Assassins
  Bitboard screens;    // every occupied square but the own mounts

  MountScreens(const Position& pos, Color us)
      : ownMounts(pos.pieces(us, Warrior) | pos.pieces(us, Bondsman) | pos.pieces(us, Dorn)),
        passers(pos.pieces(us, Archer) | (swordsCaptureMounts ? pos.pieces(us, Sword) : 0)),
        runners(pos.pieces(us, Archer) | pos.pieces(us, Assassin)),
        screens(pos.pieces() & ~ownMounts) {}
};

// Each rule costs a line lookup only when a friend stands where it matters; the move generator
// knows nothing of these squares.

// A diagonal neighbour that is a mount or a passer opens the (2,2) squares behind the friends.
inline Bitboard diagonalScreenReach(Square s, const MountScreens& m) {
  if (!(reach[DiagonalOne][s] & (m.ownMounts | m.passers))) return 0;
  return bishopLines(s, m.screens & ~m.passers) & reach[DiagonalTwo][s];
}

// A mount or runner two squares away on a line opens the (3,0) squares behind the friends.
inline Bitboard orthogonalScreenReach(Square s, const MountScreens& m) {
  const Bitboard nearRunners = m.runners & reach[DistanceTwo][s];
  if (!(reach[AssassinSecond][s] & (m.ownMounts | nearRunners))) return 0;
  return rookLines(s, m.screens & ~nearRunners) & reach[BondsmanLong][s];
}

// A mount, or a passer, at (2,2) opens the (3,3) squares behind the own mounts.
inline Bitboard longDiagonalScreenReach(Square s, const MountScreens& m) {
  if (!(reach[DiagonalTwo][s] & (m.ownMounts | (m.passers & reach[DistanceTwo][s])))) return 0;
  return bishopLines(s, m.screens) & reach[DornDiagonalLong][s];
}

inline Bitboard warriorReach(const Position& pos, Square s, const MountScreens& m) {
  return warriorAttacks(pos, s, pos.pieces()) | diagonalScreenReach(s, m);
}

inline Bitboard bondsmanReach(const Position& pos, Square s, const MountScreens& m) {
  return bondsmanAttacks(pos, s, pos.pieces()) | diagonalScreenReach(s, m) | orthogonalScreenReach(s, m);
}

inline Bitboard dornReach(const Position& pos, Square s, const MountScreens& m) {
  return dornAttacks(pos, s, pos.pieces()) | diagonalScreenReach(s, m) | orthogonalScreenReach(s, m) |
         longDiagonalScreenReach(s, m);
}

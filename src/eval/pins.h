// Pin bonus: a piece that holds enemy pieces in front of an enemy leader.
#pragma once

#include "core/types.h"

class Position;

// The enemy leaders a side's pieces pin against, found once per side.
struct PinTargets {
  Color them;
  Square leader;        // NoSquare when Them has none
  Square secondLeader;  // a further leading Bondsman, or NoSquare
  Value leaderValue;    // a dearer pinner than this does not count against `leader`
  bool soleLeader;

  PinTargets(const Position& pos, Color us);
};

// The bonus of a pinner of type t on s, against both targets; t is Assassin, Warrior, Bondsman or Dorn.
Score pinBonus(const Position& pos, PieceType t, Square s, const PinTargets& targets);

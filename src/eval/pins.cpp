// Pin bonus: a piece that holds enemy pieces in front of an enemy leader.
#include "eval/pins.h"

#include <climits>

#include "core/bitboard.h"
#include "core/psqt.h"
#include "eval/threats.h"
#include "game/position.h"
#include "game/rules.h"

namespace {

// With several leaders, the Bondsman that is not `leader`: the only one, or the lower of two.
Square findSecondLeader(const Position& pos, Color c, Square leader) {
  if (!bondsmenLeaders || pos.soleLeader(c)) return NoSquare;
  Bitboard bondsmen = pos.pieces(c, Bondsman);
  switch (pos.count(c, Bondsman)) {
    case 1:
      return lowestSquare(bondsmen);
    case 2:
      bondsmen &= ~squareBit[leader];
      return lowestSquare(bondsmen);
    default:
      return NoSquare;
  }
}

Score pinAgainst(const Position& pos, PieceType t, Square s, Square target, const PinTargets& targets) {
  if (!(pseudoAttacks[t][target] & squareBit[s])) return 0;

  // The squares the pinner passes to reach the target, and how many of them a walker has.
  Bitboard path;
  int ways = 0;
  if (t == Assassin) {
    path = assassinVia[target][s];
  } else {
    path = warriorVia[target][s];
    ways = warriorViaCount[target][s];
    if (!path) {
      path = between[s][target];
      ways = -2;
    }
  }
  Bitboard pinned = path & pos.pieces(targets.them);
  if (!pinned) return 0;

  // A single way in must be held by one piece. Several ways in must all be held, unless the
  // target is the only leader, whom any piece in the way shields.
  const int blockers = popcount(path & pos.pieces());
  if (t == Assassin || ways < 1) {
    if (blockers != 1) return 0;
  } else if (!targets.soleLeader && !(blockers > 1 && blockers == ways)) {
    return 0;
  }

  Score bonus = 0;
  while (pinned) bonus += ThreatBonus[t][typeOf(pos.pieceOn(popLowest(pinned)))];
  return bonus;
}

}  // namespace

PinTargets::PinTargets(const Position& pos, Color us)
    : them(~us),
      leader(pos.leaderSquare(them)),
      secondLeader(findSecondLeader(pos, them, leader)),
      leaderValue(pos.severalLeaders(them) ? pieceValueMg[pos.dornType(them)] : INT_MAX),
      soleLeader(pos.soleLeader(them)) {}

Score pinBonus(const Position& pos, PieceType t, Square s, const PinTargets& targets) {
  Score bonus = 0;
  // A pin by a dearer piece against a cheaper leader, one of several, does not count.
  if (targets.leader != NoSquare && pieceValueMg[t] <= targets.leaderValue)
    bonus += pinAgainst(pos, t, s, targets.leader, targets);
  if (targets.secondLeader != NoSquare) bonus += pinAgainst(pos, t, s, targets.secondLeader, targets);
  return bonus;
}

// Quiet moves that give check, directly or by uncovering an own piece, and in the siege games the
// own carrier's steps towards its goal.
#include "movegen/move_sets.h"

using namespace movegen;

namespace {

// Siege 1: the own pieces in the way of an own walker, runner, line piece or Magician2 to a goal
// square. With several ways in, all own pieces on them count.
Bitboard siege1Revealers(const Position& pos, Color us) {
  Bitboard own = pos.pieces(us), found = 0;
  for (Bitboard goals = goalSquares[us]; goals;) {
    Square w = popLowest(goals);
    Bitboard walkers = own & ((pos.pieces(Warrior) & pseudoAttacks[Warrior][w]) |
                              (pos.pieces(Magician2) & pseudoAttacks[Magician2][w]) |
                              (pos.pieces(Bondsman) & pseudoAttacks[Bondsman][w]) |
                              (pos.pieces(Dorn) & pseudoAttacks[Dorn][w]));
    Bitboard assassins = own & pos.pieces(Assassin) & pseudoAttacks[Assassin][w];
    found |= shieldsOnWaysIn(w, walkers, assassins, own, pos.pieces());
  }
  return found;
}

// Where a piece may step or move to, towers as the rules allow: a Magician form never steps onto
// one, the sole leader never walks onto one.
Bitboard movesOf(const Position& pos, const Sides& s, Square from) {
  PieceType pt = typeOf(pos.pieceOn(from));
  if (isMagicianForm(pt)) return stepsOf(pos, pt, from, s.occT) & ~s.towers;
  Bitboard a = reachOf(pos, pt, from, s.occT);
  return towerBarred(pos, from) ? a & ~s.towers : a;
}

}  // namespace

SiegeThreatInfo::SiegeThreatInfo(const Position& pos) {
  Color us = pos.side();
  Bitboard own = pos.pieces(us);
  if (siege2) {
    // Only the own captive is brought home; its carrier heads for the drop-off squares.
    Square c = pos.siege2CaptiveSquare[us];
    if (c == NoSquare || !(own & bit(c))) return;
    carrier = c;
    active = true;
    threatSquares[typeOf(pos.pieceOn(c))] = goalSquares[us];
    return;
  }
  Square c = pos.siege1CaptiveSquare;
  if (!siege1 || c == NoSquare || !(own & bit(c))) return;
  carrier = c;
  Piece pc = pos.pieceOn(c);
  PieceType t = typeOf(pc);
  Bitboard occT = pos.pieces() | pos.standingTowers();
  for (Bitboard goals = goalSquares[us]; goals;) {
    Square w = popLowest(goals);
    bool enemyOnGoal = pos.pieces(~us) & bit(w);
    // The squares from which the carrier itself would reach w.
    if (!(isMagicianForm(t) && enemyOnGoal) && (pseudoAttacks[t][w] & pseudoAttacks[t][c]))
      threatSquares[t] |= attacksFrom(pos, pc, w, occT, true);
    if (!siegeExchanges) continue;
    // The neighbours that reach w and could take the captive over.
    for (Bitboard qs = own & reach[NeighbourRow][c]; qs;) {
      Square q = popLowest(qs);
      Piece qp = pos.pieceOn(q);
      if (isMagicianForm(typeOf(qp)) && enemyOnGoal) continue;
      if ((pseudoAttacks[typeOf(qp)][q] & bit(w)) && (attacksFrom(pos, qp, q, occT, true) & bit(w)))
        threatSquares[t] |= bit(q);
    }
    active = true;
  }
  revealers = siege1Revealers(pos, us);
}

ScoredMove* generateQuietChecks(const Position& pos, ScoredMove* list) {
  const Sides s(pos);
  // Several enemy leaders cannot be checked: only the carrier's threat moves remain.
  bool checks = pos.leaderSquare(s.them) != NoSquare && pos.soleLeader(s.them);
  if (!checks && !siegeGame()) return list;
  const CheckInfo ci(pos);
  const SiegeThreatInfo threat(pos);
  Square carrier = threat.active ? threat.carrier : NoSquare;

  // Whatever leaves the way of an own piece: every step to an empty square. A piece that only
  // shields a sole goal square keeps off it.
  Bitboard uncovering = 0;
  if (checks) {
    Bitboard revealOnly = siege1 && threat.active ? threat.revealers & ~ci.dcCandidates : 0;
    uncovering = ci.dcCandidates | revealOnly;
    for (Bitboard b = uncovering; b;) {
      Square from = popLowest(b);
      Bitboard to = movesOf(pos, s, from) & s.empty;
      if ((revealOnly & bit(from)) && goalSquareCount[s.us] == 1) to &= ~goalSquares[s.us];
      list = writeMoves(pos, from, to, list);
    }
  }

  // The carrier's squares within reach of its goal. Own pieces there take the captive over; a
  // Siege 2 captive out of play makes only empty squares count.
  Bitboard threatTo = ~s.enemy;
  if (siege2 && !siege2CaptiveInPlay(pos, s.us)) threatTo &= s.empty;
  if (!siegeExchanges) threatTo &= ~s.own;

  for (PieceType pt : {Sword, Assassin, Archer, Magician, Magician1, Magician2, Warrior, Bondsman}) {
    // Magician forms check only by demotion, which is no quiet move.
    Bitboard checkTo = checks ? ci.checkSquares[pt] & s.empty : 0;
    for (int i = 0; i < pos.count(s.us, pt); ++i) {
      Square from = pos.pieceList[s.us][pt][i];
      bool carries = from == carrier;
      if ((uncovering & bit(from)) || (!carries && !(pseudoAttacks[pt][from] & checkTo))) continue;
      Bitboard a = movesOf(pos, s, from);
      Bitboard b = a & checkTo;
      if (carries) b |= a & threat.threatSquares[pt] & threatTo;
      list = writeMoves(pos, from, b, list);
    }
  }

  // The Dorn form checks quietly only when the own side has leaders to spare; in Siege 1 it also
  // carries towards its goal.
  Square ksq = dornFormSquare(pos, s.us);
  if (!checks || ksq == NoSquare || (uncovering & bit(ksq))) return list;
  PieceType kt = typeOf(pos.pieceOn(ksq));
  Bitboard a = reachOf(pos, kt, ksq, s.occT);
  Bitboard v = towerBarred(pos, ksq) ? a & ~s.towers : a;
  Bitboard b = pos.severalLeaders(s.us) ? v & ci.checkSquares[kt] & s.empty : 0;
  if (siege1 && ksq == carrier) b |= a & threat.threatSquares[kt] & ~s.enemy & ~s.towers;
  return writeMoves(pos, ksq, b, list);
}

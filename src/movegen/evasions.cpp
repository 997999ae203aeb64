// Replies to check: leader moves off the squares the checkers close, captures of a checker, and
// the blocks that shut a checker's last open way in.
#include <iostream>

#include "movegen/move_sets.h"

using namespace movegen;

namespace {

// What the checkers tell about the ways out, from a survey in ascending square order.
struct CheckerSurvey {
  int contacts = 0;    // checkers that no block can stop: the steppers and Assassins next to the leader
  int assassins = 0;
  Square assassinSquare = NoSquare;
  Square otherSquare = NoSquare;  // the last checker that is not an Assassin
  Bitboard barred = 0;            // squares closed to the leader
};

CheckerSurvey surveyCheckers(const Position& pos, const Sides& s, Square ksq) {
  CheckerSurvey sv;
  Bitboard checkers = pos.checkers();
  int n = 0;
  for (Bitboard b = checkers; b;) {
    Square q = popLowest(b);
    if (++n == 8 && debug_PL_legal) {
      printBitboard("!generateEvasions(1), checkers >= 8\n", checkers);
      std::cout << pos.pretty(MoveNone, false, false);
    }
    Piece p = pos.pieceOn(q);
    if (p == NoPiece || colorOf(p) != s.them) {
      std::cout << "!generateEvasions(2), !checkersq or badcolor on checkersq=" << squareToString(q) << "\n";
      continue;
    }
    PieceType t = typeOf(p);
    bool contact = reach[NeighbourRow][ksq] & bit(q);
    if (t == Assassin) {
      ++sv.assassins;
      sv.contacts += contact;
      sv.assassinSquare = q;
      continue;
    }
    sv.otherSquare = q;
    if (!isMount(t)) {
      ++sv.contacts;
      continue;
    }
    // A walker next to the leader closes its whole reach, whatever stands in the way.
    if (contact) {
      sv.barred |= pseudoAttacks[t][q];
      continue;
    }
    sv.barred |= warriorAttacks(pos, q, s.occT, true);
    if (t == Warrior) continue;
    // The long reach closes the leader's squares that it sees over an empty path.
    for (Bitboard far = reach[t == Bondsman ? BondsmanLong : DornLong][q] & pseudoAttacks[Dorn][ksq]; far;) {
      Square x = popLowest(far);
      if (!(between[q][x] & s.occT)) sv.barred |= bit(x);
    }
  }
  return sv;
}

// The leader's own moves. No exchange arises in check; its siege squares come from its reach
// before the tower bar, whatever the checkers close.
ScoredMove* leaderMoves(const Position& pos, const Sides& s, Square ksq, Bitboard barred, ScoredMove* list) {
  PieceType kt = typeOf(pos.pieceOn(ksq));
  Bitboard target = typeTargets(kt, ~s.own & ~barred, s);
  Bitboard a = reachOf(pos, kt, ksq, s.occT);
  Bitboard v = towerBarred(pos, ksq) ? a & ~s.towers : a;
  if (kt == Dorn_archer || kt == Dorn_sword) list = leaderPromotions(pos, s, ksq, kt, v, target, true, ~barred, list);
  Bitboard extras = siegeGame() ? leaderEvasionExtras(pos, ksq, a) : 0;
  return writeMoves(pos, ksq, (v & target) | extras, list);
}

// The other pieces' moves onto T: captures of a checker and blocks. A piece that stands on the
// path P may not block on it, since its step frees the square it leaves.
class BlockWalk {
 public:
  BlockWalk(const Position& p, const Sides& sides, Bitboard t, Bitboard path, ScoredMove* l)
      : pos(p), s(sides), T(t), P(path), list(l) {}

  ScoredMove* run() {
    for (PieceType pt : {Sword, Assassin, Archer}) footPieces(pt);
    for (PieceType pt : {Magician, Magician1, Magician2}) magicians(pt);
    mounts(Warrior);
    // A leading Bondsman has moved with the leader.
    if (!(pos.dornType(s.us) == Bondsman && pos.soleLeader(s.us))) mounts(Bondsman);
    return list;
  }

 private:
  const Position& pos;
  const Sides& s;
  Bitboard T, P;
  ScoredMove* list;

  Bitboard offPath(Square from, Bitboard b) const { return P & bit(from) ? b & ~P : b; }

  void footPieces(PieceType pt) {
    Bitboard victims = promotionVictims(pos, pt, s);
    for (int i = 0; i < pos.count(s.us, pt); ++i) {
      Square from = pos.pieceList[s.us][pt][i];
      Bitboard b = offPath(from, reachOf(pos, pt, from, s.occT)) & typeTargets(pt, T, s);
      // No base promotion here: a block in the enemy base stays a plain word.
      if (capturePromotions) {
        list = writeWords<makePromotionMove>(pos, from, b & victims, list);
        b &= ~victims;
      }
      list = writeMoves(pos, from, b, list);
    }
  }

  void magicians(PieceType pt) {
    for (int i = 0; i < pos.count(s.us, pt); ++i) {
      Square from = pos.pieceList[s.us][pt][i];
      Bitboard a = offPath(from, reachOf(pos, pt, from, s.occT));
      Bitboard m = offPath(from, stepsOf(pos, pt, from, s.occT));
      list = writeWords<makeDemotionMove>(pos, from, a & T & s.demotable, list);
      list = writeMoves(pos, from, m & T & s.empty & ~s.towers, list);
    }
  }

  void mounts(PieceType pt) {
    for (int i = 0; i < pos.count(s.us, pt); ++i) {
      Square from = pos.pieceList[s.us][pt][i];
      Bitboard a = offPath(from, reachOf(pos, pt, from, s.occT));
      if (pt == Bondsman && towerBarred(pos, from)) a &= ~s.towers;
      list = writeMoves(pos, from, a & T, list);
    }
  }
};

}  // namespace

ScoredMove* generateEvasions(const Position& pos, ScoredMove* list) {
  const Sides s(pos);
  Square ksq = pos.leaderSquare(s.us);
  Bitboard checkers = pos.checkers();
  CheckerSurvey sv = surveyCheckers(pos, s, ksq);
  list = leaderMoves(pos, s, ksq, sv.barred, list);

  // Against two checkers a single move helps only by shutting the way of both.
  bool single = !(checkers & (checkers - 1));
  if (!single) {
    if (sv.contacts) return list;
    if (sv.assassinSquare != NoSquare && sv.barred &&
        !(sv.otherSquare != NoSquare && (reach[NeighbourRow][sv.otherSquare] & bit(sv.assassinSquare))))
      return list;
    if (sv.assassins > 1) return list;
  }

  if (single && sv.assassinSquare != NoSquare)
    return BlockWalk(pos, s, between[sv.assassinSquare][ksq] | checkers, 0, list).run();
  if (sv.otherSquare == NoSquare) return list;

  // A walker two squares away has up to three ways in: one block helps only on the last open one.
  Square q = sv.otherSquare;
  Bitboard path = warriorVia[ksq][q];
  Bitboard checker = single ? checkers : 0;
  Bitboard T = 0, P = 0;
  if (!path) {
    T = between[q][ksq] | checkers;
  } else {
    Bitboard open = path & ~s.occT;
    if ((path & s.occT) && (popcount(open) == 1 || warriorViaCount[ksq][q] == 2)) {
      T = open | checker;
      P = path;
    } else {
      T = checker;
    }
  }
  return BlockWalk(pos, s, T, P, list).run();
}

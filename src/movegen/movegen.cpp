// The generators: every piece's procedure in the fixed piece order, for captures, quiets and
// non-evasions, and the legal list on top of them.
#include "movegen/movegen.h"

#include "movegen/move_sets.h"

namespace movegen {

Sides::Sides(const Position& pos) : us(pos.side()), them(~us) {
  own = pos.pieces(us);
  enemy = pos.pieces(them);
  occ = pos.pieces();
  towers = pos.standingTowers();
  occT = occ | towers;
  empty = ~occ;
  enemyMounts = enemy & mountSquares(pos);
  Bitboard spared = swordFormSquares(pos) | pos.pieces(Magician1);
  if (!magicianDemotesDorn) spared |= pos.pieces(Dorn) | pos.pieces(Dorn_archer);
  demotable = (enemy & ~spared) | towers;
}

Bitboard promotionVictims(const Position& pos, PieceType pt, const Sides& s) {
  if (pt != Sword && pt != Dorn_sword) return s.enemyMounts;
  return (s.enemy & pos.pieces(Archer)) | (swordsCaptureMounts ? s.enemyMounts : 0);
}

ScoredMove* leaderPromotions(const Position& pos, const Sides& s, Square from, PieceType pt, Bitboard& v,
                             Bitboard target, bool base, Bitboard allowed, ScoredMove* list) {
  if (base && basePromotions) {
    Bitboard p = v & promotionZone[s.us] & ~s.own & allowed;
    // A Dorn_sword may not take a mount at all. A Dorn_archer that takes one in the base is
    // promoted in every game type, as the squares of the move classify it, so that a game text
    // replays the move that was played.
    if (!swordsCaptureMounts && pt == Dorn_sword) p &= ~s.enemyMounts;
    v &= ~p;
    list = writeWords<makePromotionMove>(pos, from, p, list);
  }
  if (capturePromotions) {
    Bitboard c = promotionVictims(pos, pt, s) & v & target;
    v &= ~c;
    list = writeWords<makePromotionMove>(pos, from, c, list);
  }
  return list;
}

}  // namespace movegen

namespace {

using namespace movegen;

enum GenType { Captures, Quiets, NonEvasions };

template <GenType Kind>
class Generator {
 public:
  Generator(const Position& p, ScoredMove* l) : pos(p), list(l), s(p) {
    target = Kind == Captures ? s.enemy : Kind == Quiets ? ~s.occ : ~s.own;
  }

  ScoredMove* run() {
    footPieces(Sword);
    footPieces(Assassin);
    footPieces(Archer);
    magicians(Magician);
    magicians(Magician1);
    magicians(Magician2);
    mounts(Warrior);
    mounts(Bondsman);
    leader();  // a leading Bondsman has had its turn with the Bondsmen
    return list;
  }

 private:
  const Position& pos;
  ScoredMove* list;
  const Sides s;
  Bitboard target;

  CaptiveTargets captiveSets(Square from, Bitboard reachSet) const {
    if (siegeGame()) return captiveTargets(pos, from, reachSet);
    CaptiveTargets none;
    none.breachColor = s.us;
    return none;
  }

  // The working set b of a non-Magician piece.
  Bitboard working(Bitboard a, Bitboard tgt, const CaptiveTargets& cs) const {
    if constexpr (Kind == Captures) return (a & tgt) | cs.captiveExtras;
    if constexpr (Kind == Quiets)
      return cs.dropoffOnly ? 0 : ((a & tgt) & ~cs.captiveExtras) | cs.siegeExchangeTargets;
    return (a & tgt) | cs.siegeExchangeTargets;
  }

  // ---- Sword, Assassin, Archer
  void footPieces(PieceType pt) {
    Bitboard tgt = typeTargets(pt, target, s);
    Bitboard victims = promotionVictims(pos, pt, s);
    for (int i = 0; i < pos.count(s.us, pt); ++i) {
      Square from = pos.pieceList[s.us][pt][i];
      Bitboard a = reachOf(pos, pt, from, s.occT);
      Bitboard b = working(a, tgt, captiveSets(from, a));
      if (Kind != Quiets && basePromotions) {
        // Every arrival in the enemy base promotes, quiet or not; hence these belong to captures.
        Bitboard p = a & promotionZone[s.us] & ~s.own;
        if (pt == Sword && !swordsCaptureMounts) p &= ~mountSquares(pos);
        b &= ~p;
        list = writeWords<makePromotionMove>(pos, from, p, list);
      }
      if (capturePromotions) {
        Bitboard c = b & victims;
        b &= ~c;
        list = writeWords<makePromotionMove>(pos, from, c, list);
      }
      list = writeMoves(pos, from, b, list);
    }
  }

  // ---- Magician forms: demote on the reach A, step quietly on M
  void magicians(PieceType pt) {
    for (int i = 0; i < pos.count(s.us, pt); ++i) {
      Square from = pos.pieceList[s.us][pt][i];
      Bitboard a = reachOf(pos, pt, from, s.occT);
      Bitboard m = stepsOf(pos, pt, from, s.occT);
      CaptiveTargets cs = captiveSets(from, m);
      Bitboard partners = pt == Magician && exchanges ? magicianPartners(from) : 0;
      Bitboard handovers = cs.siegeExchangeTargets & ~partners;

      // A Magician promotes only by a quiet step into the base; the plain step there is no move.
      Bitboard p = 0;
      if (pt == Magician && Kind != Quiets && basePromotions && (m & promotionZone[s.us]))
        p = a & promotionZone[s.us] & ~s.own & s.empty & m;
      list = writeWords<makePromotionMove>(pos, from, p, list);

      Bitboard d = a & target & s.demotable & ~p;
      if (Kind == Quiets && cs.dropoffOnly) d = 0;
      list = writeWords<makeDemotionMove>(pos, from, d, list);

      Bitboard q = magicianSteps(m & s.empty, cs, handovers) & ~p;
      if (Kind != Quiets && partners) {
        q &= ~partners;
        list = writeWords<makeExchangeMove>(pos, from, partners, list);
      }
      list = writeMoves(pos, from, q, list);
    }
  }

  // The own Warriors, and Bondsmen and Dorn where they are not the sole leader, beside a Magician.
  Bitboard magicianPartners(Square from) const {
    int bondsmen = pos.count(s.us, Bondsman);
    bool bondsmanLeads = bondsmenLeaders && pos.noDorn(s.us) && bondsmen == 1;
    Bitboard types = pos.pieces(Warrior);
    if (!bondsmanLeads) {
      types |= pos.pieces(Bondsman);
      if (bondsmen && bondsmenLeaders) types |= pos.pieces(Dorn);
    }
    return s.own & types & reach[NeighbourRow][from];
  }

  // The quiet steps Q of a Magician form, by list kind and game mode; `me` is M on empty squares.
  Bitboard magicianSteps(Bitboard me, const CaptiveTargets& cs, Bitboard handovers) const {
    if (!siegeGame()) return Kind == Captures ? 0 : me;
    Bitboard breached = siege1 ? pos.siege1Breached : pos.siege2Breached[cs.breachColor];
    if constexpr (Kind == Captures) return (breached & me) | cs.captiveExtras;
    if constexpr (Kind == Quiets) {
      Bitboard q = (me | handovers) & ~s.towers & ~(breached & s.empty);
      return siege1 ? q & ~goalSquares[s.us] : q;
    }
    Bitboard q = (me | handovers) & ~s.towers;
    return siege1 ? q | cs.captiveExtras : q;
  }

  // ---- Warrior and Bondsman
  void mounts(PieceType pt) {
    for (int i = 0; i < pos.count(s.us, pt); ++i) {
      Square from = pos.pieceList[s.us][pt][i];
      // The range-3 lookup is skipped when it could add nothing to this list.
      Bitboard a = reachOf(pos, pt, from, s.occT, siegeGame() ? ~0ULL : target);
      if (pt == Bondsman && towerBarred(pos, from)) a &= ~s.towers;
      list = writeMoves(pos, from, working(a, target, captiveSets(from, a)), list);
    }
  }

  // ---- the Dorn form
  void leader() {
    Square from = dornFormSquare(pos, s.us);
    if (from == NoSquare) return;
    PieceType pt = typeOf(pos.pieceOn(from));
    Bitboard tgt = typeTargets(pt, target, s);
    Bitboard a = reachOf(pos, pt, from, s.occT, siegeGame() ? ~0ULL : tgt);
    Bitboard v = towerBarred(pos, from) ? a & ~s.towers : a;
    CaptiveTargets cs = captiveSets(from, a);

    if (pt != Dorn) {
      if (Kind != Quiets && exchanges && !pos.inCheck())
        list = writeWords<makeExchangeMove>(
            pos, from,
            s.own & reach[NeighbourRow][from] &
                (pt == Dorn_archer ? pos.pieces(Warrior) | pos.pieces(Bondsman) : pos.pieces(Archer)),
            list);
      list = leaderPromotions(pos, s, from, pt, v, tgt, Kind != Quiets, ~0ULL, list);
    }
    list = writeMoves(pos, from, working(v, tgt, cs), list);
  }
};

}  // namespace

ScoredMove* generateCaptures(const Position& pos, ScoredMove* list) {
  return Generator<Captures>(pos, list).run();
}

ScoredMove* generateQuiets(const Position& pos, ScoredMove* list) { return Generator<Quiets>(pos, list).run(); }

ScoredMove* generateNonEvasions(const Position& pos, ScoredMove* list) {
  return Generator<NonEvasions>(pos, list).run();
}

ScoredMove* generateLegal(const Position& pos, ScoredMove* list) {
  if (pos.leaderSquare(WHITE) == NoSquare || pos.leaderSquare(BLACK) == NoSquare) return list;
  // A carrier on a win square has ended a Siege 1 game.
  Square captive = pos.siege1CaptiveSquare;
  if (siege1 && captive != NoSquare && !pos.empty(captive) &&
      ((goalSquares[WHITE] | goalSquares[BLACK]) & bit(captive)))
    return list;

  Bitboard pinned = pinnedPieces(pos);
  ScoredMove* end = pos.inCheck() ? generateEvasions(pos, list) : generateNonEvasions(pos, list);
  // A refused entry takes the last one's place and the walk stays on it, so the order changes.
  for (ScoredMove* cur = list; cur != end;)
    if (pos.legal(cur->move, pinned)) ++cur;
    else *cur = *--end;
  return end;
}

int legalMoveCount(const Position& pos) {
  ScoredMove list[MaxMoves];
  return int(generateLegal(pos, list) - list);
}

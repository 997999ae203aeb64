// The generators: every piece's procedure in the fixed piece order, for captures, quiets and
// non-evasions, and the legal list on top of them.
#include "movegen/movegen.h"

#include "game/attack_queries.h"

namespace {

enum GenType { Captures, Quiets, NonEvasions };

constexpr Bitboard bit(Square s) { return Bitboard(1) << s; }

template <GenType Kind>
class Generator {
 public:
  Generator(const Position& p, ScoredMove* l) : pos(p), list(l), us(p.side()), them(~us) {
    own = pos.pieces(us);
    enemy = pos.pieces(them);
    occ = pos.pieces();
    towers = pos.standingTowers();
    occT = occ | towers;
    empty = ~occ;
    enemyMounts = enemy & mountSquares(pos);
    target = Kind == Captures ? enemy : Kind == Quiets ? ~occ : ~own;
    Bitboard noDemotion = swordFormSquares(pos) | pos.pieces(Magician1);
    if (!magicianDemotesDorn) noDemotion |= pos.pieces(Dorn) | pos.pieces(Dorn_archer);
    demotable = (enemy & ~noDemotion) | towers;
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
  Color us, them;
  Bitboard own, enemy, occ, towers, occT, empty, enemyMounts, target, demotable;

  // The Sword forms may not take mounts unless the rule allows it.
  Bitboard targetOf(PieceType pt) const {
    bool swordForm = pt == Sword || pt == Dorn_sword;
    return swordForm && !swordsCaptureMounts ? target & ~enemyMounts : target;
  }

  CaptiveTargets captiveSets(Square from, Bitboard reachSet) const {
    if (siegeGame()) return captiveTargets(pos, from, reachSet);
    CaptiveTargets none;
    none.breachColor = us;
    return none;
  }

  // The working set b of a non-Magician piece.
  Bitboard working(Bitboard a, Bitboard tgt, const CaptiveTargets& cs) const {
    if constexpr (Kind == Captures) return (a & tgt) | cs.extras;
    if constexpr (Kind == Quiets) return cs.dropoffOnly ? 0 : ((a & tgt) & ~cs.extras) | cs.handovers;
    return (a & tgt) | cs.handovers;
  }

  // ---- writers
  void emit(Square from, Bitboard b) {
    if (siege1) list = addMovesSiege1(pos, from, b, list);
    else if (siege2) list = addMovesSiege2(pos, from, b, list);
    else while (b) (list++)->move = makeMove(from, popLowest(b));
  }
  void emitPromotions(Square from, Bitboard b) {
    while (b) (list++)->move = makePromotionMove(pos, from, popLowest(b));
  }
  void emitDemotions(Square from, Bitboard b) {
    while (b) (list++)->move = makeDemotionMove(pos, from, popLowest(b));
  }
  void emitExchanges(Square from, Bitboard b) {
    while (b) (list++)->move = makeExchangeMove(pos, from, popLowest(b));
  }

  // ---- Sword, Assassin, Archer
  void footPieces(PieceType pt) {
    Bitboard tgt = targetOf(pt);
    Bitboard victims = pt == Sword ? enemy & pos.pieces(Archer) : enemyMounts;
    if (pt == Sword && swordsCaptureMounts) victims |= enemyMounts;
    for (int i = 0; i < pos.count(us, pt); ++i) {
      Square from = pos.pieceList[us][pt][i];
      Bitboard a = pt == Assassin ? assassinAttacks(pos, from, occT, true) : reach[makePiece(us, pt)][from];
      Bitboard b = working(a, tgt, captiveSets(from, a));
      if (Kind != Quiets && basePromotions) {
        // Every arrival in the enemy base promotes, quiet or not; hence these belong to captures.
        Bitboard p = a & promotionZone[us] & ~own;
        if (pt == Sword && !swordsCaptureMounts) p &= ~mountSquares(pos);
        b &= ~p;
        emitPromotions(from, p);
      }
      if (capturePromotions) {
        Bitboard c = b & victims;
        b &= ~c;
        emitPromotions(from, c);
      }
      emit(from, b);
    }
  }

  // ---- Magician forms: demote on the reach A, step quietly on M
  void magicians(PieceType pt) {
    for (int i = 0; i < pos.count(us, pt); ++i) {
      Square from = pos.pieceList[us][pt][i];
      Bitboard a = reach[makePiece(us, pt)][from];
      Bitboard m = pt == Magician2 ? warriorAttacks(pos, from, occT, true) : reach[MagicianStep][from];
      CaptiveTargets cs = captiveSets(from, m);
      Bitboard partners = pt == Magician && exchanges ? magicianPartners(from) : 0;
      Bitboard handovers = cs.handovers & ~partners;

      // A Magician promotes only by a quiet step into the base.
      Bitboard p = 0;
      if (pt == Magician && Kind != Quiets && basePromotions && (m & promotionZone[us]))
        p = a & promotionZone[us] & ~own & empty & m;
      emitPromotions(from, p);

      Bitboard d = a & target & demotable & ~p;
      if (Kind == Quiets && cs.dropoffOnly) d = 0;
      emitDemotions(from, d);

      Bitboard q = magicianSteps(m & empty, cs, handovers) & ~p;
      if (Kind != Quiets && partners) {
        q &= ~partners;
        emitExchanges(from, partners);
      }
      emit(from, q);
    }
  }

  // The own Warriors, and Bondsmen and Dorn where they are not the sole leader, beside a Magician.
  Bitboard magicianPartners(Square from) const {
    int bondsmen = pos.count(us, Bondsman);
    bool bondsmanLeads = bondsmenLeaders && pos.noDorn(us) && bondsmen == 1;
    Bitboard types = pos.pieces(Warrior);
    if (!bondsmanLeads) {
      types |= pos.pieces(Bondsman);
      if (bondsmen && bondsmenLeaders) types |= pos.pieces(Dorn);
    }
    return own & types & reach[NeighbourRow][from];
  }

  // The quiet steps Q of a Magician form, by list kind and game mode; `me` is M on empty squares.
  Bitboard magicianSteps(Bitboard me, const CaptiveTargets& cs, Bitboard handovers) const {
    if (!siegeGame()) return Kind == Captures ? 0 : me;
    Bitboard breached = siege1 ? pos.siege1Breached : pos.siege2Breached[cs.breachColor];
    if constexpr (Kind == Captures) return (breached & me) | cs.extras;
    if constexpr (Kind == Quiets) {
      Bitboard q = (me | handovers) & ~towers & ~(breached & empty);
      return siege1 ? q & ~goalSquares[us] : q;
    }
    Bitboard q = (me | handovers) & ~towers;
    return siege1 ? q | cs.extras : q;
  }

  // ---- Warrior and Bondsman
  void mounts(PieceType pt) {
    for (int i = 0; i < pos.count(us, pt); ++i) {
      Square from = pos.pieceList[us][pt][i];
      Bitboard a;
      if (pt == Warrior) {
        a = warriorAttacks(pos, from, occT, true);
      } else {
        // The range-3 lookup is skipped when it could add nothing to this list.
        a = bondsmanAttacks(pos, from, occT, siegeGame() ? ~0ULL : target, true);
        if (towerBarred(pos, from)) a &= ~towers;
      }
      emit(from, working(a, target, captiveSets(from, a)));
    }
  }

  // ---- the Dorn form
  void leader() {
    Square from = NoSquare;
    for (PieceType t : {Dorn, Dorn_archer, Dorn_sword})
      if (pos.count(us, t)) {
        from = pos.pieceList[us][t][0];
        break;
      }
    if (from == NoSquare) return;
    Piece pc = pos.pieceOn(from);
    PieceType pt = typeOf(pc);
    Bitboard tgt = targetOf(pt);
    Bitboard a = pt == Dorn ? dornAttacks(pos, from, occT, siegeGame() ? ~0ULL : tgt, true) : reach[pc][from];
    Bitboard v = towerBarred(pos, from) ? a & ~towers : a;
    CaptiveTargets cs = captiveSets(from, a);

    if (pt != Dorn) {
      if (Kind != Quiets && exchanges && !pos.inCheck())
        emitExchanges(from, own & reach[NeighbourRow][from] &
                                (pt == Dorn_archer ? pos.pieces(Warrior) | pos.pieces(Bondsman) : pos.pieces(Archer)));
      if (Kind != Quiets && basePromotions) {
        // A Dorn_archer taking a mount in the base is promoted like any other arrival there.
        Bitboard p = v & promotionZone[us] & ~own;
        if (pt == Dorn_sword && !swordsCaptureMounts) p &= ~enemyMounts;
        v &= ~p;
        emitPromotions(from, p);
      }
      if (capturePromotions) {
        Bitboard victims = pt == Dorn_archer ? enemyMounts : enemy & pos.pieces(Archer);
        if (pt == Dorn_sword && swordsCaptureMounts) victims |= enemyMounts;
        Bitboard c = victims & v & tgt;
        v &= ~c;
        emitPromotions(from, c);
      }
    }
    emit(from, working(v, tgt, cs));
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
  if (siege1 && captive != NoSquare && !pos.empty(captive) && ((goalSquares[WHITE] | goalSquares[BLACK]) & bit(captive)))
    return list;

  Bitboard pinned = pinnedPieces(pos);
  ScoredMove* end;
  if (pos.inCheck()) {
    // TODO(evasions): replace by generateEvasions once it lands. Until then the non-evasions
    // are cut down to the replies by the pseudo-legality test, which knows about check.
    end = generateNonEvasions(pos, list);
    for (ScoredMove* cur = list; cur != end;)
      if (pos.pseudo_legal(cur->move)) ++cur;
      else *cur = *--end;
  } else {
    end = generateNonEvasions(pos, list);
  }
  // The walk stays on a removed entry, which now holds the last one.
  for (ScoredMove* cur = list; cur != end;)
    if (pos.legal(cur->move, pinned)) ++cur;
    else *cur = *--end;
  return end;
}

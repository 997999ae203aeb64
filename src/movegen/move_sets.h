// What the generators share: the piece sets of the side to move, each type's reach and steps, the
// move writer of the game mode, and the promotion rules that every list kind applies alike.
#pragma once

#include "game/attack_queries.h"
#include "movegen/movegen.h"

namespace movegen {

constexpr Bitboard bit(Square s) { return Bitboard(1) << s; }

// The sets every generator starts from, for the side to move.
struct Sides {
  explicit Sides(const Position& pos);
  Color us, them;
  Bitboard own, enemy, occ;
  Bitboard towers;  // standing tower squares
  Bitboard occT;    // pieces and standing towers: what blocks walkers, runners and lines
  Bitboard empty;   // no piece; standing tower squares count as empty here
  Bitboard enemyMounts;
  Bitboard demotable;  // what a Magician form may aim at: demotable enemies and standing towers
};

// The reach A of a piece type: where it moves and captures, or where a Magician form demotes. A
// Bondsman or Dorn looks up its range-3 lines only when `lines` meets them.
inline Bitboard reachOf(const Position& pos, PieceType pt, Square from, Bitboard occT, Bitboard lines = ~0ULL) {
  switch (pt) {
    case Assassin: return assassinAttacks(pos, from, occT, true);
    case Warrior: return warriorAttacks(pos, from, occT, true);
    case Bondsman: return bondsmanAttacks(pos, from, occT, lines, true);
    case Dorn: return dornAttacks(pos, from, occT, lines, true);
    default: return reach[pt][from];  // white and black rows are equal
  }
}

// The step set M of a Magician form, occupied squares included.
inline Bitboard stepsOf(const Position& pos, PieceType pt, Square from, Bitboard occT) {
  return pt == Magician2 ? warriorAttacks(pos, from, occT, true) : reach[MagicianStep][from];
}

// The square of c's Dorn form, NoSquare without one; a leading Bondsman moves with the Bondsmen.
inline Square dornFormSquare(const Position& pos, Color c) {
  for (PieceType t : {Dorn, Dorn_archer, Dorn_sword})
    if (pos.count(c, t)) return pos.pieceList[c][t][0];
  return NoSquare;
}

// The Sword forms take no mounts unless the rule allows it.
inline Bitboard typeTargets(PieceType pt, Bitboard target, const Sides& s) {
  return (pt == Sword || pt == Dorn_sword) && !swordsCaptureMounts ? target & ~s.enemyMounts : target;
}

// The enemies whose capture promotes a mover of this type.
Bitboard promotionVictims(const Position& pos, PieceType pt, const Sides& s);

// The move writer of the game mode: one word per square, lowest first.
inline ScoredMove* writeMoves(const Position& pos, Square from, Bitboard b, ScoredMove* list) {
  if (siege1) return addMovesSiege1(pos, from, b, list);
  if (siege2) return addMovesSiege2(pos, from, b, list);
  while (b) (list++)->move = makeMove(from, popLowest(b));
  return list;
}

// One word of a special kind per square, lowest first.
template <Move (*Make)(const Position&, Square, Square)>
ScoredMove* writeWords(const Position& pos, Square from, Bitboard b, ScoredMove* list) {
  while (b) (list++)->move = Make(pos, from, popLowest(b));
  return list;
}

// The Dorn_archer's and Dorn_sword's promotions, base ones first (when `base`, onto `allowed`
// squares only), then by capture on `target`. Both are taken out of v.
ScoredMove* leaderPromotions(const Position& pos, const Sides& s, Square from, PieceType pt, Bitboard& v,
                             Bitboard target, bool base, Bitboard allowed, ScoredMove* list);

}  // namespace movegen

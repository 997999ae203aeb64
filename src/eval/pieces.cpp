// Evaluation of one side's pieces: attack sets, mobility, threat penalties, outposts and pins.
#include "eval/pieces.h"

#include <iostream>

#include "core/bitboard.h"
#include "eval/mount_reach.h"
#include "eval/piece_tables.h"
#include "eval/pins.h"
#include "game/attacks.h"
#include "game/position.h"
#include "game/rules.h"

namespace {

using namespace piece_tables;

// What every piece of one side is measured against, worked out once per pass.
struct SideSets {
  Color us;
  Color them;
  Bitboard mobilityArea;  // neither own pieces, nor a standing Siege 1 tower, nor enemy Sword attacks
  Bitboard mountArea;     // as mobilityArea, but a Sword keeps a mount away only where it can take it
  MountScreens screens;
  PinTargets pins;

  SideSets(const Position& pos, const EvalInfo& ei, Color side)
      : us(side), them(~side), screens(pos, side), pins(pos, side) {
    mountArea = ~pos.pieces(us) & ~(siege1 ? pos.siege1Tower : 0);
    mobilityArea = mountArea & ~ei.attackedBy[them][Sword];
    if (swordsCaptureMounts) mountArea = mobilityArea;
  }
};

constexpr bool hasMobility(PieceType t) { return t <= Bondsman; }
constexpr bool hasPin(PieceType t) { return t == Assassin || isMount(t); }
constexpr bool hasOutpost(PieceType t) { return t >= Magician1 && t <= Magician2; }

template <PieceType T>
Bitboard attackSet(const Position& pos, Square s, const SideSets& side) {
  if constexpr (T == Assassin) return assassinAttacks(pos, s, pos.pieces());
  if constexpr (T == Warrior) return warriorReach(pos, s, side.screens);
  if constexpr (T == Bondsman) return bondsmanReach(pos, s, side.screens);
  if constexpr (T == Dorn) return dornReach(pos, s, side.screens);
  if constexpr (T == Dorn_archer) return reach[Archer][s];
  if constexpr (T == Dorn_sword) return reach[Sword][s];
  // The leaps ignore what stands between; the Magicians' rows follow the demotion rules in force.
  return reach[T][s];
}

// Standing where a cheap enemy piece attacks: a Sword first, if it can take the piece, else a Magician1.
template <PieceType T>
Score threatPenalty(const EvalInfo& ei, Color them, Square s) {
  const Bitboard square = squareBit[s];
  if ((ei.attackedBy[them][Sword] & square) && (!isMount(T) || swordsCaptureMounts))
    return SwordThreatPenalty[swordsCaptureMounts ? 1 : 0][T];
  if (T != Magician1 && (ei.attackedBy[them][Magician1] & square)) return Magician1ThreatPenalty[T];
  return 0;
}

// A forward square that no enemy runner, Sword or Magician1 next door can chase the piece from.
template <PieceType T>
Score outpostBonus(const Position& pos, const EvalInfo& ei, Color us, Square s) {
  int bonus = OutpostBonus[T][us == WHITE ? s : flipRank(s)];
  if (!bonus) return 0;

  const Color them = ~us;
  Bitboard chasers = (reach[Archer][s] & pos.pieces(them, Archer)) | (reach[Assassin][s] & pos.pieces(them, Assassin)) |
                     (reach[Magician1][s] & pos.pieces(them, Magician1));
  if (T != Warrior || swordsCaptureMounts) chasers |= reach[Sword][s] & pos.pieces(them, Sword);
  if (chasers) return 0;

  // Support counts as the sets stand now: types later in the pass have not filled theirs yet.
  const Bitboard square = squareBit[s];
  const bool supported =
      square & (ei.attackedBy[us][Archer] | ei.attackedBy[us][Assassin] | ei.attackedBy[us][Magician1]);
  const bool swordSupported = square & ei.attackedBy[us][Sword];
  if (!supported && swordSupported) bonus = bonus * 3 / 4;
  // Worth more still when the enemy has no piece of the kind left to contest the square.
  if (supported || swordSupported) bonus = pos.count(them, T) ? bonus + bonus / 2 : 2 * bonus + bonus / 2;
  return makeScore(bonus, bonus / 2);
}

// Fills the side's attack set of type T and its mobility; returns the type's other terms.
template <PieceType T>
Score evaluateType(const Position& pos, EvalInfo& ei, const SideSets& side) {
  const Color us = side.us;
  Bitboard& attacked = ei.attackedBy[us][T];
  attacked = 0;
  Score score = 0;
  for (int i = 0; i < pos.count(us, T); ++i) {
    const Square s = pos.pieceList[us][T][i];
    const Bitboard attacks = attackSet<T>(pos, s, side);
    attacked |= attacks;
    if constexpr (hasMobility(T)) {
      // A leading Bondsman is kept home, so its freedom to roam is worth nothing.
      if (T != Bondsman || !bondsmenLeaders)
        ei.mobility[us] += MobilityBonus[T][popcount(attacks & (isMount(T) ? side.mountArea : side.mobilityArea))];
    }
    if constexpr (hasPin(T)) score += pinBonus(pos, T, s, side.pins);
    if constexpr (T != Sword) score -= threatPenalty<T>(ei, side.them, s);
    if constexpr (hasOutpost(T)) score += outpostBonus<T>(pos, ei, us, s);
  }
  return score;
}

}  // namespace

Score evaluatePieces(const Position& pos, EvalInfo& ei, Color us, Score* typeTerms) {
  const SideSets side(pos, ei, us);
  ei.mobility[us] = 0;

  Score total = 0;
  auto add = [&](PieceType t, Score terms) {
    total += terms;
    if (typeTerms) typeTerms[t] = terms;
  };
  add(Sword, evaluateType<Sword>(pos, ei, side));
  add(Magician1, evaluateType<Magician1>(pos, ei, side));
  add(Assassin, evaluateType<Assassin>(pos, ei, side));
  add(Archer, evaluateType<Archer>(pos, ei, side));
  add(Magician, evaluateType<Magician>(pos, ei, side));
  add(Warrior, evaluateType<Warrior>(pos, ei, side));
  add(Magician2, evaluateType<Magician2>(pos, ei, side));
  add(Bondsman, evaluateType<Bondsman>(pos, ei, side));

  // The leader's own form; a leading Bondsman was done with the others.
  const PieceType leaderType = pos.dornType(us);
  switch (leaderType) {
    case Bondsman:
      break;
    case Dorn:
      add(Dorn, evaluateType<Dorn>(pos, ei, side));
      break;
    case Dorn_archer:
      add(Dorn_archer, evaluateType<Dorn_archer>(pos, ei, side));
      break;
    case Dorn_sword:
      add(Dorn_sword, evaluateType<Dorn_sword>(pos, ei, side));
      break;
    default:
      std::cout << "eval:?dornType=" << int(leaderType) << std::endl;
      break;
  }

  const Bitboard* attacked = ei.attackedBy[us];
  const Bitboard leaderAttacks = leaderType >= Bondsman && leaderType <= Dorn_sword ? attacked[leaderType] : 0;
  ei.attackedByNoSwords[us] =
      leaderAttacks | attacked[Bondsman] | attacked[Warrior] | attacked[Magician] | attacked[Magician1];
  ei.attackedBy[us][ALL] = ei.attackedByNoSwords[us] | attacked[Sword];
  return total;
}

// Threats: enemy pieces that stand attacked and undefended, scored once per attacker and victim type.
#include "eval/threats.h"

#include <algorithm>

#include "core/bitboard.h"
#include "game/position.h"
#include "game/rules.h"

namespace {

constexpr Score S(int mg, int eg) { return makeScore(mg, eg); }

// Victims in type order: -, Sword, Magician1, Assassin, Archer, Magician, Warrior, Magician2,
// Bondsman, Dorn, Dorn_archer, Dorn_sword. The Sword and Magician1 rows are never read.
constexpr Score ThreatRows[TypeSlots][TypeSlots] = {
    {},
    {},
    {},
    {0, S(15, 25), S(15, 25), S(0, 0), S(24, 49), S(30, 60), S(41, 100), S(41, 100), S(41, 100), S(41, 100), S(25, 49), S(15, 39)},
    {0, S(15, 25), S(15, 25), S(24, 49), S(0, 0), S(30, 60), S(41, 100), S(41, 100), S(41, 100), S(41, 100), S(25, 49), S(15, 39)},
    {0, S(0, 0), S(0, 0), S(16, 30), S(16, 30), S(0, 0), S(30, 60), S(0, 0), S(32, 65), S(35, 70), S(16, 30), S(0, 0)},
    {0, S(7, 25), S(7, 25), S(15, 39), S(15, 39), S(20, 45), S(0, 0), S(17, 42), S(20, 45), S(24, 49), S(15, 39), S(10, 20)},
    {0, S(0, 0), S(0, 0), S(15, 39), S(15, 39), S(0, 0), S(15, 39), S(0, 0), S(17, 42), S(16, 41), S(15, 49), S(0, 0)},
    {0, S(7, 25), S(7, 25), S(15, 39), S(15, 39), S(20, 45), S(15, 39), S(17, 42), S(0, 0), S(20, 45), S(15, 39), S(10, 20)},
    {0, S(7, 25), S(7, 25), S(15, 39), S(15, 39), S(20, 45), S(15, 39), S(17, 42), S(15, 39), S(0, 0), S(15, 39), S(10, 20)},
    {0, S(15, 25), S(15, 25), S(24, 49), S(24, 49), S(30, 60), S(38, 90), S(38, 90), S(39, 95), S(40, 98), S(0, 0), S(15, 25)},
};

// The Dorn_sword row by swordsCaptureMounts: on foot it threatens mounts only where Swords take them.
constexpr Score DornSwordRows[2][TypeSlots] = {
    {0, S(7, 15), S(7, 15), S(24, 49), S(24, 49), S(24, 49), S(0, 0), S(39, 95), S(0, 0), S(0, 0), S(24, 49), S(0, 0)},
    {0, S(7, 15), S(7, 15), S(24, 49), S(24, 49), S(24, 49), S(38, 90), S(39, 95), S(40, 98), S(41, 100), S(24, 49), S(0, 0)},
};

constexpr Score UndefendedBonus = S(25, 10);

}  // namespace

Score ThreatBonus[TypeSlots][TypeSlots];

void evaluateThreatsInit() {
  std::copy(&ThreatRows[0][0], &ThreatRows[0][0] + TypeSlots * TypeSlots, &ThreatBonus[0][0]);
  std::copy(DornSwordRows[swordsCaptureMounts ? 1 : 0], DornSwordRows[swordsCaptureMounts ? 1 : 0] + TypeSlots,
            ThreatBonus[Dorn_sword]);
}

Score evaluateThreats(const Position& pos, const EvalInfo& ei, Color us) {
  const Color them = ~us;

  // Runners and Magicians that nothing in the main union covers; a third one adds no more.
  const Bitboard loose = (pos.pieces(them, Assassin) | pos.pieces(them, Archer) | pos.pieces(them, Magician)) &
                         ~ei.attackedBy[them][ALL];
  Score score = !loose ? 0 : (loose & (loose - 1)) ? 2 * UndefendedBonus : UndefendedBonus;

  const Bitboard defended =
      ei.attackedBy[them][Assassin] | (swordsCaptureMounts ? ei.attackedBy[them][Sword] : ei.attackedBy[them][Archer]);
  const Bitboard weak = pos.pieces(them) & ei.attackedBy[us][ALL] & ~defended;
  if (!weak) return score;

  // The leader types bound both loops: a side only has attackers and victims up to its leader.
  const int lastAttacker = std::min<int>(pos.dornType(us), Dorn_sword);
  const int lastVictim = std::min<int>(pos.dornType(them), Dorn_sword);
  for (int t = Assassin; t <= lastAttacker; ++t) {
    const Bitboard attacked = ei.attackedBy[us][t] & weak;
    if (!attacked) continue;
    // A Sword's cover deters only attackers that a Sword could take back.
    const bool swordDeters = !swordsCaptureMounts && !isMount(t);
    for (int v = Sword; v <= lastVictim; ++v) {
      if (!(attacked & pos.pieces(them, PieceType(v)))) continue;
      if (swordDeters && (pos.pieces(PieceType(v)) & ei.attackedBy[them][Sword])) continue;
      score += ThreatBonus[t][v];
    }
  }
  return score;
}

// The material probe: phase, space weight and the choice of an ending evaluator.
#include "eval/material.h"

#include "core/psqt.h"
#include "game/game_end.h"
#include "game/position.h"
#include "game/rules.h"

int gamePhase(Value npSum) {
  if (npSum >= MidgameMaterialLimit) return 128;
  if (npSum <= EndgameMaterialLimit) return 0;
  return (npSum - EndgameMaterialLimit) * 128 / (MidgameMaterialLimit - EndgameMaterialLimit);
}

namespace {

// Both sides' non-minor material as a signed 16-bit sum, wrapping as such a sum does.
int16_t npSum16(const StateInfo* st) { return int16_t(int16_t(st->npMaterial[WHITE]) + int16_t(st->npMaterial[BLACK])); }

}  // namespace

bool isLoneLeaderEnding(const Position& pos, Color weak) {
  const Color strong = ~weak;
  const StateInfo* st = pos.state();
  if (st->npMaterial[weak] - getDornValue(pos, weak) != 0 || pos.count(weak, Sword) || pos.count(weak, Magician1))
    return false;
  Value excess = st->npMaterial[strong] - getDornValue(pos, strong);
  bool canPromote = basePromotions && (pos.count(strong, Sword) || pos.count(strong, Magician1));
  return excess >= pieceValueMg[Sword] || canPromote;
}

MaterialEntry* probeMaterial(const Position& pos, MaterialTable& table, const Endgames& endgames) {
  const Key key = pos.materialKey();
  MaterialEntry* e = &table[key & MaterialIndexMask];
  if (e->key == key) return e;

  *e = MaterialEntry{};
  e->key = key;
  e->factor[WHITE] = e->factor[BLACK] = ScaleFactorNormal;
  const StateInfo* st = pos.state();
  e->gamePhase = gamePhase(st->npMaterial[WHITE] + st->npMaterial[BLACK]);

  // Black is tested as the bare side first.
  for (Color weak : {BLACK, WHITE})
    if (isLoneLeaderEnding(pos, weak)) {
      e->evaluationFunction = &loneLeaderEndgame[~weak];
      return e;
    }

  if (const EndgameBase<ScaleFactor>* sf = endgames.probeScaleFactor(key)) {
    e->scalingFunction[sf->strongerSide()] = sf;
    return e;
  }

  if (npSum16(st) >= 2 * pieceValueMg[Bondsman] + 15400) {
    int c = pos.count(WHITE, Archer) + pos.count(BLACK, Archer) + pos.count(WHITE, Magician) + pos.count(BLACK, Magician);
    e->spaceWeight = c * c;
  }
  return e;
}

// The trade bonus and the root state it compares a position with.
#include "eval/trade_bonus.h"

#include "core/psqt.h"
#include "game/move_stack.h"
#include "game/position.h"
#include "game/rules.h"

Value rootNpMaterial[2] = {0, 0};
Value rootSwordBalance = 0;
Color rootSideToMove = WHITE;

void setTradeBonusRoot(const Position& root) {
  const StateInfo* st = root.state();
  rootNpMaterial[WHITE] = st->npMaterial[WHITE];
  rootNpMaterial[BLACK] = st->npMaterial[BLACK];
  rootSwordBalance = (root.count(WHITE, Sword) - root.count(BLACK, Sword)) * pieceValueMg[Sword];
  rootSideToMove = root.side();
}

bool firstMoveChangedMaterial() {
  Move first = moveStack[0];
  return isPromotion(first) || isDemotion(first) || moveStackCapture[0];
}

Score tradeBonus(const Position& pos, Color c) {
  const StateInfo* st = pos.state();
  int lead = mgValue(st->psqScore) - rootSwordBalance;
  if (c == BLACK) lead = -lead;
  if (lead < 1) return 0;
  int lost = rootNpMaterial[~c] - st->npMaterial[~c];
  if (lost < 1) return 0;

  int b = lost < 600 ? 50 : lost < 650 ? 55 : lost < 1600 ? 60 : 70;
  if (lead >= 1480) b += 60;
  else if (lead >= 1180) b += 50;
  if (rootSideToMove == c && firstMoveChangedMaterial()) b += 15;
  // In the first siege game everything but material is weighed at 40 percent later; this undoes it.
  if (siege1) b = int(b / 0.4);
  return makeScore(b, b);
}

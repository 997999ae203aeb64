// The leader rows of the evaluation report: how well a leader is covered, and how close its side presses the other.
#include "core/bitboard.h"
#include "eval/threats.h"
#include "game/position.h"
#include "game/rules.h"

namespace {

constexpr Score S(int mg, int eg) { return makeScore(mg, eg); }

// By piece type, Sword to Dorn_sword.
constexpr Score DefenderBonus[TypeSlots] = {0,        S(1, 1), S(1, 1), S(1, 1), S(2, 3), S(2, 3),
                                            S(3, 5),  S(3, 5), S(3, 5), S(3, 5), S(2, 3), S(1, 1)};
constexpr Score AttackerBonus[TypeSlots] = {0,          S(1, 1),    S(3, 3),   S(6, 9),   S(6, 9),  S(12, 16),
                                            S(12, 16),  S(14, 18),  S(16, 20), S(12, 16), S(10, 14), S(8, 12)};
constexpr Score SecondLeaderBonus = S(10, 15);

Score sumByType(const Position& pos, Bitboard squares, const Score (&bonus)[TypeSlots]) {
  Score sum = 0;
  while (squares) sum += bonus[typeOf(pos.pieceOn(popLowest(squares)))];
  return sum;
}

}  // namespace

void dornSafetyReport(const Position& pos, const EvalInfo& ei, Color us, Score& safety, Score& threat) {
  const Color them = ~us;
  const Square leader = pos.leaderSquare(us);
  const Square enemyLeader = pos.leaderSquare(them);

  // Squares the leader attacks that no enemy piece but a Sword contests.
  const Bitboard towers = siege1 ? pos.siege1Tower : 0;
  const int free = popcount(ei.attackedBy[us][pos.dornType(us)] & ~ei.attackedByNoSwords[them] & ~pos.pieces(us) &
                            ~towers);
  safety = makeScore(2 * free, 3 * free);
  if (leader != NoSquare) safety += sumByType(pos, reach[Archer][leader] & pos.pieces(us), DefenderBonus);
  if (bondsmenLeaders && pos.severalLeaders(us)) safety += SecondLeaderBonus;

  threat = enemyLeader == NoSquare ? 0 : sumByType(pos, reach[Warrior][enemyLeader] & pos.pieces(us), AttackerBonus);
}

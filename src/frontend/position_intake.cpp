// Every position read from a command, a file or the host passes here before anything uses it.
#include "frontend/position_intake.h"

#include <iostream>

#include "game/attack_queries.h"
#include "game/position.h"
#include "game/rules.h"

Intake takePosition(Position& pos, const std::string& fen) {
  // The reader writes the process-wide geometry as it goes; a refusal must not leave it behind.
  const SiegeGeometry geometry = currentSiegeGeometry();
  Position fresh;
  Intake verdict = Intake::Taken;
  if (!fresh.set(fen, pos.thisThread)) {
    verdict = Intake::Unreadable;
  } else if (canTakeEnemyLeader(fresh)) {
    // do_move would have to take the leader; the game could not go on.
    std::cout << "Illegal position: the side to move can capture the enemy leader\n";
    verdict = Intake::Unreachable;
  } else if (fresh.pieces() & fresh.standingTowers()) {
    // A tower is no piece and shares no square with one: a piece that steps on it dies there.
    std::cout << "Illegal position: a piece stands on a standing tower square\n";
    verdict = Intake::Unreachable;
  }
  if (verdict == Intake::Taken) pos = fresh;
  else restoreSiegeGeometry(geometry);
  return verdict;
}

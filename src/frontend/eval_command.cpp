// The console's "eval": replays the game, reports the siege terms, then the evaluation term by term.
#include "frontend/eval_command.h"

#include <iostream>
#include <mutex>

#include "eval/siege.h"
#include "eval/trace.h"
#include "frontend/command_loop.h"
#include "frontend/settings.h"
#include "game/position.h"
#include "game/rules.h"

void evalCommand(Position& pos) {
  replayGame(pos, searchFen, true);
  if (siegeGame()) scoreSiege(pos, true);
  // The report is made on a copy, as the search would see the position at its root.
  Position root(pos, pos.thisThread);
  std::string report = evaluationReport(root);
  std::lock_guard<std::mutex> lock(syncOutLock);
  std::cout << report << "\n";
}

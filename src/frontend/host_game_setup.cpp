// ucinewgame clears the table and takes the game type and rules named behind it; boardtypes lists the types.
#include "frontend/host_game_setup.h"

#include <iostream>
#include <mutex>
#include <string>

#include "core/messages.h"
#include "frontend/game_options.h"
#include "game/piece_values.h"
#include "game/rules.h"
#include "search/transposition_table.h"

void ucinewgameCommand(Position& pos, std::istream& is) {
  currentTable->clear();
  std::string word, text;
  while (is >> word) text += (text.empty() ? "" : " ") + word;
  if (!text.empty()) readGameOptions(text, true);
  applyMagicianExtensions(pos);
}

void boardtypesCommand() {
  std::string names;
  for (const GameType& g : gameTypeTable) names += std::string(g.name) + " ";
  std::lock_guard<std::mutex> lock(syncOutLock);
  std::cout << names << std::endl;
}

// Saving a game to a text file and opening one: a FEN, the options section and the moves.
#include "frontend/game_files.h"

#include <filesystem>
#include <fstream>
#include <iostream>

#include "frontend/command_loop.h"
#include "frontend/memory_commands.h"
#include "frontend/position_intake.h"
#include "frontend/settings.h"
#include "game/position.h"
#include "game/rules.h"

namespace {

// A game file is a few lines; anything far larger is no game file.
constexpr std::uintmax_t MaxGameFileBytes = 1 << 20;

// Every setting a game file can change, so that a game refused at the door leaves none changed.
struct Settings {
  int gameType;  // the siege modes follow from it
  int rules[9];
  double defaultMoveTime, blackMoveTime;
  int defaultDepth, blackDepth, computerOnComputer, msgLevel;

  static Settings current() {
    return {::gameType,
            {bondsmenLeaders, basePromotions, capturePromotions, exchanges, swordsCaptureMounts,
             magicianDemotesDorn, magicianExtendedDemotionSqs, powerMagicianExtendedDemotionSqs, siegeExchanges},
            ::defaultMoveTime, ::blackMoveTime, ::defaultDepth, ::blackDepth, ::computerOnComputer, ::msgLevel};
  }

  void restore() const {
    ::gameType = gameType;
    setSiegeModes(gameType);
    int* flags[] = {&bondsmenLeaders, &basePromotions, &capturePromotions, &exchanges, &swordsCaptureMounts,
                    &magicianDemotesDorn, &magicianExtendedDemotionSqs, &powerMagicianExtendedDemotionSqs,
                    &siegeExchanges};
    for (int i = 0; i < 9; ++i) *flags[i] = rules[i];
    ::defaultMoveTime = defaultMoveTime;
    ::blackMoveTime = blackMoveTime;
    ::defaultDepth = defaultDepth;
    ::blackDepth = blackDepth;
    setComputerOnComputer(computerOnComputer != 0, false);
    ::msgLevel = msgLevel;
    msgFlags = msgFlagsByLevel[msgLevel];
  }
};

// The file as one text, each line followed by a blank; false when it is no readable file.
bool readGameFile(const std::string& name, std::string& text) {
  std::error_code ec;
  if (!std::filesystem::is_regular_file(name, ec) || std::filesystem::file_size(name, ec) > MaxGameFileBytes)
    return false;
  std::ifstream file(name);
  if (!file) return false;
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();  // written on another system
    text += line + " ";
  }
  return true;
}

}  // namespace

bool saveGame(const std::string& fileName, const std::string& gameText, bool announce) {
  if (fileName.empty()) {
    if (announce) std::cout << "?No filename entered\n";
    return false;
  }
  std::ofstream file(fileName, std::ios::trunc);
  if (!file) {
    if (announce) std::cout << "Can't create file " << fileName << "\n";
    return false;
  }
  std::string text = collapseSpaces(gameText.size() > 4 ? gameText.substr(4) : "");
  size_t at = text.find("startpos");
  if (at == std::string::npos) at = text.size();
  text.insert(at, gameOptionsText() + " ");
  file << text << "\n";
  if (announce) std::cout << "Saved game to " << fileName << "\n";
  return true;
}

void saveCommand(std::istream& is) {
  std::string name;
  is >> name;
  saveGame(name, searchFen, true);
}

void openCommand(Position& pos, std::istream& is) {
  std::string name, text;
  if (!(is >> name)) {
    std::cout << "?No filename entered\n";
    return;
  }
  if (!readGameFile(name, text)) {
    std::cout << "Unable to open file " << name << "\n";
    return;
  }

  const Settings before = Settings::current();
  const std::string previousGame = searchFen;
  // The options first: the siege flags decide how the FEN's option fields are read.
  size_t section = text.find("gameoptions");
  if (section != std::string::npos) {
    size_t close = text.find(']', section);
    if (close == std::string::npos) {
      std::cout << "?game file has no matching end brace ']' for '['\n";
    } else {
      readGameOptions(text.substr(section, close - section), false);
      text = collapseSpaces(text.erase(section, close + 1 - section));
    }
  }

  searchFen = "fen " + text;
  ensureMovesMarker(searchFen);
  Intake outcome;
  if (!replayGame(pos, searchFen, true, &outcome)) {
    if (outcome == Intake::Unreachable) {  // refused at the door: the game and its settings go on
      before.restore();
      searchFen = previousGame;
      replayGame(pos, searchFen, false);
      return;
    }
    setGameText(startFen);
    replayGame(pos, searchFen, false);
  }
  printBoard(pos);
  forgetFuture();
}

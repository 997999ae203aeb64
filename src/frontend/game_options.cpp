// Writing and reading the options section of a game file, also the game options of ucinewgame.
#include "frontend/game_options.h"

#include <cctype>
#include <cstdlib>
#include <iostream>
#include <sstream>

#include "core/messages.h"
#include "core/plain_number.h"
#include "frontend/memory_commands.h"
#include "frontend/settings.h"
#include "game/rules.h"

namespace {

struct RuleKey {
  const char* key;
  int* flag;
};

// In the order a file lists them.
const RuleKey RuleKeys[] = {
  {"bondsmenLeaders", &bondsmenLeaders},
  {"basePromotions", &basePromotions},
  {"capturePromotions", &capturePromotions},
  {"exchanges", &exchanges},
  {"swordsCaptureMounts", &swordsCaptureMounts},
  {"magicianDemotesDorn", &magicianDemotesDorn},
  {"magicianExtendedDemotionSqs", &magicianExtendedDemotionSqs},
  {"powerMagicianExtendedDemotionSqs", &powerMagicianExtendedDemotionSqs},
  {"siegeExchanges", &siegeExchanges},
};

// The reader takes the rules in this order of the keys above.
constexpr int RuleReadOrder[] = {0, 1, 2, 3, 5, 4, 6, 7, 8};

bool isBlank(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

void readGameType(const std::string& name) {
  gameType = -1;
  for (const GameType& g : gameTypeTable)
    if (name == g.name) gameType = g.number;
  if (gameType < 0) {
    gameType = DefaultGameType;
    std::cout << "? unknown gameType 1, using default 1\n";
  }
  setSiegeModes(gameType);
}

void readSearchSettings(const std::string& text) {
  defaultMoveTime = std::atof(optionValueOf(text, "defaultMoveTime").c_str());
  blackMoveTime = std::atof(optionValueOf(text, "blackMoveTime").c_str());
  defaultDepth = plainNumber(optionValueOf(text, "defaultDepth"));
  blackDepth = plainNumber(optionValueOf(text, "blackDepth"));
  const std::string cc = std::to_string(plainNumber(optionValueOf(text, "computerOnComputer")));
  setComputerOnComputer(cc != "off" && cc != "0", false);

  unsigned long level = std::strtoul(optionValueOf(text, "msgLevel").c_str(), nullptr, 10);
  if (level > 2) {
    std::cout << "Message level must be between [0-2]\n";
    return;
  }
  msgLevel = int(level);
  msgFlags = msgFlagsByLevel[msgLevel];
}

}  // namespace

std::string gameOptionsText() {
  std::ostringstream os;
  os << "\ngameoptions [\n board " << gameTypeTable[gameType].name << "\n rules:\n";
  for (const RuleKey& r : RuleKeys) os << "  " << r.key << " " << *r.flag << "\n";
  os << " search:\n"
     << "  defaultMoveTime " << defaultMoveTime << "\n"
     << "  blackMoveTime " << blackMoveTime << "\n"
     << "  defaultDepth " << defaultDepth << "\n"
     << "  blackDepth " << blackDepth << "\n"
     << "  computerOnComputer " << computerOnComputer << "\n"
     << "  msgLevel " << msgLevel << "\n"
     << " ]\n";
  return os.str();
}

std::string optionValueOf(const std::string& text, const std::string& key) {
  size_t at = text.find(key);
  if (at == std::string::npos) return "";
  std::istringstream rest(text.substr(at + key.size()));
  std::string word;
  rest >> word;
  return word;
}

void readGameOptions(const std::string& text, bool partial) {
  const std::string board = optionValueOf(text, "board");
  if (!board.empty() || !partial) readGameType(board);

  for (int i : RuleReadOrder) {
    const std::string value = optionValueOf(text, RuleKeys[i].key);
    if (!value.empty() || !partial) *RuleKeys[i].flag = plainNumber(value);
  }
  if (!partial) readSearchSettings(text);
}

std::string collapseSpaces(std::string text) {
  std::string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i)
    if (!isBlank(text[i]) || i == 0 || !isBlank(text[i - 1])) out += text[i];
  if (!out.empty() && isBlank(out.back())) out.pop_back();
  return out;
}

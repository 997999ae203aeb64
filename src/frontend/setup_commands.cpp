// Setting up a game from the console: the game type, a position, and the rule flags.
#include "frontend/setup_commands.h"

#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

#include "frontend/command_loop.h"
#include "frontend/settings.h"
#include "game/piece_values.h"
#include "game/position.h"
#include "game/rules.h"

namespace {

const char* onOff(int flag) { return flag ? "ON" : "OFF"; }

// A rule word and the flag it sets to a value.
struct RuleWord {
  const char* word;
  int* flag;
  int value;
};

const RuleWord RuleWords[] = {
  {"basepromotions", &basePromotions, 1},        {"nobasepromotions", &basePromotions, 0},
  {"capturepromotions", &capturePromotions, 1},  {"nopromotions", &capturePromotions, 0},
  {"swordscapturemounts", &swordsCaptureMounts, 1}, {"noswordscapturemounts", &swordsCaptureMounts, 0},
  {"magiciandemotesdorn", &magicianDemotesDorn, 1}, {"nomagiciandemotesdorn", &magicianDemotesDorn, 0},
  {"exchanges", &exchanges, 1},                  {"noexchanges", &exchanges, 0},
  {"bondsmenleaders", &bondsmenLeaders, 1},      {"nobondsmenleaders", &bondsmenLeaders, 0},
  {"siegeexchanges", &siegeExchanges, 1},        {"nosiegeexchanges", &siegeExchanges, 0},
};

// Sets an extension count from the next word when it lies in 0..2.
void readExtension(std::istream& is, int& flag, const char* rangeError) {
  std::string word;
  is >> word;
  int n = plainNumber(word);
  if (n >= 0 && n <= 2) flag = n;
  else std::cout << rangeError;
}

bool applyRuleWord(std::istream& is, const std::string& word) {
  for (const RuleWord& r : RuleWords)
    if (word == r.word) {
      *r.flag = r.value;
      return true;
    }
  if (word == "magicianextendeddemotionsqs")
    readExtension(is, magicianExtendedDemotionSqs,
                  "? magician extended demotion squares must be in range [0-2]\n");
  else if (word == "powermagicianextendeddemotionsqs")
    readExtension(is, powerMagicianExtendedDemotionSqs,
                  "? power magician extended demotion squares must be in range [0-2]\n");
  else
    return false;
  return true;
}

}  // namespace

void newCommand(Position& pos, std::istream& is) {
  std::string name;
  is >> name;
  gameType = DefaultGameType;
  for (const GameType& g : gameTypeTable)
    if (name == g.name) gameType = g.number;
  setSiegeModes(gameType);
  startFen = gameTypeTable[gameType].startFen;

  setGameText(startFen);
  replayGame(pos, searchFen, true);
  printBoard(pos);
  forgetFuture();
  showSettings();
}

void setPositionCommand(Position& pos, std::istream& is) {
  std::string word, text;
  while (is >> word) text += (text.empty() ? "" : " ") + word;
  if (text.empty()) {
    std::cout << "?No fen string entered\n";
    return;
  }
  const std::string previousGame = searchFen;
  searchFen = "fen " + text;
  ensureMovesMarker(searchFen);
  Intake outcome;
  if (!replayGame(pos, searchFen, true, &outcome)) {
    if (outcome == Intake::Unreachable) {  // refused at the door: the game goes on as it was
      searchFen = previousGame;
      return;
    }
    setGameText(startFen);
    replayGame(pos, searchFen, false);
  }
  printBoard(pos);
  forgetFuture();
}

void rulesCommand(Position& pos, std::istream& is) {
  std::string word;
  bool any = false;
  while (is >> word) {
    any = true;
    if (!applyRuleWord(is, word)) std::cout << "Unknown directive '" << word << "'\n";
  }
  if (any) {
    setPieceValues(pos);
    if (msgLevel > 0) printBoard(pos);
  }
  showRules();
}

void showRules() {
  std::cout << "\nCurrent game rules:" << "\n===================\n"
            << "bondsmen leaders are: " << onOff(bondsmenLeaders) << "\t..[bondsmenleaders/nobondsmenleaders]\n"
            << "Enemy base promotions are: " << onOff(basePromotions)
            << "\t..[basepromotions/nobasepromotions]\n"
            << "Capture promotions are: " << onOff(capturePromotions)
            << "\t..[capturepromotions/nocapturepromotions]\n"
            << "Exchanges moves are: " << onOff(exchanges) << "\t\t..[exchanges/noexchanges]\n"
            << "Swords capture mounts is: " << onOff(swordsCaptureMounts)
            << "\t..[swordscapturemounts/noswordscapturemounts]\n"
            << "Magician demotes Dorn is: " << onOff(magicianDemotesDorn)
            << "\t..[magiciandemotesdorn/nomagiciandemotesdorn]\n"
            << "# Magician extended demotions squares is: " << magicianExtendedDemotionSqs
            << " ..[magicianextendeddemotionsqs  0-2]\n"
            << "# Power magician extended demotions squares is: " << powerMagicianExtendedDemotionSqs
            << " ..[powermagicianextendeddemotionsqs  0-2]\n"
            << "siege exchanges are: " << onOff(siegeExchanges) << "\t..[siegeexchanges/nosiegeexchanges]\n";
}

void showSettings() {
  std::cout << "\nGame settings:" << "\n==============\n"
            << "\nGame is currently set to '" << gameTypeTable[gameType].name << "'...\n"
            << "Computer on Computer is set to: " << onOff(computerOnComputer) << "\n";
  if (defaultDepth) std::cout << "Skill level (White): " << defaultDepth << "\n";
  if (defaultMoveTime != 0) std::cout << "Move time   (White): " << defaultMoveTime << "s\n";
  if (blackDepth) std::cout << "Skill level (Black): " << blackDepth << "\n";
  if (blackMoveTime != 0) std::cout << "Move time   (Black): " << blackMoveTime << "s\n";
  showRules();
}

namespace {

constexpr double MaxMoveTime = 180;

// Reads a time in seconds; false when no word follows. A word that is no number reads as 0.
bool readSeconds(std::istream& is, double& seconds) {
  std::string word;
  if (!(is >> word)) return false;
  // Decimal digits only, as a stream reads them: "2.5x" is 2.5; "nan" and "0x10" are 0 and not a
  // number that could slip past the range test.
  std::istringstream number(word);
  if (!(number >> seconds)) seconds = 0;
  return true;
}

void moveTimeRangeError(double x) {
  std::cout << "moveTime (s) is out of range (" << x << ") Valid range[0-180s]\n";
}

}  // namespace

void moveTimeCommand(std::istream& is) {
  double x;
  if (!readSeconds(is, x)) return;
  if (x > 0 && x <= MaxMoveTime) {
    defaultMoveTime = x;
    std::cout << "ok, move time set to " << x << " seconds\n";
  } else {
    moveTimeRangeError(x);
  }
}

void blackMoveTimeCommand(std::istream& is) {
  double x;
  if (!readSeconds(is, x)) return;
  if (x < 0 || x > MaxMoveTime) {
    moveTimeRangeError(x);
  } else if (x == 0) {
    blackMoveTime = 0;
    std::cout << "ok, BLACK move time reset, same as white " << defaultMoveTime << " seconds\n";
  } else {
    blackMoveTime = x;
    std::cout << "ok, BLACK move time set to " << x << " seconds\n";
  }
}

namespace {

// Sets a skill level from the next word; 0 or less, or no number, resets it.
void setSkill(std::istream& is, int& level, const char* setText, const char* resetText) {
  std::string word;
  if (!(is >> word)) return;
  int n = plainNumber(word);
  level = n > 0 ? n : 0;
  if (n > 0) std::cout << setText << n << "\n";
  else std::cout << resetText;
}

}  // namespace

void skillCommand(std::istream& is) {
  setSkill(is, defaultDepth, "ok, new skill level is ", "ok, skill level reset to the default skill level\n");
}

void blackSkillCommand(std::istream& is) {
  setSkill(is, blackDepth, "ok, new skill level for BLACK is ",
           "ok, skill level for BLACK reset to the default skill level\n");
}

void msgLevelCommand(std::istream& is) {
  std::string word;
  if (!(is >> word)) {
    std::cout << "Message level is currently " << msgLevel << "\n";
    return;
  }
  // Read as an unsigned number: a minus sign wraps round to a large value.
  unsigned long n = std::strtoul(word.c_str(), nullptr, 10);
  if (n > 2) {
    std::cout << "Message level must be between [0-2]\n";
    return;
  }
  msgLevel = int(n);
  msgFlags = msgFlagsByLevel[msgLevel];
  std::cout << "ok, Message level set to " << n << "\n";
}

void helpCommand() {
  const double t = defaultMoveTime;
  std::cout << "m a2c3    [Moves piece from square A2 to C3]\n"
            << "g         [computer makes move in " << t << "s]\n"
            << "g 6       [computer makes move in 6s]\n"
            << "undo      [undo last move]\n"
            << "redo      [redo last move]\n"
            << "d         [display board]\n"
            << "start     [go to the 1st move in the game (ie beginning)]\n"
            << "start 3   [go to the 3rd move in the game]\n"
            << "end       [go to the last move in the game]\n"
            << "mt 8      [set move time in seconds (default " << t << "s)]\n"
            << "skill 1   [skill level 1 (easy), range is 1-12]\n"
            << "hint      [display hint, only after computer has moved]\n"
            << "save mygame [save game to file 'mygame']\n"
            << "open mygame [load game from file 'mygame']\n"
            << "new       [start new game, either basic, magician, powermagician,"
            << "                                  rescuegeneral, rescuedorn]\n"
            << "    ex:   new magician\n"
            << "game      [show game options: basic, magician or powermagician]\n"
            << "rules     [set game rules, ex exchanges on/off, swordscapturemounts on/off\n"
            << "               capturePromotions on/off, magiciandemotesdorn on/off\n"
            << "    ex:    rules noexchanges swordscapturemounts nomagiciandemotesdorn\n"
            << "showmoves [shows all game moves made so far]\n"
            << "sp <fen>  [setup board position from fen string]\n"
            << "    ex:   sp 8/1k2A/a5K w 0 1  'will set up a board with 2 Dorns/2 Archers,\n"
            << "                                with white to move...\n"
            << "cc        [sets computer vs computer mode, type 'cc off' to turn mode off]\n"
            << "mtb       [sets move time for BLACK, for computer vs computer mode]\n"
            << "skillb    [sets skill level for BLACK, for computer vs computer mode]\n"
            << "msglevel  [0=show no msgs,1=show search info/depth,2=legal moves&stats]\n"
            << "setmem 64 [set size in MB of memory used, default 32MB, min 4MB]\n"
            << "quit      [exits dorn]\n"
            << "see       [show the exchange value of each legal move]\n";
}

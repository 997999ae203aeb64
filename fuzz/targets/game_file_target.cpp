// A game file opened by the loop: whatever the file holds, the position stays sound and the game text
// keeps its form; a game that was opened is saved and opened again to the same game and settings.
#include <algorithm>
#include <cctype>
#include <fstream>
#include <string>

#include "frontend/command_loop.h"
#include "frontend/game_options.h"
#include "frontend/settings.h"
#include "fuzz_session.h"
#include "fuzz_targets.h"
#include "game/position.h"
#include "position_invariants.h"

namespace {

// What the loop's state must satisfy after a command, or empty.
std::string stateFault(const Position& pos, const std::string& output) {
  if (std::string report = internalReport(output); !report.empty() && !severalBondsmen(pos)) return report;
  if (std::string fault = positionFault(pos, Vouch::Board); !fault.empty()) return fault;
  return gameTextFault();
}

// A file's text that reads back as written: no options section or brace of its own beside the one
// that saving puts in.
bool roundTrips(const std::string& gameText) {
  return gameText.find("gameoptions") == std::string::npos && gameText.find(']') == std::string::npos;
}

// The text without its white space: saving may part a word that runs into "startpos".
std::string withoutBlanks(std::string text) {
  std::erase_if(text, [](unsigned char c) { return std::isspace(c); });
  return text;
}

}  // namespace

std::string fuzzGameFile(const uint8_t* data, size_t size) {
  FuzzSession session(data, size);
  if (!session.ready()) return "";

  Position pos;
  if (!startCommandLoop(pos)) return "";
  const std::string original = std::string(fuzzWorkFolder()) + "/game", copy = std::string(fuzzWorkFolder()) + "/copy";
  std::ofstream(original, std::ios::binary) << session.text();

  session.clearOutput();
  executeCommand(pos, "open " + original);
  if (std::string fault = stateFault(pos, session.output()); !fault.empty()) return "after open: " + fault;
  if (!roundTrips(searchFen)) return "";

  const std::string game = withoutBlanks(searchFen), settings = gameOptionsText();
  session.clearOutput();
  executeCommand(pos, "save " + copy);
  executeCommand(pos, "open " + copy);
  if (std::string fault = stateFault(pos, session.output()); !fault.empty()) return "after reopening: " + fault;
  if (withoutBlanks(searchFen) != game) return "reopened as another game: " + searchFen.substr(0, 200);
  if (gameOptionsText() != settings) return "reopened with other settings:" + gameOptionsText();
  return "";
}

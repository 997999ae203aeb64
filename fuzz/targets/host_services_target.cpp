// The host's legality and notation services fed arbitrary lines: the loop's position stays sound, the
// consistency switches go off again, the game text is left alone and each verdict keeps its form.
#include <sstream>
#include <string>

#include "frontend/command_loop.h"
#include "frontend/settings.h"
#include "fuzz_session.h"
#include "fuzz_targets.h"
#include "game/position.h"
#include "position_invariants.h"

namespace {

constexpr int MaxLines = 20;

// The last line of the output that holds anything.
std::string lastLine(const std::string& output) {
  size_t end = output.find_last_not_of('\n');
  if (end == std::string::npos) return "";
  size_t start = output.rfind('\n', end);
  return output.substr(start == std::string::npos ? 0 : start + 1, end + 1 - (start == std::string::npos ? 0 : start + 1));
}

// "R E ^Draw ^... ^phase ^SAN ^": a game can only end by a legal move.
std::string verdictFault(const std::string& line) {
  if (line.rfind("0 0 ^", 0) != 0 && line.rfind("1 0 ^", 0) != 0 && line.rfind("1 1 ^", 0) != 0)
    return "verdict without its flags: " + line.substr(0, 200);
  if (line.size() < 2 || line.compare(line.size() - 2, 2, " ^") != 0) return "verdict cut short: " + line.substr(0, 200);
  return "";
}

}  // namespace

std::string fuzzHostServices(const uint8_t* data, size_t size) {
  FuzzSession session(data, size);
  if (!session.ready()) return "";

  Position pos;
  if (!startCommandLoop(pos)) return "";
  const std::string game = searchFen;

  std::istringstream input{std::string(session.text())};
  std::string line;
  for (int n = 0; n < MaxLines && std::getline(input, line); ++n) {
    const bool notation = !line.empty() && line[0] == 'c';
    const std::string command =
        notation ? "convertmovestosan " + line.substr(1) : "checklegalitymatedraw " + line;
    const int movesBefore = gameMoveCount;
    const Position lastPosition = pos;
    session.clearOutput();
    executeCommand(pos, command);

    const std::string where = "after \"" + command.substr(0, 120) + "\": ";
    if (std::string report = internalReport(session.output());
        !report.empty() && !severalBondsmen(pos) && !severalBondsmen(lastPosition))
      return where + report;
    if (std::string fault = positionFault(pos, Vouch::Board); !fault.empty()) return where + fault;
    if (checkDornCount || checkLeaderCapture) return where + "the host's consistency switches stayed on";
    if (searchFen != game) return where + "the game text changed: " + searchFen.substr(0, 200);
    if (notation && gameMoveCount != movesBefore) return where + "the notation service counted its moves";
    if (!notation)
      if (std::string fault = verdictFault(lastLine(session.output())); !fault.empty()) return where + fault;
  }
  return "";
}

// Lines fed to the command loop one by one, as a person or a host would type them; after each the
// loop's position and game text are checked, and a command that only looks must have left them be.
#include <algorithm>
#include <cctype>
#include <set>
#include <sstream>
#include <string>

#include "core/plain_number.h"
#include "frontend/command_loop.h"
#include "frontend/settings.h"
#include "fuzz_session.h"
#include "fuzz_targets.h"
#include "game/position.h"
#include "position_invariants.h"
#include "search/thread.h"

namespace {

// Enough for any sequence worth trying; a longer input only repeats work.
constexpr int MaxLines = 100;
// The largest hash table an input may ask for, in megabytes.
constexpr int MaxHashMegabytes = 16;
// Searches and counts go this many plies deep at most.
constexpr int MaxSearchDepth = 2;

// Searches run where the harness has a thread pool: in a fuzzer, not in the test suite's replay.
bool searchAllowed() { return Threads.main() != nullptr; }

std::string lowerCase(std::string s) {
  std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return char(std::tolower(c)); });
  return s;
}

bool within(const std::string& word, int limit) { return plainNumber(word) <= limit; }

// Commands whose cost grows with their numbers, or that would reach outside the process, run only
// within small bounds; the harness leaves other lines of theirs out.
bool withinBudget(const std::string& line) {
  std::istringstream is(line);
  std::string command;
  is >> command;
  if (command == "perft") {  // one ply of perft per unit: two are plenty
    std::string depth;
    return !(is >> depth) || within(depth, 2);
  }
  if (command == "bench") {  // small limits over the built-in or current positions, never a file
    std::string hash, threads, limit, source = "default", kind = "depth";
    if (!(is >> hash >> threads >> limit)) return false;  // the default limit is 12
    is >> source >> kind;
    const bool search = kind == "depth" || kind == "nodes";
    return within(hash, MaxHashMegabytes) && within(threads, 2) && within(limit, MaxSearchDepth) &&
           (source == "default" || source == "current") && (kind == "perft" || (search && searchAllowed()));
  }
  if (command == "setmem") {
    std::string size;
    return !(is >> size) || within(size, MaxHashMegabytes);
  }
  if (command == "setoption") {
    std::string word, name, value;
    is >> word;  // "name"
    while (is >> word && word != "value") name += (name.empty() ? "" : " ") + word;
    is >> value;
    if (lowerCase(name) == "hash") return within(value, MaxHashMegabytes);
    if (lowerCase(name) == "threads") return within(value, 2);
    // The I/O log takes over standard input and output; the search log may name any file.
    return lowerCase(name) != "use debug log" && lowerCase(name) != "search log filename";
  }
  // A search only to a depth of a few plies: "go depth n", or "g" with at most its seconds when both
  // skill levels are that small. The harness waits for the search to end before it checks.
  if (command == "go") {
    std::string word, depth, more;
    return searchAllowed() && is >> word >> depth && word == "depth" && plainNumber(depth) >= 1 &&
           within(depth, MaxSearchDepth) && !(is >> more);
  }
  if (command == "g") {
    std::string seconds, more;
    is >> seconds;
    return searchAllowed() && !(is >> more) && defaultDepth >= 1 && defaultDepth <= MaxSearchDepth &&
           blackDepth >= 1 && blackDepth <= MaxSearchDepth;
  }
  // Nor may an input write or read whatever path it names.
  if (command == "save" || command == "open") return false;
  return true;
}

// Commands that read the game but may not change the loop's position.
bool looksOnly(const std::string& command, const std::string& output) {
  static const std::set<std::string> Readers = {
      "",   "quit", "stop", "isready", "setoption", "perft",  "key",    "uci", "mt",  "cc",  "mtb",
      "rules", "game", "skill", "s",   "skillb",  "sb",       "msglevel", "qc", "qu", "ev", "nev",
      "cap",  "leg",  "setmem", "?",   "bench", "go", "showmoves", "boardtypes",
  };
  return Readers.count(command) || output.rfind("Unknown command: ", 0) == 0;
}

}  // namespace

std::string fuzzCommandLines(const uint8_t* data, size_t size) {
  FuzzSession session(data, size);
  if (!session.ready()) return "";

  Position pos;
  if (!startCommandLoop(pos)) return "";  // the rules leave the start position without a leader
  if (std::string fault = positionFault(pos, Vouch::SetUp); !fault.empty()) return "at the start: " + fault;

  std::istringstream input{std::string(session.text())};
  std::string line;
  for (int n = 0; n < MaxLines && std::getline(input, line); ++n) {
    if (!withinBudget(line)) continue;
    std::string command;
    std::istringstream(line) >> command;
    const PositionSnapshot before = snapshotOf(pos);
    const Position lastPosition = pos;
    session.clearOutput();
    bool goOn = executeCommand(pos, line);
    waitForThinkFinished();

    const std::string where = "after \"" + line.substr(0, 120) + "\": ";
    if (std::string report = internalReport(session.output());
        !report.empty() && !severalBondsmen(pos) && !severalBondsmen(lastPosition))
      return where + report;
    if (std::string fault = positionFault(pos, Vouch::Board); !fault.empty()) return where + fault;
    if (std::string fault = gameTextFault(); !fault.empty()) return where + fault;
    if (looksOnly(command, session.output()))
      if (std::string d = snapshotDifference(before, snapshotOf(pos)); !d.empty())
        return where + "the position changed its " + d;
    if (!goOn) break;
  }
  return "";
}

// Building the tables once, putting the process-wide state back before and after each input, and
// reading the header bytes into rules and a game type.
#include "fuzz_session.h"

#include <unistd.h>

#include <algorithm>
#include <string>

#include "core/bitboard.h"
#include "core/messages.h"
#include "core/options.h"
#include "core/zobrist.h"
#include "frontend/command_loop.h"
#include "frontend/go_command.h"
#include "frontend/memory_commands.h"
#include "frontend/option_handlers.h"
#include "frontend/settings.h"
#include "game/move_making.h"
#include "game/move_stack.h"
#include "game/piece_values.h"
#include "game/rules.h"
#include "search/engine_start.h"
#include "search/thread.h"
#include "search/transposition_table.h"

namespace {

// The table size every input starts with: small, so that a resize or clear costs little.
const char* const StartHashMegabytes = "4";

// True when this process had no tables before the first session: a fuzzer, not the test suite,
// whose own start-up built them and whose options must stay as its tests expect.
bool ownProcess = false;

void prepareProcess() {
  static bool prepared = false;
  if (prepared) return;
  prepared = true;
  if (Options.size() != 0) return;
  ownProcess = true;
  initEngineTables();
  attachOptionHandlers();
  threadPoolInit();
  installSearchReporter();
}

}  // namespace

const char* fuzzWorkFolder() {
  static const std::string folder = [] {
    char path[] = "/tmp/dorn_fuzz_XXXXXX";
    return std::string(mkdtemp(path) ? path : "/tmp");
  }();
  return folder.c_str();
}

namespace {

// Everything an earlier input may have changed that a later one reads.
void resetProcessState() {
  if (secondTableReady) setComputerOnComputer(false, false);
  waitForThinkFinished();
  makeCurrent(firstTable);
  if (ownProcess) Options["Hash"] = StartHashMegabytes;

  resetRuleFlags();
  setSiegeModes(DefaultGameType);
  restoreSiegeGeometry(SiegeGeometry{});
  gameType = DefaultGameType;
  defaultMoveTime = 3.0;
  blackMoveTime = 0.0;
  defaultDepth = blackDepth = 0;
  startFen = gameTypeTable[DefaultGameType].startFen;
  setGameText(startFen);
  msgLevel = 0;
  msgFlags = msgFlagsByLevel[0];
  redoCount = gameMoveCount = 0;
  hintMove = MoveNone;
  goLimits = {};
  moveStackCount = 0;
  lastPositionError.clear();
  checkDornCount = checkLeaderCapture = false;
  setPieceValues(Position());
  leaderDemotionFloor = magicianDemotesDorn ? Dorn_sword : Dorn;
}

// Sets the rules and the game type the header chooses, with the piece values that follow from them.
int applyHeader(uint8_t typeByte, uint8_t flagByte) {
  int* const flags[] = {&bondsmenLeaders, &basePromotions, &capturePromotions, &exchanges,
                        &swordsCaptureMounts, &magicianDemotesDorn, &siegeExchanges};
  for (size_t i = 0; i < std::size(flags); ++i)
    if ((flagByte >> i) & 1) *flags[i] = !*flags[i];
  magicianExtendedDemotionSqs = typeByte / 5 % 3;
  powerMagicianExtendedDemotionSqs = typeByte / 15 % 3;

  int type = typeByte % GameTypeCount;
  gameType = type;
  setSiegeModes(type);
  startFen = gameTypeTable[type].startFen;
  setGameText(startFen);
  setPieceValues(Position());
  // As the command loop fixes it at its start.
  leaderDemotionFloor = magicianDemotesDorn ? Dorn_sword : Dorn;
  return type;
}

}  // namespace

FuzzSession::FuzzSession(const uint8_t* data, size_t size)
    : oldOut_(std::cout.rdbuf(&keeper_)), oldErr_(std::cerr.rdbuf(&keeper_)) {
  prepareProcess();
  resetProcessState();
  if (getcwd(oldFolder_, sizeof oldFolder_) && chdir(fuzzWorkFolder()) != 0) oldFolder_[0] = '\0';
  if (size < HeaderBytes) return;
  gameType_ = applyHeader(data[0], data[1]);
  text_ = std::string_view(reinterpret_cast<const char*>(data) + HeaderBytes, size - HeaderBytes);
  ready_ = true;
}

FuzzSession::~FuzzSession() {
  resetProcessState();
  if (oldFolder_[0] && chdir(oldFolder_) != 0) oldFolder_[0] = '\0';
  std::cout.rdbuf(oldOut_);
  std::cerr.rdbuf(oldErr_);
}

std::string internalReport(const std::string& output) {
  // Each internal report of the engine opens a line with one of these. Refusals of input echo the
  // input inside their own line, never at its start, so an input cannot fake a report.
  static const char* const Markers[] = {
      "do_move",      "(A) do_move",      "(B) do_move",      "undo_move",     "Undo_move",
      "Capture of Dorn", "moveStack:",    "?Piece on",        "Piece Count",   "Captive_Dropoff, Bad",
      "Captive Transfer, Bad", "!!",      "!isPL",            "!generateEvasions", "MoveGen: ?",
      "PL:legal",     "?getDornValue",    "(1) ",             "byType[ALL]",   "draw? npm",
      " -- MOVE STACK --", "? ABW",       "? ABA",
  };
  // The legality and check tests name the move first: "a7b7 (PL)!bondsman sq?".
  static const char* const MoveReports[] = {" (PL)!bondsman sq?", " (MGC)!bondsman sq?"};
  for (size_t start = 0; start < output.size();) {
    size_t end = std::min(output.find('\n', start), output.size());
    std::string_view line(output.data() + start, end - start);
    for (const char* marker : Markers)
      if (line.starts_with(marker)) return std::string(line);
    for (const char* text : MoveReports)
      if (line.size() == 4 + std::string_view(text).size() && line.ends_with(text)) return std::string(line);
    start = end + 1;
  }
  return "";
}

std::string gameTextFault() {
  if (searchFen.rfind("fen ", 0) != 0 || searchFen.find("startpos moves") == std::string::npos)
    return "game text lost its form: " + searchFen.substr(0, 200);
  return "";
}

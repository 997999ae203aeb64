// The command loop: start-up of the game, the dispatch table and the game-text replay.
#include "frontend/command_loop.h"

#include <iostream>
#include <sstream>

#include "eval/eval_tables.h"
#include "frontend/bench.h"
#include "frontend/console_play.h"
#include "frontend/eval_command.h"
#include "frontend/game_files.h"
#include "frontend/game_history.h"
#include "frontend/go_command.h"
#include "frontend/host_game_setup.h"
#include "frontend/host_services.h"
#include "frontend/listings.h"
#include "frontend/memory_commands.h"
#include "frontend/option_commands.h"
#include "frontend/settings.h"
#include "frontend/setup_commands.h"
#include "game/game_end.h"
#include "game/move_making.h"
#include "game/piece_values.h"
#include "movegen/notation.h"
#include "search/thread.h"

std::unique_ptr<StateList> setupStates;
std::mutex gameTextLock;

std::string engineInfo(bool uciForm) {
  return std::string("Dorn 0.25 64bit") + (uciForm ? "\nid author " : " by ") + "Alda Reve";
}

void ensureMovesMarker(std::string& text) {
  if (text.find("startpos moves") == std::string::npos) text += " startpos moves ";
}

bool setGameText(const std::string& fen) {
  if (fen.empty()) return false;
  searchFen = "fen " + fen;
  ensureMovesMarker(searchFen);
  return true;
}

bool textMoveAllowed(const Position& pos, Move m) {
  Square from = moveFrom(m), to = moveTo(m);
  Piece mover = pos.pieceOn(from);
  return from != to && mover != NoPiece && colorOf(mover) == pos.side() && pos.pseudo_legal(m) &&
         pos.legal(m, CheckInfo(pos).pinned);
}

namespace {

// Checks a move read from text against the position and makes it at the end of the chain.
bool playTextMove(Position& pos, Move m, StateList& chain) {
  if (!textMoveAllowed(pos, m)) return false;
  pos.do_move(m, chain.emplace_back());
  return true;
}

// applyPositionText with the chain of state records to build; the caller holds gameTextLock.
bool readPositionText(Position& pos, std::istream& is, Intake& verdict, std::unique_ptr<StateList>& chain) {
  verdict = Intake::Unreadable;
  std::string token, fen;
  if (!(is >> token)) return false;
  if (token == "startpos") {
    is >> token;  // the word "moves"
    fen = startFen;
  } else if (token == "fen") {
    while (is >> token && token != "moves") fen += token + " ";
  } else {
    return false;
  }
  verdict = takePosition(pos, fen);
  if (verdict != Intake::Taken) return false;

  chain = std::make_unique<StateList>();
  int moves = 0;
  while (is >> token) {
    Move m = moveFromSquares(pos, token);
    if (m == MoveNone) {
      std::cout << "?Illegal move " << token << "\n";
      verdict = Intake::Unreadable;
      return false;
    }
    if (moves < MaxGameMoves) playedMoves[moves] = " " + token;
    ++moves;
    if (!playTextMove(pos, m, *chain)) {
      std::cout << "?Illegal move..." << token << ", fen file is broken, fix it..\n";
      verdict = Intake::Unreadable;
      return false;
    }
  }
  gameMoveCount = moves;
  // The piece values may have changed since the set-up.
  for (Color c : {WHITE, BLACK}) pos.st->npMaterial[c] = pos.computeNpMaterial(c);
  return true;
}

}  // namespace

bool applyPositionText(Position& pos, std::istream& is, Intake* outcome) {
  Intake unused;
  std::lock_guard<std::mutex> game(gameTextLock);
  return readPositionText(pos, is, outcome ? *outcome : unused, setupStates);
}

bool recordGameText(const std::string& text) {
  Position scratch;
  std::unique_ptr<StateList> chain;
  std::istringstream is(text);
  Intake verdict;
  std::lock_guard<std::mutex> game(gameTextLock);
  return readPositionText(scratch, is, verdict, chain);
}

bool replayGame(Position& pos, const std::string& text, bool echo, Intake* outcome) {
  std::istringstream is(text);
  bool applied = applyPositionText(pos, is, outcome);
  if (applied && echo && (msgFlags & MsgGameText)) std::cout << text << "\n";
  return applied;
}

void printBoard(const Position& pos) { std::cout << pos.pretty(MoveNone, true, false) << "\n"; }

void showBoard(Position& pos) {
  std::string game;
  {
    // `d` runs beside a search, whose report may be appending its move.
    std::lock_guard<std::mutex> lock(gameTextLock);
    game = searchFen;
  }
  replayGame(pos, game, false);
  std::string board = pos.pretty(MoveNone, true, false);
  std::lock_guard<std::mutex> lock(syncOutLock);
  std::cout << board << "\n";
}

namespace {

struct LoopContext {
  Position& pos;
  std::istringstream& args;  // the words behind the command
  const std::string& line;
};

using Handler = void (*)(LoopContext&);
struct Command {
  const char* word;
  Handler run;
};

// Also without a running search: the signal is cleared when the next one starts.
void stopCommand(LoopContext&) { stopSearch(); }

void goUciCommand(LoopContext& ctx) {
  uciGo = true;
  goCommand(ctx.pos, ctx.args);
}

void showBoardCommand(LoopContext& ctx) { showBoard(ctx.pos); }

void isReadyCommand(LoopContext&) {
  std::lock_guard<std::mutex> lock(syncOutLock);
  std::cout << "readyok" << std::endl;
}

void keyCommand(LoopContext& ctx) {
  std::lock_guard<std::mutex> lock(syncOutLock);
  std::cout << std::hex << "position key: " << ctx.pos.key() << "\nmaterial key: " << ctx.pos.materialKey()
            << std::dec << "\n";
}

// Sets the loop's position without touching the game text; the result is not reported.
void positionCommand(LoopContext& ctx) { applyPositionText(ctx.pos, ctx.args); }

void emptyLineCommand(LoopContext&) { std::cout << "Type ? for help\n"; }

void unknownCommand(const std::string& line) {
  std::lock_guard<std::mutex> lock(syncOutLock);
  std::cout << "Unknown command: " << line << "\n";
}

// Without a depth the word is no command.
void perftOrUnknown(LoopContext& ctx) {
  if (!perftCommand(ctx.pos, ctx.args)) unknownCommand(ctx.line);
}

// Replays the game, then shows it with the colours exchanged.
void flipBoardCommand(LoopContext& ctx) {
  replayGame(ctx.pos, searchFen, true);
  ctx.pos.flip();
  printBoard(ctx.pos);
}

// The dispatch table, tested in this order. The first part runs at all times, also beside a search.
constexpr Command AnyTimeCommands[] = {
  {"quit", stopCommand},
  {"stop", stopCommand},
  {"ponderhit", [](LoopContext&) { ponderhitCommand(); }},
  {"ucinewgame", [](LoopContext& ctx) { ucinewgameCommand(ctx.pos, ctx.args); }},
  {"d", showBoardCommand},
  {"isready", isReadyCommand},
  {"setoption", [](LoopContext& ctx) { setoptionCommand(ctx.args); }},
  {"checklegalitymatedraw", [](LoopContext& ctx) { checkLegalityMateDrawCommand(ctx.pos, ctx.args); }},
  {"convertmovestosan", [](LoopContext& ctx) { convertMovesToSanCommand(ctx.pos, ctx.args); }},
  {"boardtypes", [](LoopContext&) { boardtypesCommand(); }},
};

// The rest runs only while no search runs.
constexpr Command IdleCommands[] = {
  {"perft", perftOrUnknown},
  {"key", keyCommand},
  {"uci", [](LoopContext&) { uciCommand(); }},
  {"go", goUciCommand},
  {"mt", [](LoopContext& ctx) { moveTimeCommand(ctx.args); }},
  {"cc", [](LoopContext& ctx) { computerOnComputerCommand(ctx.args); }},
  {"mtb", [](LoopContext& ctx) { blackMoveTimeCommand(ctx.args); }},
  {"g", [](LoopContext& ctx) { computerMoveCommand(ctx.pos, ctx.args); }},
  {"new", [](LoopContext& ctx) { newCommand(ctx.pos, ctx.args); }},
  {"rules", [](LoopContext& ctx) { rulesCommand(ctx.pos, ctx.args); }},
  {"game", [](LoopContext&) { showSettings(); }},
  {"sp", [](LoopContext& ctx) { setPositionCommand(ctx.pos, ctx.args); }},
  {"save", [](LoopContext& ctx) { saveCommand(ctx.args); }},
  {"open", [](LoopContext& ctx) { openCommand(ctx.pos, ctx.args); }},
  {"move", [](LoopContext& ctx) { moveCommand(ctx.pos, ctx.args); }},
  {"m", [](LoopContext& ctx) { moveCommand(ctx.pos, ctx.args); }},
  {"skill", [](LoopContext& ctx) { skillCommand(ctx.args); }},
  {"s", [](LoopContext& ctx) { skillCommand(ctx.args); }},
  {"skillb", [](LoopContext& ctx) { blackSkillCommand(ctx.args); }},
  {"sb", [](LoopContext& ctx) { blackSkillCommand(ctx.args); }},
  {"msglevel", [](LoopContext& ctx) { msgLevelCommand(ctx.args); }},
  {"qc", [](LoopContext& ctx) { listQuietChecks(ctx.pos); }},
  {"qu", [](LoopContext& ctx) { listQuiets(ctx.pos); }},
  {"ev", [](LoopContext& ctx) { listEvasions(ctx.pos); }},
  {"nev", [](LoopContext& ctx) { listNonEvasions(ctx.pos); }},
  {"cap", [](LoopContext& ctx) { listCaptures(ctx.pos); }},
  {"leg", [](LoopContext& ctx) { listLegal(ctx.pos); }},
  {"see", [](LoopContext& ctx) { listSeeValues(ctx.pos); }},
  {"dms", [](LoopContext& ctx) { dumpLastMoveCommand(ctx.pos); }},
  {"hint", [](LoopContext& ctx) { hintCommand(ctx.pos); }},
  {"h", [](LoopContext& ctx) { hintCommand(ctx.pos); }},
  {"redo", [](LoopContext& ctx) { redoCommand(ctx.pos); }},
  {"r", [](LoopContext& ctx) { redoCommand(ctx.pos); }},
  {"showmoves", [](LoopContext&) { showMovesCommand(); }},
  {"start", [](LoopContext& ctx) { startCommand(ctx.pos, ctx.args); }},
  {"end", [](LoopContext& ctx) { endCommand(ctx.pos); }},
  {"undo", [](LoopContext& ctx) { undoCommand(ctx.pos); }},
  {"u", [](LoopContext& ctx) { undoCommand(ctx.pos); }},
  {"flipb", flipBoardCommand},
  {"setmem", [](LoopContext& ctx) { setmemCommand(ctx.args); }},
  {"eval", [](LoopContext& ctx) { evalCommand(ctx.pos); }},
  {"?", [](LoopContext&) { helpCommand(); }},
  {"position", positionCommand},
  {"flip", [](LoopContext& ctx) { ctx.pos.flip(); }},
  {"bench", [](LoopContext& ctx) { benchCommand(ctx.pos, ctx.args); }},
  {"", emptyLineCommand},
};

void dispatch(LoopContext& ctx, const std::string& token) {
  for (const Command& c : AnyTimeCommands)
    if (token == c.word) return c.run(ctx);

  if (searching) {
    {
      std::lock_guard<std::mutex> lock(syncOutLock);
      std::cout << colorNames[ctx.pos.side()] << " is still making a move...please wait (type q to quit search)"
                << std::endl;
    }
    if (token == "q") stopSearch();
    return;
  }

  for (const Command& c : IdleCommands)
    if (token == c.word) return c.run(ctx);

  unknownCommand(ctx.line);
}

// The next line of input; the end of input counts as "quit".
std::string readCommand() {
  std::string line;
  if (!std::getline(std::cin, line)) return "quit";
  return line;
}

}  // namespace

bool startCommandLoop(Position& pos) {
  if (!pos.set(startFen, pos.thisThread)) return false;
  pos.setSiegeDefaults();
  setPieceValues(pos);
  initPromotableTypes();

  msgFlags = msgFlagsByLevel[msgLevel];
  computerOnComputer = 0;
  secondTableReady = false;
  defaultDepth = blackDepth = 0;
  defaultMoveTime = 3.0;
  blackMoveTime = 0.0;
  redoCount = gameMoveCount = 0;
  hintMove = MoveNone;
  uciGo = false;
  // The leader form no demotion may reach is fixed here, once, from the rules of the start.
  leaderDemotionFloor = magicianDemotesDorn ? Dorn_sword : Dorn;

  if (setGameText(startFen) && replayGame(pos, searchFen, false)) {
    std::cout << pos.pretty(MoveNone, true, false) << "\nType ? for help\n";
  } else {
    std::cout << pos.pretty(MoveNone, false, false) << "\nBad fen and/or moves\n" << std::flush;
    return false;
  }
  if (debug_PL_legal || debugSearchInCheck) std::cout << "debug_PL_legal || debugSearchInCheck on\n";
  std::cout << std::flush;
  return true;
}

bool executeCommand(Position& pos, const std::string& line) {
  std::string token;
  std::istringstream is(line);
  is >> token;
  LoopContext ctx{pos, is, line};
  dispatch(ctx, token);
  std::cout << std::flush;
  return token != "quit";
}

void commandLoop(const std::string& args) {
  // The loop's own position evaluates with tables of its own, apart from the search threads'.
  auto tables = std::make_unique<EvalTables>();
  Position pos;
  pos.thisThread = tables.get();
  if (!startCommandLoop(pos)) {
    readCommand();
    return;
  }
  std::string cmd = args.empty() ? readCommand() : args;
  while (executeCommand(pos, cmd) && args.empty()) cmd = readCommand();
  waitForThinkFinished();
}

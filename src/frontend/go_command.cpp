// The go command, stop and ponderhit, and the bestmove line that ends every search.
#include "frontend/go_command.h"

#include <iostream>
#include <string>
#include <vector>

#include "core/messages.h"
#include "frontend/command_loop.h"
#include "frontend/settings.h"
#include "game/piece_values.h"
#include "movegen/notation.h"
#include "search/root_search.h"
#include "search/thread.h"

void goCommand(Position& pos, std::istream& words) {
  setPieceValues(pos);
  searching = true;

  std::vector<Move> searchMoves;
  std::string token;
  while (words >> token) {
    if (token == "searchmoves") {
      // Every word to the end of the line names a move; one that matches nothing adds MoveNone.
      while (words >> token) searchMoves.push_back(moveFromLegalList(pos, token));
    } else if (token == "wtime") words >> goLimits.wtime;
    else if (token == "btime") words >> goLimits.btime;
    else if (token == "winc") words >> goLimits.winc;
    else if (token == "binc") words >> goLimits.binc;
    else if (token == "movestogo") words >> goLimits.movestogo;
    else if (token == "depth") words >> goLimits.depth;
    else if (token == "nodes") words >> goLimits.nodes;
    else if (token == "movetime") words >> goLimits.movetime;
    else if (token == "mate") words >> goLimits.mate;
    else if (token == "infinite") goLimits.infinite = 1;
    else if (token == "ponder") goLimits.ponder = 1;
  }
  startThinking(pos, goLimits, searchMoves, std::move(setupStates));
}

void stopSearch() {
  Signals.stop = true;
  if (MainThread* main = Threads.main()) main->wake();
}

void ponderhitCommand() {
  if (Signals.stopOnPonderhit)
    stopSearch();
  else
    endPonder();
}

namespace {

// The end of every search, on the main search thread: the expected reply, then the bestmove line.
void reportSearchResult(const RootMove& bestLine, int /*reportedScore*/) {
  Move best = bestLine.pv[0];
  bool realMove = best != MoveNone && moveFrom(best) != moveTo(best);
  if (realMove) hintMove = bestLine.pv[1];

  // The console's report of a computer move (board, statistics, game text, backup file) comes here.

  const bool printBestMove = (msgFlags & MsgBestMove) || uciGo;
  if (printBestMove && realMove && hintMove == MoveNone) hintMove = searchHint(best);
  const std::string line =
      "bestmove " + moveToUci(realMove ? best : MoveNone) + " ponder " + moveToUci(hintMove);

  // A host answers bestmove at once with its next go, which must find the search over.
  if (uciGo) {
    uciGo = false;
    setGameText(startFen);
  }
  searching = false;
  if (printBestMove) {
    std::lock_guard<std::mutex> out(syncOutLock);
    std::cout << line << std::endl;
  }
}

}  // namespace

void installSearchReporter() { setSearchReporter(reportSearchResult); }

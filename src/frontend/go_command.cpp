// The go command, stop and ponderhit, and the report that ends every search.
#include "frontend/go_command.h"

#include <iostream>
#include <string>
#include <vector>

#include "core/messages.h"
#include "core/statistics.h"
#include "frontend/command_loop.h"
#include "frontend/console_play.h"
#include "frontend/game_files.h"
#include "frontend/settings.h"
#include "game/game_end.h"
#include "game/piece_values.h"
#include "movegen/movegen.h"
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

// What a computer move did to the game, seen from the position after it.
struct PlayedMove {
  bool drawn = false;
  bool goalReached = false;  // a Siege 1 win
  int replies = 0;
  std::string drawReason;
  bool endsGame() const { return drawn || goalReached || replies == 0; }
};

PlayedMove playAndLook(Position& root, Move best, std::string* board) {
  PlayedMove played;
  StateInfo st;
  root.do_move(best, st);
  Color goalOwner;
  played.goalReached = captiveOnGoal(root, goalOwner);
  played.drawn = !leaderLost(root) && isDrawPV(root, &played.drawReason);
  if (board) board->append("\n").append(root.pretty(MoveNone, true, false)).append("\n");
  played.replies = legalMoveCount(root);
  root.undo_move(best);
  return played;
}

// The console's lines behind the bestmove line: the end of the game, or the move with its score.
std::string moveVerdict(const RootMove& bestLine, int reportedScore, const PlayedMove& played,
                        const std::string& moveText, Color mover) {
  const std::string side = colorNames[mover];
  std::string text;
  if (played.drawn) text += "\nGame is a draw..." + played.drawReason + "\n";
  else if (played.replies == 0 || played.goalReached) text += "\nGame is over, " + side + " wins...\n";
  else {
    text += "  " + side + " moves " + moveText;
    if (msgFlags & MsgStats) text += " score (" + std::to_string(reportedScore) + ")";
    text += "\n";
  }
  if (bestLine.score >= ValueMateInMaxPly) {
    const int moves = (ValueInfinite - bestLine.score) / 2;
    if (moves >= 1) text += "\n" + side + " wins in " + std::to_string(moves) + " move(s)...\n";
  }
  return text;
}

// The end of every search, on the main search thread. The game text takes the move and goes to the
// backup file; a console search shows the board and the move around the bestmove line, a host's
// search only that line. The command loop keeps away from the game while `searching` is set, except
// `d`, which reads the text under gameTextLock.
void reportSearchResult(const RootMove& bestLine, int reportedScore) {
  Position& root = rootPosition;
  const bool console = !uciGo;
  const Move best = bestLine.pv[0];
  const bool realMove = best != MoveNone && moveFrom(best) != moveTo(best);
  const Color mover = root.side();
  // Without a move the last hint stands: the bestmove line names it as the reply.
  if (realMove) hintMove = bestLine.pv.size() > 1 ? bestLine.pv[1] : MoveNone;

  std::string shownBefore, shownAfter;  // console text around the bestmove line
  PlayedMove played;
  std::string game;
  if (!realMove) {
    // No replies are counted, so the report ends as after a move that leaves none.
    if (console) {
      shownBefore = "!Move, game is over\n";
      shownAfter = moveVerdict(bestLine, reportedScore, played, "", mover);
    }
  } else {
    const std::string gameText = moveToUci(best, &root, false);
    const std::string consoleText = moveToUci(best, &root, true);
    played = playAndLook(root, best, console ? &shownBefore : nullptr);
    if (console && (msgFlags & MsgStats)) shownBefore += statisticsText();
    {
      std::lock_guard<std::mutex> lock(gameTextLock);
      searchFen += " " + gameText;
      game = searchFen;
    }
    if (console && (msgFlags & MsgGameText)) shownBefore += game + "\n";
    saveGame(BackupFileName, game, false);
    if (console) shownAfter = moveVerdict(bestLine, reportedScore, played, consoleText, mover);
  }

  const bool printBestMove = (msgFlags & MsgBestMove) || uciGo;
  if (printBestMove && realMove && hintMove == MoveNone && !played.endsGame()) hintMove = searchHint(best);
  const std::string bestMoveLine =
      "bestmove " + moveToUci(realMove ? best : MoveNone) + " ponder " + moveToUci(hintMove) + "\n";

  // The record of the game (`playedMoves`, `gameMoveCount`) takes the move, for showmoves and start.
  if (console && realMove) recordGameText(game);
  if (uciGo) {
    uciGo = false;
    std::lock_guard<std::mutex> lock(gameTextLock);
    setGameText(startFen);
  }
  // A host answers bestmove at once with its next go, which must find the search over; so must a
  // person who answers the report.
  searching = false;
  std::lock_guard<std::mutex> out(syncOutLock);
  std::cout << shownBefore << (printBestMove ? bestMoveLine : "") << shownAfter << std::flush;
}

}  // namespace

void installSearchReporter() { setSearchReporter(reportSearchResult); }

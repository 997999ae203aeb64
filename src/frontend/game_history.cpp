// The game is one text: going back takes moves off its end onto the redo stack, going forward puts them back.
#include "frontend/game_history.h"

#include <algorithm>
#include <cctype>
#include <iostream>

#include "core/plain_number.h"
#include "frontend/command_loop.h"
#include "frontend/settings.h"
#include "game/position.h"
#include "movegen/notation.h"

std::string stripLastMove(std::string& text, bool record) {
  const size_t last = text.find_last_not_of(" \t\r\n");
  if (last == std::string::npos) return "";
  const size_t begin = text.find_last_of(" \t\r\n", last) + 1;  // npos + 1 is 0
  std::string word = text.substr(begin, last + 1 - begin);
  if (word.find("moves") != std::string::npos || word.find("startpos") != std::string::npos ||
      std::isdigit(static_cast<unsigned char>(word[0])))
    return "";
  text.erase(begin);
  if (record && redoCount < MaxGameMoves) redoMoves[redoCount++] = " " + word;
  return word;
}

namespace {

// A replay rewrites the move count; going back and forth keeps the length of the whole game.
void replayKeepingLength(Position& pos, bool echo) {
  const int wholeGame = gameMoveCount;
  replayGame(pos, searchFen, echo);
  gameMoveCount = wholeGame;
}

// Moves the top of the redo stack back onto the game text; false when the stack is empty.
bool popRedo(std::string* entry = nullptr) {
  if (redoCount == 0) return false;
  --redoCount;
  searchFen += redoMoves[redoCount];
  if (entry) *entry = redoMoves[redoCount];
  return true;
}

}  // namespace

void undoCommand(Position& pos) {
  const std::string move = stripLastMove(searchFen, true);
  if (move.empty()) {
    std::cout << "No moves to undo\n";
    return;
  }
  replayKeepingLength(pos, false);
  printBoard(pos);
  std::cout << "  Undid > " << move << "\n";
  hintMove = MoveNone;
}

void redoCommand(Position& pos) {
  std::string entry;
  if (!popRedo(&entry)) {
    std::cout << "No moves to redo\n";
    return;
  }
  replayKeepingLength(pos, true);
  printBoard(pos);
  std::cout << "  Redid >" << entry << "\n";
  hintMove = MoveNone;
}

void startCommand(Position& pos, std::istream& is) {
  if (gameMoveCount == 0) {
    std::cout << "No moves\n";
    return;
  }
  while (!stripLastMove(searchFen, true).empty()) {
  }
  replayKeepingLength(pos, true);
  redoCount = std::min(gameMoveCount, MaxGameMoves);  // the stack holds no more, however long the game

  std::string word;
  if (is >> word) {
    int forward = plainNumber(word);
    if (forward > 0) {
      while (forward-- > 0 && popRedo()) {
      }
      replayKeepingLength(pos, true);
    }
  }
  printBoard(pos);
}

void endCommand(Position& pos) {
  if (gameMoveCount == 0) {
    std::cout << "No moves\n";
    return;
  }
  while (popRedo()) {
  }
  replayKeepingLength(pos, true);
  printBoard(pos);
}

void showMovesCommand() {
  std::string game = searchFen;
  int moves = redoCount;
  while (!stripLastMove(game, false).empty()) ++moves;
  if (moves > MaxGameMoves) moves = MaxGameMoves;
  if (moves == 0) {
    std::cout << "No moves\n";
    return;
  }
  std::string list;
  for (int i = 0; i < moves; ++i) {
    if (i % 2 == 0) list.append("\n").append(std::to_string(i / 2 + 1)).append("..");
    list += playedMoves[i];
  }
  std::cout << list << "\n";
}

void dumpLastMoveCommand(Position& pos) {
  std::string game = searchFen;
  std::string move = stripLastMove(game, true);
  replayGame(pos, game, true);
  // A game without moves gives no move; the parse has said so.
  Move m = moveFromSquares(pos, move);
  if (m != MoveNone) pos.dumpMove(m);
}

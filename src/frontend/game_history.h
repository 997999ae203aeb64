// Going back and forward in the game: undo, redo, start, end, the move list and the last move's dump.
#pragma once

#include <istream>
#include <string>

class Position;

// Takes the last move off a game text and returns it, or returns "" and leaves the text alone when
// its last word is no move (a marker or a FEN counter). With `record` the move is pushed on the
// redo stack while it has room.
std::string stripLastMove(std::string& text, bool record);

void undoCommand(Position& pos);                     // "undo", "u"
void redoCommand(Position& pos);                     // "redo", "r"
void startCommand(Position& pos, std::istream& is);  // "start [n]"
void endCommand(Position& pos);                      // "end"
void showMovesCommand();                             // "showmoves"
void dumpLastMoveCommand(Position& pos);             // "dms"

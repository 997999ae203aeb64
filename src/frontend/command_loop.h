// The command loop: reads lines, dispatches their first word, and keeps the game text in step with the board.
#pragma once

#include <deque>
#include <istream>
#include <memory>
#include <mutex>
#include <string>

#include "frontend/position_intake.h"
#include "game/position.h"

// Identification: "Dorn 0.25 64bit by Alda Reve", or the UCI form with "\nid author ".
std::string engineInfo(bool uciForm);

// Runs until "quit" or the end of input; with a non-empty `args`, runs that one line and returns.
void commandLoop(const std::string& args);
// The loop's start-up: settings, the game text of the start FEN replayed onto pos, the first board.
// False, after its message, when the start position cannot be set up.
bool startCommandLoop(Position& pos);
// Carries out one line on pos: its first word picks the command. False when that word was "quit".
bool executeCommand(Position& pos, const std::string& line);

// State records of the moves of the last set-up; handed over to the search at `go`.
using StateList = std::deque<StateInfo>;
extern std::unique_ptr<StateList> setupStates;

// Held where the command loop and the end of a search can meet on the game: by every replay (it
// writes the chain of state records, `playedMoves`, `gameMoveCount` and the siege geometry), by
// `d` while it reads `searchFen`, and by the report of a computer move while it writes it.
extern std::mutex gameTextLock;

// "startpos [moves ...]" or "fen <FEN> [moves ...]" onto pos; false, with a message for a bad move,
// when the text cannot be applied. A position refused at the door leaves pos as it was; `outcome`,
// when given, tells why a text was not applied.
bool applyPositionText(Position& pos, std::istream& is, Intake* outcome = nullptr);
// A move read from text may be played: it moves a piece of the side to move elsewhere, legally.
bool textMoveAllowed(const Position& pos, Move m);
// Applies a game text; with `echo` and the game-text message bit on, prints it.
bool replayGame(Position& pos, const std::string& text, bool echo, Intake* outcome = nullptr);
// Replays a game text on a position of its own, for the record a replay keeps (`playedMoves`,
// `gameMoveCount`); the loop's position and its state records stay as they are.
bool recordGameText(const std::string& text);
// Makes `fen` the whole game text; false for an empty FEN.
bool setGameText(const std::string& fen);
// Appends the empty move list unless the text has one.
void ensureMovesMarker(std::string& text);
// Replays the game text and prints the board with its legal-move line.
void showBoard(Position& pos);
// Prints the board picture of pos as it stands, and a newline.
void printBoard(const Position& pos);

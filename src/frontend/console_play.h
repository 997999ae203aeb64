// Playing at the console: the user's move, the computer's move and the hint.
#pragma once

#include <istream>
#include <string>

class Position;

// The name of the file every move of the game is written to.
inline constexpr const char* BackupFileName = "backup.txt";

void moveCommand(Position& pos, std::istream& is);          // "m", "move"
void computerMoveCommand(Position& pos, std::istream& is);  // "g [seconds] [go words]"
void hintCommand(Position& pos);                            // "hint", "h"

// Why a word the console took for a move matches no legal move, as the user is told.
std::string invalidMoveExplanation(const Position& pos, const std::string& word);

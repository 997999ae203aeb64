// Game files: a game with its options section, written by `save` and after every move, read by `open`.
#pragma once

#include <istream>
#include <string>

#include "frontend/game_options.h"

class Position;

// Writes `gameText` ("fen <FEN> startpos moves ...") with the options section in front of
// "startpos". With `announce` off nothing is printed, also not a failure.
bool saveGame(const std::string& fileName, const std::string& gameText, bool announce);

void saveCommand(std::istream& is);                 // "save"
void openCommand(Position& pos, std::istream& is);  // "open"

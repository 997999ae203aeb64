// How a host picks the game: ucinewgame with its game options, and the list of game types.
#pragma once

#include <istream>

class Position;

void ucinewgameCommand(Position& pos, std::istream& is);
void boardtypesCommand();

// Move text for the board picture, supplied by the notation layer.
#pragma once

#include <string>

#include "core/types.h"

class Position;

// The move in the notation of the board picture.
std::string moveToNotation(const Position& pos, Move m);
// Every legal move of the position in that notation, each followed by a blank.
std::string legalMovesText(const Position& pos);

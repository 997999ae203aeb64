// Moves as text and text as moves: the wire, game text and console forms, and SAN.
#pragma once

#include <string>

#include "core/types.h"

class Position;

// Wire form with no position: from and to squares; with a position the promotion or demotion
// letter follows, and with `withCaptureSign` an "x" marks a capture.
std::string moveToUci(Move m, const Position* pos = nullptr, bool withCaptureSign = false);
std::string moveToSan(const Position& pos, Move m);
// The word's two squares as a move of this position, with no legality test; MoveNone when the
// squares are bad. A word shorter than four characters is reported.
Move moveFromSquares(const Position& pos, std::string& word);

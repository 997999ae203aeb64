// The one door by which a position from outside comes in: read aside, refused when no game reaches it.
#pragma once

#include <string>

class Position;

enum class Intake {
  Taken,
  Unreadable,   // the FEN reader (or, for a game text, a move) refused it, with its own message
  Unreachable,  // no game gets there: an open enemy leader, a piece on a tower, a captive or breach astray
};

// Reads `fen` on a fresh position and takes it into `pos` only if the reader accepts it and no game
// could reach it. A refused text leaves `pos` and the siege geometry as they were.
Intake takePosition(Position& pos, const std::string& fen);

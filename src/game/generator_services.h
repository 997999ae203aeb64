// What the rules borrow from the move generators, which sit a layer above them.
#pragma once

#include <string>

class Position;

// Filled once at start-up by the generators (installGeneratorServices) before the first position is
// set up, and read-only afterwards.
struct GeneratorServices {
  // Whether the side to move has a legal move: a check after 100 quiet plies is a mate or a draw.
  bool (*hasLegalMove)(const Position&) = nullptr;
  // Every legal move in the notation of the board picture, each followed by a blank.
  std::string (*legalMovesText)(const Position&) = nullptr;
  // The generators' lists for do_move's internal-error report: "captures", "quiets", "quietchecks".
  void (*printMoveLists)(const Position&) = nullptr;
};

extern GeneratorServices generatorServices;

// The bench command and perft: counting move trees and timing runs over a list of positions.
#pragma once

#include <cstdint>
#include <istream>

class Position;

// Leaf count of the legal move tree; depth in half plies, 2 being one ply.
uint64_t perft(Position& pos, int depth);
// bench [hash] [threads] [limit] [default|current|file] [depth|time|nodes|mate|perft]
void benchCommand(Position& pos, std::istream& is);
// perft N: bench of the current position to N plies, with the options as they are.
// Returns false when no number follows, so that the word is no command.
bool perftCommand(Position& pos, std::istream& is);

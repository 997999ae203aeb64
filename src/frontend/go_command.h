// Starting a search from a command line, stopping it, and reporting its move.
#pragma once

#include <istream>

class Position;

// Reads the limits and search moves behind `go` (or `g`) and starts the search; returns at once.
void goCommand(Position& pos, std::istream& words);
// `stop`, `quit` and the console's `q`: the running search ends and hands in its move.
void stopSearch();
// The host played the expected move: a search that is done waits no longer, others go on by the clock.
void ponderhitCommand();
// Makes the search's end report through the front end; at start-up.
void installSearchReporter();

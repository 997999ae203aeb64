// The move a search can take without searching: from the opening book, else a set-up move.
#pragma once

#include "game/position.h"
#include "search/root_search.h"

// With option "OwnBook" on and a search that is neither endless nor a mate search: a book move
// that stands among the root moves goes to the front of RootMoves and into `bestLine`; failing
// that, in the first two plies of a game, a set-up move of the game type becomes `bestLine`, with
// the expected reply as its second move and a score of 0. True when the search is answered.
// Runs on the main search thread before the other threads are woken; `pos` is the root position.
bool openingChoice(Position& pos, RootMove& bestLine, int& reportedScore);

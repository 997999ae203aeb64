// Static exchange evaluation: what a move wins or loses if both sides go on taking on its square.
#pragma once

#include "game/position.h"

// The gain of m for the side to move, in middle-game values, when each side in turn takes on the
// square at stake with its cheapest piece and may stop whenever going on would cost it. m is a
// pseudo-legal word of this position. The call changes the position's byType while it runs and
// puts it back before it returns, so no other thread may read the position meanwhile.
Value see(Position& pos, Move m);

// 1 without further work when the piece on the to square is worth at least the mover, otherwise
// see(m). Callers that ask whether a move is safe test the result with >= 0.
Value seeSign(Position& pos, Move m);

// The front end's process-wide state: the game text, console settings and undo bookkeeping.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "core/messages.h"
#include "core/types.h"
#include "search/search_limits.h"

// The game as one text: "fen <FEN> startpos moves <move> ...". Every shown position is rebuilt from it.
extern std::string searchFen;
// Start FEN of the current game type.
extern const char* startFen;

// Seconds per computer move; Black's 0 means the default applies to Black too.
extern double defaultMoveTime;
extern double blackMoveTime;
// Skill levels; 0 means no limit. Black's has no fall-back to White's.
extern int defaultDepth;
extern int blackDepth;
extern int computerOnComputer;
extern bool secondTableReady;

// Undo/redo bookkeeping; each entry is a blank followed by a move's text.
constexpr int MaxGameMoves = 400;
extern std::string redoMoves[MaxGameMoves];
extern int redoCount;
extern std::string playedMoves[MaxGameMoves];
extern int gameMoveCount;

extern Move hintMove;
extern GoLimits goLimits;

// A new game, position or text: no move to redo and no hint.
void forgetFuture();

// Start values of the front end's state.
#include "frontend/settings.h"

#include "game/rules.h"

std::string searchFen;
const char* startFen = gameTypeTable[DefaultGameType].startFen;

double defaultMoveTime = 3.0;
double blackMoveTime = 0.0;
int defaultDepth = 0;
int blackDepth = 0;
int computerOnComputer = 0;
bool secondTableReady = false;

std::string redoMoves[MaxGameMoves];
int redoCount = 0;
std::string playedMoves[MaxGameMoves];
int gameMoveCount = 0;

Move hintMove = MoveNone;

GoLimits goLimits = {};

void forgetFuture() {
  redoCount = 0;
  hintMove = MoveNone;
}

// Storage of the process-wide move list; shared by all threads without a lock.
#include "game/move_stack.h"

Move moveStack[MoveStackSize];
bool moveStackCapture[MoveStackSize];
int moveStackCount = 0;

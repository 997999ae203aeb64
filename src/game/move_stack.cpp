// Storage of the per-thread move lists.
#include "game/move_stack.h"

thread_local Move moveStack[MoveStackSize];
thread_local bool moveStackCapture[MoveStackSize];
thread_local int moveStackCount = 0;

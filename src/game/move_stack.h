// Each thread's list of the moves it has made, read by the dumps of internal error reports; one
// list per thread, since every search thread makes moves on a position of its own.
#pragma once

#include "core/types.h"

constexpr int MoveStackSize = 200;
extern thread_local Move moveStack[MoveStackSize];
extern thread_local bool moveStackCapture[MoveStackSize];  // whether each move took a piece
extern thread_local int moveStackCount;

// The process-wide list of moves made, read by the dumps of internal error reports.
#pragma once

#include "core/types.h"

constexpr int MoveStackSize = 200;
extern Move moveStack[MoveStackSize];
extern bool moveStackCapture[MoveStackSize];  // whether each move took a piece
extern int moveStackCount;

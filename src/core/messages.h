// How much the program says, read by every layer, and the lock that keeps its output lines whole.
#pragma once

#include <mutex>

// Message levels: only the mask is tested.
extern int msgLevel;
extern int msgFlags;
extern const int msgFlagsByLevel[3];  // {5, 13, 63}
constexpr int MsgMoveList = 0x02;     // the board adds the legal moves
constexpr int MsgBestMove = 0x04;     // "bestmove" in a console search
constexpr int MsgSearchInfo = 0x08;   // "info" lines in a console search
constexpr int MsgGameText = 0x10;     // the board adds its FEN; replays echo the game text
constexpr int MsgStats = 0x20;        // statistics after a computer move

// Keeps lines whole where they may meet the output of a running search.
extern std::mutex syncOutLock;

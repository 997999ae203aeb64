// The published table of 781 random numbers that keys positions in opening book files.
#pragma once

#include <cstdint>

// Entries 0-767: 64 * kind + square for twelve kinds of piece; 768-779: castling and en passant
// (not used by this game); 780: White to move.
constexpr int BookRandomCount = 781;
constexpr int BookTurnEntry = 780;
extern const uint64_t Random64[BookRandomCount];

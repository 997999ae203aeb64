// The text that names the pieces attacking a leader, shared by the board picture, the console and the host.
#pragma once

#include <string>

#include "core/types.h"

// "[ b7 c8 ] threatens [ a8 ]": each attacker's square, lowest first, then the square attacked.
std::string threatensText(Bitboard attackers, Square target);

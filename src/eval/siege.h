// Siege scoring: where the captive is, who carries it, whether it arrives at once, the towers' state.
#pragma once

#include "core/types.h"

class Position;

// The position's siege score from White's point of view, packed; 0 outside the siege games. With
// `report`, the scoring functions print their terms (in the second siege game with the board
// before and the sum after).
Score scoreSiege(const Position& pos, bool report = false);

// First siege game; `carrier` is the piece on the captive's square or 0. The colour is always White.
Score scoreSiege1(const Position& pos, Piece carrier, Color color, bool report);
// Second siege game: the score of colour c's captive, unpacked, from White's point of view.
int scoreSiege2(const Position& pos, Piece carrier, Color c, bool report);

// First siege game: the carrier can step onto one of its goal squares now; `color` gets its colour.
bool siege1ImminentWin(const Position& pos, Color& color);

// makeScore(-50, -50) for each enemy piece that attacks colour k's carrier.
Score captiveSafety(const Position& pos, Color k);

// Makes the siege score of every position that is set up or moved into come from scoreSiege.
void installSiegeScoring();

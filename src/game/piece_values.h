// Rule-dependent piece values, their fold into psq, and the order of types by value.
#pragma once

#include "core/types.h"

class Position;

// Types in the order a colour brings in its attackers; index 0 is never read.
extern PieceType naturalTypeOrder[PieceTypeNb];
extern PieceType valueTypeOrder[PieceTypeNb];

// Recomputes the values of the rule-dependent types for the rules in force and this position,
// the demotion reach of the Magicians, the affected psq rows and valueTypeOrder.
void setPieceValues(const Position& pos);
// Only the Magicians' part of it: their values and demotion reach under the extension counts.
void applyMagicianExtensions(const Position& pos);

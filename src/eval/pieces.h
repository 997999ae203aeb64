// Evaluation of one side's pieces: placement extras, mobility, pins and the leader's safety.
#pragma once

#include "core/types.h"
#include "eval/eval_info.h"

class Position;

// Fills ei.attackedBy[us][*], ei.attackedByNoSwords[us] and ei.mobility[us]; returns the
// side's piece terms from White's point of view of that side (positive is good for us).
Score evaluatePieces(const Position& pos, EvalInfo& ei, Color us);

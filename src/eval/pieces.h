// Evaluation of one side's pieces: mobility, threat penalties, outposts and pins.
#pragma once

#include "core/types.h"
#include "eval/eval_info.h"

class Position;

// Expects the enemy's Sword and Magician1 sets in ei to be complete. Fills ei.attackedBy[us][*],
// ei.attackedByNoSwords[us] and ei.mobility[us]; returns the side's piece terms without
// mobility, positive when good for us. typeTerms, when given (the evaluation report), receives
// each type's share of the result at [t], t = Sword .. Dorn_sword; slots of absent types are 0.
Score evaluatePieces(const Position& pos, EvalInfo& ei, Color us, Score* typeTerms = nullptr);

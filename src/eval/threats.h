// Threats against enemy pieces, and the leader rows of the evaluation report.
#pragma once

#include "core/types.h"
#include "eval/eval_info.h"

class Position;

// Us's threats against Them; reads the attack sets of both colours, which must be complete.
Score evaluateThreats(const Position& pos, const EvalInfo& ei, Color us);

// Copies the rows of the threat table that depend on the rule flags; run by evaluate_init.
void evaluateThreatsInit();

// The "Dorn safety" and "Dorn threat" rows of the evaluation report; they never reach evaluate.
void dornSafetyReport(const Position& pos, const EvalInfo& ei, Color us, Score& safety, Score& threat);

// Threats: bonuses for attacks on enemy pieces that are weak or worth more than the attacker.
#pragma once

#include "core/types.h"
#include "eval/eval_info.h"

class Position;

// Reads the attack sets both sides' piece evaluation filled; positive is good for us.
Score evaluateThreats(const Position& pos, const EvalInfo& ei, Color us);

// Copies the rows of the threat table that depend on the rule flags; run by evaluate_init.
void evaluateThreatsInit();

// Threats against enemy pieces, and the leader rows of the evaluation report.
#pragma once

#include "core/types.h"
#include "eval/eval_info.h"

class Position;

// ThreatBonus[t][v]: an attacker of type t against a victim of type v; pins read it too, with t
// the pinner. The Dorn_sword row follows swordsCaptureMounts as evaluateThreatsInit last saw it.
extern Score ThreatBonus[TypeSlots][TypeSlots];

// Us's threats against Them; reads the attack sets of both colours, which must be complete.
Score evaluateThreats(const Position& pos, const EvalInfo& ei, Color us);

// Copies the rows of the threat table that depend on the rule flags; run by evaluate_init.
void evaluateThreatsInit();

// The "Dorn safety" and "Dorn threat" rows of the evaluation report. They never reach evaluate: a
// leader's safety counts for nothing there, and pressure on a leader is scored by pins alone.
void dornSafetyReport(const Position& pos, const EvalInfo& ei, Color us, Score& safety, Score& threat);

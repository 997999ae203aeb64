// The console's "eval": the siege report in a siege game, then the evaluation report.
#pragma once

class Position;

void evalCommand(Position& pos);

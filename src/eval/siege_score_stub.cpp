// Siege scoring of a position; until the evaluation scores towers and captives, every position scores 0.
#include "game/position.h"

int Position::computeSiegeScore() const { return 0; }

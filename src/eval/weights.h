// The evaluation's tunable weights: percentages read from the options and the weights made of them.
#pragma once

#include "core/types.h"

// The percentage option of that name (0 to 200, 100 when untouched). The one place where the
// evaluation reads an option.
int optionPercent(const char* name);

// `internal` scaled half by half by two percentage options: mgOption for the middle game,
// egOption for the end game.
Score weightOption(const char* mgOption, const char* egOption, Score internal);

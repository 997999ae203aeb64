// Percentage options as the evaluation reads them, and the scaling of an internal weight by them.
#include "eval/weights.h"

#include "core/options.h"
#include "eval/eval_info.h"

int optionPercent(const char* name) { return Options[name].intValue(); }

Score weightOption(const char* mgOption, const char* egOption, Score internal) {
  Score w = makeScore(optionPercent(mgOption) * 256 / 100, optionPercent(egOption) * 256 / 100);
  return applyWeight(internal, w);
}

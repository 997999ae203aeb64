// Percentage options as the evaluation reads them, and the scaling of an internal weight by them.
#include "eval/weights.h"

#include "eval/eval_info.h"

int optionPercent(const char*) {
  // Every percentage option defaults to 100 until the option table answers here.
  return 100;
}

Score weightOption(const char* mgOption, const char* egOption, Score internal) {
  Score w = makeScore(optionPercent(mgOption) * 256 / 100, optionPercent(egOption) * 256 / 100);
  return applyWeight(internal, w);
}

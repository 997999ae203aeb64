// TEMPORARY: zero piece and threat terms until their evaluators land. Weak, so the real ones win.
#include "eval/pieces.h"
#include "eval/threats.h"

__attribute__((weak)) Score evaluatePieces(const Position&, EvalInfo&, Color, Score*) { return 0; }
__attribute__((weak)) Score evaluateThreats(const Position&, const EvalInfo&, Color) { return 0; }
__attribute__((weak)) void evaluateThreatsInit() {}
__attribute__((weak)) void dornSafetyReport(const Position&, const EvalInfo&, Color, Score& safety, Score& threat) {
  safety = threat = 0;
}

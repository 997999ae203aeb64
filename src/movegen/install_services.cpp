// The generators' side of the services the rules layer borrows: legal-move tests and move lists.
#include "movegen/install_services.h"

#include <iostream>
#include <string>

#include "game/generator_services.h"
#include "movegen/movegen.h"
#include "movegen/notation.h"

namespace {

bool hasLegalMove(const Position& pos) {
  ScoredMove list[MaxMoves];
  return generateLegal(pos, list) != list;
}

std::string legalMovesText(const Position& pos) {
  ScoredMove moves[MaxMoves];
  std::string text;
  for (ScoredMove *m = moves, *end = generateLegal(pos, moves); m != end; ++m)
    text += moveToSan(pos, m->move) + " ";
  return text;
}

void printMoveList(const Position& pos, const char* name, ScoredMove* (*generate)(const Position&, ScoredMove*)) {
  ScoredMove list[MaxMoves];
  ScoredMove* end = generate(pos, list);
  std::cout << name << ": ";
  for (ScoredMove* sm = list; sm != end; ++sm) std::cout << moveToUci(sm->move) << " ";
  std::cout << "\n";
}

void printMoveLists(const Position& pos) {
  printMoveList(pos, "captures", generateCaptures);
  printMoveList(pos, "quiets", generateQuiets);
  if (!pos.inCheck()) printMoveList(pos, "quietchecks", generateQuietChecks);
}

}  // namespace

void installGeneratorServices() {
  generatorServices.hasLegalMove = hasLegalMove;
  generatorServices.legalMovesText = legalMovesText;
  generatorServices.printMoveLists = printMoveLists;
}

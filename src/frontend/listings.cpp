// The listing commands: each move as piece letter, squares, promotion or demotion mark, captive word.
#include "frontend/listings.h"

#include <iostream>
#include <string>

#include "movegen/movegen.h"
#include "movegen/notation.h"
#include "search/see.h"

namespace {

const char* captiveWord(Move m) {
  switch (captiveKind(m)) {
    case Pickup: return "Pickup ";
    case Dropoff: return "Dropoff ";
    case Transfer: return "Transfer ";
    default: return "";
  }
}

void listMoves(const Position& pos, const char* title, ScoredMove* (*generate)(const Position&, ScoredMove*)) {
  ScoredMove moves[MaxMoves];
  ScoredMove* end = generate(pos, moves);
  std::string text = std::string("\n") + title + " moves: " + (pos.side() == BLACK ? ".." : "");
  for (ScoredMove* m = moves; m != end; ++m) text += pos.printMoveShort(m->move) + " " + captiveWord(m->move);
  std::cout << text << "\n";
}

}  // namespace

void listQuietChecks(const Position& pos) { listMoves(pos, "quiet check", generateQuietChecks); }
void listCaptures(const Position& pos) { listMoves(pos, "captures", generateCaptures); }
void listQuiets(const Position& pos) { listMoves(pos, "quiet", generateQuiets); }
void listEvasions(const Position& pos) {
  if (pos.inCheck()) listMoves(pos, "evasions", generateEvasions);
  else std::cout << "Side is not in check\n";
}
void listNonEvasions(const Position& pos) { listMoves(pos, "non evasions", generateNonEvasions); }
void listLegal(const Position& pos) { listMoves(pos, "legal", generateLegal); }

void listSeeValues(Position& pos) {
  ScoredMove moves[MaxMoves];
  ScoredMove* end = generateLegal(pos, moves);
  std::string text = "see values:\n";
  for (ScoredMove* m = moves; m != end; ++m)
    text += moveToUci(m->move) + " " + std::to_string(see(pos, m->move)) + "\n";
  std::cout << text;
}

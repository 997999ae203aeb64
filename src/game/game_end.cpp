// Tests that end a game, shared by the front end and, in cheaper forms, the search.
#include "game/game_end.h"

#include <algorithm>
#include <iostream>

#include "core/psqt.h"
#include "game/generator_services.h"
#include "game/position.h"
#include "game/rules.h"

PieceType promotableTypes[7];

void initPromotableTypes() {
  const PieceType types[7] = {Sword, Assassin, Archer, Magician, Dorn_archer, Dorn_sword, NoPieceType};
  std::copy(std::begin(types), std::end(types), promotableTypes);
}

bool leaderLost(const Position& pos) {
  return pos.leaderSquare(WHITE) == NoSquare || pos.leaderSquare(BLACK) == NoSquare;
}

bool captiveOnGoal(const Position& pos, Color& winner) {
  if (!siege1) return false;
  Square s = pos.siege1CaptiveSquare;
  if (s == NoSquare || pos.empty(s)) return false;
  for (Color c : {WHITE, BLACK})
    if (goalSquares[c] & squareBit[s]) {
      winner = c;
      return true;
    }
  return false;
}

bool gameOver(const Position& pos, int& winner) {
  Color goalOwner = WHITE;
  bool onGoal = captiveOnGoal(pos, goalOwner);
  if (!leaderLost(pos) && !onGoal) return false;
  if (onGoal) winner = goalOwner;
  std::cout << "Game is over";
  if (winner == WHITE || winner == BLACK) std::cout << ", " << colorNames[winner] << " wins...";
  std::cout << "\n";
  return true;
}

Value getDornValue(const Position& pos, Color c) {
  PieceType t = pos.dornType(c);
  if (t == Bondsman || isDornForm(t)) return pieceValueMg[t];
  std::cout << "?getDornValue,pt=" << t;
  return 0;
}

namespace {

bool hasMagicianForm(const Position& pos, Color c) {
  return pos.count(c, Magician1) || pos.count(c, Magician) || pos.count(c, Magician2);
}

bool towersUnopenable(const Position& pos) {
  bool magicians = hasMagicianForm(pos, WHITE) || hasMagicianForm(pos, BLACK);
  if (siege1) return pos.siege1CaptiveSquare == NoSquare && !magicians;
  if (siege2) {
    for (Color c : {WHITE, BLACK})
      if (pos.siege2Breached[c] || !pos.siege2CaptiveAlive[c] || pos.siege2CaptiveReleased[c] ||
          pos.siege2Tower[c] != siege2TowerSquares[c])
        return false;
    return !magicians;
  }
  return false;
}

bool insufficientMaterial(const Position& pos) {
  if (siegeGame()) return false;
  if (basePromotions) {
    for (Color c : {WHITE, BLACK}) {
      for (const PieceType* t = promotableTypes; *t; ++t)
        if (pos.count(c, *t)) return false;
      int leaders = pos.count(c, Bondsman) + pos.count(c, Dorn) + pos.count(c, Dorn_archer) +
                    pos.count(c, Dorn_sword);
      if (leaders > 1) return false;
      for (PieceType t : {Magician1, Warrior, Magician2})
        if (pos.count(c, t)) return false;
    }
    return true;
  }
  Value diff[2];
  for (Color c : {WHITE, BLACK}) diff[c] = pos.state()->npMaterial[c] - getDornValue(pos, c);
  if (diff[WHITE] < 0 || diff[BLACK] < 0) {
    std::cout << "draw? npm < 0 (" << diff[WHITE] << "," << diff[BLACK] << "\n";
    pos.dumpMoveStack();
  }
  Value n = diff[WHITE] + diff[BLACK];
  bool minors = pos.pieces(Sword) || pos.pieces(Magician1);
  return (n < 651 && !minors) || n < 1;
}

bool hundredPlies(const Position& pos) {
  if (pos.state()->pliesSinceCapture <= 99) return false;
  if (!pos.inCheck()) return true;
  return generatorServices.hasLegalMove(pos);  // else a mate stands
}

// Counts earlier occurrences of the position, up to `wanted`.
bool repeated(const Position& pos, int wanted) {
  const StateInfo* st = pos.state();
  int e = std::min(st->pliesSinceCapture, st->pliesSinceNull);
  if (e < 4) return false;
  const StateInfo* stp = st;
  for (int i = 0; i < 4; ++i) {
    if (!stp->previous) return false;
    stp = stp->previous;
  }
  int found = 0;
  for (int distance = 4; distance <= e; distance += 2) {
    if (stp->key == st->key && ++found >= wanted) return true;
    for (int i = 0; i < 2; ++i) {
      if (!stp->previous) return false;
      stp = stp->previous;
    }
  }
  return false;
}

}  // namespace

bool isDrawQuiescence(const Position& pos) {
  return towersUnopenable(pos) || insufficientMaterial(pos) || hundredPlies(pos);
}

bool isDrawNonPV(const Position& pos) { return isDrawQuiescence(pos) || repeated(pos, 1); }

bool isDrawPV(const Position& pos, std::string* reason) {
  const char* why = nullptr;
  if (towersUnopenable(pos)) why = "no magicians left to breach the tower";
  else if (insufficientMaterial(pos)) why = "not enough material for anyone to win";
  else if (hundredPlies(pos)) why = "100 moves and no captures";
  else if (repeated(pos, 2)) why = "three move repetition";
  if (why && reason) *reason = why;
  return why != nullptr;
}

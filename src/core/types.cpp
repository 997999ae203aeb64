// Letter tables, names and the text forms of squares and moves.
#include "core/types.h"

#include <cctype>

const char* const colorNames[2] = {"WHITE", "BLACK"};

const char fenLetters[]   = " SGNAMWHFKJI     sgnamwhfkji";
const char boardLetters[] = " SMNAMWMFKKK#*   smnamwmfkkk#*";
const char firstMarks[]   = "  -    +  AS      -    +  as";
const char secondMarks[]  = "           -               -";

const char* const pieceTypeNames[TypeSlots] = {
  "", "Sword", "Magician1", "Assassin", "Archer", "Magician", "Warrior",
  "Magician2", "Bondsman", "Dorn", "Dorn_archer", "Dorn_sword", "-", "-", "-", "-"};

std::string squareToString(Square s) {
  if (s < 0 || s >= NoSquare) return "-";
  return {char('a' + fileOf(s)), char('1' + rankOf(s))};
}

std::string squareToStringUpper(Square s) {
  if (s == NoSquare) return "-";
  if (s < 0 || s > NoSquare) return "??";
  return {char('A' + fileOf(s)), char('1' + rankOf(s))};
}

Square parseSquare(const std::string& text) {
  if (text.size() < 2) return NoSquare;
  int file = std::tolower(static_cast<unsigned char>(text[0])) - 'a';
  int rank = text[1] - '1';
  if (file < 0 || file > 7 || rank < 0 || rank > 7) return NoSquare;
  return makeSquare(file, rank);
}

std::string moveToWire(Move m) {
  if (m == MoveNone) return "(none)";
  if (m == MoveNull) return "0000";
  return squareToString(moveFrom(m)) + squareToString(moveTo(m));
}

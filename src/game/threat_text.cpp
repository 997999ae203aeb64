// The "threatens" text of a leader under attack.
#include "game/threat_text.h"

#include <bit>

std::string threatensText(Bitboard attackers, Square target) {
  std::string text = "[ ";
  for (Bitboard b = attackers; b; b &= b - 1) text += squareToString(std::countr_zero(b)) + " ";
  return text + "] threatens [ " + squareToString(target) + " ]";
}

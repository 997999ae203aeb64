// Piece values follow the rule flags; a Siege 1 tower still whole raises the Magicians' worth.
#include "game/piece_values.h"

#include <algorithm>

#include "core/bitboard.h"
#include "core/psqt.h"
#include "game/position.h"
#include "game/rules.h"

PieceType naturalTypeOrder[PieceTypeNb] = {
  NoPieceType, Sword, Magician1, Assassin, Archer, Magician,
  Warrior, Magician2, Bondsman, Dorn, Dorn_archer, Dorn_sword};
PieceType valueTypeOrder[PieceTypeNb];

namespace {

struct ValuePair { Value mg, eg; };

// Rows by extended demotion squares 0, 1, 2.
constexpr ValuePair MagicianValues[3] = {{1025, 575}, {1425, 975}, {2250, 1800}};
constexpr ValuePair Magician2Values[3] = {{1450, 1150}, {1850, 1550}, {2250, 1950}};
// A whole Siege 1 tower makes the Magicians, its only openers, worth more.
constexpr ValuePair MagicianWholeTower = {1225, 775};
constexpr ValuePair Magician2WholeTower = {1750, 1450};

void store(PieceType t, ValuePair v) {
  pieceValueMg[t] = pieceValueMg[t + 16] = v.mg;
  pieceValueEg[t] = pieceValueEg[t + 16] = v.eg;
}

void rebuildValueTypeOrder() {
  PieceType sorted[PieceTypeNb];
  std::copy(std::begin(naturalTypeOrder), std::end(naturalTypeOrder), sorted);
  std::stable_sort(std::begin(sorted), std::end(sorted),
                   [](PieceType a, PieceType b) { return pieceValueMg[a] < pieceValueMg[b]; });
  // The five cheapest first, then both Magicians, then the rest by value.
  int n = 0;
  for (int i = 0; i < 5; ++i) valueTypeOrder[n++] = sorted[i];
  for (PieceType t : sorted)
    if (t == Magician || t == Magician2) valueTypeOrder[n++] = t;
  for (int i = 5; i < PieceTypeNb; ++i)
    if (sorted[i] != Magician && sorted[i] != Magician2) valueTypeOrder[n++] = sorted[i];
}

}  // namespace

namespace {

// The Magicians' worth and demotion reach under the extension counts in force.
void storeMagicianValues(const Position& pos) {
  int mExt = std::clamp(magicianExtendedDemotionSqs, 0, 2);
  int m2Ext = std::clamp(powerMagicianExtendedDemotionSqs, 0, 2);
  ValuePair magician = MagicianValues[mExt];
  ValuePair magician2 = Magician2Values[m2Ext];
  if (siege1 && pos.siege1Tower == siege1TowerSquares) {
    if (mExt == 0) magician = MagicianWholeTower;
    if (m2Ext == 0) magician2 = Magician2WholeTower;
  }
  setDemotionReach(Magician, DemotionReach0 + mExt);
  setDemotionReach(Magician2, DemotionReach0 + m2Ext);
  store(Magician, magician);
  store(Magician2, magician2);
}

}  // namespace

void setPieceValues(const Position& pos) {
  ValuePair sword = swordsCaptureMounts ? ValuePair{275, 275} : ValuePair{200, 205};
  ValuePair bondsman = bondsmenLeaders ? ValuePair{2100, 2200} : ValuePair{1800, 1900};

  Value dornMg = bondsman.mg + 200;
  ValuePair dorn = {dornMg, bondsman.mg + 400};
  ValuePair dornArcher = {dornMg - 1150, dornMg - 1130};
  ValuePair dornSword = {sword.mg + dornMg - 1675, sword.mg + dornMg - 1665};

  store(Sword, sword);
  storeMagicianValues(pos);
  store(Bondsman, bondsman);
  store(Dorn, dorn);
  store(Dorn_archer, dornArcher);
  store(Dorn_sword, dornSword);
  for (PieceType t : {Sword, Magician, Magician2, Bondsman, Dorn, Dorn_archer, Dorn_sword}) refreshPsq(t);

  rebuildValueTypeOrder();
}

void applyMagicianExtensions(const Position& pos) {
  storeMagicianValues(pos);
  for (PieceType t : {Magician, Magician2}) refreshPsq(t);
  rebuildValueTypeOrder();
}

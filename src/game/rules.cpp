// Defaults of the rules, the table of game types and the siege geometry.
#include "game/rules.h"

#include <bit>

int bondsmenLeaders = 1;
int basePromotions = 1;
int capturePromotions = 0;
int exchanges = 1;
int swordsCaptureMounts = 0;
int magicianDemotesDorn = 1;
int magicianExtendedDemotionSqs = 0;
int powerMagicianExtendedDemotionSqs = 0;
int siegeExchanges = 1;

void resetRuleFlags() {
  bondsmenLeaders = 1;
  basePromotions = 1;
  capturePromotions = 0;
  exchanges = 1;
  swordsCaptureMounts = 0;
  magicianDemotesDorn = 1;
  magicianExtendedDemotionSqs = 0;
  powerMagicianExtendedDemotionSqs = 0;
  siegeExchanges = 1;
}

namespace {
constexpr Bitboard StartSquares = 0x1F1F0303C0C0F8F8ULL;
constexpr Bitboard bit(Square s) { return Bitboard(1) << s; }
}  // namespace

const GameType gameTypeTable[GameTypeCount] = {
  {0, "basic", "wwwwa3/wksfa3/wn6/aa6/6AA/6NW/3AFSKW/3AWWWW w 0 1", nullptr, StartSquares, Bondsman},
  {1, "magician", "wfwwa3/wksma3/wn6/aa6/6AA/6NW/3AMSKW/3AWWFW w 0 1", nullptr, StartSquares, NoPieceType},
  {2, "powermagician", "wfwwa3/wksha3/wn6/aa6/6AA/6NW/3AHSKW/3AWWFW w 0 1", nullptr, StartSquares, NoPieceType},
  {3, "rescuegeneral", "wfwha3/wkswa3/wn6/aa6/6AA/6NW/3AWSKW/3AHWFW w 0 1",
   "wfwma3/wkswa3/wn6/aa6/6AA/6NW/3AWSKW/3AMWFW w 0 1", StartSquares, NoPieceType},
  {4, "rescuedorn", "wfwwa3/w1sah3/wn6/aa6/6AA/6NW/3HAS1W/3AWWFW w 0 1", nullptr, StartSquares, NoPieceType},
};

int gameType = DefaultGameType;

int siege1 = 0;
int siege2 = 0;

void setSiegeModes(int gameTypeNumber) {
  siege1 = gameTypeNumber == 3;
  siege2 = gameTypeNumber == 4;
}

Bitboard siege1TowerSquares = 0;
Bitboard siege1InitialTower = 0;
Bitboard siege2TowerSquares[2] = {0, 0};
Bitboard goalSquares[2] = {0, 0};
int goalSquareCount[2] = {0, 0};
Square firstGoalSquare[2] = {0, 0};

void setGoalSquares(Color c, Bitboard squares) {
  goalSquares[c] = squares;
  goalSquareCount[c] = std::popcount(squares);
  firstGoalSquare[c] = squares ? std::countr_zero(squares) : 0;
}

void applySiegeGeometryDefaults() {
  if (siege1) {
    siege1TowerSquares = siege1InitialTower = bit(D4) | bit(E4) | bit(D5) | bit(E5);
    setGoalSquares(WHITE, bit(A4));
    setGoalSquares(BLACK, bit(H5));
  } else if (siege2) {
    siege2TowerSquares[WHITE] = bit(H5) | bit(H6);
    siege2TowerSquares[BLACK] = bit(A3) | bit(A4);
    setGoalSquares(WHITE, bit(A1));
    setGoalSquares(BLACK, bit(H8));
  }
}

SiegeGeometry currentSiegeGeometry() {
  return {siege1TowerSquares, siege1InitialTower, {siege2TowerSquares[WHITE], siege2TowerSquares[BLACK]},
          {goalSquares[WHITE], goalSquares[BLACK]}};
}

void restoreSiegeGeometry(const SiegeGeometry& geometry) {
  siege1TowerSquares = geometry.siege1TowerSquares;
  siege1InitialTower = geometry.siege1InitialTower;
  for (Color c : {WHITE, BLACK}) {
    siege2TowerSquares[c] = geometry.siege2TowerSquares[c];
    setGoalSquares(c, geometry.goalSquares[c]);
  }
}

// The rule flags, the game types and the siege geometry: process-wide, changed only between games.
#pragma once

#include "core/types.h"

// ---------------------------------------------------------------- rule flags
extern int bondsmenLeaders;                   // Bondsmen lead beside the Dorn form
extern int basePromotions;                    // promotion on reaching the enemy base zone
extern int capturePromotions;                 // promotion by capturing certain pieces
extern int exchanges;                         // exchange moves exist
extern int swordsCaptureMounts;               // Sword and Dorn_sword may capture mounts
extern int magicianDemotesDorn;               // Magician forms may demote Dorn and Dorn_archer
extern int magicianExtendedDemotionSqs;       // 0..2
extern int powerMagicianExtendedDemotionSqs;  // 0..2
extern int siegeExchanges;                    // a carrier may hand the captive to a neighbour

// Restores the nine flags to their defaults.
void resetRuleFlags();

// ---------------------------------------------------------------- game types
struct GameType {
  int number;
  const char* name;
  const char* startFen;
  const char* secondStartFen;  // nullptr unless the type has a second start board
  Bitboard occupiedSquares;    // squares the start pieces stand on
  PieceType barredType;        // barred from the random first moves; NoPieceType for none
};

constexpr int GameTypeCount = 5;
extern const GameType gameTypeTable[GameTypeCount];
constexpr int DefaultGameType = 1;
// The number of the current game's type; the search reads it for the opening set-up moves.
extern int gameType;

// The mode switches, derived from the game type number alone.
extern int siege1;  // on for type 3, "rescuegeneral"
extern int siege2;  // on for type 4, "rescuedorn"
inline bool siegeGame() { return siege1 || siege2; }
void setSiegeModes(int gameTypeNumber);

// ---------------------------------------------------------------- siege geometry
extern Bitboard siege1TowerSquares;    // the Siege 1 tower, standing or breached
extern Bitboard siege1InitialTower;    // the default Siege 1 tower
extern Bitboard siege2TowerSquares[2];
extern Bitboard goalSquares[2];        // Siege 1 win squares, Siege 2 drop-off squares
extern int goalSquareCount[2];
extern Square firstGoalSquare[2];      // lowest goal square; 0 for an empty set

// Ranks 1 to 4 for White, 5 to 8 for Black.
inline constexpr Bitboard ownHalf[2] = {0x00000000FFFFFFFFULL, 0xFFFFFFFF00000000ULL};
// Paid once, to the side whose Magician opens the first tower square on its own side of the board.
inline constexpr Score firstBreachBonus = makeScore(120, 120);

// The default towers and goals of the siege mode in force.
void applySiegeGeometryDefaults();
// Sets a goal set with its count and first square.
void setGoalSquares(Color c, Bitboard squares);

// The whole geometry as one value, so that a refused set-up can put back what its reading overwrote.
struct SiegeGeometry {
  Bitboard siege1TowerSquares, siege1InitialTower, siege2TowerSquares[2], goalSquares[2];
  bool operator==(const SiegeGeometry&) const = default;
};
SiegeGeometry currentSiegeGeometry();
void restoreSiegeGeometry(const SiegeGeometry& geometry);

// Siege scoring of both siege games, the imminent-win test and the safety of a carried captive.
#include "eval/siege.h"

#include <iostream>

#include "core/bitboard.h"
#include "eval/captive_value.h"
#include "game/attack_queries.h"
#include "game/position.h"
#include "game/rules.h"
#include "game/siege_scorer.h"

namespace {

constexpr Bitboard LowHalf = 0x00000000FFFFFFFFULL;
constexpr Bitboard HighHalf = 0xFFFFFFFF00000000ULL;
constexpr Bitboard DarkSquares = 0xAA55AA55AA55AA55ULL;  // file + rank even; a1 is dark

constexpr int TowerBonus = 120;
constexpr int CaptiveValueBase = 100;
constexpr int PositionStep = 25;
constexpr int ImminentBonus = 100;  // a win at once (first game), a drop-off square reached (second)
constexpr int EnemyKilledBonus = 150;
constexpr Score AttackerOnCarrier = makeScore(-50, -50);

bool isSwordForm(PieceType t) { return t == Sword || t == Dorn_sword; }

// A Sword form steps diagonally and keeps the colour of its square: on a colour without any of
// White's goal squares it cannot arrive, unless it may hand the captive on. White's squares are
// tested for carriers of both colours.
int swordCarrierPenalty(PieceType t, Square s) {
  if (!isSwordForm(t)) return 0;
  Bitboard sameColour = (DarkSquares >> s) & 1 ? DarkSquares : ~DarkSquares;
  if (sameColour & goalSquares[WHITE]) return 0;
  return siegeExchanges ? 120 : 360;
}

int positionBonus(Color goalOwner, Square s) { return (7 - squareDistance[firstGoalSquare[goalOwner]][s]) * PositionStep; }

// The enemies of a carrier of colour k that could take it: Swords do not count against a mount
// unless they may capture mounts.
Bitboard carrierTakers(const Position& pos, Color k, PieceType carrierType, Bitboard candidates) {
  if (isMount(carrierType) && !swordsCaptureMounts) candidates &= ~swordFormSquares(pos);
  return candidates & pos.pieces(~k);
}

bool hasMagicianForm(const Position& pos, Color c) {
  return pos.count(c, Magician1) || pos.count(c, Magician) || pos.count(c, Magician2);
}

// The worth of the best Magician form of c.
int bestMagician(const Position& pos, Color c) {
  return pos.count(c, Magician2) ? 250 : pos.count(c, Magician) ? 125 : pos.count(c, Magician1) ? 50 : 0;
}

// Tower untouched and its captive still inside and alive.
bool wholeTower(const Position& pos, Color x) {
  return !pos.siege2Breached[x] && pos.siege2CaptiveAlive[x] && !pos.siege2CaptiveReleased[x] &&
         pos.siege2Tower[x] == siege2TowerSquares[x];
}

int magicianBonus(const Position& pos, Color c) {
  bool whole[2] = {wholeTower(pos, WHITE), wholeTower(pos, BLACK)};
  if (!whole[WHITE] && !whole[BLACK]) return 0;
  int bonus = 0;
  if (!(whole[~c] && !hasMagicianForm(pos, ~c))) bonus = bestMagician(pos, c);
  if (whole[c] && !hasMagicianForm(pos, c)) bonus -= 50;
  return bonus;
}

}  // namespace

bool siege1ImminentWin(const Position& pos, Color& color) {
  const Square s = pos.siege1CaptiveSquare;
  if (s == NoSquare || pos.empty(s)) return false;
  const Piece p = pos.pieceOn(s);
  const Color k = colorOf(p);
  const PieceType t = typeOf(p);
  color = k;
  if (isMount(t) && !(goalSquares[k] & pseudoAttacks[t][s])) return false;

  Bitboard targets = goalSquares[k] & ~pos.pieces(k) & attacksFrom(pos, p, s, pos.pieces());
  if (!targets) return false;

  if (pos.soleLeader(k) && s == pos.leaderSquare(k)) {
    // The leader carries it itself: it needs a goal square where nothing can take it.
    Bitboard hurters = carrierTakers(pos, k, t, pos.pieces() & ~magicianSquares(pos));
    for (Bitboard b = targets; b;)
      if (!(pos.attackersTo(popLowest(b), pos.pieces(), ~0ULL, ~k) & hurters)) return true;
    return false;
  }
  if (!isMagicianForm(t)) return true;
  // A Magician form arrives only by a plain step, never by a demotion.
  for (Bitboard b = targets; b;)
    if (!pos.demotionPair(s, popLowest(b))) return true;
  return false;
}

Score scoreSiege1(const Position& pos, Piece carrier, Color, bool report) {
  int valueBonus = 0, position = 0, winBonus = 0, swordPenalty = 0;
  if (carrier != NoPiece) {
    const Square s = pos.siege1CaptiveSquare;
    const PieceType t = typeOf(carrier);
    Color winner = WHITE;
    const bool imminent = siege1ImminentWin(pos, winner);
    valueBonus = captiveBaseValue[t] + CaptiveValueBase;
    position = positionBonus(colorOf(carrier), s);
    winBonus = imminent ? ImminentBonus : 0;
    swordPenalty = imminent ? 0 : swordCarrierPenalty(t, s);
    // From here on the terms carry White's point of view.
    if (colorOf(carrier) == BLACK) {
      valueBonus = -valueBonus;
      position = -position;
      winBonus = -winBonus;
      swordPenalty = -swordPenalty;
    }
  }
  const int towerBonus = (popcount(pos.siege1Tower & HighHalf) - popcount(pos.siege1Tower & LowHalf)) * TowerBonus;
  const int total = towerBonus - swordPenalty + valueBonus + position + winBonus;
  if (report)
    std::cout << "scoreSiege1:captivePositionBonus=" << position << ", captiveValueBonus=" << valueBonus
              << ", captiveImminentWinBonus=" << winBonus << ", captiveAsSwordPenalty=" << swordPenalty
              << ", towerBonus=" << towerBonus << ", final=" << total << "\n";
  return makeScore(total, total);
}

int scoreSiege2(const Position& pos, Piece carrier, Color c, bool report) {
  const Square s = pos.siege2CaptiveSquare[c];
  int valueBonus = 0, position = 0, dropoffBonus = 0, swordPenalty = 0, killedBonus = 0;
  if (carrier != NoPiece) {
    const PieceType t = typeOf(carrier);
    valueBonus = captiveBaseValue[t] + CaptiveValueBase;
    if (colorOf(carrier) == c) {
      position = positionBonus(c, s);
      dropoffBonus = (goalSquares[c] >> s) & 1 ? ImminentBonus : 0;
      swordPenalty = swordCarrierPenalty(t, s);
    }
    if (!pos.siege2CaptiveAlive[~c] && !pos.siege2CaptiveReleased[~c]) killedBonus = EnemyKilledBonus;
  }
  int magicians = magicianBonus(pos, c);
  int towerBonus = pos.siege2CaptiveAlive[c] && !pos.siege2CaptiveReleased[c] && pos.siege2Breached[c] ? TowerBonus : 0;

  // Carrier terms follow the carrier's colour; the tower and Magician terms follow the captive's.
  const int carrierSign = carrier == NoPiece || colorOf(carrier) == WHITE ? 1 : -1;
  const int captiveSign = c == WHITE ? 1 : -1;
  int sum = carrier == NoPiece
                ? captiveSign * towerBonus
                : carrierSign * (towerBonus - swordPenalty + valueBonus + killedBonus + dropoffBonus + position);
  sum += captiveSign * magicians;

  if (report)
    std::cout << "scoreSiege2(" << colorNames[c] << "):magicianBonus=" << captiveSign * magicians
              << ", captivePositionBonus=" << carrierSign * position << ", captiveValueBonus=" << carrierSign * valueBonus
              << ", captiveImminentDropoffBonus=" << carrierSign * dropoffBonus
              << ", captiveEnemyKilledBonus=" << carrierSign * killedBonus
              << ", captiveAsSwordPenalty=" << carrierSign * swordPenalty << ", towerBonus=" << captiveSign * towerBonus
              << ", final=" << sum << "\n";
  return sum;
}

Score scoreSiege(const Position& pos, bool report) {
  auto pieceOnCaptive = [&pos](Square s) { return s < NoSquare ? pos.pieceOn(s) : NoPiece; };
  if (siege1) return scoreSiege1(pos, pieceOnCaptive(pos.siege1CaptiveSquare), WHITE, report);
  if (!siege2) return 0;
  if (report) std::cout << pos.pretty(MoveNone, false, true) << "\n";
  int sum = 0;
  for (Color c : {WHITE, BLACK}) sum += scoreSiege2(pos, pieceOnCaptive(pos.siege2CaptiveSquare[c]), c, report);
  if (report) std::cout << "final bonus=" << sum << "\n";
  return makeScore(sum, sum);
}

Score captiveSafety(const Position& pos, Color k) {
  const Square s = siege1 ? pos.siege1CaptiveSquare : siege2 ? pos.siege2CaptiveSquare[k] : NoSquare;
  if (s == NoSquare || pos.empty(s) || colorOf(pos.pieceOn(s)) != k) return 0;
  Bitboard attackers = carrierTakers(pos, k, typeOf(pos.pieceOn(s)), pos.attackersTo(s, pos.pieces(), ~0ULL, ~k));
  return popcount(attackers) * AttackerOnCarrier;
}

void installSiegeScoring() {
  setSiegeScorer([](const Position& pos) { return scoreSiege(pos); });
}

// The invariants of a position and its snapshot, checked from nothing but its own fields.
#include "position_invariants.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "game/rules.h"

namespace {

bool validPiece(Piece p) { return p >= 0 && p < PieceSlots && typeOf(p) >= Sword && typeOf(p) < PieceTypeNb; }

std::string boardFault(const Position& pos) {
  if (pos.sideToMove != WHITE && pos.sideToMove != BLACK) return "side to move is no colour";
  if (pos.byColor[WHITE] & pos.byColor[BLACK]) return "a square of both colours";
  if ((pos.byColor[WHITE] | pos.byColor[BLACK]) != pos.byType[ALL]) return "colours and occupancy disagree";
  int typed = 0;
  for (int t = Sword; t < TypeSlots; ++t) {
    if (t >= PieceTypeNb && pos.byType[t]) return "a bitboard of no type holds squares";
    if (pos.byType[t] & ~pos.byType[ALL]) return "a type's squares outside the occupancy";
    typed += std::popcount(pos.byType[t]);
  }
  if (typed != std::popcount(pos.byType[ALL])) return "a square of two types, or of none";

  for (Square s = 0; s < 64; ++s) {
    Piece p = pos.board[s];
    bool occupied = (pos.byType[ALL] >> s) & 1;
    if (occupied != (p != NoPiece)) return "board and occupancy disagree on " + squareToString(s);
    if (!p) continue;
    if (!validPiece(p)) return "no piece code on " + squareToString(s);
    Color c = colorOf(p);
    PieceType t = typeOf(p);
    if (!((pos.byType[t] & pos.byColor[c]) >> s & 1)) return "bitboards miss the piece on " + squareToString(s);
    if (pos.index[s] < 0 || pos.index[s] >= pos.pieceCount[c][t] || pos.pieceList[c][t][pos.index[s]] != s)
      return "piece list or index wrong for " + squareToString(s);
  }
  for (int c = 0; c < 2; ++c)
    for (int t = 0; t < TypeSlots; ++t) {
      int count = pos.pieceCount[c][t];
      int expected = t >= Sword && t < PieceTypeNb ? std::popcount(pos.byType[t] & pos.byColor[c]) : 0;
      if (count != expected) return std::string("piece count wrong for ") + colorNames[c] + " type " + std::to_string(t);
      for (int i = count; i < PieceListSlots; ++i)
        if (pos.pieceList[c][t][i] != NoSquare) return "a stale piece list slot";
    }
  return "";
}

std::string siegeFault(const Position& pos) {
  auto square = [](Square s) { return s >= 0 && s <= NoSquare; };
  if (!square(pos.siege1CaptiveSquare) || !square(pos.siege1LastCaptiveSquare)) return "captive square out of range";
  for (Color c : {WHITE, BLACK}) {
    if (!square(pos.siege2CaptiveSquare[c]) || !square(pos.siege2LastCaptiveSquare[c]))
      return "captive square out of range";
    if (pos.siege2Tower[c] & pos.siege2Breached[c]) return "a tower square both standing and breached";
  }
  if (pos.siege1Tower & pos.siege1Breached) return "a tower square both standing and breached";
  if (pos.pieces() & pos.standingTowers()) return "a piece on a standing tower square";
  return "";
}

// The tower fields of a position lie within the geometry of the game it was set up in.
std::string geometryFault(const Position& pos) {
  if (siege1 && ((pos.siege1Tower | pos.siege1Breached) & ~siege1TowerSquares)) return "tower beyond the tower squares";
  for (Color c : {WHITE, BLACK})
    if (siege2 && ((pos.siege2Tower[c] | pos.siege2Breached[c]) & ~siege2TowerSquares[c]))
      return "tower beyond the tower squares";
  return "";
}

}  // namespace

Bitboard expectedCheckers(const Position& pos) {
  Color us = pos.side();
  Square k = pos.leaderSquare(us);
  if (pos.severalLeaders(us) || k == NoSquare) return 0;
  return pos.checkableBy(us) & pos.attackersTo(k, pos.pieces(), pos.pieces(~us), ~us);
}

std::string positionFault(const Position& pos, Vouch vouch) {
  if (std::string fault = boardFault(pos); !fault.empty()) return fault;
  if (std::string fault = siegeFault(pos); !fault.empty()) return fault;
  const StateInfo* st = pos.state();
  if (st->materialKey != pos.computeMaterialKey()) return "material key differs from its from-scratch value";
  bool exact = vouch == Vouch::SetUp || !siegeGame();
  if (exact && st->key != pos.computeKey()) return "key differs from its from-scratch value";
  if (vouch == Vouch::Board) return "";

  if (std::string fault = geometryFault(pos); !fault.empty()) return fault;
  if (exact && st->psqScore != pos.computePsqScore()) return "piece-square sum differs from its from-scratch value";
  for (Color c : {WHITE, BLACK})
    if (st->npMaterial[c] != pos.computeNpMaterial(c)) return "npMaterial differs from its from-scratch value";
  if (st->siegeScore != pos.computeSiegeScore()) return "siege score differs from its from-scratch value";
  if (st->checkers != expectedCheckers(pos)) return "checkers differ from the attackers of the leader";
  if (!pos.isConsistent()) return "consistency check fails: " + lastPositionError;
  return "";
}

bool severalBondsmen(const Position& pos) { return pos.count(WHITE, Bondsman) > 1 || pos.count(BLACK, Bondsman) > 1; }

PositionSnapshot snapshotOf(const Position& pos) {
  PositionSnapshot s;
  std::copy(std::begin(pos.board), std::end(pos.board), s.board.begin());
  std::copy(std::begin(pos.byType), std::end(pos.byType), s.byType.begin());
  s.byColor = {pos.byColor[WHITE], pos.byColor[BLACK]};
  s.lists.fill(NoSquare);
  size_t at = 0;
  for (int c = 0; c < 2; ++c)
    for (int t = Sword; t < PieceTypeNb; ++t) {
      int count = std::clamp(pos.pieceCount[c][t], 0, 64);
      if (at + count + 1 > s.lists.size()) break;  // more than 64 pieces: the board check tells
      std::copy(pos.pieceList[c][t], pos.pieceList[c][t] + count, s.lists.begin() + at);
      std::sort(s.lists.begin() + at, s.lists.begin() + at + count);
      at += count + 1;
    }
  s.st = pos.state();
  std::memcpy(s.state.data(), pos.state(), sizeof(StateInfo));
  s.side = pos.side();
  s.gamePly = pos.gamePly;
  s.siege1Captive = pos.siege1CaptiveSquare;
  s.siege1Tower = pos.siege1Tower;
  s.siege1Breached = pos.siege1Breached;
  for (int c = 0; c < 2; ++c) {
    s.siege2Captive[c] = pos.siege2CaptiveSquare[c];
    s.siege2Tower[c] = pos.siege2Tower[c];
    s.siege2Breached[c] = pos.siege2Breached[c];
    s.alive[c] = pos.siege2CaptiveAlive[c];
    s.released[c] = pos.siege2CaptiveReleased[c];
  }
  return s;
}

std::string snapshotDifference(const PositionSnapshot& a, const PositionSnapshot& b) {
  if (a.board != b.board || a.byType != b.byType || a.byColor != b.byColor) return "board";
  if (a.lists != b.lists) return "piece lists";
  if (a.st != b.st) return "current state record";
  if (a.state != b.state) return "state record contents";
  if (a.side != b.side || a.gamePly != b.gamePly) return "side to move or game ply";
  if (a.siege1Captive != b.siege1Captive || a.siege1Tower != b.siege1Tower || a.siege1Breached != b.siege1Breached)
    return "siege 1 fields";
  if (a.siege2Captive != b.siege2Captive || a.siege2Tower != b.siege2Tower || a.siege2Breached != b.siege2Breached ||
      a.alive != b.alive || a.released != b.released)
    return "siege 2 fields";
  return "";
}

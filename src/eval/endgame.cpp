// The lone-leader hunt, the evaluators without a use, and the per-thread maps by material key.
#include "eval/endgame.h"

#include <cctype>
#include <cstring>

#include "core/bitboard.h"
#include "core/psqt.h"
#include "core/zobrist.h"
#include "eval/trade_bonus.h"
#include "game/game_end.h"
#include "game/position.h"
#include "game/rules.h"
#include "movegen/movegen.h"

const Endgame<LoneLeader, Value> loneLeaderEndgame[2] = {Endgame<LoneLeader, Value>(WHITE),
                                                          Endgame<LoneLeader, Value>(BLACK)};

namespace {

// By the weak leader's square: the corners are where it is mated.
constexpr int EdgeBonus[64] = {
    100, 90, 80, 70, 70, 80, 90, 100,
     90, 70, 60, 50, 50, 60, 70,  90,
     80, 60, 40, 30, 30, 40, 60,  80,
     70, 50, 30, 20, 20, 30, 50,  70,
     70, 50, 30, 20, 20, 30, 50,  70,
     80, 60, 40, 30, 30, 40, 60,  80,
     90, 70, 60, 50, 50, 60, 70,  90,
    100, 90, 80, 70, 70, 80, 90, 100,
};

// By the distance between the two leaders.
constexpr int LeaderDistanceBonus[8] = {0, 0, 100, 80, 60, 40, 20, 10};

constexpr Square promotionTarget[2] = {B7, G2};

constexpr int promotionPenalty[TypeSlots] = {0, 1, 0, 0, 2, 3};  // Sword 1, Archer 2, Magician 3

// The pieces whose distance to the bare leader the hunt weighs.
constexpr PieceType hunterTypes[] = {Archer, Sword, Assassin, Magician, Magician1};

}  // namespace

// A bare leader against more: without a second mount the strong side can only promote; with one it
// drives the leader to a corner. Sums wrap as 16-bit numbers.
template <>
Value Endgame<LoneLeader, Value>::operator()(const Position& pos) const {
  const Color S = strong_, W = weak_;
  if (pos.side() == W && !pos.inCheck()) {
    ScoredMove moves[MaxMoves];
    if (generateLegal(pos, moves) == moves) return 0;
  }

  const StateInfo* st = pos.state();
  int16_t v = int16_t(st->npMaterial[S] - st->npMaterial[W] + pos.count(S, Sword) * pieceValueEg[Sword] +
                      pos.count(S, Magician1) * 240);
  auto add = [&v](int x) { v = int16_t(v + x); };

  const bool big = pos.count(S, Dorn) + pos.count(S, Bondsman) + pos.count(S, Warrior) >= 2;
  if (big) add(ValueKnownWin);

  if (basePromotions) {
    if (!big)
      for (const PieceType* t = promotableTypes; *t; ++t)
        for (int i = 0; i < pos.count(S, *t); ++i) {
          int d = squareDistance[pos.pieceList[S][*t][i]][promotionTarget[S]];
          if (d > 1) add(-(3 * d + promotionPenalty[*t]));
        }
    if (rootSideToMove == S && firstMoveChangedMaterial()) add(40);
  }

  if (big || !basePromotions) {
    const Square weakLeader = pos.leaderSquare(W);
    add(LeaderDistanceBonus[squareDistance[pos.leaderSquare(S)][weakLeader]] + EdgeBonus[weakLeader]);

    const bool hasArcher = pos.count(S, Archer) != 0;
    // Such a Sword cannot take the leader and only gets in the way.
    const bool swordsBlunt = isMount(typeOf(pos.pieceOn(weakLeader))) && !swordsCaptureMounts;
    for (PieceType t : hunterTypes) {
      int weight = t == Archer ? -2 : t == Sword ? (!hasArcher && swordsBlunt ? 1 : -1)
                 : t == Magician ? (hasArcher ? -1 : pos.count(S, Sword) ? -4 : -2)
                 : -1;
      for (int i = 0; i < pos.count(S, t); ++i) add(weight * squareDistance[pos.pieceList[S][t][i]][weakLeader]);
    }

    // The first pair the strong side has should stand together.
    const PieceType pairs[5][2] = {{Archer, Archer}, {Archer, Assassin}, {Archer, Magician}, {Magician, Assassin},
                                   {Archer, Sword}};
    for (int p = 0; p < 5; ++p) {
      PieceType a = pairs[p][0], b = pairs[p][1];
      bool has = a == b ? pos.count(S, a) >= 2 : pos.count(S, a) && pos.count(S, b);
      if (!has) continue;
      if (b == Sword && swordsBlunt) break;
      int d = squareDistance[pos.pieceList[S][a][0]][pos.pieceList[S][b][a == b ? 1 : 0]];
      if (d > 2) add(-d);
      break;
    }
  }
  return pos.side() == S ? v : -v;
}

template <>
Value Endgame<LeaderSwordLeader, Value>::operator()(const Position&) const {
  return 0;
}

Key endgameCodeKey(const std::string& code, Color c) {
  // The material key of a position holding these pieces, counted directly: setting such a position
  // up would reset the siege geometry of the game in force.
  const size_t second = code.find('K', 1);
  int counts[2][TypeSlots] = {};
  Key key = 0;
  for (size_t i = 0; i < code.size(); ++i) {
    const char* letter = std::strchr(fenLetters + 1, std::toupper(static_cast<unsigned char>(code[i])));
    PieceType t = letter ? PieceType(letter - fenLetters) : NoPieceType;
    if (t == NoPieceType || t >= PieceTypeNb) continue;
    Color side = i < second ? c : ~c;
    key ^= Zobrist::pieceKeys[side][t][counts[side][t]++];
  }
  return key;
}

Endgames::Endgames() {
  for (Color c : {WHITE, BLACK})
    values_[endgameCodeKey("KSK", c)] = std::make_unique<Endgame<LeaderSwordLeader, Value>>(c);
}

const EndgameBase<Value>* Endgames::probeValue(Key key) const {
  auto it = values_.find(key);
  return it == values_.end() ? nullptr : it->second.get();
}

const EndgameBase<ScaleFactor>* Endgames::probeScaleFactor(Key key) const {
  auto it = scaleFactors_.find(key);
  return it == scaleFactors_.end() ? nullptr : it->second.get();
}

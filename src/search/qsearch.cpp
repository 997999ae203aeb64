// The quiescence search: captures, promotions, demotions and early quiet checks until the position
// is calm, every evasion in check, and every reply while a Siege 1 carrier is about to win.
#include <algorithm>
#include <iostream>

#include "core/psqt.h"
#include "eval/evaluate.h"
#include "eval/siege.h"
#include "game/attack_queries.h"
#include "game/game_end.h"
#include "search/move_picker.h"
#include "search/search.h"
#include "search/see.h"
#include "search/transposition_table.h"

namespace {

constexpr Value FutilityBaseMargin = 128;
constexpr Value NonMinorMaterialLine = 1600;
constexpr Depth EmergencyDepthLimit = -10;

constexpr Bitboard bit(Square s) { return Bitboard(1) << s; }

void pushLine(Position& pos, Move m) {
  if (pos.searchLineCount < 30) pos.searchLine[pos.searchLineCount] = m;
  ++pos.searchLineCount;
}
void popLine(Position& pos) {
  if (--pos.searchLineCount < 30) pos.searchLine[pos.searchLineCount] = MoveNone;
}

// The caller chose the form by its own check test; a mismatch is its fault and is only reported.
void reportCheckMismatch(const Position& pos, bool inCheck) {
  std::cout << pos.pretty(MoveNone, false, false) << "QS: InCheck doesn't match pos.checkers\nInCheck="
            << int(inCheck) << "\n";
  printBitboard("checkers=\n", pos.checkers());
  pos.dumpMoveStack();
}

// The square of the piece that acted last: a demotion or an exchange acts from where it stands.
Square recaptureSquare(Move prev) {
  return isDemotion(prev) || isExchange(prev) ? moveFrom(prev) : moveTo(prev);
}

template <bool PvNode, bool InCheck>
Value qsearch(Position& pos, SearchStack* ss, Value alpha, Value beta, Depth depth, int checksInRow) {
  const Color us = pos.side();
  if (pos.inCheck() != InCheck) reportCheckMismatch(pos, InCheck);

  // ---- game end, draws
  if (pos.leaderSquare(us) == NoSquare) return (ss - 1)->ply - ValueMate;
  Color winner;
  if (siege1 && captiveOnGoal(pos, winner))
    return winner == us ? ValueMate - (ss - 1)->ply : (ss - 1)->ply - ValueMate;
  ss->currentMove = MoveNone;
  ss->ply = (ss - 1)->ply + 1;
  if (isDrawQuiescence(pos) || ss->ply > 100) return drawValue[us];

  // ---- the table
  const Depth ttDepth = InCheck || depth >= -2 ? -2 : -4;
  const Key key = pos.key();
  TTEntry* tte = currentTable->probe(key);
  const Move ttMove = tte ? tte->move() : MoveNone;
  const Value ttValue = tte ? valueFromTT(tte->value(), ss->ply) : ValueNone;
  if (tte && tte->depth() >= ttDepth && ttValue != ValueNone &&
      (PvNode ? tte->bound() == BoundExact : bool(tte->bound() & (ttValue >= beta ? BoundLower : BoundUpper)))) {
    ss->currentMove = ttMove;
    return ttValue;
  }

  const Value oldAlpha = alpha;
  Value bestValue = -ValueInfinite, futilityBase = -ValueInfinite;
  bool enoughMaterial = false, emergency = false, allMoves = false;
  Move bestMove = MoveNone;

  if constexpr (InCheck) {
    ss->eval = ss->evalMargin = ValueNone;
  } else {
    // ---- a Siege 1 carrier about to reach its goal makes the static value meaningless
    Color carrier;
    if (siege1 && depth >= EmergencyDepthLimit && siege1ImminentWin(pos, carrier) &&
        !(carrier == us && ValueMate - ss->ply < alpha)) {
      emergency = true;
      allMoves = carrier != us;
      ss->eval = ss->evalMargin = ValueNone;
    } else {
      // ---- standing pat
      if (tte && tte->staticValue() != ValueNone && tte->staticMargin() != ValueNone) {
        ss->eval = tte->staticValue();
        ss->evalMargin = tte->staticMargin();
      } else {
        ss->eval = evaluate(pos, ss->evalMargin);
      }
      bestValue = ss->eval;
      if (bestValue >= beta) {
        if (!tte)
          currentTable->store(key, valueToTT(bestValue, ss->ply), BoundLower, DepthNone, MoveNone, ss->eval,
                              ss->evalMargin);
        return bestValue;
      }
      if constexpr (PvNode) {
        alpha = std::max(alpha, bestValue);
      } else {
        futilityBase = ss->eval + ss->evalMargin + FutilityBaseMargin;
        enoughMaterial = pos.state()->npMaterial[us] - getDornValue(pos, us) > NonMinorMaterialLine;
      }
    }
  }

  MovePicker mp(pos, ttMove, depth, recaptureSquare((ss - 1)->currentMove), allMoves);
  CheckInfo ci(pos);

  for (Move m; (m = mp.nextMove()) != MoveNone;) {
    const Square to = moveTo(m);
    const bool givesCheck = pos.gives_check(m, ci);
    const bool winningMove = isSiege1WinningMove(pos, m);

    if constexpr (!PvNode && !InCheck) {
      // ---- futility: even winning the piece on `to` would not reach beta
      if (!givesCheck && m != ttMove && enoughMaterial && !specialKind(m) &&
          !(siege1 && isTransfer(m) && (goalSquares[us] & bit(to)))) {
        Value futilityValue = futilityBase + pieceValueEg[pos.pieceOn(to)];
        if (futilityValue < beta) {
          bestValue = std::max(bestValue, futilityValue);
          continue;
        }
        if (futilityBase < beta && depth < 0 && see(pos, m) <= 0) {
          bestValue = std::max(bestValue, futilityBase);
          continue;
        }
      }
      // ---- an exchange that loses material
      if (m != ttMove && !isPromotion(m) && !emergency && !winningMove && seeSign(pos, m) < 0) continue;
      // ---- a check that neither takes anything nor threatens much
      if (givesCheck && m != ttMove && !specialKind(m) && pos.empty(to) && SwordValueMg / 4 + ss->eval < beta &&
          !emergency && !winningMove && !checkIsDangerous(pos, m, futilityBase, beta))
        continue;
    }
    if constexpr (!PvNode && InCheck) {
      // A reply that may be needed to escape mate is kept until some score is found.
      if (bestValue > -ValueMateInMaxPly && pos.empty(to) && m != ttMove && !isPromotion(m) && !winningMove &&
          seeSign(pos, m) < 0)
        continue;
    }

    int checks = 0;
    if constexpr (InCheck) {
      if (givesCheck && (checks = checksInRow + 1) >= 2) continue;
    }
    if (!pos.legal(m, ci.pinned)) continue;

    StateInfo st;
    ss->currentMove = m;
    pushLine(pos, m);
    pos.do_move(m, st, ci, givesCheck);
    Value v = givesCheck ? -qsearch<PvNode, true>(pos, ss + 1, -beta, -alpha, depth - OnePly, checks)
                         : -qsearch<PvNode, false>(pos, ss + 1, -beta, -alpha, depth - OnePly, 0);
    pos.undo_move(m);
    popLine(pos);

    if (v > bestValue) {
      bestValue = v;
      if (v > alpha) {
        if (!PvNode || v >= beta) {
          currentTable->store(key, valueToTT(v, ss->ply), BoundLower, ttDepth, m, ss->eval, ss->evalMargin);
          return v;
        }
        alpha = v;
        bestMove = m;
      }
    }
    if (winningMove) break;
  }

  if (InCheck && bestValue == -ValueInfinite) return ss->ply - ValueMate;

  Bound bound = PvNode && bestValue > oldAlpha ? BoundExact : BoundUpper;
  currentTable->store(key, valueToTT(bestValue, ss->ply), bound, ttDepth, PvNode ? bestMove : MoveNone, ss->eval,
                      ss->evalMargin);
  return bestValue;
}

}  // namespace

Value qsearchNonPV(Position& pos, SearchStack* ss, Value alpha, Value beta, Depth depth) {
  return qsearch<false, false>(pos, ss, alpha, beta, depth, 0);
}
Value qsearchPV(Position& pos, SearchStack* ss, Value alpha, Value beta, Depth depth) {
  return qsearch<true, false>(pos, ss, alpha, beta, depth, 0);
}
Value qsearchNonPVInCheck(Position& pos, SearchStack* ss, Value alpha, Value beta, Depth depth, int checksInRow) {
  return qsearch<false, true>(pos, ss, alpha, beta, depth, checksInRow);
}
Value qsearchPVInCheck(Position& pos, SearchStack* ss, Value alpha, Value beta, Depth depth, int checksInRow) {
  return qsearch<true, true>(pos, ss, alpha, beta, depth, checksInRow);
}

bool checkIsDangerous(const Position& pos, Move m, Value futilityBase, Value beta) {
  const Color them = ~pos.side();
  if (pos.severalLeaders(them)) return false;
  const Square from = moveFrom(m), to = moveTo(m), k = pos.leaderSquare(them);
  const Piece pc = pos.pieceOn(from);
  const Bitboard flight = pseudoAttacks[pos.dornType(them)][k];
  Bitboard occ = pos.pieces() & ~bit(k);
  if (!isDemotion(m) && !isExchange(m)) occ &= ~bit(from);
  const Bitboard before = attacksFrom(pos, pc, from, occ), after = attacksFrom(pos, pc, to, occ);

  // Few flight squares left
  if (popcount(flight & ~(bit(to) | after | pos.pieces(them))) <= 1) return true;
  // A mount checking from next to the leader
  if (isMount(typeOf(pc)) && (flight & bit(to))) return true;
  // A double attack on something worth enough
  for (Bitboard b = after & ~before & pos.pieces(them) & ~bit(k); b;)
    if (futilityBase + pieceValueEg[pos.pieceOn(popLowest(b))] >= beta) return true;
  return false;
}

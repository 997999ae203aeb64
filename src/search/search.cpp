// The main alpha-beta search: one template for the root, PV and non-PV nodes, each also in the form
// a helper thread runs at a split point.
#include "search/search.h"

#include <algorithm>
#include <iostream>

#include "core/messages.h"
#include "core/psqt.h"
#include "core/zobrist.h"
#include "eval/evaluate.h"
#include "game/attack_queries.h"
#include "game/game_end.h"
#include "movegen/notation.h"
#include "search/gain_table.h"
#include "search/history.h"
#include "search/move_picker.h"
#include "search/root_search.h"
#include "search/search_tables.h"
#include "search/see.h"
#include "search/thread.h"
#include "search/transposition_table.h"

Value drawValue[2];

namespace {

enum NodeKind { RootNode, PVNode, NonPVNode };

constexpr Bitboard bit(Square s) { return Bitboard(1) << s; }

bool stopped() { return Signals.stop; }

Thread& threadOf(const Position& pos) { return *static_cast<Thread*>(pos.thisThread); }

// The search line of the diagnostics holds the first moves of the line under search.
void pushLine(Position& pos, Move m) {
  if (pos.searchLineCount < 30) pos.searchLine[pos.searchLineCount] = m;
  ++pos.searchLineCount;
}
void popLine(Position& pos) {
  if (--pos.searchLineCount < 30) pos.searchLine[pos.searchLineCount] = MoveNone;
}

// The game is over at this node: a lost last leader, or a Siege 1 captive carried onto a goal.
bool gameEnded(const Position& pos, const SearchStack* ss, Value& v) {
  int ply = (ss - 1)->ply;
  if (pos.leaderSquare(pos.side()) == NoSquare) {
    v = ply - ValueMate;
    return true;
  }
  Color winner;
  if (siege1 && captiveOnGoal(pos, winner)) {
    v = winner == pos.side() ? ValueMate - ply : ply - ValueMate;
    return true;
  }
  return false;
}

bool onlyLeaderAndMinors(const Position& pos, Color c) {
  return pos.state()->npMaterial[c] == getDornValue(pos, c);
}

bool boundFits(const TTEntry* tte, Value ttValue, Value beta) {
  return tte->bound() & (ttValue >= beta ? BoundLower : BoundUpper);
}

Value victimValue(const Position& pos, Move m) { return pieceValueMg[pos.pieceOn(moveTo(m))]; }
Value moverValue(const Position& pos, Move m) { return pieceValueMg[pos.pieceOn(moveFrom(m))]; }

// A capture that leaves nothing but leaders and minor pieces on the board changes the game.
bool dangerousCapture(const Position& pos, Move m) {
  Piece victim = pos.pieceOn(moveTo(m));
  if (specialKind(m) || victim == NoPiece || typeOf(victim) == Sword) return false;
  const StateInfo* st = pos.state();
  return st->npMaterial[WHITE] + st->npMaterial[BLACK] - pieceValueMg[victim] - getDornValue(pos, WHITE) -
             getDornValue(pos, BLACK) ==
         0;
}

// A cross-check, off by default: a sole leader said not to be in check has no attacker. A fault
// is reported and the node goes on as in check.
bool checkMalfunction(Position& pos) {
  const Color us = pos.side();
  if (pos.inCheck() || pos.severalLeaders(us)) return false;
  const Square k = pos.leaderSquare(us);
  Bitboard harmless = magicianSquares(pos);
  if (isMount(typeOf(pos.pieceOn(k))) && !swordsCaptureMounts) harmless |= swordFormSquares(pos);
  Bitboard attackers = pos.allAttackersTo(k, pos.pieces(), ~0ULL) & pos.pieces(~us) & ~harmless;
  if (!attackers) return false;
  std::cout << "!! search(): Check malfunction\n" << pos.pretty(MoveNone, false, false) << "ksq=" << squareToString(k)
            << "\n";
  printBitboard(" attackers to ksq are\n", attackers);
  pos.dumpMoveStack();
  pos.st->checkers |= attackers;
  return true;
}

void updateKillers(SearchStack* ss, Move m) {
  if (m != ss->killers[0]) {
    ss->killers[1] = ss->killers[0];
    ss->killers[0] = m;
  }
}

void printCurrentMove(Depth depth, Move m, int moveCount) {
  std::lock_guard<std::mutex> out(syncOutLock);
  std::cout << "info depth " << depth / 2 << " currmove " << moveToUci(m) << " currmovenumber "
            << moveCount + int(pvIndex) << std::endl;
}

template <NodeKind Kind, bool SpNode>
Value search(Position& pos, SearchStack* ss, Value alpha, Value beta, Depth depth);

// The main search hands a depth below one ply to the quiescence form the position calls for.
template <NodeKind Kind>
Value qsearchAt(Position& pos, SearchStack* ss, Value alpha, Value beta, bool inCheck, int checksInRow) {
  if constexpr (Kind == NonPVNode)
    return inCheck ? qsearchNonPVInCheck(pos, ss, alpha, beta, 0, checksInRow) : qsearchNonPV(pos, ss, alpha, beta, 0);
  else
    return inCheck ? qsearchPVInCheck(pos, ss, alpha, beta, 0, checksInRow) : qsearchPV(pos, ss, alpha, beta, 0);
}

template <NodeKind Kind, bool SpNode>
Value search(Position& pos, SearchStack* ss, Value alpha, Value beta, Depth depth) {
  constexpr bool PvNode = Kind != NonPVNode;
  constexpr bool IsRoot = Kind == RootNode;
  const bool inCheck = (debugSearchInCheck && !SpNode && checkMalfunction(pos)) || pos.inCheck();
  if (!SpNode && depth < OnePly) return qsearchAt<Kind>(pos, ss, alpha, beta, inCheck, 0);

  Thread& thread = threadOf(pos);
  const Color us = pos.side();
  StateInfo st;
  Value bestValue, v = -ValueInfinite, ttValue = ValueNone, refinedValue = ValueNone;
  Move ttMove = MoveNone, bestMove = MoveNone, threatMove = MoveNone, excludedMove = MoveNone;
  Key posKey = 0;
  TTEntry* tte = nullptr;
  int moveCount = 0, exchangeCount = 0, quietCount = 0;
  Move quiets[64];
  bool singularNode = false;
  SplitPoint* sp = nullptr;

  if (gameEnded(pos, ss, v)) {
    if constexpr (SpNode) return ss->sp->bestValue;  // no split happens at a finished game
    return v;
  }

  if (SpNode) {
    sp = ss->sp;
    bestMove = sp->bestMove;
    threatMove = sp->threatMove;
    bestValue = sp->bestValue;
    goto moveLoop;
  }

  // ---- set-up
  bestValue = -ValueInfinite;
  ss->currentMove = (ss + 1)->excludedMove = MoveNone;
  ss->ply = (ss - 1)->ply + 1;
  (ss + 1)->skipNullMove = false;
  (ss + 1)->reduction = 0;
  (ss + 2)->killers[0] = (ss + 2)->killers[1] = MoveNone;
  if (PvNode && ss->ply > thread.maxPly) thread.maxPly = ss->ply;

  // ---- draws and a stop; mate distance
  if constexpr (!IsRoot) {
    if (stopped() || (PvNode ? isDrawPV(pos) : isDrawNonPV(pos)) || ss->ply > 100) return drawValue[us];
    alpha = std::max(ss->ply - ValueMate, alpha);
    beta = std::min(ValueMate - 1 - ss->ply, beta);
    if (alpha >= beta) return alpha;
  }

  // ---- the table
  excludedMove = ss->excludedMove;
  posKey = excludedMove ? pos.key() ^ Zobrist::exclusionKey : pos.key();
  tte = currentTable->probe(posKey);
  if (tte) ttValue = valueFromTT(tte->value(), ss->ply);
  if constexpr (IsRoot)
    ttMove = RootMoves[pvIndex].pv[0];
  else
    ttMove = tte ? tte->move() : MoveNone;

  if (!IsRoot && tte && tte->depth() >= depth && ttValue != ValueNone &&
      (PvNode ? tte->bound() == BoundExact : boundFits(tte, ttValue, beta))) {
    currentTable->refresh(tte);
    ss->currentMove = ttMove;
    if (ttValue >= beta && ttMove && !specialKind(ttMove) && pos.empty(moveTo(ttMove))) updateKillers(ss, ttMove);
    return ttValue;
  }

  // ---- static value
  if (inCheck) {
    ss->eval = ss->evalMargin = ValueNone;
  } else if (tte) {
    ss->eval = tte->staticValue();
    ss->evalMargin = tte->staticMargin();
    if (ss->eval == ValueNone || ss->evalMargin == ValueNone) ss->eval = evaluate(pos, ss->evalMargin);
    refinedValue = ss->eval;
    if (ttValue != ValueNone && (tte->bound() & (ttValue > refinedValue ? BoundLower : BoundUpper)))
      refinedValue = ttValue;
  } else {
    refinedValue = ss->eval = evaluate(pos, ss->evalMargin);
    currentTable->store(posKey, ValueNone, BoundNone, DepthNone, MoveNone, ss->eval, ss->evalMargin);
  }

  // ---- learning what a quiet move gains
  if (Move prev = (ss - 1)->currentMove; prev != MoveNull && (ss - 1)->eval != ValueNone && ss->eval != ValueNone &&
                                         pos.state()->capturedType == NoPieceType && !specialKind(prev)) {
    Square to = moveTo(prev);
    maxGain.update(pos.pieceOn(to), to, -((ss - 1)->eval + ss->eval));
  }

  if constexpr (Kind == NonPVNode) {
    const bool nonMateBeta = std::abs(beta) < ValueMateInMaxPly;

    // ---- razoring
    if (depth < 8 && !inCheck && !ttMove && nonMateBeta) {
      Value margin = 16 * (depth + 32);
      if (refinedValue + margin < beta) {
        Value rbeta = beta - margin;
        Value rv = qsearchNonPV(pos, ss, rbeta - 1, rbeta, 0);
        if (rv < rbeta) return rv;
      }
    }

    // ---- static null move
    if (!ss->skipNullMove && depth < 8 && !inCheck && nonMateBeta && !onlyLeaderAndMinors(pos, us) &&
        refinedValue - futilityMargin(depth, 0) >= beta)
      return refinedValue - futilityMargin(depth, 0);

    // ---- null move
    if (!ss->skipNullMove && depth >= 3 && !inCheck && refinedValue >= beta && nonMateBeta &&
        !onlyLeaderAndMinors(pos, us)) {
      ss->currentMove = MoveNull;
      Depth R = depth / 4 + 6;
      if (refinedValue - SwordValueMg > beta) R += 2;

      StateInfo saved;
      pos.do_null_move(saved);
      (ss + 1)->skipNullMove = true;
      Value nullValue = depth - R < OnePly ? -qsearchNonPV(pos, ss + 1, -beta, -alpha, 0)
                                           : -searchNonPV(pos, ss + 1, -beta, -alpha, depth - R);
      (ss + 1)->skipNullMove = false;
      pos.undo_null_move(saved);

      if (nullValue >= beta) {
        if (nullValue >= ValueMateInMaxPly) nullValue = beta;  // no unproven mate from a null move
        if (depth < 12) return nullValue;
        ss->skipNullMove = true;
        Value verified = searchNonPV(pos, ss, alpha, beta, depth - R);
        ss->skipNullMove = false;
        if (verified >= beta) return nullValue;
      } else {
        threatMove = (ss + 1)->currentMove;
      }
    }

    // ---- ProbCut: a good capture that beats beta by a margin at a much lower depth
    if (depth >= 10 && !inCheck && !ss->skipNullMove && !excludedMove && nonMateBeta) {
      Value rbeta = std::min(beta + 200, ValueInfinite);
      MovePicker mp(pos, ttMove, pos.state()->capturedType);
      CheckInfo ci(pos);
      for (Move m; (m = mp.nextMove()) != MoveNone;) {
        if (!pos.legal(m, ci.pinned)) continue;
        ss->currentMove = m;
        pushLine(pos, m);
        pos.do_move(m, st, ci, pos.gives_check(m, ci));
        Value pv = -searchNonPV(pos, ss + 1, -rbeta, -rbeta + 1, depth - 8);
        pos.undo_move(m);
        popLine(pos);
        if (pv >= rbeta) return pv;
      }
    }
  }

  // ---- internal iterative deepening: find a move to try first
  if (!ttMove && !inCheck &&
      (PvNode ? depth >= 10 : depth >= 16 && ss->eval + 256 >= beta)) {
    ss->skipNullMove = true;
    if constexpr (PvNode)
      searchPV(pos, ss, alpha, beta, depth - 4);
    else
      searchNonPV(pos, ss, alpha, beta, depth / 2);
    ss->skipNullMove = false;
    tte = currentTable->probe(posKey);
    ttMove = tte ? tte->move() : MoveNone;
    ttValue = tte ? valueFromTT(tte->value(), ss->ply) : ValueNone;
  }

moveLoop:
  MovePicker localPicker(pos, SpNode ? MoveNone : ttMove, depth, ss, Kind == NonPVNode ? beta : -ValueInfinite);
  MovePicker& mp = SpNode ? *sp->movePicker : localPicker;
  CheckInfo ci(pos);
  if constexpr (!SpNode && Kind != RootNode)
    singularNode = ttMove && !excludedMove && tte && depth >= (PvNode ? 12 : 16) && (tte->bound() & BoundLower) &&
                   tte->depth() >= depth - 6;
  const int checksInRow = inCheck ? 1 : 0;

  // The picker sits at a split point under its lock; a split-form thread holds it from here on,
  // except while it searches a move.
  for (Move m; (m = mp.nextMove()) != MoveNone;) {
    if (m == excludedMove) continue;
    if constexpr (IsRoot) {
      if (std::find_if(RootMoves.begin() + pvIndex, RootMoves.end(),
                       [m](const RootMove& rm) { return rm.pv[0] == m; }) == RootMoves.end())
        continue;
      // A helper leaves the best move so far to the thread that searches it.
      if (SpNode && m == RootMoves[0].pv[0] && RootMoves[0].score >= alpha && RootMoves[0].score < beta) continue;
    }
    if constexpr (SpNode) {
      if (!pos.legal(m, ci.pinned)) continue;
      moveCount = sp->moveCount = sp->moveCount + 1;
      sp->lock.unlock();
    } else {
      ++moveCount;
    }
    if constexpr (IsRoot) {
      Signals.firstRootMove = moveCount == 1;
      if ((uciGo || (msgFlags & MsgSearchInfo)) && elapsedMs() > 3000 && Threads.size() && &thread == Threads.main())
        printCurrentMove(depth, m, moveCount);
    }
    if (isExchange(m)) ++exchangeCount;

    const Square from = moveFrom(m), to = moveTo(m);
    const bool captureOrSpecial = specialKind(m) || !pos.empty(to);
    const bool givesCheck = pos.gives_check(m, ci);
    const bool dangerous = givesCheck || dangerousCapture(pos, m);
    Depth ext = 0;
    if constexpr (PvNode)
      ext = dangerous ? 2 : 0;
    else
      ext = givesCheck && (victimValue(pos, m) >= moverValue(pos, m) || seeSign(pos, m) >= 0) ? 1 : 0;

    // ---- singular extension: the table move alone holds, so it deserves more depth
    if (singularNode && m == ttMove && ext == 0 && pos.legal(m, ci.pinned) && std::abs(ttValue) < ValueKnownWin) {
      Value rBeta = ttValue - depth;
      ss->excludedMove = m;
      ss->skipNullMove = true;
      Value sv = searchNonPV(pos, ss, rBeta - 1, rBeta, depth / 2);
      ss->excludedMove = MoveNone;
      ss->skipNullMove = false;
      if (sv < rBeta) ext = rBeta < beta ? 2 : 3;
    }
    const Depth newDepth = depth + ext - OnePly;

    // ---- futility pruning of quiet moves
    if (Kind == NonPVNode && !captureOrSpecial && !dangerous && m != ttMove && !inCheck &&
        !(threatMove && connectedThreat(pos, m, threatMove)) &&
        !(bestValue < -ValueMateInMaxPly + 1 && !(bestValue == -ValueInfinite && alpha >= -ValueMateInMaxPly + 1)) &&
        !isSiege1WinningMove(pos, m)) {
      int mc = moveCount - exchangeCount;  // exchanges do not use up the allowance
      bool prune = depth < 32 && mc >= FutilityMoveCounts[depth];
      Depth predictedDepth = newDepth - ReductionsNonPV[std::min(depth / 2, 63)][std::min(mc, 63)];
      prune = prune || futilityMargin(predictedDepth, mc) + maxGain.get(pos.pieceOn(from), to) + ss->eval +
                               ss->evalMargin <
                           beta;
      prune = prune || (predictedDepth < 4 && seeSign(pos, m) < 0);
      if (prune) {
        if constexpr (SpNode) sp->lock.lock();
        continue;
      }
    }

    if (!SpNode && !pos.legal(m, ci.pinned)) {
      --moveCount;
      continue;
    }

    ss->currentMove = m;
    if (!SpNode && !captureOrSpecial && quietCount < 64) quiets[quietCount++] = m;
    pushLine(pos, m);
    pos.do_move(m, st, ci, givesCheck);

    if constexpr (SpNode) alpha = sp->alpha;
    bool fullSearch = !PvNode || moveCount > 1;

    // ---- late move reduction
    if (depth >= 7 && !captureOrSpecial && !dangerous && m != ss->killers[0] && m != ss->killers[1] &&
        (!PvNode || moveCount > 1)) {
      const auto& table = PvNode ? ReductionsPV : ReductionsNonPV;
      ss->reduction = table[std::min(depth / 2, 63)][std::min(moveCount, 63)];
      v = -searchNonPV(pos, ss + 1, -(alpha + 1), -alpha, std::max(newDepth - ss->reduction, OnePly));
      fullSearch = v > alpha && ss->reduction != 0;
      ss->reduction = 0;
    }

    // ---- zero-window search of a later move
    if (fullSearch)
      v = newDepth < OnePly ? -qsearchAt<NonPVNode>(pos, ss + 1, -(alpha + 1), -alpha, givesCheck, checksInRow)
                            : -searchNonPV(pos, ss + 1, -(alpha + 1), -alpha, newDepth);

    // ---- full window for the first move and for a later one that beat alpha
    if (PvNode && (moveCount == 1 || (v > alpha && (IsRoot || v < beta))))
      v = newDepth < OnePly ? -qsearchAt<PVNode>(pos, ss + 1, -beta, -alpha, givesCheck, checksInRow)
                            : -searchPV(pos, ss + 1, -beta, -alpha, newDepth);

    pos.undo_move(m);
    popLine(pos);

    if constexpr (SpNode) {
      sp->lock.lock();
      bestValue = sp->bestValue;
      alpha = sp->alpha;
    }
    if (stopped() || Threads.cutoffOccurred(thread)) return v;

    if constexpr (IsRoot) {
      RootMove& rm = *std::find_if(RootMoves.begin(), RootMoves.end(), [m](const RootMove& r) { return r.pv[0] == m; });
      if (moveCount == 1 || v > alpha) {
        rm.score = v;
        rm.extractPvFromTable(pos);
        if (moveCount != 1) ++bestMoveChanges;
      } else {
        rm.score = -ValueInfinite;
      }
    }

    if (v > bestValue) {
      bestValue = v;
      if constexpr (SpNode) sp->bestValue = v;
      if (v > alpha) {
        bestMove = m;
        if constexpr (SpNode) sp->bestMove = m;
        if (!PvNode || v >= beta) {
          if constexpr (SpNode) {
            sp->cutoff = true;
            return bestValue;
          }
          break;
        }
        alpha = v;
        if constexpr (SpNode) sp->alpha = v;
      }
    }

    if (!SpNode && depth >= Threads.minimumSplitDepth && Threads.availableSlave(thread)) {
      bestValue = Threads.split(pos, ss, alpha, beta, bestValue, &bestMove, depth, threatMove, moveCount, &mp,
                                IsRoot ? 0 : PvNode ? 1 : 2);
      if (bestValue >= beta) break;
    }

    if (isSiege1WinningMove(pos, m)) break;  // no other move can do better than winning now
  }

  if constexpr (SpNode) return bestValue;

  // A stopped search has no result worth keeping.
  if (stopped() || Threads.cutoffOccurred(thread)) return bestValue;

  if (moveCount == 0) return excludedMove ? alpha : inCheck ? ss->ply - ValueMate : drawValue[us];

  if (bestValue == -ValueInfinite) bestValue = alpha;
  Bound bound = bestValue >= beta ? BoundLower : PvNode && bestMove ? BoundExact : BoundUpper;
  currentTable->store(posKey, valueToTT(bestValue, ss->ply), bound, depth, bestMove, ss->eval, ss->evalMargin);

  // ---- what a quiet cutoff teaches the move order
  if (bestValue >= beta && bestMove && !specialKind(bestMove) && pos.empty(moveTo(bestMove)) && !inCheck) {
    updateKillers(ss, bestMove);
    Value bonus = depth * depth;
    history.update(pos.pieceOn(moveFrom(bestMove)), moveTo(bestMove), bonus);
    for (int i = 0; i < quietCount - 1; ++i) history.update(pos.pieceOn(moveFrom(quiets[i])), moveTo(quiets[i]), -bonus);
  }
  return bestValue;
}

}  // namespace

Value searchRoot(Position& pos, SearchStack* ss, Value alpha, Value beta, Depth depth) {
  return search<RootNode, false>(pos, ss, alpha, beta, depth);
}
Value searchPV(Position& pos, SearchStack* ss, Value alpha, Value beta, Depth depth) {
  return search<PVNode, false>(pos, ss, alpha, beta, depth);
}
Value searchNonPV(Position& pos, SearchStack* ss, Value alpha, Value beta, Depth depth) {
  return search<NonPVNode, false>(pos, ss, alpha, beta, depth);
}

void searchSplitPoint(Position& pos, SearchStack* ss, SplitPoint* sp) {
  switch (sp->nodeType) {
    case 0: search<RootNode, true>(pos, ss, sp->alpha, sp->beta, sp->depth); break;
    case 1: search<PVNode, true>(pos, ss, sp->alpha, sp->beta, sp->depth); break;
    default: search<NonPVNode, true>(pos, ss, sp->alpha, sp->beta, sp->depth); break;
  }
}

bool isSiege1WinningMove(const Position& pos, Move m) {
  return siege1 && isTransfer(m) && !isDemotion(m) && (goalSquares[pos.side()] & bit(moveTo(m)));
}

bool connectedThreat(Position& pos, Move m, Move threat) {
  const Square mFrom = moveFrom(m), mTo = moveTo(m), tFrom = moveFrom(threat), tTo = moveTo(threat);
  if (mFrom == tTo) return true;  // the threatened piece steps away

  if (!pos.empty(tTo)) {
    Piece capturer = pos.pieceOn(tFrom), victim = pos.pieceOn(tTo);
    bool hopeless = pieceValueMg[capturer] < pieceValueMg[victim] && typeOf(capturer) != Dorn;
    if (!hopeless) {
      // Can the moved piece defend the threatened one from its new square?
      Bitboard occ = pos.pieces();
      if (pos.pieceMoves(m)) occ = (occ & ~bit(mFrom)) | bit(mTo);
      if (pos.pieceMoves(threat)) occ &= ~bit(tFrom);
      if (attacksFrom(pos, pos.pieceOn(mFrom), mTo, occ) & bit(tTo)) return true;
    }
  }

  // Can the move block the threat's way?
  Bitboard way = warriorVia[tTo][tFrom] ? warriorVia[tTo][tFrom] : between[tFrom][tTo];
  if (!(way & bit(mTo))) return false;
  return victimValue(pos, m) >= moverValue(pos, m) || see(pos, m) >= 0;
}

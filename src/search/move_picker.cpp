// The move picker: the stage sequence of each search situation and the ratings that order each stage.
#include "search/move_picker.h"

#include <algorithm>
#include <iostream>
#include <utility>

#include "core/psqt.h"
#include "eval/captive_value.h"
#include "movegen/notation.h"
#include "search/history.h"
#include "search/see.h"

namespace {

constexpr Bitboard bit(Square s) { return Bitboard(1) << s; }

Value pv(Piece p) { return pieceValueMg[p]; }

// The Siege 1 move that brings the captive home; it outranks everything.
constexpr int WinningTransferScore = 15000;
constexpr int EvasionBias = 2000;

bool winningTransfer(const Position& pos, Move m) {
  return siege1 && isTransfer(m) && !isDemotion(m) && (goalSquares[pos.side()] & bit(moveTo(m)));
}

// Splits by swapping the first unwanted entry from the front with the last wanted one from the
// back; returns the end of the wanted part. The order this leaves is the order the rest is tried in.
template <class Wanted>
ScoredMove* splitBy(ScoredMove* first, ScoredMove* last, Wanted wanted) {
  for (;;) {
    while (first != last && wanted(*first)) ++first;
    if (first == last) return first;
    do {
      if (--last == first) return first;
    } while (!wanted(*last));
    std::swap(*first, *last);
    ++first;
  }
}

// Descending by score; equal scores keep their order.
void insertionSort(ScoredMove* first, ScoredMove* last) {
  if (first == last) return;
  for (ScoredMove* p = first + 1; p != last; ++p) {
    ScoredMove moving = *p;
    ScoredMove* q = p;
    for (; q != first && (q - 1)->score < moving.score; --q) *q = *(q - 1);
    *q = moving;
  }
}

void printList(const char* title, const ScoredMove* first, const ScoredMove* last) {
  std::cout << title << "\n";
  for (; first != last; ++first) std::cout << moveToUci(first->move) << " ";
  std::cout << "\n";
}

}  // namespace

// ---------------------------------------------------------------- construction

MovePicker::MovePicker(Position& p, Move ttm, Depth d, const SearchStack* s, Value beta) : pos(p), ss(s), depth(d) {
  if (pos.inCheck()) {
    phase = EvasionTT;
  } else {
    phase = MainTT;
    killers[0].move = ss->killers[0];
    killers[1].move = ss->killers[1];
    // Far below beta at low depth a small loss is still worth a look; above beta, a loss that
    // keeps the node above it still counts as good.
    const Value sword = pieceValueMg[Sword];
    if (ss->eval < beta - sword && depth < 6) captureThreshold = -sword;
    else if (ss->eval > beta) captureThreshold = beta - ss->eval;
  }
  ttMove = ttm != MoveNone && countedPseudoLegal(pos, ttm) ? ttm : MoveNone;
}

MovePicker::MovePicker(Position& p, Move ttm, Depth d, Square recapture, bool allMoves) : pos(p), depth(d) {
  if (pos.inCheck()) {
    phase = EvasionTT;
  } else if (allMoves) {
    phase = QAllTT;
  } else if (depth >= -3) {
    phase = QChecksTT;
  } else if (depth >= -9) {
    phase = QCapturesTT;
    // Only captures and specials, so that a table move cannot drag a line of checks out here.
    if (ttm != MoveNone && pos.empty(moveTo(ttm)) && !specialKind(ttm)) ttm = MoveNone;
  } else {
    phase = RecaptureTT;
    recaptureSquare = recapture;
    return;
  }
  ttMove = ttm != MoveNone && countedPseudoLegal(pos, ttm) ? ttm : MoveNone;
}

MovePicker::MovePicker(Position& p, Move ttm, PieceType capturedType) : pos(p) {
  phase = ProbCutTT;
  captureThreshold = pieceValueMg[capturedType];
  ttMove = ttm != MoveNone && countedPseudoLegal(pos, ttm) ? ttm : MoveNone;
  if (ttMove != MoveNone && (pos.empty(moveTo(ttMove)) || see(pos, ttMove) <= captureThreshold)) ttMove = MoveNone;
}

// ---------------------------------------------------------------- stages

void MovePicker::enterStage(Stage s) {
  phase = s;
  cur = moves;
  switch (s) {
    case GoodCaptures:
    case QChecksCaptures:
    case QCaptures:
    case Recaptures:
    case ProbCutCaptures:
    case QAllCaptures:
      last = generateCaptures(pos, moves);
      rateCaptures();
      break;
    case Killers:
      cur = killers;
      last = killers + 2;
      break;
    case QuietsFirst:
      lastQuiet = generateQuiets(pos, moves);
      rateQuiets();
      // Tower moves, with their negative scores, are the ones put last.
      last = splitBy(moves, lastQuiet, [this](const ScoredMove& sm) {
        return sm.score > 0 || (siegeGame() && towerMoveSeen && sm.score >= 0);
      });
      insertionSort(moves, last);
      break;
    case QuietsRest:
      // Not worth sorting near the leaves.
      cur = last;
      last = lastQuiet;
      if (depth >= 6) insertionSort(cur, last);
      break;
    case BadCaptures:
      // In the order they were put aside: the area grows down from the list's last entry.
      cur = moves + MaxMoves - 1;
      last = lastBadCapture;
      break;
    case Evasions:
      last = generateEvasions(pos, moves);
      if (last - moves > 1) rateEvasions();
      break;
    case QuietChecks:
      last = generateQuietChecks(pos, moves);
      break;
    case AllQuiets:
      last = generateQuiets(pos, moves);
      break;
    default:  // a stop
      last = cur;
      break;
  }
}

Move MovePicker::nextMove() {
  for (;;) {
    switch (phase) {
      case MainTT:
      case EvasionTT:
      case QChecksTT:
      case QCapturesTT:
      case RecaptureTT:
      case ProbCutTT:
      case QAllTT:
        if (ttMove != MoveNone && !ttMoveGiven) {
          ttMoveGiven = true;
          return ttMove;
        }
        break;

      case GoodCaptures:
        while (cur != last) {
          Move m = pickBest();
          if (m == ttMove) continue;
          if (seeSign(pos, m) >= captureThreshold) return m;
          (lastBadCapture--)->move = m;
        }
        break;

      case Killers:
        while (cur != last) {
          Move m = (cur++)->move;
          if (m != MoveNone && countedPseudoLegal(pos, m) && m != ttMove && pos.empty(moveTo(m))) return m;
        }
        break;

      case QuietsFirst:
      case QuietsRest:
        while (cur != last) {
          Move m = (cur++)->move;
          if (m != ttMove && m != killers[0].move && m != killers[1].move) return m;
        }
        break;

      case BadCaptures:
        if (cur != last) return (cur--)->move;
        break;

      case Evasions:
        while (cur != last) {
          Move m = pickBest();
          if (m != ttMove) return m;
        }
        break;

      case QChecksCaptures:
      case QCaptures:
      case QAllCaptures:
        // Whether a capture is worth it is the quiescence search's own question.
        while (cur != last) {
          Move m = pickBest();
          if (m != ttMove && !isExchange(m)) return m;
        }
        break;

      case QuietChecks:
      case AllQuiets:
        while (cur != last) {
          Move m = (cur++)->move;
          if (m != ttMove) return m;
        }
        break;

      case ProbCutCaptures:
        while (cur != last) {
          Move m = pickBest();
          if (m != ttMove && see(pos, m) > captureThreshold) return m;
        }
        break;

      case Recaptures:
        while (cur != last) {
          Move m = pickBest();
          if (moveTo(m) == recaptureSquare || winningTransfer(pos, m)) return m;
        }
        break;

      default:  // a stop, for good
        return MoveNone;
    }
    enterStage(Stage(phase + 1));
  }
}

Move MovePicker::pickBest() {
  // The first of the best on a tie.
  auto lower = [](const ScoredMove& a, const ScoredMove& b) { return a.score < b.score; };
  std::swap(*cur, *std::max_element(cur, last, lower));
  return (cur++)->move;
}

// ---------------------------------------------------------------- ratings

void MovePicker::rateCaptures() {
  const Color us = pos.side(), them = ~us;
  for (ScoredMove* it = moves; it != last; ++it) {
    const Move m = it->move;
    const Square from = moveFrom(m), to = moveTo(m);
    const Piece pc = pos.pieceOn(from), cp = pos.pieceOn(to);
    // Most valuable victim first, cheapest attacker first among equals.
    switch (specialKind(m)) {
      case 0: it->score = pv(cp) - typeOf(pc); break;
      case Promotion: it->score = pv(cp) - typeOf(pc) + pv(pos.promotionType(pc, to, cp)); break;
      case Demotion: {
        PieceType dt = pos.demotionType(cp);
        it->score = pv(cp) - typeOf(pc) - pv(dt);
        if (debugMoveTypes && dt == NoPieceType)
          std::cout << "MP:rate_captures(), demotionType? m=" << moveToUci(m) << "\n"
                    << pos.pretty(MoveNone, false, false) << "\n";
        break;
      }
      default: {  // exchange
        auto [newTo, newFrom] = pos.exchangeType(pc, cp);
        it->score = pv(newFrom) + pv(newTo) - pv(pc) - pv(cp);
        if (debugMoveTypes && (newTo == NoPieceType || newFrom == NoPieceType))
          std::cout << "MP:rate_captures(), exchangeType? m=" << moveToUci(m) << " it->score=" << it->score
                    << " demotion=" << newTo << " promotion=" << newFrom << "\n"
                    << pos.pretty(MoveNone, false, false) << "\n";
        break;
      }
    }
    if (winningTransfer(pos, m)) {
      it->score = WinningTransferScore;
      continue;
    }
    if (isPickup(m)) {
      it->score += captiveBaseValue[typeOf(pc)] + 100;
    } else if (siege2) {
      // Dropping off the own captive frees a Dorn; carrying the enemy's onto its goal frees one for it.
      if (pos.onDropoff(us, from)) it->score += pv(Dorn);
      else if (pos.onDropoff(them, from)) it->score -= pv(Dorn);
    }
  }
}

void MovePicker::rateQuiets() {
  for (ScoredMove* it = moves; it != lastQuiet; ++it) {
    const Move m = it->move;
    const Square from = moveFrom(m), to = moveTo(m);
    // In Siege 1 a pick-up word stands here only for a step onto the standing tower square where
    // the captive lies, which is a death; any other is a fault of the lists.
    if (siege1 && isPickup(m) && !pos.onStandingTower(to)) reportPickupInQuiets(m);
    if (siegeGame() && pos.onStandingTower(to)) {
      // The mover dies there, or a Magician opens it: either way a move for the end of the list.
      it->score = -pv(pos.pieceOn(from));
      towerMoveSeen = true;
    } else {
      it->score = history.get(pos.pieceOn(from), to);
    }
  }
}

void MovePicker::rateEvasions() {
  const Color us = pos.side();
  for (ScoredMove* it = moves; it != last; ++it) {
    const Move m = it->move;
    const Square from = moveFrom(m), to = moveTo(m);
    const Piece pc = pos.pieceOn(from), cp = pos.pieceOn(to);
    const bool onTower = pos.onStandingTower(to) && !isDemotion(m);
    Value exchange;
    if (siege1 && onTower) it->score = -pv(pc);
    else if (siege1 && isTransfer(m) && !isDemotion(m) && (goalSquares[us] & bit(to))) it->score = WinningTransferScore;
    else if (siege2 && onTower) it->score = -pv(pc);
    else if (pv(cp) < pv(pc) && (exchange = see(pos, m)) < 0) it->score = exchange - EvasionBias;
    else if (cp != NoPiece) it->score = pv(cp) - typeOf(pc) + EvasionBias;
    else it->score = history.get(pc, to);
  }
}

// ---------------------------------------------------------------- diagnostics

void MovePicker::reportPickupInQuiets(Move m) const {
  std::cout << pos.pretty(MoveNone, false, false) << "\n"
            << "MP: pick-up among the quiet moves, m=" << moveToUci(m)
            << " siege1CaptiveSquare=" << squareToStringUpper(pos.siege1CaptiveSquare) << "\n";
  pos.dumpMove(m);
  printList("MP:quiets(1)", moves, lastQuiet);
  ScoredMove captures[MaxMoves];
  printList("MP:captures(1)", captures, generateCaptures(pos, captures));
}

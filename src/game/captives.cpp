// The siege half of making and unmaking moves: breaches, deaths on towers, captives and released Dorns.
#include <iostream>
#include <string>

#include "core/bitboard.h"
#include "core/psqt.h"
#include "core/zobrist.h"
#include "game/captive_state.h"
#include "game/move_making.h"

using Zobrist::captiveKeys;
using Zobrist::pieceKeys;
using Zobrist::towerKeys;

namespace {

// Recorded in siege2_color when a word touched no captive it claimed to, so that undo leaves the
// captives alone.
constexpr Color NoCaptiveColor = Color(2);

constexpr Bitboard bit(Square s) { return s < NoSquare ? Bitboard(1) << s : 0; }

Score bonusFor(Color us) { return us == WHITE ? firstBreachBonus : -firstBreachBonus; }

// A word that does not fit the siege fields: the text, then the position and the move.
void report(const Position& pos, const std::string& text, Move m) {
  std::cout << text << pos.pretty(MoveNone, false, true) << "\n";
  pos.dumpMove(m);
}

// ---------------------------------------------------------------- both modes

// The mover stepped onto a standing tower square and is gone; only the key of `from` is left in k
// for it, so one more XOR takes it out.
void dieOnTower(Position& pos, MoveInHand& mv, Key& k) {
  StateInfo* st = pos.st;
  st->priorType = mv.pt;
  st->npMaterial[mv.us] -= nonMinorValue(mv.pt);
  pos.removePiece(mv.from);
  k ^= pieceKeys[mv.us][mv.pt][mv.to];
  st->materialKey ^= pieceKeys[mv.us][mv.pt][pos.pieceCount[mv.us][mv.pt]];
  st->psqScore -= psq[mv.pc][mv.from];
  st->pliesSinceCapture = 0;
  mv.moverDied = true;
}

// ---------------------------------------------------------------- Siege 1

void doSiege1(Position& pos, MoveInHand& mv, Key& k, Move m) {
  StateInfo* st = pos.st;
  const Square from = mv.from, to = mv.to;

  if (mv.onTower && mv.special == Demotion) {
    if (pos.siege1Tower == siege1TowerSquares && (ownHalf[mv.us] & bit(to))) st->psqScore += bonusFor(mv.us);
    st->priorType = mv.pt;
    pos.siege1Tower ^= bit(to);
    pos.siege1Breached |= bit(to);
    k ^= towerKeys[popcount15(pos.siege1Tower)];
    return;
  }

  if (from == pos.siege1CaptiveSquare && mv.kind != Transfer) {
    report(pos, "(A) do_move():Move not flagged as transfer! " + pos.printMoveShort(m) + "\n", m);
    mv.kind = Transfer;  // the captive goes where its carrier goes
  }

  if (mv.onTower) {
    dieOnTower(pos, mv, k);
    if (mv.kind == Transfer) {
      if (pos.siege1CaptiveSquare != from)
        report(pos, "do_move():captive holder walked into tower, but captive square doesn't match:\n", m);
      // The captive falls back into the tower, on the square where its carrier died.
      k ^= captiveKeys[pos.siege1CaptiveSquare];
      pos.siege1CaptiveSquare = to;
      pos.siege1LastCaptiveSquare = NoSquare;
    }
    return;
  }

  if (mv.kind == Transfer) {
    if (pos.siege1CaptiveSquare != from)
      report(pos, "\ndo_move():captive transfer, captive square doesn't match:\n", m);
    k ^= captiveKeys[pos.siege1CaptiveSquare] ^ captiveKeys[to];
    pos.siege1CaptiveSquare = to;
    pos.siege1LastCaptiveSquare = from;
  } else if (mv.kind == Pickup) {
    st->priorCaptiveSquare = pos.siege1CaptiveSquare;
    if (mv.ct == NoPieceType) {
      if (!(pos.siege1Breached & bit(to)) || !siege1CaptiveInTower(pos))
        report(pos, "do_move():(5) initial captive pickup, captive square doesn't match:\n", m);
      pos.siege1CaptiveSquare = to;
    } else if (to != pos.siege1CaptiveSquare && !(pos.siege1Breached & bit(to))) {
      report(pos, "do_move():(3) capture pickup, captive square doesn't match:" +
                      squareToStringUpper(pos.siege1CaptiveSquare) + "\n", m);
    }
    // A capture on a breached square takes the captive only from its carrier, whose square it
    // already has.
    pos.siege1LastCaptiveSquare = NoSquare;
  }
}

void undoSiege1(Position& pos, Move m, bool lost) {
  StateInfo* st = pos.st;
  const Square from = moveFrom(m), to = moveTo(m);

  if (isTransfer(m)) pos.siege1CaptiveSquare = from;
  // A pick-up word onto the standing tower square where the captive lies only killed its mover.
  else if (isPickup(m) && !lost) pos.siege1CaptiveSquare = st->priorCaptiveSquare;

  if (lost) {
    if (isDemotion(m)) {
      pos.siege1Breached ^= bit(to);
      pos.siege1Tower |= bit(to);
    } else {
      if (debug_PL_legal && (st->priorType == Magician || st->priorType == Magician1))
        std::cout << "Undo_move:M/M- can't walk into tower\n";
      pos.putPiece(makePiece(pos.side(), st->priorType), from);
    }
  }

  if (debug_PL_legal && isTransfer(m) && pos.siege1CaptiveSquare != from)
    std::cout << "undo_move::siege captive NOT moved back to sq=" << squareToStringUpper(pos.siege1CaptiveSquare)
              << ", from=" << squareToStringUpper(from) << ", to =" << squareToStringUpper(to)
              << ", lastCaptiveSq=" << squareToStringUpper(pos.siege1LastCaptiveSquare) << "\n";
}

// ---------------------------------------------------------------- Siege 2

// s holds the carrier of c's captive. A dead or released captive has no carrier, even where a
// piece stands on the square it was left on.
bool carries(const Position& pos, Color c, Square s) {
  return pos.siege2CaptiveSquare[c] == s && siege2CaptiveInPlay(pos, c);
}

// The colour whose captive its carrier on s holds, White tested first.
Color captiveColorOn(const Position& pos, Square s) {
  return carries(pos, WHITE, s) ? WHITE : carries(pos, BLACK, s) ? BLACK : NoCaptiveColor;
}

// The carrier leaves the drop-off square of the captive it holds; the captive stays behind.
void dropOff(Position& pos, MoveInHand& mv, Key& k, Move m) {
  StateInfo* st = pos.st;
  const Square from = mv.from, to = mv.to;
  Color c = captiveColorOn(pos, from);
  if (c == NoCaptiveColor) {
    report(pos, "do_move():captive dropoff, captive square doesn't match:\n", m);
    st->siege2_color = NoCaptiveColor;
    return;
  }
  pos.siege2CaptiveSquare[c] = NoSquare;
  pos.siege2CaptiveAlive[c] = false;
  st->siege2_color = c;
  k ^= captiveKeys[from];

  // Leaving onto a breach of the other tower takes up that captive in the same move.
  Color o = ~c;
  Square os = pos.siege2CaptiveSquare[o];
  if (mv.ct == NoPieceType) {
    bool free = os == NoSquare || (!(pos.pieces() & bit(os)) && (pos.siege2Breached[o] & bit(os)));
    if (free && (to == os || (pos.siege2Breached[o] & bit(to))) && siege2CaptiveInPlay(pos, o)) {
      st->priorCaptiveSquare = os;
      pos.siege2CaptiveSquare[o] = to;
    }
  }

  if (pos.noDorn(c)) {
    // The captive's owner gets a Dorn on the square, whoever carried it there.
    st->isSuccessfulDropoff = true;
    pos.siege2CaptiveReleased[c] = true;
    mv.released = true;
    mv.releasedColor = c;
    k ^= pieceKeys[c][Dorn][from];
    st->materialKey ^= pieceKeys[c][Dorn][pos.pieceCount[c][Dorn]];
    st->psqScore += psq[makePiece(c, Dorn)][from];
    st->npMaterial[c] += nonMinorValue(Dorn);
  } else {
    st->isSuccessfulDropoff = false;
  }
}

// A carrier that meets the other captive's carrier by capture kills the captive of its own enemy.
void transfer(Position& pos, MoveInHand& mv, Key& k, Move m) {
  StateInfo* st = pos.st;
  const Color us = mv.us, them = mv.them;
  const Square from = mv.from, to = mv.to;
  st->isSiege2EnemyTransferKill = 0;

  if (carries(pos, us, from) && carries(pos, them, to)) {
    pos.siege2CaptiveAlive[them] = false;
    st->isSiege2EnemyTransferKill = 1;
    pos.siege2CaptiveSquare[them] = NoSquare;
    k ^= captiveKeys[from];
    pos.siege2CaptiveSquare[us] = to;
    pos.siege2LastCaptiveSquare[us] = from;
    st->siege2_color = us;
  } else if (carries(pos, them, from) && carries(pos, us, to)) {
    // The own captive stays on `to`, now with the mover.
    pos.siege2CaptiveAlive[them] = false;
    st->isSiege2EnemyTransferKill = -1;
    pos.siege2CaptiveSquare[them] = NoSquare;
    k ^= captiveKeys[from];
    pos.siege2LastCaptiveSquare[them] = from;
    st->siege2_color = them;
  } else {
    Color c = captiveColorOn(pos, from);
    st->siege2_color = c;
    if (c == NoCaptiveColor) {
      report(pos, "do_move():siege2 bad captive transfer move:" + pos.printMoveShort(m) + "\n", m);
      return;
    }
    pos.siege2CaptiveSquare[c] = to;
    pos.siege2LastCaptiveSquare[c] = from;
    k ^= captiveKeys[to] ^ captiveKeys[from];
  }
}

void pickUp(Position& pos, MoveInHand& mv, Key& k, Move m) {
  StateInfo* st = pos.st;
  const Square to = mv.to;
  Color c;
  if (mv.ct != NoPieceType && (carries(pos, WHITE, to) || carries(pos, BLACK, to))) {
    // The carrier is captured; its captive already has this square.
    c = carries(pos, BLACK, to) ? BLACK : WHITE;
    st->priorCaptiveSquare = to;
  } else {
    c = (pos.siege2Breached[WHITE] & bit(to)) ? WHITE : (pos.siege2Breached[BLACK] & bit(to)) ? BLACK : NoCaptiveColor;
    if (c == NoCaptiveColor) {
      if (mv.ct != NoPieceType)
        report(pos, "do_move():capture pickup error, white sq:" + squareToStringUpper(pos.siege2CaptiveSquare[WHITE]) +
                        ",black sq:" + squareToStringUpper(pos.siege2CaptiveSquare[BLACK]) + "\n", m);
      else
        report(pos, "do_move():(5) initial captive pickup, captive square doesn't match:\n", m);
      st->siege2_color = NoCaptiveColor;
      return;
    }
    if (!(siege2CaptiveInPlay(pos, c) && siege2CaptiveInTower(pos, c))) {
      if (mv.ct == NoPieceType)
        report(pos, "do_move():(5) initial captive pickup, captive square doesn't match:\n", m);
      else if (c == WHITE)
        report(pos, "do_move():(3) capture pickup, captive square doesn't match:" +
                        squareToStringUpper(pos.siege2CaptiveSquare[c]) + "\n", m);
      else
        report(pos, "do_move():(4) capture pickup black, captive square doesn't match:" +
                        squareToStringUpper(pos.siege2CaptiveSquare[c]) + "\n", m);
    }
    st->priorCaptiveSquare = pos.siege2CaptiveSquare[c];
    pos.siege2CaptiveSquare[c] = to;
    if (mv.ct == NoPieceType) k ^= captiveKeys[to];
  }
  pos.siege2LastCaptiveSquare[c] = NoSquare;
  st->siege2_color = c;
}

void doSiege2(Position& pos, MoveInHand& mv, Key& k, Move m) {
  StateInfo* st = pos.st;
  const Color us = mv.us;
  const Square from = mv.from, to = mv.to;

  if (mv.onTower && mv.special == Demotion) {
    Color c = (pos.siege2Tower[us] & bit(to)) ? us : ~us;
    st->siege2_color = c;
    bool untouched = !pos.siege2Breached[WHITE] && !pos.siege2Breached[BLACK] &&
                     pos.siege2Tower[WHITE] == siege2TowerSquares[WHITE] &&
                     pos.siege2Tower[BLACK] == siege2TowerSquares[BLACK];
    if (c == us && untouched) st->psqScore += bonusFor(us);
    st->priorType = mv.pt;
    pos.siege2Tower[c] ^= bit(to);
    pos.siege2Breached[c] |= bit(to);
    k ^= towerKeys[popcount15(pos.siege2Tower[WHITE] | pos.siege2Tower[BLACK])];
    return;
  }

  if (mv.kind != Transfer && mv.kind != Dropoff && !mv.handover && captiveColorOn(pos, from) != NoCaptiveColor) {
    report(pos, "(B) do_move():Move not flagged as transfer! " + pos.printMoveShort(m) + "\n", m);
    mv.kind = Transfer;  // the captive goes where its carrier goes
  }

  if (mv.onTower) {
    dieOnTower(pos, mv, k);
    if (mv.kind == Transfer) {
      st->isSiege2EnemyTransferKill = 0;
      Color o = captiveColorOn(pos, from);
      st->siege2_color = o;
      if (o == NoCaptiveColor) {
        report(pos, "do_move():captive holder walked into tower, but captive square doesn't match:\n", m);
        return;
      }
      // An enemy carrier always kills it; its own side's only while the enemy tower still stands.
      if (us != o || pos.siege2Tower[~o]) pos.siege2CaptiveAlive[o] = false;
      pos.siege2CaptiveSquare[o] = to;
      pos.siege2LastCaptiveSquare[o] = NoSquare;
      k ^= captiveKeys[from];
    } else if (mv.kind == Dropoff) {
      dropOff(pos, mv, k, m);
    }
    return;
  }

  if (mv.kind == Transfer) transfer(pos, mv, k, m);
  else if (mv.kind == Pickup) pickUp(pos, mv, k, m);
  else if (mv.kind == Dropoff) dropOff(pos, mv, k, m);
}

// The recorded colour must name a captive; a word that touched none left NoCaptiveColor.
bool validCaptiveColor(const Position& pos, const char* text) {
  Color c = pos.st->siege2_color;
  if (c == WHITE || c == BLACK) return true;
  std::cout << text << int(c) << "\n";
  return false;
}

void undoSiege2(Position& pos, Move m, bool lost) {
  StateInfo* st = pos.st;
  const Color us = pos.side(), them = ~us;
  const Square from = moveFrom(m), to = moveTo(m);
  const Color c = st->siege2_color;

  if (isDropoff(m) && validCaptiveColor(pos, "\nCaptive_Dropoff, Bad siege2color=")) {
    pos.siege2CaptiveSquare[c] = from;
    pos.siege2CaptiveAlive[c] = true;
    pos.siege2LastCaptiveSquare[c] = NoSquare;
    Color o = ~c;
    if (st->capturedType == NoPieceType && pos.siege2CaptiveSquare[o] == to && (pos.siege2Breached[o] & bit(to)) &&
        siege2CaptiveInPlay(pos, o))
      pos.siege2CaptiveSquare[o] = st->priorCaptiveSquare;
    if (st->isSuccessfulDropoff) pos.siege2CaptiveReleased[c] = false;
  } else if (isPickup(m) && !lost && (c == WHITE || c == BLACK)) {
    pos.siege2CaptiveSquare[c] = st->priorCaptiveSquare;
    pos.siege2LastCaptiveSquare[c] = NoSquare;
  } else if (isTransfer(m) && validCaptiveColor(pos, "\nCaptive Transfer, Bad siege2color=")) {
    pos.siege2CaptiveSquare[c] = from;
    if (st->isSiege2EnemyTransferKill) {
      pos.siege2CaptiveAlive[them] = true;
      if (st->isSiege2EnemyTransferKill == 1) pos.siege2CaptiveSquare[them] = to;
    }
    pos.siege2LastCaptiveSquare[c] = NoSquare;
  }

  if (lost) {
    if (isDemotion(m)) {
      pos.siege2Breached[c] ^= bit(to);
      pos.siege2Tower[c] |= bit(to);
    } else {
      if (debug_PL_legal && (st->priorType == Magician || st->priorType == Magician1))
        std::cout << "Undo_move:M/M- can't walk into tower\n";
      pos.putPiece(makePiece(us, st->priorType), from);
      if (isTransfer(m) && (c == WHITE || c == BLACK)) pos.siege2CaptiveAlive[c] = true;
    }
  }

  if (debug_PL_legal && isTransfer(m) && (c == WHITE || c == BLACK) && pos.siege2CaptiveSquare[c] != from)
    std::cout << (c == WHITE ? "undo_move::siege WHITE captive NOT moved back to sq="
                             : "undo_move::siege BLACK captive NOT moved back to sq=")
              << squareToStringUpper(pos.siege2CaptiveSquare[c]) << ", from=" << squareToStringUpper(from)
              << ", to =" << squareToStringUpper(to)
              << ", lastCaptiveSq=" << squareToStringUpper(pos.siege2LastCaptiveSquare[c]) << "\n";
}

}  // namespace

// ---------------------------------------------------------------- entry points

void doSiegeWork(Position& pos, Move m, MoveInHand& mv, Key& k) {
  if (siege1) doSiege1(pos, mv, k, m);
  else doSiege2(pos, mv, k, m);
}

void takeBackReleasedDorn(Position& pos, Move m) { pos.removePiece(moveFrom(m)); }

void undoSiegeWork(Position& pos, Move m, bool lost) {
  if (siege1) undoSiege1(pos, m, lost);
  else undoSiege2(pos, m, lost);
}

// Looks at a position from outside the game: consistency check, colour flip and the dumps of error reports.
#include <iostream>
#include <string>

#include "core/bitboard.h"
#include "game/attack_queries.h"
#include "game/move_stack.h"
#include "game/position.h"

std::string lastPositionError;
bool checkDornCount = false;
bool checkLeaderCapture = false;
bool debug_PL_legal = false;
bool debugSearchInCheck = false;
bool debugMoveTypes = false;

namespace {

const char* bit01(bool b) { return b ? "1" : "0"; }

}  // namespace

bool Position::isConsistent() const {
  if (sideToMove != WHITE && sideToMove != BLACK) return false;

  for (Color c : {WHITE, BLACK}) {
    Square k = leaderSquare(c);
    Piece p = k == NoSquare ? NoPiece : board[k];
    PieceType t = typeOf(p);
    bool leads = p != NoPiece && colorOf(p) == c && (isDornForm(t) || (t == Bondsman && bondsmenLeaders));
    if (!leads) {
      lastPositionError = c == WHITE ? "No white leader on the board" : "No black leader on the board";
      return false;
    }
  }

  if (checkDornCount) {
    int forms[2] = {0, 0};
    for (Piece p : board)
      if (p != NoPiece && isDornForm(typeOf(p))) ++forms[colorOf(p)];
    for (Color c : {WHITE, BLACK})
      if (forms[c] > 1) {
        lastPositionError = c == WHITE ? "Too many white dorns on the board." : "Too many black dorns on the board.";
        return false;
      }
  }

  if (checkLeaderCapture && canTakeEnemyLeader(*this)) {
    lastPositionError = std::string(colorNames[~sideToMove]) + " leader capture error";
    return false;
  }
  return true;
}

void Position::flip() {
  const Position old(*this);
  clear();
  sideToMove = ~old.sideToMove;
  thisThread = old.thisThread;
  nodes = old.nodes;
  gamePly = old.gamePly + old.st->pliesSinceNull;

  // Low squares first: the lists come out in the order a FEN reader would give them.
  for (Bitboard b = old.pieces(); b; b &= b - 1) {
    Square s = lowestSquare(b);
    Piece p = old.board[s];
    putPiece(makePiece(~colorOf(p), typeOf(p)), flipRank(s));
  }

  Square k = leaderSquare(sideToMove);
  st->checkers = k == NoSquare ? 0 : attackersTo(k, pieces(), pieces(~sideToMove), ~sideToMove);
  computeStateFromScratch();
}

std::string Position::printMoveShort(Move m) const {
  std::string text(1, fenLetters[board[moveFrom(m)]]);
  text += squareToStringUpper(moveFrom(m)) + squareToStringUpper(moveTo(m));
  if (isPromotion(m)) text += '=';
  else if (isDemotion(m)) text += '<';
  return text;
}

void Position::dumpMoveStack() const {
  std::string out = " -- MOVE STACK -- ply=" + std::to_string(moveStackCount) + "\n";
  std::string wire;
  for (int i = 0; i < 30 && searchLine[i] != MoveNone; ++i) {
    Move m = searchLine[i];
    out += printMoveShort(m);
    if (isDemotion(m)) out += '-';
    else if (isPromotion(m)) out += '+';
    out += '\n';
    wire += moveToWire(m) + " ";
  }
  out += "_initialFen=" + _initialFen + "\n";
  out += "-- ---------- --\n" + wire + "\n";
  std::cout << out;
}

void Position::dumpMove(Move m) const {
  std::string out = "Move:" + printMoveShort(m);
  out += std::string(" dropoff:") + bit01(isDropoff(m)) + ",transfer:" + bit01(isTransfer(m)) +
         ",pickup:" + bit01(isPickup(m)) + ",isDemotion:" + bit01(isDemotion(m)) +
         ",isPromotion:" + bit01(isPromotion(m)) + ",isExchange:" + bit01(isExchange(m)) +
         ",isSiege1Exchange:" + bit01(isSiege1Exchange(*this, m)) + "\n";
  for (Color c : {WHITE, BLACK}) {
    std::string tag = c == WHITE ? "[WHITE]:" : "[BLACK]:";
    out += ",siege2CaptiveSquare" + tag + squareToStringUpper(siege2CaptiveSquare[c]);
    out += ",siege2LastCaptiveSquare" + tag + squareToStringUpper(siege2LastCaptiveSquare[c]);
    out += ",siege2CaptiveAlive" + tag + bit01(siege2CaptiveAlive[c]);
    out += ",siege2CaptiveReleased" + tag + bit01(siege2CaptiveReleased[c]) + "\n";
  }
  out += "st->siege2_color=" + std::to_string(int(st->siege2_color)) +
         ",st->isSuccessfulDropoff=" + bit01(st->isSuccessfulDropoff) +
         ",st->isSiege2EnemyTransferKill=" + bit01(st->isSiege2EnemyTransferKill != 0) + "\n";
  std::cout << out;
}

bool Position::dumpPieceLists() const {
  bool mismatch = false;
  std::string out;
  for (Color c : {WHITE, BLACK}) {
    out += std::string("\n") + colorNames[c] + "\n";
    for (int t = Sword; t < PieceTypeNb; ++t) {
      out += std::string(pieceTypeNames[t]) + " ";
      int found = 0;
      while (found < PieceListSlots && pieceList[c][t][found] != NoSquare)
        out += squareToStringUpper(pieceList[c][t][found++]) + " ";
      out += std::to_string(pieceCount[c][t]) + "\n";
      if (found != pieceCount[c][t]) {
        mismatch = true;
        out += std::string("Piece Count mismatch! ") + colorNames[c] + " " + pieceTypeNames[t] + "\n";
        out += "actual " + std::to_string(found) + " Piececount[c][pt]=" + std::to_string(pieceCount[c][t]) + "\n";
      }
    }
  }
  std::cout << out;
  printBitboard("byType[ALL]\n", byType[ALL]);
  printBitboard("byColor[WHITE]\n", byColor[WHITE]);
  printBitboard("byColor[BLACK]\n", byColor[BLACK]);
  return mismatch;
}

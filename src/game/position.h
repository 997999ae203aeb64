// The position: board, piece lists, siege fields and the chain of state records.
#pragma once

#include <string>

#include "core/bitboard.h"
#include "core/types.h"
#include "game/rules.h"

class Thread;

// One record per move made, chained backward; lives on the caller's stack.
struct StateInfo {
  // Copied forward by do_move.
  Key materialKey;
  Value npMaterial[2];
  int pliesSinceCapture;
  int pliesSinceNull;
  Score psqScore;
  int siegeScore;
  Key key;
  // Rebuilt or set by each move.
  Bitboard checkers;
  PieceType capturedType;
  PieceType priorType;
  bool isSiege1Exchange;
  Color siege2_color;
  int16_t isSiege2EnemyTransferKill;
  bool isSuccessfulDropoff;
  StateInfo* previous;
};

class Position {
 public:
  Position() { clear(); }
  Position(const Position&) = default;
  Position& operator=(const Position&) = default;
  // A copy for another thread: own start record holding the source's current one.
  Position(const Position& other, Thread* owner);

  // ---- set-up and text
  bool set(const std::string& fenText, Thread* thread);
  std::string fen() const;
  std::string pretty(Move move, bool withLegalMoves, bool boardOnly) const;
  void clear();

  // ---- from-scratch values
  void computeCheckers();
  Key computeKey() const;
  Key computeMaterialKey() const;
  Score computePsqScore() const;
  Value computeNpMaterial(Color c) const;
  int computeSiegeScore() const;

  // ---- leaders
  bool soleLeader(Color c) const;
  bool severalLeaders(Color c) const { return !soleLeader(c); }
  bool noDorn(Color c) const;
  Square leaderSquare(Color c) const;
  PieceType dornType(Color c) const;

  // ---- towers and captives
  bool onStandingTower(Square s) const;
  bool onDropoff(Color c, Square s) const;
  // All tower squares still standing, in the mode in force.
  Bitboard standingTowers() const {
    return siege1 ? siege1Tower : siege2 ? (siege2Tower[WHITE] | siege2Tower[BLACK]) : 0;
  }

  // ---- accessors
  Piece pieceOn(Square s) const { return board[s]; }
  bool empty(Square s) const { return board[s] == NoPiece; }
  Bitboard pieces() const { return byType[ALL]; }
  Bitboard pieces(Color c) const { return byColor[c]; }
  Bitboard pieces(PieceType t) const { return byType[t]; }
  Bitboard pieces(Color c, PieceType t) const { return byColor[c] & byType[t]; }
  int count(Color c, PieceType t) const { return pieceCount[c][t]; }
  Color side() const { return sideToMove; }
  const StateInfo* state() const { return st; }
  Key key() const { return st->key; }
  Key materialKey() const { return st->materialKey; }
  Bitboard checkers() const { return st->checkers; }
  bool inCheck() const { return st->checkers != 0; }

  // ---- diagnostics
  bool isConsistent() const;
  void flip();
  void dumpMoveStack() const;
  void dumpMove(Move m) const;
  bool dumpPieceLists() const;
  std::string printMoveShort(Move m) const;

  // ---- board editing, used by the FEN reader, do_move and flip
  void putPiece(Piece p, Square s);
  void removePiece(Square s);
  void movePiece(Square from, Square to);

  // ---- fields (plain values: a Position is copied flat)
  Move searchLine[30];
  int searchLineCount;
  std::string _initialFen;

  Piece board[64];
  Bitboard byType[TypeSlots];
  Bitboard byColor[2];
  int pieceCount[2][TypeSlots];
  Square pieceList[2][TypeSlots][16];
  int index[64];
  StateInfo startState;
  uint64_t nodes;
  int gamePly;
  Color sideToMove;
  Thread* thisThread;
  StateInfo* st;

  Square siege1CaptiveSquare;
  Square siege1LastCaptiveSquare;
  Bitboard siege1Tower;
  Bitboard siege1Breached;
  Square siege2CaptiveSquare[2];
  Square siege2LastCaptiveSquare[2];
  Bitboard siege2Tower[2];
  Bitboard siege2Breached[2];
  bool siege2CaptiveAlive[2];
  bool siege2CaptiveReleased[2];
};

// Reason of the last failed consistency check; a later success does not clear it.
extern std::string lastPositionError;
// Extra checks of isConsistent, turned on by the host's legality service.
extern bool checkDornCount;
extern bool checkLeaderCapture;
// Dearer cross-checks; no command changes them.
extern bool debug_PL_legal;
extern bool debugSearchInCheck;
extern bool debugMoveTypes;

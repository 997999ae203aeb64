// The position: board, piece lists, siege fields and the chain of state records.
#pragma once

#include <string>
#include <utility>

#include "core/bitboard.h"
#include "core/relaxed.h"
#include "core/types.h"
#include "game/rules.h"

// The per-thread evaluation tables of the thread that owns a position; a search thread is one.
struct EvalTables;

constexpr int PieceListSlots = 64;
class Position;

// Per-node facts about checks, built once for the side to move before its moves are tried.
struct CheckInfo {
  CheckInfo() = default;
  explicit CheckInfo(const Position& pos);
  Bitboard dcCandidates = 0;             // own pieces whose departure may give discovered check
  Bitboard pinned = 0;                   // own pieces that may shield the own sole leader
  Bitboard checkSquares[TypeSlots] = {};  // where a piece of each type would check the enemy leader
};

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
  Square priorCaptiveSquare;  // where the captive a pick-up took lay before, for undo_move
  StateInfo* previous;
};

class Position {
 public:
  Position() { clear(); }
  // A flat copy; `st` follows to the copy's own start record when it pointed at the source's.
  Position(const Position& other) { *this = other; }
  Position& operator=(const Position& other);
  // A copy for another thread: own start record holding the source's current one.
  Position(const Position& other, EvalTables* owner);

  // ---- set-up and text
  bool set(const std::string& fenText, EvalTables* thread);
  std::string fen() const;
  std::string pretty(Move move, bool withLegalMoves, bool boardOnly) const;
  void clear();
  // The siege defaults of the mode in force: geometry, towers, breaches and captives.
  void setSiegeDefaults();

  // ---- from-scratch values
  void computeCheckers();
  Key computeKey() const;
  Key computeMaterialKey() const;
  Score computePsqScore() const;
  Value computeNpMaterial(Color c) const;
  int computeSiegeScore() const;
  // Key, material key, psq sum, siege score and npMaterial of the current record, from the board.
  void computeStateFromScratch();

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

  // ---- attack queries, check and legality (game/attack_queries.cpp, game/legality.cpp)
  Bitboard attackersTo(Square s, Bitboard occ, Bitboard lineTargets, Color c) const;
  Bitboard allAttackersTo(Square s, Bitboard occ, Bitboard lineTargets) const;
  Bitboard reachersTo(Square s, Bitboard occ) const;
  Bitboard firstAttackers(Square s, Bitboard occ, Color c, bool towersInOcc) const;
  Bitboard checkableBy(Color c) const;
  Bitboard checkableBy(Color c, Move m) const;
  bool attackedAfter(Color c, Move m, Square s) const;
  PieceType demotionType(Piece cp) const;
  PieceType promotionType(Piece pc, Square to, Piece cp) const;
  // New types of an exchange: first for the piece on `to`, second for the piece on `from`.
  std::pair<PieceType, PieceType> exchangeType(Piece pc, Piece cp) const;
  bool pieceMoves(Move m) const;
  Square nextLeader(Color c, Square sq) const;
  bool reducesLeaders(Color c, Square sq) const;
  bool promotionPair(Square from, Square to) const;
  bool demotionPair(Square from, Square to) const;
  bool exchangePair(Square from, Square to) const;
  bool leaderWalksIntoTower(Move m) const;
  bool isCapturePickup(Move m) const;
  bool pseudo_legal(Move m) const;
  bool legal(Move m, Bitboard pinned) const;
  bool gives_check(Move m, const CheckInfo& ci) const;
  bool PLLegalFullCheck(Move m, Bitboard pinned) const;

  // ---- making and unmaking moves (game/do_move.cpp, game/captives.cpp)
  void do_move(Move m, StateInfo& newState);
  void do_move(Move m, StateInfo& newState, const CheckInfo& ci, bool givesCheck);
  void undo_move(Move m);
  void do_null_move(StateInfo& backup);
  void undo_null_move(const StateInfo& backup);

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
  // One slot per square, so that no promotion can overrun a list; bytes keep the table small.
  uint8_t pieceList[2][TypeSlots][PieceListSlots];
  int index[64];
  StateInfo startState;
  Relaxed<uint64_t> nodes;  // written by the owning thread only; the timer sums them while it runs
  int gamePly;
  Color sideToMove;
  EvalTables* thisThread;  // the owning thread's evaluation tables, or none
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

// ---------------------------------------------------------------- leader and tower queries
// Asked at every node, so they live here to be inlined.
inline bool Position::noDorn(Color c) const {
  return (pieceCount[c][Dorn] | pieceCount[c][Dorn_archer] | pieceCount[c][Dorn_sword]) == 0;
}

inline bool Position::soleLeader(Color c) const {
  int bondsmen = pieceCount[c][Bondsman];
  return !bondsmenLeaders || bondsmen == 0 || (bondsmen == 1 && noDorn(c));
}

inline Square Position::leaderSquare(Color c) const {
  if (pieceCount[c][Dorn]) return pieceList[c][Dorn][0];
  if (pieceCount[c][Dorn_archer]) return pieceList[c][Dorn_archer][0];
  if (pieceCount[c][Dorn_sword]) return pieceList[c][Dorn_sword][0];
  if (bondsmenLeaders && pieceCount[c][Bondsman]) return pieceList[c][Bondsman][0];
  return NoSquare;
}

inline bool Position::onStandingTower(Square s) const {
  return s < NoSquare && ((siege1Tower | siege2Tower[WHITE] | siege2Tower[BLACK]) >> s) & 1;
}

inline bool Position::onDropoff(Color c, Square s) const {
  return siege2CaptiveSquare[c] == s && s < NoSquare && ((goalSquares[c] >> s) & 1) && siege2CaptiveAlive[c] &&
         !siege2CaptiveReleased[c];
}

// pseudo_legal for a word from a table, a killer or a text, counted in the statistics.
bool countedPseudoLegal(const Position& pos, Move m);

// The transfer that hands the captive to a friendly piece without moving anything; despite the
// name it holds in both siege modes.
inline bool isSiege1Exchange(const Position& pos, Move m) {
  if (!isTransfer(m) || !siegeGame() || !siegeExchanges || isExchange(m)) return false;
  Piece onTo = pos.pieceOn(moveTo(m));
  return onTo != NoPiece && colorOf(onTo) == pos.side();
}

// Hands the search one pseudo-legal move at a time, best first, generating a stage only once the
// stage before it is used up, so that an early cutoff saves the rest of the work.
#pragma once

#include "movegen/movegen.h"
#include "search/search_stack.h"

class MovePicker {
 public:
  // The stages of each search situation in their order; every sequence ends in a stop.
  enum Stage : int {
    // main search, not in check
    MainTT, GoodCaptures, Killers, QuietsFirst, QuietsRest, BadCaptures, MainStop,
    // in check
    EvasionTT, Evasions, EvasionStop,
    // quiescence, first levels
    QChecksTT, QChecksCaptures, QuietChecks, QChecksStop,
    // quiescence, deeper levels
    QCapturesTT, QCaptures, QCapturesStop,
    // quiescence, deepest levels: the table move is never taken
    RecaptureTT, Recaptures, RecaptureStop,
    // ProbCut
    ProbCutTT, ProbCutCaptures, ProbCutStop,
    // quiescence while a Siege 1 carrier is about to win
    QAllTT, QAllCaptures, AllQuiets, QAllStop
  };

  // Main search; at PV nodes and the root the search passes -ValueInfinite for beta.
  MovePicker(Position& pos, Move ttMove, Depth depth, const SearchStack* ss, Value beta);
  // Quiescence; `allMoves` asks for every quiet move as well (a Siege 1 emergency).
  MovePicker(Position& pos, Move ttMove, Depth depth, Square recaptureSquare, bool allMoves);
  // ProbCut: captures whose exchange value beats the value of what the last move took.
  MovePicker(Position& pos, Move ttMove, PieceType capturedType);
  MovePicker(const MovePicker&) = delete;
  MovePicker& operator=(const MovePicker&) = delete;

  // The next move, or MoveNone once the sequence is over, and for good.
  Move nextMove();
  // The stage of the last move handed out.
  Stage stage() const { return phase; }

 private:
  void enterStage(Stage s);
  void rateCaptures();
  void rateQuiets();
  void rateEvasions();
  Move pickBest();
  void reportPickupInQuiets(Move m) const;

  Position& pos;
  const SearchStack* ss = nullptr;
  Depth depth = 0;
  Move ttMove = MoveNone;
  bool ttMoveGiven = false;
  ScoredMove killers[2] = {};
  Square recaptureSquare = NoSquare;
  Value captureThreshold = 0;
  Stage phase;
  ScoredMove* cur = moves;
  ScoredMove* last = moves;
  ScoredMove* lastQuiet = moves;
  ScoredMove* lastBadCapture = moves + MaxMoves - 1;
  bool towerMoveSeen = false;
  // The bad captures share the list, growing down from its last entry.
  ScoredMove moves[MaxMoves];
};

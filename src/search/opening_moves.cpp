// Set-up moves: whether the board is a start board, which moves are looked at, which are safe.
#include "search/opening_moves.h"

#include <cstdlib>
#include <cstring>
#include <string>

#include "core/bitboard.h"
#include "movegen/movegen.h"
#include "search/see.h"

namespace {

constexpr int RescueGeneral = 3;
constexpr int RescueDorn = 4;
constexpr int MaxCandidates = 300;

// White's opening in "rescuedorn": the Magician2 from d2 towards the middle, or the Warrior from h1.
constexpr Move RescueDornOpenings[] = {makeMove(D2, D4), makeMove(D2, E4), makeMove(D2, F4), makeMove(D2, F3),
                                       makeMove(H1, F3)};

std::string boardField(const Position& pos) {
  std::string fen = pos.fen();
  return fen.substr(0, fen.find(' '));
}

std::string firstWord(const char* fen) {
  std::string text(fen);
  return text.substr(0, text.find(' '));
}

bool siege1TowerUntouched(const Position& pos) {
  return pos.siege1Breached == 0 && pos.siege1Tower == siege1TowerSquares;
}

// Whether the type looks at this move at all. In "rescuegeneral" the start board with a Magician2
// ("h" in its FEN) also opens with its second piece.
bool lookedAt(const Position& pos, const GameType& row, bool withMagician2, Move m) {
  const Square from = moveFrom(m);
  const bool white = pos.side() == WHITE;
  if (row.number == RescueGeneral)
    return white ? from == E2 || (withMagician2 && from == D2) : from == D7 || (withMagician2 && from == E7);
  if (row.number == RescueDorn) {
    if (!white) return false;
    for (Move opening : RescueDornOpenings)
      if (from == moveFrom(opening) && moveTo(m) == moveTo(opening)) return true;
    return false;
  }
  return typeOf(pos.pieceOn(from)) != row.barredType;
}

// A first move must not risk anything: no leader, no death on a tower, nothing that can be taken
// or lost in an exchange.
bool safe(Position& pos, Move m) {
  const Color us = pos.side();
  const Square from = moveFrom(m), to = moveTo(m);
  if (from == pos.leaderSquare(us)) return false;
  if (siegeGame() && !isMagicianForm(typeOf(pos.pieceOn(from))) && pos.onStandingTower(to)) return false;
  if (pos.attackersTo(to, pos.pieces(), pos.pieces(~us), ~us)) return false;
  return see(pos, m) >= 0;
}

// The safe moves the type looks at, in generation order.
int candidates(Position& pos, const GameType& row, const char* fen, Move* list) {
  const bool withMagician2 = std::strchr(fen, 'h') != nullptr;
  ScoredMove legal[MaxMoves];
  int n = 0;
  for (ScoredMove *sm = legal, *end = generateLegal(pos, legal); sm != end && n < MaxCandidates; ++sm)
    if (lookedAt(pos, row, withMagician2, sm->move) && safe(pos, sm->move)) list[n++] = sm->move;
  return n;
}

// The board as it stood before White's last move, if one piece moved from the start set to a
// square outside it, compared with the start board.
bool oneWhiteMoveFromStart(const Position& pos, const StartBoard& start) {
  const Bitboard arrived = pos.pieces() & ~start.occupied;
  const Bitboard left = start.occupied & ~pos.pieces();
  if (popcount(arrived) != 1 || popcount(left) != 1) return false;
  if (siege1 && !(siege1TowerUntouched(pos) && pos.siege1CaptiveSquare == NoSquare)) return false;
  Position before(pos);
  before.sideToMove = WHITE;
  before.movePiece(lowestSquare(arrived), lowestSquare(left));
  return boardField(before) == firstWord(start.fen);
}

bool atStart(const Position& pos, const StartBoard& start) {
  if (siege1) {
    const Square captive = pos.siege1CaptiveSquare;
    if (!siege1TowerUntouched(pos) || (captive != NoSquare && !pos.empty(captive))) return false;
  }
  return boardField(pos) == firstWord(start.fen);
}

}  // namespace

StartBoard startBoard(const GameType& row, int pair) {
  if (pair == 0) return {row.occupiedSquares, row.startFen};
  if (row.secondStartFen) return {row.occupiedSquares, row.secondStartFen};
  return {0, nullptr};
}

Move openingMove(Position& pos, Move& reply, const GameType& row, int pair) {
  reply = MoveNone;
  const StartBoard start = startBoard(row, pair);
  if (!start.occupied) return MoveNone;
  if (pos.side() == BLACK ? !oneWhiteMoveFromStart(pos, start) : !atStart(pos, start)) return MoveNone;

  Move list[MaxCandidates];
  int n = candidates(pos, row, start.fen, list);
  if (n == 0) return MoveNone;
  const Move m = list[std::rand() % n];

  StateInfo st;
  pos.do_move(m, st);
  n = candidates(pos, row, start.fen, list);
  if (n > 0) reply = list[std::rand() % n];
  pos.undo_move(m);
  return m;
}

Move setupMove(Position& pos, Move& reply, const GameType& row) {
  for (int pair = 0; pair < 2; ++pair)
    if (Move m = openingMove(pos, reply, row, pair)) return m;
  reply = MoveNone;
  return MoveNone;
}

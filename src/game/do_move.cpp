// Making and unmaking moves: board, lists, keys, material, piece-square sum and checkers in one pass.
#include <iostream>
#include <string>

#include "core/bitboard.h"
#include "core/psqt.h"
#include "core/zobrist.h"
#include "game/attack_queries.h"
#include "game/generator_services.h"
#include "game/move_making.h"
#include "game/move_stack.h"
#include "game/table_prefetch.h"

using Zobrist::pieceKeys;

// Read once, before any rule can change: later changes of the flag leave it alone.
PieceType leaderDemotionFloor = magicianDemotesDorn ? Dorn_sword : Dorn;

namespace {

constexpr Bitboard bit(Square s) { return Bitboard(1) << s; }

void printSiegeFields(const Position& pos) {
  std::cout << "siege1CaptiveSquare=" << squareToStringUpper(pos.siege1CaptiveSquare)
            << ",siege1Tower=" << pos.siege1Tower << ",siege1Breached=" << pos.siege1Breached << "\n";
  for (Color c : {WHITE, BLACK})
    std::cout << "siege2CaptiveSquare[" << colorNames[c] << "]=" << squareToStringUpper(pos.siege2CaptiveSquare[c])
              << ",siege2Tower=" << pos.siege2Tower[c] << ",siege2Breached=" << pos.siege2Breached[c]
              << ",alive=" << pos.siege2CaptiveAlive[c] << ",released=" << pos.siege2CaptiveReleased[c] << "\n";
}

void printMoveStackGlobal(const Position& pos) {
  std::cout << "moveStack:";
  for (int i = 0; i < moveStackCount; ++i)
    std::cout << " " << squareToString(moveFrom(moveStack[i])) << squareToString(moveTo(moveStack[i]))
              << (moveStackCapture[i] ? "x" : "");
  std::cout << "\n";
  pos.dumpMoveStack();
}

// ---------------------------------------------------------------- internal error reports

// The move lands on an own piece without being an exchange or a hand-over.
void reportOwnPieceOnTo(const Position& pos, Move m) {
  std::cout << pos.pretty(MoveNone, false, true) << "\n";
  pos.dumpMove(m);
  pos.dumpPieceLists();
  std::cout << "do_move(2)\n";
  printSiegeFields(pos);
}

// A sole leader is about to be taken, or a demotion aims past the foot of the ladder. No legal move
// from a position the front end accepts gets here; the report is for the developer, and play goes on
// without reading input, so that no command is lost.
void reportLeaderCapture(const Position& pos, Move m, PieceType leaderType) {
  pos.dumpPieceLists();
  std::cout << pos.pretty(MoveNone, false, true) << "\n";
  pos.dumpMove(m);
  std::cout << " nCheckers=" << popcount(pos.state()->previous->checkers) << "\n";
  std::cout << "Capture of Dorn, type=" << int(leaderType) << "\n";
  printMoveStackGlobal(pos);
  if (!pos.pseudo_legal(m)) std::cout << "move not legal:" << pos.printMoveShort(m) << "\n";
  generatorServices.printMoveLists(pos);
}

}  // namespace

// ---------------------------------------------------------------- do_move

void Position::do_move(Move m, StateInfo& newState) {
  CheckInfo ci(*this);
  do_move(m, newState, ci, gives_check(m, ci));
}

void Position::do_move(Move m, StateInfo& newState, const CheckInfo& ci, bool givesCheck) {
  MoveInHand mv;
  mv.us = sideToMove;
  mv.them = ~sideToMove;
  mv.from = moveFrom(m);
  mv.to = moveTo(m);
  mv.pc = board[mv.from];
  mv.cp = board[mv.to];
  mv.pt = typeOf(mv.pc);
  mv.ct = typeOf(mv.cp);
  mv.kind = captiveKind(m);
  mv.special = specialKind(m);
  const Color us = mv.us, them = mv.them;
  const Square from = mv.from, to = mv.to;
  const Piece pc = mv.pc, cp = mv.cp;
  const PieceType pt = mv.pt, ct = mv.ct;
  const bool demotion = mv.special == Demotion, exchange = mv.special == Exchange;

  // New types are read off the board as it stands: whether a Bondsman demotes to a leader depends
  // on its fellows, which step 4 is about to thin out.
  PieceType demotedTo = demotion && cp ? demotionType(cp) : NoPieceType;
  PieceType promotedTo = mv.special == Promotion ? promotionType(pc, to, cp) : NoPieceType;
  std::pair<PieceType, PieceType> exchangedTo = {NoPieceType, NoPieceType};
  if (exchange) exchangedTo = exchangeType(pc, cp);

  // 1. Chain in the new record.
  ++nodes;
  newState.materialKey = st->materialKey;
  newState.npMaterial[WHITE] = st->npMaterial[WHITE];
  newState.npMaterial[BLACK] = st->npMaterial[BLACK];
  newState.pliesSinceCapture = st->pliesSinceCapture + 1;
  newState.pliesSinceNull = st->pliesSinceNull + 1;
  newState.psqScore = st->psqScore;
  newState.siegeScore = st->siegeScore;
  newState.key = st->key;
  newState.checkers = st->checkers;  // reports made before step 12 speak of the position as it stood
  newState.capturedType = NoPieceType;
  newState.priorType = NoPieceType;
  newState.siege2_color = WHITE;
  newState.isSiege2EnemyTransferKill = 0;
  newState.isSuccessfulDropoff = false;
  newState.priorCaptiveSquare = NoSquare;
  newState.previous = st;
  st = &newState;
  Key k = st->key ^ Zobrist::sideKey;

  // 2. Leader watch: a move that leaves the enemy a sole leader may check it at once.
  bool takesLeader = false, leadersReduced = false;
  if (bondsmenLeaders && severalLeaders(them) && (demotion || pieceMoves(m))) {
    takesLeader = !demotion && to == leaderSquare(them);
    leadersReduced = reducesLeaders(them, to);
  }

  // 3.
  if (moveStackCount < MoveStackSize - 1) {
    moveStack[moveStackCount] = m;
    moveStack[moveStackCount + 1] = MoveNone;
    moveStackCapture[moveStackCount] = ct != NoPieceType;
    ++moveStackCount;
  }
  const bool handover = mv.handover = st->isSiege1Exchange = isSiege1Exchange(*this, m);
  const bool moves = !demotion && !exchange && !handover;

  // 4. Take off what stands on `to`; a demotion or an exchange puts a piece back in step 9.
  if (cp != NoPiece) {
    if (colorOf(cp) == us && !exchange && !handover) reportOwnPieceOnTo(*this, m);
    bool takesSoleLeader = moves && colorOf(cp) == them && soleLeader(them) && to == leaderSquare(them);
    if (takesSoleLeader || (demotion && ct == leaderDemotionFloor)) reportLeaderCapture(*this, m, ct);
  }
  if (cp != NoPiece && !handover) {
    Color c = colorOf(cp);
    st->npMaterial[c] -= nonMinorValue(ct);
    removePiece(to);
    k ^= pieceKeys[c][ct][to];
    st->materialKey ^= pieceKeys[c][ct][pieceCount[c][ct]];
    st->psqScore -= psq[cp][to];
    st->pliesSinceCapture = 0;
  }

  // 5.
  mv.onTower = onStandingTower(to);
  const bool onTower = mv.onTower;

  // 6. The mover's keys, then towers and captives.
  if (moves) k ^= pieceKeys[us][pt][from] ^ pieceKeys[us][pt][to];
  if (siegeGame() && (onTower || (!demotion && !exchange))) doSiegeWork(*this, m, mv, k);

  // 7.
  prefetchTranspositionEntry(k);

  // 8. Move the piece; a released Dorn takes the square it leaves.
  if (moves && !mv.moverDied) movePiece(from, to);
  if (mv.released) putPiece(makePiece(mv.releasedColor, Dorn), from);

  // 9. Change of type.
  if (demotion && !onTower && cp != NoPiece) {
    if (demotedTo == NoPieceType) {
      if (debugMoveTypes) std::cout << "do_move: demotionType=!piece?\n";
      demotedTo = ct;  // keep the piece as it was rather than put a piece of no type
    }
    st->priorType = ct;
    putPiece(makePiece(them, demotedTo), to);
    k ^= pieceKeys[them][demotedTo][to];
    st->materialKey ^= pieceKeys[them][demotedTo][pieceCount[them][demotedTo] - 1];
    st->psqScore += psq[makePiece(them, demotedTo)][to];
    st->npMaterial[them] += nonMinorValue(demotedTo);
  } else if (exchange) {
    auto [nt, nf] = exchangedTo;
    st->priorType = pt;
    removePiece(from);
    st->materialKey ^= pieceKeys[us][pt][pieceCount[us][pt]];
    putPiece(makePiece(us, nf), from);
    st->materialKey ^= pieceKeys[us][nf][pieceCount[us][nf] - 1];
    putPiece(makePiece(us, nt), to);
    st->materialKey ^= pieceKeys[us][nt][pieceCount[us][nt] - 1];
    k ^= pieceKeys[us][pt][from] ^ pieceKeys[us][nf][from] ^ pieceKeys[us][nt][to];
    st->psqScore += psq[makePiece(us, nf)][from] - psq[pc][from] + psq[makePiece(us, nt)][to];
    st->npMaterial[us] += nonMinorValue(nf) + nonMinorValue(nt) - nonMinorValue(pt);
  } else if (mv.special == Promotion && !mv.moverDied && promotedTo != NoPieceType) {
    st->priorType = pt;
    removePiece(to);
    st->materialKey ^= pieceKeys[us][pt][pieceCount[us][pt]];
    putPiece(makePiece(us, promotedTo), to);
    st->materialKey ^= pieceKeys[us][promotedTo][pieceCount[us][promotedTo] - 1];
    k ^= pieceKeys[us][pt][to] ^ pieceKeys[us][promotedTo][to];
    st->psqScore += psq[makePiece(us, promotedTo)][to] - psq[pc][to];
    st->npMaterial[us] += nonMinorValue(promotedTo) - nonMinorValue(pt);
  }

  // 10.
  prefetchMaterialEntry(thisThread, st->materialKey);

  // 11. The piece-square sum of the plain move. A transfer in a siege game leaves the sum where
  // it was, even where the carrier travels.
  if (!demotion && !exchange && !onTower && !(siegeGame() && captiveKind(m) == Transfer))
    st->psqScore += psq[pc][to] - psq[pc][from];

  // 12.
  st->capturedType = ct;
  st->key = k;
  st->checkers = 0;
  Square ksq = givesCheck && soleLeader(them) ? leaderSquare(them) : NoSquare;
  if (ksq != NoSquare) {
    // Only pieces whose reach towards the leader this move can have changed are looked at.
    Bitboard candidates = 0;
    if (takesLeader || leadersReduced)
      candidates = pieces(us);  // a new sole leader, which anything may be attacking
    else {
      if (moves && !onTower) candidates |= bit(to);
      if (moves && !mv.released && (ci.dcCandidates & bit(from)))
        candidates |= (mountSquares(*this) & pieces(us)) | pieces(us, Assassin);
      if (demotion && onTower && (pseudoAttacks[Dorn][ksq] & bit(to)))
        candidates |= (mountSquares(*this) & pieces(us)) | pieces(us, Assassin);
      // A demoted Dorn or leading Bondsman is a mount no more, so Swords next to it now attack it.
      if (demotion && !onTower && to == ksq) candidates |= pieces(us, Sword) | pieces(us, Dorn_sword);
      if (exchange || (mv.released && mv.releasedColor == us)) candidates |= bit(from);
    }
    if (candidates)
      st->checkers = attackersTo(ksq, pieces(), candidates, us) & candidates & checkableBy(them);
  }

  // 13.
  st->siegeScore = computeSiegeScore();

  // 14.
  sideToMove = them;
}

// ---------------------------------------------------------------- undo_move

void Position::undo_move(Move m) {
  sideToMove = ~sideToMove;
  if (moveStackCount > 0) --moveStackCount;

  const Color us = sideToMove, them = ~us;
  const Square from = moveFrom(m), to = moveTo(m);
  const int special = specialKind(m);
  const bool demotion = special == Demotion, exchange = special == Exchange;
  const bool handover = st->isSiege1Exchange;
  const PieceType ct = st->capturedType;

  // An empty `to` means the mover died on a tower square or the move was a breach; anything else
  // that leaves it empty is a fault, shown with the board.
  const bool lost = board[to] == NoPiece;
  if (lost && !(siegeGame() && (demotion || onStandingTower(to)))) std::cout << pretty(MoveNone, false, false) << "\n";

  if (siege2 && isDropoff(m) && st->isSuccessfulDropoff) takeBackReleasedDorn(*this, m);

  if (demotion && !lost) {
    removePiece(to);
  } else if (exchange) {
    removePiece(to);
    removePiece(from);
    putPiece(makePiece(us, st->priorType), from);
  } else if (special == Promotion && !lost && st->priorType != NoPieceType) {
    removePiece(to);
    putPiece(makePiece(us, st->priorType), to);
  }

  if (!demotion && !exchange && !handover && !lost) movePiece(to, from);

  if (siegeGame() && (lost || (!demotion && !exchange))) undoSiegeWork(*this, m, lost);

  if (ct != NoPieceType && !handover) putPiece(makePiece(exchange ? us : them, ct), to);

  st = st->previous;
}

// ---------------------------------------------------------------- null move

void Position::do_null_move(StateInfo& backup) {
  backup.key = st->key;
  backup.psqScore = st->psqScore;
  backup.pliesSinceCapture = st->pliesSinceCapture;
  backup.pliesSinceNull = st->pliesSinceNull;

  sideToMove = ~sideToMove;
  st->key ^= Zobrist::sideKey;
  prefetchTranspositionEntry(st->key);
  ++st->pliesSinceCapture;
  st->pliesSinceNull = 0;
}

void Position::undo_null_move(const StateInfo& backup) {
  st->key = backup.key;
  st->psqScore = backup.psqScore;
  st->pliesSinceCapture = backup.pliesSinceCapture;
  st->pliesSinceNull = backup.pliesSinceNull;
  sideToMove = ~sideToMove;
}

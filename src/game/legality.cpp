// Whether a move word can be played here (pseudo_legal), whether it leaves the sole leader
// capturable (legal), and whether it gives check (gives_check).
#include <iostream>

#include "core/statistics.h"
#include "game/attack_queries.h"
#include "game/captive_state.h"
#include "game/move_stack.h"

namespace {

constexpr Bitboard bit(Square s) { return Bitboard(1) << s; }
constexpr bool moreThanOne(Bitboard b) { return b & (b - 1); }

bool reject(std::atomic<uint32_t>& counter) {
  bump(counter);
  return false;
}

// The occupancy after a move, towers included: the mover leaves `from` when it travels.
Bitboard occupancyAfter(const Position& pos, Move m) {
  Bitboard occ = pos.pieces() | pos.standingTowers() | bit(moveTo(m));
  return pos.pieceMoves(m) ? occ & ~bit(moveFrom(m)) : occ;
}

// The remaining sole leader once the Bondsman on sq is gone or changed.
Square leaderAfterLoss(const Position& pos, Color c, Square sq) {
  return pos.count(c, Bondsman) == 2 ? pos.nextLeader(c, sq) : pos.leaderSquare(c);
}

void reportPosition(const Position& pos, Move m, const char* text) {
  std::cout << pos.pretty(MoveNone, false, false) << "\n" << moveToWire(m) << " " << text;
}

}  // namespace

// ---------------------------------------------------------------- pseudo-legality

bool countedPseudoLegal(const Position& pos, Move m) {
  bump(stats.plTests);
  if (pos.pseudo_legal(m)) return true;
  bump(stats.plFails);
  return false;
}

bool Position::pseudo_legal(Move m) const {
  Color us = sideToMove;
  Square from = moveFrom(m), to = moveTo(m);
  Piece pc = board[from];
  // 1. An own piece moves, and a real move has two squares.
  if (pc == NoPiece || colorOf(pc) != us || from == to) return false;
  PieceType pt = typeOf(pc);
  Piece cp = board[to];
  int special = specialKind(m), kind = captiveKind(m);
  bool handover = isSiege1Exchange(*this, m);

  // 2. Only exchanges and hand-overs aim at an own piece.
  if (cp != NoPiece && colorOf(cp) == us && special != Exchange && !handover) return false;

  // 3. The special kind must be the one the squares call for.
  switch (special) {
    case 0:
      if (demotionPair(from, to) || exchangePair(from, to) ||
          (promotionPair(from, to) && !isBasePromotion(pc, to, cp)))
        return reject(stats.plFailsPlain);
      break;
    case Demotion:
      if (!demotionPair(from, to)) return reject(stats.plFailsDemotion);
      break;
    case Exchange:
      if (!exchangePair(from, to)) return reject(stats.plFailsExchange);
      break;
    default:
      if (!promotionPair(from, to)) return reject(stats.plFailsPromotion);
      break;
  }

  // 4, 5. The captive kind must fit the captives; no other game has one.
  if (siege1) {
    Square captive = siege1CaptiveSquare;
    bool fits = true;
    switch (kind) {
      case 0: fits = special == Demotion || special == Exchange || (from != captive && to != captive); break;
      case Transfer: fits = from == captive; break;
      case Pickup: fits = to == captive || (siege1CaptiveInTower(*this) && ((siege1Breached >> to) & 1)); break;
      default: fits = false; break;  // Siege 1 has no drop-off
    }
    if (!fits) return reject(stats.plFailsSiege);
  } else if (siege2) {
    bool fits = true;
    switch (kind) {
      case 0:
        if (special != Demotion && special != Exchange) {
          for (Color c : {WHITE, BLACK})
            if (siege2CaptiveInPlay(*this, c) && (siege2CaptiveSquare[c] == from || siege2CaptiveSquare[c] == to))
              fits = false;
          if (fits && isCapturePickup(m)) fits = false;
          for (Color c : {WHITE, BLACK})
            if (fits && onDropoff(c, from) && noDorn(c)) {
              if (debug_PL_legal) std::cout << "!isPL failed to flag siege2 dropoff\n";
              fits = false;
            }
        }
        break;
      case Dropoff: fits = onDropoff(WHITE, from) || onDropoff(BLACK, from); break;
      case Pickup: fits = !carriesLive(*this, from) && isCapturePickup(m); break;
      default:
        // A carrier of its own captive on its own goal square must drop it off.
        fits = carriesLive(*this, from) &&
               !(siege2CaptiveSquare[us] == from && siege2CaptiveInPlay(*this, us) && ((goalSquares[us] >> from) & 1));
        break;
    }
    if (!fits) return reject(stats.plFailsSiege);
  } else if (kind) {
    return false;
  }

  // 6. Towers: the sole leader never, Magicians only by a breach.
  if (siegeGame()) {
    if (leaderWalksIntoTower(m)) return false;
    if (onStandingTower(to) && special != Demotion && (pt == Magician || pt == Magician1)) return false;
  }

  // 7. The Sword forms leave mounts alone, whoever's they are, unless the rule allows it.
  if ((pt == Sword || pt == Dorn_sword) && !swordsCaptureMounts && cp != NoPiece && isMount(typeOf(cp)) && !handover)
    return false;

  // 8. The piece must reach `to`. Exchanges and hand-overs are made with a neighbour: the exchange
  // table names the pair but not the distance, and a word from outside may name any two squares.
  {
    bool reaches;
    if (handover || special == Exchange) reaches = reach[NeighbourRow][from] & bit(to);
    else if (siegeGame() && isMagicianForm(pt) && special != Demotion)
      reaches = (pt == Magician2 ? warriorAttacks(*this, from, pieces()) : reach[MagicianStep][from]) & bit(to);
    else reaches = attacksFrom(*this, pc, from, pieces()) & bit(to);
    if (!reaches) return false;
  }

  // 9. In check the word must answer it; the leader's own moves are settled by legal. A Dorn form in
  // check has no exchange among its replies: it stays where the check finds it, which legal, looking
  // at the partner's square, would not see.
  Bitboard checkers = st->checkers;
  if (!checkers) return true;
  Square k = leaderSquare(us);
  if (from == k) return special != Exchange;
  if (moreThanOne(checkers)) return !attackedAfter(us, m, k);
  Square q = lowestSquare(checkers);
  if (to == q) return true;
  bool assassin = typeOf(board[q]) == Assassin;
  Bitboard path = assassin ? assassinVia[k][q] : warriorVia[k][q];
  // With several ways in, a block must close the last open one.
  bool severalWays = moreThanOne(path);
  if (!path) path = between[k][q];
  if (!(path & bit(to))) return false;
  return !severalWays || !(path & ~occupancyAfter(*this, m));
}

// ---------------------------------------------------------------- legality

bool Position::legal(Move m, Bitboard pinned) const {
  Color us = sideToMove, them = ~us;
  Square from = moveFrom(m), to = moveTo(m);
  Piece pc = board[from], cp = board[to];
  PieceType pt = typeOf(pc);

  // 1. With several leaders a capture costs no game; only losing leaders needs a look.
  if (severalLeaders(us)) {
    if (isExchange(m)) {
      if (pt == Dorn_archer && cp == makePiece(us, Bondsman) && pieceCount[us][Bondsman] == 1)
        return !attackedAfter(us, m, from);
      if (to == leaderSquare(us)) {
        Square k = nextLeader(us, to);
        if (k != NoSquare) return !attackedAfter(us, m, k);
        reportPosition(*this, m, "(PL)!bondsman sq?\n");
      } else if (reducesLeaders(us, to)) {
        return !attackedAfter(us, m, leaderAfterLoss(*this, us, to));
      }
    }
    if (!siegeGame() || !onStandingTower(to)) return true;
    // A leader that dies on a tower leaves the other one alone.
    Square k = nextLeader(us, to);
    if (k == NoSquare) return true;
    if (from == k) return !attackedAfter(us, m, leaderSquare(us));
    if (from == leaderSquare(us)) return !attackedAfter(us, m, k);
    return true;
  }

  Square ksq = leaderSquare(us);

  // 2. A drop-off that releases a Dorn: the own one is a second leader, the enemy's may attack.
  if (siege2 && isDropoff(m)) {
    if (siege2CaptiveSquare[us] == from && noDorn(us) && bondsmenLeaders) return true;
    if (noDorn(them) && siege2CaptiveSquare[them] == from) {
      Square k = from == ksq ? to : ksq;
      if (dornAttacks(*this, from, pieces() | bit(to), bit(k)) & bit(k)) return false;
    }
  }

  bool leaderType = isDornForm(pt) || (pt == Bondsman && bondsmenLeaders);
  if (!leaderType) {
    // 3. Another piece: it must not expose the leader.
    Bitboard checkers = st->checkers;
    if (moreThanOne(checkers)) return !attackedAfter(us, m, ksq);

    if (isDemotion(m) && !onStandingTower(to)) {
      PieceType dt = demotionType(cp);
      bool onChecker = checkers & bit(to);
      if (debugMoveTypes && dt == NoPieceType && !onChecker) {
        std::cout << pretty(MoveNone, false, false) << "\n";
        dumpMoveStack();
        std::cout << printMoveShort(m) << "\nPL:legal, demotionType?\n";
      }
      bool leaderMount = isMount(typeOf(board[ksq]));
      bool swordForm = dt == Sword || dt == Dorn_sword;
      bool attacks = dt != NoPieceType && !isMagicianForm(dt) && !(leaderMount && swordForm && !swordsCaptureMounts) &&
                     (attacksFrom(*this, makePiece(them, dt), ksq, pieces()) & bit(to));
      if (onChecker) return !attacks;
      if (!checkers && attacks) return false;
    }

    // A breach must not open the last way in to the leader.
    if (isDemotion(m) && onStandingTower(to) && (pseudoAttacks[Dorn][ksq] & bit(to)) &&
        firstAttackers(ksq, pieces() | (standingTowers() & ~bit(to)), them, true))
      return false;

    if (pinned & bit(from)) {
      Bitboard occ = pieces() | standingTowers() | bit(to);
      if (!isDemotion(m) && !isExchange(m)) occ &= ~bit(from);
      Bitboard shooters = pieces(them) & ~bit(to) &
                          ((pieces(Warrior) & pseudoAttacks[Warrior][ksq]) | (pieces(Bondsman) & pseudoAttacks[Bondsman][ksq]) |
                           (pieces(Dorn) & pseudoAttacks[Dorn][ksq]) | (pieces(Assassin) & pseudoAttacks[Assassin][ksq]));
      bool besideLeader = reach[NeighbourRow][from] & bit(ksq);
      while (shooters) {
        Square q = popLowest(shooters);
        if (besideLeader && (reach[NeighbourRow][from] & bit(q))) {
          // `from` is a way in for a walker or runner: is another still open?
          if (attacksFrom(*this, board[q], q, occ, true) & bit(ksq)) return false;
        } else if (aligned(q, from, ksq) && !(between[q][ksq] & bit(to))) {
          return false;  // a line shield may only slide along its line
        }
      }
    }
    return debug_PL_legal ? PLLegalFullCheck(m, pinned) : true;
  }

  // 4. The leader itself: never onto a tower, never handing over, never into an attack.
  if (siegeGame() && (onStandingTower(to) || isSiege1Exchange(*this, m))) return false;
  Bitboard counted = pieces(them) & ~magicianSquares(*this);
  bool staysMount = pt == Bondsman || pt == Dorn;
  bool becomesDorn = pt == Dorn_archer && isPromotion(m) && capturePromotions && cp != NoPiece && isMount(typeOf(cp));
  if ((staysMount || becomesDorn) && !swordsCaptureMounts) counted &= ~swordFormSquares(*this);
  return !(attackersTo(to, pieces() & ~bit(from), counted, them) & counted);
}

bool Position::PLLegalFullCheck(Move m, Bitboard pinned) const {
  if (!pseudo_legal(m)) std::cout << "!! PL legal: not pseudo-legal " << printMoveShort(m) << "\n";
  Color us = sideToMove;
  Position after(*this);
  StateInfo state;
  after.do_move(m, state);
  if (moveStackCount > 0) --moveStackCount;
  Square k = after.leaderSquare(us);
  if (k == NoSquare || after.severalLeaders(us)) return true;
  Bitboard attackers = after.allAttackersTo(k, after.pieces(), ~0ULL) & after.checkableBy(us);
  if (!attackers) return true;
  std::cout << "!! PL legal: Check malfunction\n\n" << pretty(MoveNone, false, false) << "\n";
  dumpMoveStack();
  std::cout << printMoveShort(m) << " attackers to ksq [" << squareToString(k) << "] are\n";
  printBitboard("", attackers);
  printBitboard("pinned=\n", pinned);
  return false;
}

// ---------------------------------------------------------------- check

bool Position::gives_check(Move m, const CheckInfo& ci) const {
  Color us = sideToMove, them = ~us;
  Square from = moveFrom(m), to = moveTo(m);
  Piece pc = board[from], cp = board[to];
  PieceType pt = typeOf(pc);
  Square k = leaderSquare(them);
  if (k == NoSquare) return false;

  // 1. Several enemy leaders: only a move that leaves one of them can check it.
  if (severalLeaders(them)) {
    if (!pieceMoves(m))
      return isDemotion(m) && reducesLeaders(them, to) && attackedAfter(them, m, leaderAfterLoss(*this, them, to));
    Square next;
    if (to == k) {
      next = nextLeader(them, to);
      if (next == NoSquare) {
        reportPosition(*this, m, "(MGC)!bondsman sq?\n");
        return false;
      }
    } else if (reducesLeaders(them, to)) {
      next = leaderAfterLoss(*this, them, to);
    } else {
      return false;
    }
    Bitboard occ = (pieces() & ~bit(from)) | bit(to);
    if (specialKind(m) == 0 && (attacksFrom(*this, pc, to, occ) & bit(next))) return true;
    if (isPromotion(m) && (attacksFrom(*this, makePiece(us, promotionType(pc, to, cp)), to, occ) & bit(next)))
      return true;
    return attackedAfter(them, m, next);
  }

  // A hand-over moves only the captive, which changes no piece's reach; do_move looks for no
  // checker after one either. The search picks its quiescence form by this answer, so it must not
  // claim a check that is not there.
  if (isSiege1Exchange(*this, m)) return false;

  bool onTower = onStandingTower(to);

  // 2. Direct check; a range-3 line that the mover itself blocked is found on demand.
  if (!onTower) {
    if (ci.checkSquares[pt] & bit(to)) return true;
    if (pt == Bondsman || pt == Dorn) {
      Bitboard occ = (pieces() | standingTowers()) & ~bit(from);
      Bitboard lines = rookLines(k, occ) & reach[BondsmanLong][k];
      if (pt == Dorn) lines |= bishopLines(k, occ) & reach[DornDiagonalLong][k];
      if (lines & bit(to)) return true;
    }
  }

  // 3. Discovered check.
  if ((ci.dcCandidates & bit(from)) && pieceMoves(m) && to != k) {
    bool steps = pt == Sword || isMagicianForm(pt) || pt == Dorn_sword;
    if (steps && (reach[NeighbourRow][from] & bit(k))) {
      Bitboard walkers = pieces(us) & mountSquares(*this) & reach[NeighbourRow][from] & ~bit(to);
      while (walkers)
        if (!aligned(popLowest(walkers), from, k)) return true;
    }
    if (!aligned(from, to, k)) return true;
    // A Magician2 can jump out of the way in any direction, but where it lands it blocks again:
    // the occupancy is the one after the move.
    if (pt == Magician2 && firstAttackers(k, (pieces() & ~bit(from)) | bit(to), us, false)) return true;
  }

  // 4. A drop-off that releases our own Dorn on `from`. The new Dorn attacks by its near reach as
  // well as by its lines: the piece that left may have stood next to the leader without checking it.
  if (siege2 && isDropoff(m) && noDorn(us) && siege2CaptiveSquare[us] == from) {
    Bitboard occ = pieces() | standingTowers() | bit(to);
    if (dornAttacks(*this, from, occ, bit(k), true) & bit(k)) return true;
  }

  // 5. What the special kind changes.
  switch (specialKind(m)) {
    case Promotion: {
      PieceType nt = promotionType(pc, to, cp);
      if (!onTower && (ci.checkSquares[nt] & bit(to))) return true;
      if (isMount(nt)) {
        Bitboard occ = (pieces() & ~bit(from)) | bit(to);
        return attacksFrom(*this, makePiece(us, nt), k, occ) & bit(to);
      }
      return false;
    }
    case Exchange:
      if (pt != Dorn_archer && pt != Dorn_sword) return false;
      return attacksFrom(*this, makePiece(us, exchangeType(pc, cp).second), from, pieces()) & bit(k);
    case Demotion: {
      PieceType ct = typeOf(cp);
      // A leader that stops being a mount becomes open to the Sword forms. A sole Bondsman stays
      // demotable, to Dorn_archer, whatever magicianDemotesDorn says, so the flag is not asked.
      if ((ct == Dorn || (ct == Bondsman && to == k)) && !swordsCaptureMounts)
        return pieces(us) & swordFormSquares(*this) & reach[Sword][k];
      if (siegeGame() && onTower && (pseudoAttacks[Dorn][k] & bit(to)))
        return firstAttackers(k, (pieces() | standingTowers()) & ~bit(to), us, true);
      return false;
    }
    default: return false;
  }
}

// Static exchange evaluation. The frame is a list of running gains folded back from its end; what
// this game adds is that a Magician form demotes from where it stands, so the square at stake moves
// to the Magician after each demotion, that arrivals and captures promote, that a piece dies on a
// standing tower, that a drop-off can put a Dorn on the board, and that a leader takes part only
// as far as its side can afford to lose it.
#include "search/see.h"

#include <algorithm>
#include <iostream>
#include <tuple>

#include "core/psqt.h"
#include "core/statistics.h"
#include "eval/captive_value.h"
#include "game/attacks.h"
#include "game/piece_values.h"

namespace {

constexpr Bitboard bit(Square s) { return Bitboard(1) << s; }

// The capturer of a side that has none left; also the stop mark of a side that walks its whole list.
constexpr PieceType NoCapturer = PieceType(12);

// One entry for the move, one per capture (each takes a piece off the board), the closing entry.
constexpr int SwapListSize = 64 + 4;

Value pv(int pieceOrType) { return pieceValueMg[pieceOrType]; }

// A piece of type t arriving on s, where v stands, is promoted by the base rule.
bool promotesAt(Color c, PieceType t, Square s, PieceType v) {
  return basePromotions && t != Warrior && t != Dorn && t != Bondsman && t != Magician2 && t != Magician1 &&
         (promotionZone[c] & bit(s)) && (t != Magician || v == NoPieceType);
}

// A piece of type a is promoted by taking a piece of type b.
bool capturePair(PieceType a, PieceType b) {
  bool swordForm = a == Sword || a == Dorn_sword;
  return (swordForm && b == Archer) || ((a == Archer || a == Assassin || a == Dorn_archer) && isMount(b)) ||
         (swordsCaptureMounts && swordForm && isMount(b));
}

bool isLeaderType(PieceType t) { return isDornForm(t) || (t == Bondsman && bondsmenLeaders); }

// The order in which a side brings in its attackers. A side with several leaders can spend one and
// walks all types by value; a sole leader comes last, when its type is reached in the plain order.
struct CaptureOrder {
  const PieceType* types;
  int stopMark;
};

CaptureOrder captureOrder(const Position& pos, Color c) {
  if (pos.severalLeaders(c)) return {valueTypeOrder, NoCapturer};
  // A side without a leader is a finished game; it simply runs out of capturers.
  return {naturalTypeOrder, pos.leaderSquare(c) == NoSquare ? int(NoCapturer) : int(pos.dornType(c))};
}

// The pieces that can come into view on a square when a piece in front of them leaves. The flags
// keep the look away from squares where no mount, line piece or Assassin is near.
struct HiddenAttackers {
  Bitboard mounts, longMounts, dorns, assassins;
  bool walkers, lines, diagonals, runners;

  HiddenAttackers(const Position& pos, Square s)
      : mounts(pos.byType[Warrior] | pos.byType[Bondsman] | pos.byType[Dorn]),
        longMounts(pos.byType[Bondsman] | pos.byType[Dorn]),
        dorns(pos.byType[Dorn]),
        assassins(pos.byType[Assassin]),
        walkers(pseudoAttacks[Warrior][s] & mounts),
        lines(pseudoAttacks[Bondsman][s] & longMounts),
        diagonals(pseudoAttacks[Dorn][s] & dorns),
        runners(pseudoAttacks[Assassin][s] & assassins) {}

  // What bears on s under `occ` now. The range-3 lines read the pieces alone, not the towers.
  Bitboard uncovered(const Position& pos, Square s, Bitboard occ) const {
    Bitboard found = 0;
    if (walkers) found |= warriorAttacks(pos, s, occ) & mounts;
    if (lines && (occ & reach[BondsmanLong][s])) found |= rookLines(s, occ) & reach[BondsmanLong][s] & longMounts;
    if (diagonals && (occ & reach[DornDiagonalLong][s]))
      found |= bishopLines(s, occ) & reach[DornDiagonalLong][s] & dorns;
    if (runners) found |= assassinAttacks(pos, s, occ) & assassins;
    return found;
  }
};

// byType of the position, copied once before the first change so that it can be put back whole.
class TypeSetGuard {
 public:
  explicit TypeSetGuard(Position& pos) : pos(pos) {}
  ~TypeSetGuard() {
    if (saved) std::copy(std::begin(copy), std::end(copy), pos.byType);
  }
  void save() {
    if (saved) return;
    std::copy(std::begin(pos.byType), std::end(pos.byType), copy);
    saved = true;
  }
  // Moves the piece of type t on s to type u.
  void retype(Square s, PieceType t, PieceType u) {
    save();
    pos.byType[t] &= ~bit(s);
    pos.byType[u] |= bit(s);
  }

 private:
  Position& pos;
  Bitboard copy[TypeSlots];
  bool saved = false;
};

// A word whose special kind the board does not bear out. With the type checks on, the board and the
// move stack go before the caller's text.
bool reportingBadType(const Position& pos) {
  if (!debugMoveTypes) return false;
  std::cout << pos.pretty(MoveNone, false, false) << "\n";
  pos.dumpMoveStack();
  return true;
}

}  // namespace

Value see(Position& pos, Move m) {
  const Square from = moveFrom(m), to = moveTo(m);
  const int special = specialKind(m);
  const Piece pc = pos.pieceOn(from), cp = pos.pieceOn(to);
  if (pc == NoPiece) return 0;  // no move of this position
  const Color us = colorOf(pc), them = ~us;
  const PieceType pt = typeOf(pc), ct = typeOf(cp);
  Bitboard* const byType = pos.byType;
  TypeSetGuard types(pos);

  // The square at stake and what the move itself changes on the board.
  Bitboard occ = byType[ALL];
  if (special != Demotion && special != Exchange) occ &= ~bit(from);
  Square exchangeSquare = to;
  PieceType dt = NoPieceType, newTo = NoPieceType, newFrom = NoPieceType, nt = NoPieceType;
  bool breach = false;
  switch (special) {
    case 0:
      if (siegeGame() && pos.onStandingTower(to)) return -pv(pt);  // the mover dies there
      break;
    case Promotion:
      nt = pos.promotionType(pc, to, cp);
      break;
    case Demotion:
      dt = pos.demotionType(cp);
      if (dt != NoPieceType) types.retype(to, ct, dt);
      else if (siegeGame() && pos.onStandingTower(to)) breach = true;
      else {
        if (reportingBadType(pos)) std::cout << "see: demotionType?\n";
        return 0;
      }
      // The Magician stays where it is, and that is where the enemy answers.
      exchangeSquare = from;
      break;
    default: {  // exchange
      std::tie(newTo, newFrom) = pos.exchangeType(pc, cp);
      if (newTo == NoPieceType || newFrom == NoPieceType) {
        if (reportingBadType(pos))
          std::cout << "see: exchangeType? promotion=" << newFrom << " demotion=" << newTo << "\n";
        return 0;
      }
      types.retype(to, ct, newTo);
      types.retype(from, pt, newFrom);
      exchangeSquare = from;
      break;
    }
  }

  // A drop-off that frees the captive leaves a new Dorn behind, and that is what the enemy can take.
  Bitboard byColor[2] = {pos.byColor[WHITE], pos.byColor[BLACK]};
  const bool released = siege2 && isDropoff(m) && pos.noDorn(us);
  if (released) {
    types.save();
    if (cp != NoPiece) {
      byType[ct] &= ~bit(to);
      byColor[them] &= ~bit(to);
    }
    byType[pt] = (byType[pt] & ~bit(from)) | bit(to);
    byType[Dorn] |= bit(from);
    occ |= bit(to);
    byColor[us] |= bit(to);
    exchangeSquare = from;
  }

  Bitboard attackers = pos.allAttackersTo(exchangeSquare, occ, ~0ULL);
  Value pickupBonus = siegeGame() && isPickup(m) ? captiveBaseValue[pt] + 100 : 0;
  Bitboard stmAttackers = byColor[them] & attackers;

  const Value breachGain =
      breach && ((siege1 ? ownHalf[us] : pos.siege2Tower[us]) & bit(to)) ? mgValue(firstBreachBonus) : 0;
  const Value exchangeGain = pv(newFrom) - pv(pt) - pv(ct) + pv(newTo);

  // Nobody answers: the move's own gain is the result. The pick-up bonus counts once here and
  // twice once an answer is possible.
  if (!stmAttackers) {
    if (released && special != Promotion) return pv(Dorn) + pv(ct);
    if (released) pickupBonus += pv(Dorn) / 2;
    switch (special) {
      case 0: return pv(ct) + pickupBonus;
      case Demotion: return breach ? breachGain : pv(ct) - pv(dt);
      case Exchange: return exchangeGain;
      default: return pv(nt) - pv(pt) + pv(ct) + 2 * pickupBonus;
    }
  }

  bump(stats.seeCalls);
  // Only a Magician form can change types during the walk; the move may have changed some already.
  if ((reach[Magician][exchangeSquare] & (byType[Magician] | byType[Magician2])) ||
      (reach[Magician1][exchangeSquare] & byType[Magician1]))
    types.save();

  Value swapList[SwapListSize];
  switch (special) {
    case 0: swapList[0] = pv(ct) + 2 * pickupBonus; break;
    case Demotion: swapList[0] = breach ? breachGain : pv(ct) - pv(dt); break;
    case Exchange: swapList[0] = exchangeGain; break;
    default: swapList[0] = pv(nt) - pv(pt) + pv(ct) + 2 * pickupBonus; break;
  }
  if (released) swapList[0] += pv(Dorn);

  // `standing` is the type taken to stand on the square at stake; `priced` is the type whose value
  // counts when `usePriced` is set, and the victim in the promotion tests.
  PieceType standing = special == Exchange ? newFrom : released ? Dorn : pt;
  PieceType priced = special == Promotion ? nt : standing;
  bool usePriced = special == Promotion;
  bool raised = special == Promotion && promotesAt(us, pt, to, ct);
  PieceType demoTarget = standing;
  HiddenAttackers hidden(pos, exchangeSquare);
  const CaptureOrder orders[2] = {captureOrder(pos, WHITE), captureOrder(pos, BLACK)};
  const Bitboard leaderTypes = byType[Dorn] | byType[Dorn_archer] | byType[Dorn_sword] | byType[Bondsman];
  Color stm = them;
  int n = 1;

  for (;;) {
    swapList[n] = (usePriced ? pv(priced) : pv(standing)) - swapList[n - 1] + 2 * pickupBonus;

    // The piece on the square may have been promoted by arriving there or by what it took.
    if (basePromotions) {
      usePriced = false;
      if (promotesAt(~stm, standing, exchangeSquare, priced)) {
        standing = pos.promotionType(makePiece(~stm, standing), exchangeSquare, NoPiece);
        priced = standing;
        usePriced = raised = true;
      }
    }
    if (!capturePromotions) {
      usePriced = false;
      priced = demoTarget = standing;
    } else if (raised) {
      demoTarget = priced;
    } else if (capturePair(standing, priced)) {
      usePriced = true;
      standing = demoTarget = priced;
    } else {
      priced = demoTarget = standing;
    }

    // The cheapest capturer of the side to move. A sole leader is reached as the last one, whether
    // or not it bears on the square.
    PieceType capturer = NoCapturer;
    const Square oldSquare = exchangeSquare;
    const CaptureOrder& order = orders[stm];
    for (int i = 1; i < PieceTypeNb; ++i) {
      PieceType t = order.types[i];
      if (t == order.stopMark) {
        capturer = t;
        break;
      }
      if ((t == Sword || t == Dorn_sword) && isMount(standing) && !swordsCaptureMounts) continue;
      Bitboard b = byType[t] & stmAttackers;
      if (!b) continue;
      Square s = lowestSquare(b);
      occ ^= bit(s);
      if (isMagicianForm(t)) {
        // It cannot act on these; it has left `occ` and takes no further part.
        if (standing == Sword || standing == Dorn_sword || standing == Magician1) continue;
        capturer = t;
        exchangeSquare = s;
        break;
      }
      capturer = t;
      attackers |= hidden.uncovered(pos, exchangeSquare, occ);
      break;
    }

    // A demotion leaves the victim on its square in its lower type; the exchange goes on around the
    // Magician. Whether the rules let Magicians demote Dorns does not matter here.
    PieceType demoted = NoPieceType;
    if (isMagicianForm(capturer)) {
      demoted = pos.demotionType(makePiece(~stm, demoTarget));
      if (demoted != NoPieceType) {
        byType[demoTarget] &= ~bit(oldSquare);
        byType[demoted] |= bit(oldSquare);
        byType[capturer] &= ~bit(oldSquare);
        attackers = pos.allAttackersTo(exchangeSquare, occ, ~0ULL);
      }
    }

    attackers &= occ;
    const Color capturerColor = stm;
    stm = ~stm;
    stmAttackers = byColor[stm] & attackers;

    // A leader that cannot be spared ends the exchange; if it is guarded, the closing entry makes
    // its capture too dear to be chosen.
    if (isLeaderType(capturer) &&
        (pos.soleLeader(capturerColor) || !(attackers & byColor[capturerColor] & leaderTypes))) {
      if (stmAttackers) swapList[++n] = 16 * pv(Bondsman);
      break;
    }

    raised = false;
    if (promotesAt(capturerColor, capturer, exchangeSquare, priced)) {
      swapList[n] += pv(priced) - pv(capturer);
      raised = true;
    }
    if (capturePromotions && !raised && capturePair(capturer, priced)) swapList[n] += pv(priced) - pv(capturer);
    standing = capturer;

    if (isMagicianForm(capturer)) {
      // What the victim lost is its drop in value, not its whole value.
      swapList[n] -= pv(demoted) + 2 * pickupBonus;
      pickupBonus = 0;
      if (!stmAttackers) break;
      byType[capturer] &= ~bit(exchangeSquare);
      hidden = HiddenAttackers(pos, exchangeSquare);
    }
    if (!stmAttackers || capturer == NoCapturer || n + 2 >= SwapListSize) break;
    ++n;
  }

  // Each side may stop taking where going on would cost it.
  for (int i = n; i > 0; --i) swapList[i - 1] = std::min(swapList[i - 1], -swapList[i]);
  return swapList[0];
}

Value seeSign(Position& pos, Move m) {
  if (pv(pos.pieceOn(moveTo(m))) >= pv(pos.pieceOn(moveFrom(m)))) return 1;
  return see(pos, m);
}

// Attack queries of a position: who attacks a square, the check facts of a node, and the type
// tables and square-pair tests by which a move word is told apart.
#include "game/attack_queries.h"

#include "game/captive_state.h"

namespace {

constexpr Bitboard bit(Square s) { return Bitboard(1) << s; }

// Demotion by type; the Bondsman's depends on its side and is settled in demotionType.
constexpr PieceType DemotedType[TypeSlots] = {
    NoPieceType, NoPieceType, NoPieceType, Sword,       Sword,      Magician1,   Archer,      Magician,
    Archer,      Dorn_archer, Dorn_sword,  NoPieceType, NoPieceType, NoPieceType, NoPieceType, NoPieceType};

// Promotion on arrival in the enemy base zone.
constexpr PieceType BasePromotedType[TypeSlots] = {
    NoPieceType, Warrior,     Magician,    Warrior,     Warrior,     Magician2,   NoPieceType, NoPieceType,
    NoPieceType, NoPieceType, Dorn,        Dorn,        NoPieceType, NoPieceType, NoPieceType, NoPieceType};

// Capture promotion by the victim's class: an Archer, or a mount. The Sword forms take mounts only
// while swordsCaptureMounts is on.
constexpr PieceType ByArcherCapture[TypeSlots] = {
    NoPieceType, Archer,      NoPieceType, NoPieceType, NoPieceType, NoPieceType, NoPieceType, NoPieceType,
    NoPieceType, NoPieceType, NoPieceType, Dorn_archer, NoPieceType, NoPieceType, NoPieceType, NoPieceType};
constexpr PieceType ByMountCapture[TypeSlots] = {
    NoPieceType, Warrior,     NoPieceType, Warrior,     Warrior,     NoPieceType, NoPieceType, NoPieceType,
    NoPieceType, NoPieceType, Dorn,        Dorn,        NoPieceType, NoPieceType, NoPieceType, NoPieceType};

// Whether a Magician form may demote a piece of this type at all.
bool demotable(PieceType t) {
  if (t == NoPieceType || t == Sword || t == Magician1 || t == Dorn_sword) return false;
  return magicianDemotesDorn || (t != Dorn && t != Dorn_archer);
}

}  // namespace

// ---------------------------------------------------------------- attack sets

Bitboard attacksFrom(const Position& pos, Piece piece, Square s, Bitboard occ, bool towersInOcc) {
  switch (typeOf(piece)) {
    case Assassin: return assassinAttacks(pos, s, occ, towersInOcc);
    case Warrior: return warriorAttacks(pos, s, occ, towersInOcc);
    case Bondsman: return bondsmanAttacks(pos, s, occ, ~0ULL, towersInOcc);
    case Dorn: return dornAttacks(pos, s, occ, ~0ULL, towersInOcc);
    case Magician:
    case Magician2: {
      occ = withTowers(pos, occ, towersInOcc);
      Color them = ~colorOf(piece);
      Bitboard victims = (pos.pieces(them) & ~swordFormSquares(pos) & ~pos.pieces(Magician1)) | pos.standingTowers();
      Bitboard steps = typeOf(piece) == Magician ? reach[MagicianStep][s] : warriorAttacks(pos, s, occ, true);
      return (reach[piece][s] & victims) | (steps & ~occ);
    }
    default: return reach[piece][s];
  }
}

Bitboard Position::allAttackersTo(Square s, Bitboard occ, Bitboard lineTargets) const {
  occ |= standingTowers();
  Bitboard attackers = (reach[Sword][s] & swordFormSquares(*this)) | (reach[Magician1][s] & byType[Magician1]) |
                       (reach[Magician][s] & (byType[Magician] | byType[Magician2])) |
                       (reach[Archer][s] & (byType[Archer] | byType[Dorn_archer])) |
                       (assassinAttacks(*this, s, occ, true) & byType[Assassin]) |
                       (warriorAttacks(*this, s, occ, true) & mountSquares(*this));
  // The range-3 lines are the dear part: looked at only when the caller cares about those rows.
  if (reach[BondsmanLong][s] & lineTargets)
    attackers |= rookLines(s, occ) & reach[BondsmanLong][s] & (byType[Bondsman] | byType[Dorn]);
  if (reach[DornDiagonalLong][s] & lineTargets)
    attackers |= bishopLines(s, occ) & reach[DornDiagonalLong][s] & byType[Dorn];
  return attackers;
}

Bitboard Position::attackersTo(Square s, Bitboard occ, Bitboard lineTargets, Color c) const {
  return allAttackersTo(s, occ, lineTargets & byColor[c]) & byColor[c];
}

Bitboard Position::reachersTo(Square s, Bitboard occ) const {
  Bitboard lines = (rookLines(s, occ) & reach[BondsmanLong][s] & (byType[Bondsman] | byType[Dorn])) |
                   (bishopLines(s, occ) & reach[DornDiagonalLong][s] & byType[Dorn]);
  return (warriorAttacks(*this, s, occ, true) & mountSquares(*this)) |
         (assassinAttacks(*this, s, occ, true) & byType[Assassin]) | lines;
}

Bitboard Position::firstAttackers(Square s, Bitboard occ, Color c, bool towersInOcc) const {
  occ = withTowers(*this, occ, towersInOcc);
  Bitboard own = byColor[c];
  if (Bitboard b = warriorAttacks(*this, s, occ, true) & mountSquares(*this) & own) return b;
  if (Bitboard b = assassinAttacks(*this, s, occ, true) & byType[Assassin] & own) return b;
  if (Bitboard b = rookLines(s, occ) & reach[BondsmanLong][s] & (byType[Bondsman] | byType[Dorn]) & own) return b;
  return bishopLines(s, occ) & reach[DornDiagonalLong][s] & byType[Dorn] & own;
}

// ---------------------------------------------------------------- check

Bitboard Position::checkableBy(Color c) const {
  Bitboard enemies = byColor[~c] & ~magicianSquares(*this);
  Square k = leaderSquare(c);
  if (!swordsCaptureMounts && k != NoSquare && isMount(typeOf(board[k]))) enemies &= ~swordFormSquares(*this);
  return enemies;
}

Bitboard Position::checkableBy(Color c, Move m) const {
  Square k = leaderSquare(c);
  if (k == NoSquare) return 0;
  if (moveFrom(m) == k && pieceMoves(m)) k = moveTo(m);
  Bitboard occ = pieces();
  Bitboard enemies = checkableBy(c);
  if (pieceMoves(m)) {
    occ = (occ & ~bit(moveFrom(m))) | bit(moveTo(m));
    enemies &= ~(bit(moveFrom(m)) | bit(moveTo(m)));
  }
  return enemies & attackersTo(k, occ, enemies, ~c);
}

bool Position::attackedAfter(Color c, Move m, Square s) const {
  Bitboard occ = pieces();
  Bitboard enemies = checkableBy(c) & ~bit(s);
  if (pieceMoves(m)) {
    // The mover leaves `from`; whatever it takes on `to` attacks no more.
    occ = (occ & ~bit(moveFrom(m))) | bit(moveTo(m));
    enemies &= ~(bit(moveFrom(m)) | bit(moveTo(m)));
  }
  return attackersTo(s, occ, enemies, ~c) & enemies;
}

bool canTakeEnemyLeader(const Position& pos) {
  Color them = ~pos.side();
  Square k = pos.leaderSquare(them);
  if (k == NoSquare || pos.severalLeaders(them)) return false;
  // Magician forms never capture; Swords take no mounted leader unless the rules allow it.
  Bitboard takers = pos.checkableBy(them);
  return pos.allAttackersTo(k, pos.pieces(), takers) & takers;
}

bool aligned(Square a, Square b, Square c) {
  auto same = [](int x, int y, int z) { return x == y && y == z; };
  return same(rankOf(a), rankOf(b), rankOf(c)) || same(fileOf(a), fileOf(b), fileOf(c)) ||
         same(fileOf(a) - rankOf(a), fileOf(b) - rankOf(b), fileOf(c) - rankOf(c)) ||
         same(fileOf(a) + rankOf(a), fileOf(b) + rankOf(b), fileOf(c) + rankOf(c));
}

Bitboard shieldsOnWaysIn(Square k, Bitboard walkers, Bitboard assassins, Bitboard blockers, Bitboard occ) {
  Bitboard shields = 0;
  while (walkers) {
    Square q = popLowest(walkers);
    if (Bitboard via = warriorVia[q][k]) {
      shields |= via & blockers;
    } else {
      Bitboard b = between[k][q] & occ;
      if (b && !(b & (b - 1))) shields |= b & blockers;
    }
  }
  while (assassins) shields |= assassinVia[popLowest(assassins)][k] & blockers;
  return shields;
}

Bitboard shieldsOf(const Position& pos, Square k, Color pinning, Color blocking) {
  // Reach is symmetric, so the mounts that could reach k are found from k.
  Bitboard mounts = pos.pieces(pinning) & ((pos.pieces(Warrior) & pseudoAttacks[Warrior][k]) |
                                           (pos.pieces(Bondsman) & pseudoAttacks[Bondsman][k]) |
                                           (pos.pieces(Dorn) & pseudoAttacks[Dorn][k]));
  Bitboard assassins = pos.pieces(pinning, Assassin) & pseudoAttacks[Assassin][k];
  return shieldsOnWaysIn(k, mounts, assassins, pos.pieces(blocking), pos.pieces() | pos.standingTowers());
}

Bitboard pinnedPieces(const Position& pos) {
  Color us = pos.side();
  Square k = pos.leaderSquare(us);
  return k == NoSquare || pos.severalLeaders(us) ? 0 : shieldsOf(pos, k, ~us, us);
}

CheckInfo::CheckInfo(const Position& pos) {
  Color us = pos.side(), them = ~us;
  pinned = pinnedPieces(pos);
  Square k = pos.leaderSquare(them);
  if (k == NoSquare || pos.severalLeaders(them)) return;
  dcCandidates = shieldsOf(pos, k, us, us);

  Bitboard occ = pos.pieces() | pos.standingTowers();
  PieceType enemyLeader = typeOf(pos.pieceOn(k));
  Bitboard swordChecks = swordsCaptureMounts || !isMount(enemyLeader) ? reach[Sword][k] : 0;
  checkSquares[Sword] = swordChecks;
  checkSquares[Assassin] = assassinAttacks(pos, k, occ, true);
  checkSquares[Archer] = reach[Archer][k];
  checkSquares[Warrior] = warriorAttacks(pos, k, occ, true);
  // The line part is always there: a line check missed here would leave `checkers` empty.
  checkSquares[Bondsman] = checkSquares[Warrior] | (rookLines(k, occ) & reach[BondsmanLong][k]);

  Square ownLeader = pos.leaderSquare(us);
  if (ownLeader == NoSquare) return;
  PieceType t = typeOf(pos.pieceOn(ownLeader));
  if (enemyLeader == Bondsman || pos.severalLeaders(us) || t < enemyLeader) {
    checkSquares[Dorn] = checkSquares[Bondsman] | (bishopLines(k, occ) & reach[DornDiagonalLong][k]);
    checkSquares[Dorn_archer] = reach[Archer][k];
    checkSquares[Dorn_sword] = swordChecks;
  }
}

// ---------------------------------------------------------------- type tables

PieceType Position::demotionType(Piece cp) const {
  PieceType t = typeOf(cp);
  if (t == Bondsman) {
    Color c = colorOf(cp);
    return noDorn(c) && pieceCount[c][Bondsman] < 2 ? Dorn_archer : Archer;
  }
  return DemotedType[t];
}

bool isBasePromotion(Piece pc, Square to, Piece cp) {
  PieceType t = typeOf(pc);
  return basePromotions && (promotionZone[colorOf(pc)] & bit(to)) && BasePromotedType[t] != NoPieceType &&
         t != Magician1 && (t != Magician || cp == NoPiece);
}

PieceType capturePromotionType(PieceType mover, PieceType victim) {
  if (victim == Archer) return ByArcherCapture[mover];
  if (!isMount(victim)) return NoPieceType;
  if (!swordsCaptureMounts && (mover == Sword || mover == Dorn_sword)) return NoPieceType;
  return ByMountCapture[mover];
}

PieceType Position::promotionType(Piece pc, Square to, Piece cp) const {
  if (basePromotions && (promotionZone[colorOf(pc)] & bit(to))) return BasePromotedType[typeOf(pc)];
  if (!capturePromotions || cp == NoPiece) return NoPieceType;
  return capturePromotionType(typeOf(pc), typeOf(cp));
}

std::pair<PieceType, PieceType> Position::exchangeType(Piece pc, Piece cp) const {
  PieceType ct = typeOf(cp);
  switch (typeOf(pc)) {
    case Magician:
      if (isMount(ct)) return {Archer, Magician2};
      break;
    case Dorn_archer:
      if (ct == Warrior || ct == Bondsman) return {Archer, Dorn};
      break;
    case Dorn_sword:
      if (ct == Archer) return {Sword, Dorn_archer};
      if (isMount(ct)) return {Sword, Dorn};
      break;
    default: break;
  }
  return {NoPieceType, NoPieceType};
}

// ---------------------------------------------------------------- moves by squares

bool Position::pieceMoves(Move m) const {
  return !isDemotion(m) && !isExchange(m) && !isSiege1Exchange(*this, m);
}

Square Position::nextLeader(Color c, Square sq) const {
  const uint8_t* bondsmen = pieceList[c][Bondsman];
  switch (pieceCount[c][Bondsman]) {
    case 1: return bondsmen[0];
    case 2: return bondsmen[0] == sq ? bondsmen[1] : bondsmen[0];
    default: return NoSquare;
  }
}

bool Position::reducesLeaders(Color c, Square sq) const {
  int bondsmen = pieceCount[c][Bondsman];
  return board[sq] == makePiece(c, Bondsman) && (bondsmen == 1 || (bondsmen == 2 && noDorn(c)));
}

bool Position::promotionPair(Square from, Square to) const {
  Piece pc = board[from], cp = board[to];
  if (pc == NoPiece || (cp != NoPiece && colorOf(cp) == colorOf(pc))) return false;
  if (isBasePromotion(pc, to, cp)) return true;
  return capturePromotions && cp != NoPiece && capturePromotionType(typeOf(pc), typeOf(cp)) != NoPieceType;
}

bool Position::demotionPair(Square from, Square to) const {
  Piece pc = board[from];
  if (!isMagicianForm(typeOf(pc))) return false;
  if (onStandingTower(to)) return typeOf(pc) != Magician2 || (reach[pc][from] & bit(to));
  Piece cp = board[to];
  return cp != NoPiece && colorOf(cp) != colorOf(pc) && demotable(typeOf(cp));
}

bool Position::exchangePair(Square from, Square to) const {
  Piece pc = board[from], cp = board[to];
  if (!exchanges || pc == NoPiece || cp == NoPiece || colorOf(pc) != colorOf(cp)) return false;
  Color c = colorOf(pc);
  PieceType ct = typeOf(cp);
  switch (typeOf(pc)) {
    case Magician: {
      int bondsmen = pieceCount[c][Bondsman];
      bool bondsmanLeads = bondsmenLeaders && noDorn(c) && bondsmen == 1;  // its only Bondsman is its leader
      return ct == Warrior || (ct == Bondsman && !bondsmanLeads) || (ct == Dorn && bondsmen && bondsmenLeaders);
    }
    case Dorn_archer: return ct == Warrior || ct == Bondsman;
    case Dorn_sword: return ct == Archer || ct == Warrior || ct == Bondsman;
    default: return false;
  }
}

bool Position::leaderWalksIntoTower(Move m) const {
  return moveFrom(m) == leaderSquare(sideToMove) && soleLeader(sideToMove) && onStandingTower(moveTo(m));
}

bool Position::isCapturePickup(Move m) const { return siege2 && siege2PickupSquare(*this, moveTo(m)); }

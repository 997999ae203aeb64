// Builds the board geometry tables once at start-up; lookups live inline in bitboard.h.
#include "core/bitboard.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "core/prng.h"

Bitboard squareBit[64];
Bitboard fileMask[8];
Bitboard rankMask[8];
int squareDistance[64][64];
Bitboard reach[ReachRows][64];
Bitboard between[64][64];
Bitboard warriorVia[64][64];
uint16_t warriorViaCount[64][64];
Bitboard assassinVia[64][64];
Bitboard pseudoAttacks[PieceTypeNb][64];
Bitboard promotionZone[2];

Bitboard warriorTable[64][WarriorSlots];
Bitboard assassinTable[64][AssassinSlots];

Magic rookMagics[64];
Magic bishopMagics[64];

namespace {

constexpr int RookTableSize = 102400;
constexpr int BishopTableSize = 5248;
Bitboard rookTable[RookTableSize];
Bitboard bishopTable[BishopTableSize];

// Directions as (files, ranks), so that a walk can never wrap around an edge.
struct Step {
  int df, dr;
};
constexpr Step RookSteps[4] = {{0, 1}, {1, 0}, {0, -1}, {-1, 0}};     // 8, 1, -8, -1
constexpr Step BishopSteps[4] = {{1, 1}, {1, -1}, {-1, -1}, {-1, 1}};  // 9, -7, -9, 7

// Per-rank seeds of the candidate rotations: low 6 bits s1, next 6 bits s2.
constexpr unsigned MagicBoosters[8] = {0x423, 0xE18, 0x25D, 0xCA2, 0xCFE, 0x026, 0x7ED, 0xBE3};

bool onBoard(int file, int rank) { return file >= 0 && file < 8 && rank >= 0 && rank < 8; }

// The squares at offsets (df, dr) from s, |df|, |dr| <= 4, that satisfy the predicate.
template <typename Pred>
Bitboard offsetSet(Square s, Pred wanted) {
  Bitboard b = 0;
  for (int dr = -4; dr <= 4; ++dr)
    for (int df = -4; df <= 4; ++df) {
      int f = fileOf(s) + df, r = rankOf(s) + dr;
      if ((df || dr) && onBoard(f, r) && wanted(std::abs(df), std::abs(dr))) b |= squareBit[makeSquare(f, r)];
    }
  return b;
}

bool orth(int af, int ar, int k) { return (af == 0 && ar == k) || (af == k && ar == 0); }
bool diag(int af, int ar, int k) { return af == k && ar == k; }

Bitboard lineWalk(Square s, Bitboard occ, const Step (&steps)[4]) {
  Bitboard lines = 0;
  for (const Step& st : steps) {
    int f = fileOf(s) + st.df, r = rankOf(s) + st.dr;
    for (; onBoard(f, r); f += st.df, r += st.dr) {
      Square t = makeSquare(f, r);
      lines |= squareBit[t];
      if (occ & squareBit[t]) break;
    }
  }
  return lines;
}

void initReach() {
  for (Square s = 0; s < 64; ++s) {
    auto row = [s](int index) -> Bitboard& { return reach[index][s]; };
    row(0) = offsetSet(s, [](int af, int ar) { return std::max(af, ar) == 2 && !(af == 2 && ar == 2); });
    row(1) = offsetSet(s, [](int af, int ar) { return diag(af, ar, 1); });
    row(2) = offsetSet(s, [](int af, int ar) { return orth(af, ar, 1); });
    row(3) = row(2);
    row(4) = offsetSet(s, [](int af, int ar) { return std::max(af, ar) == 1; });
    row(5) = offsetSet(s, [](int af, int ar) { return orth(af, ar, 1) || orth(af, ar, 2) || diag(af, ar, 2); });
    row(6) = offsetSet(s, [](int af, int ar) { return std::max(af, ar) <= 2; });
    row(7) = row(5);
    row(BondsmanLong) = offsetSet(s, [](int af, int ar) { return orth(af, ar, 3); });
    row(DornLong) = offsetSet(s, [](int af, int ar) { return orth(af, ar, 3) || diag(af, ar, 3); });
    row(10) = row(4);
    row(11) = row(1);
    // Black rows equal white ones; the long-reach rows serve both colours from the white slots.
    for (int t = 0; t < PieceTypeNb; ++t)
      if (t != BondsmanLong && t != DornLong) row(t + 16) = row(t);

    row(DornDiagonalLong) = offsetSet(s, [](int af, int ar) { return diag(af, ar, 3); });
    row(DiagonalOne) = row(1);
    row(DiagonalTwo) = offsetSet(s, [](int af, int ar) { return diag(af, ar, 2); });
    row(AssassinSecond) = offsetSet(s, [](int af, int ar) { return orth(af, ar, 2); });
    row(DistanceTwo) = row(6) & ~row(4);
    row(MagicianStep) = row(2);
    row(DemotionReach0) = row(5);
    row(DemotionReach0 + 1) = row(DemotionReach0) | row(DornLong);
    row(DemotionReach0 + 2) =
        row(DemotionReach0 + 1) | offsetSet(s, [](int af, int ar) { return orth(af, ar, 4) || diag(af, ar, 4); });
  }
}

// Neighbours of s next to each ring square; the diagonal corners have a single way in, via `between`.
void initVia() {
  for (Square s = 0; s < 64; ++s) {
    for (Bitboard ring = reach[WarriorRing][s]; ring;) {
      Square t = popLowest(ring);
      warriorVia[s][t] = reach[NeighbourRow][s] & reach[NeighbourRow][t];
      warriorViaCount[s][t] = uint16_t(popcount(warriorVia[s][t]));
    }
    for (Bitboard second = reach[AssassinSecond][s]; second;) {
      Square t = popLowest(second);
      assassinVia[s][t] = reach[Assassin][s] & reach[Assassin][t];
    }
  }
}

// Deterministic search: the same magics, and so the same table layout, in every run.
void initMagics(Magic (&magics)[64], Bitboard* table, const Step (&steps)[4]) {
  static Bitboard occupancy[4096], lines[4096];
  static int stamp[4096];  // attempt that last wrote each index; saves clearing per attempt
  std::memset(stamp, 0, sizeof stamp);
  int attempt = 0;
  Prng rng(KeyWarmupRounds);
  Bitboard* next = table;

  for (Square s = 0; s < 64; ++s) {
    Magic& m = magics[s];
    Bitboard edges = ((rankMask[0] | rankMask[7]) & ~rankMask[rankOf(s)]) |
                     ((fileMask[0] | fileMask[7]) & ~fileMask[fileOf(s)]);
    m.mask = lineWalk(s, 0, steps) & ~edges;
    m.shift = unsigned(64 - popcount(m.mask));
    m.attacks = next;

    // Subsets holding only blockers, one per distinct line set, go first: a clash between two of
    // them shows up within a few dozen steps. The order changes the speed of the test, not its answer.
    const int size = 1 << popcount(m.mask);
    int front = 0, back = size;
    Bitboard b = 0;
    do {
      Bitboard set = lineWalk(s, b, steps);
      int i = (b & ~set) ? --back : front++;
      occupancy[i] = b;
      lines[i] = set;
      b = (b - m.mask) & m.mask;
    } while (b);
    next += size;

    unsigned booster = MagicBoosters[rankOf(s)];
    int s1 = int(booster & 63), s2 = int((booster >> 6) & 63);
    // Locals, so the tight loop below keeps them in registers while it stores through `attacks`.
    const Bitboard mask = m.mask;
    const unsigned shift = m.shift;
    Bitboard* const attacks = m.attacks;
    Bitboard magic;
    for (bool found = false; !found;) {
      do {
        Bitboard r1 = rng.next();
        Bitboard r2 = rng.next();
        Bitboard r3 = rng.next();
        magic = std::rotr(std::rotr(r1, s1) & r2, s2) & r3;
      } while (popcount15((mask * magic) >> 56) < 6);

      ++attempt;
      found = true;
      for (int i = 0; i < size; ++i) {
        unsigned idx = unsigned((occupancy[i] * magic) >> shift);  // subsets lie within the mask
        if (stamp[idx] != attempt) {
          stamp[idx] = attempt;
          attacks[idx] = lines[i];
        } else if (attacks[idx] != lines[i]) {
          found = false;
          break;
        }
      }
    }
    m.magic = magic;
    // Entries no subset maps to keep whatever a failed attempt left; clear them.
    for (int i = 0; i < size; ++i)
      if (stamp[i] != attempt) m.attacks[i] = 0;
  }
}

void initBetween() {
  for (Square s = 0; s < 64; ++s)
    for (Square t = 0; t < 64; ++t) {
      between[s][t] = 0;
      if (!((rookLines(s, 0) | bishopLines(s, 0)) & squareBit[t])) continue;
      int step = (t - s) / squareDistance[s][t];
      for (Square q = s + step; q != t; q += step) between[s][t] |= squareBit[q];
    }
}

void initPseudoAttacks() {
  for (Square s = 0; s < 64; ++s) {
    pseudoAttacks[NoPieceType][s] = 0;
    for (int t = Sword; t < PieceTypeNb; ++t) pseudoAttacks[t][s] = reach[t][s];
    pseudoAttacks[Assassin][s] |= reach[AssassinSecond][s];
    pseudoAttacks[Bondsman][s] = reach[Warrior][s] | reach[BondsmanLong][s];
    pseudoAttacks[Dorn][s] = reach[Warrior][s] | reach[DornLong][s];
  }
}

// Runs every neighbour pattern of every square through the plain definition.
template <int Slots>
void initPatternTable(Bitboard (&table)[64][Slots], int keyRow, Bitboard (*plain)(Square, Bitboard),
                      const char* name) {
  std::memset(table, 0, sizeof table);
  for (Square s = 0; s < 64; ++s) {
    Bitboard neighbours = reach[keyRow][s];
    Bitboard b = 0;
    do {
      Bitboard key = b | squareBit[s];
      unsigned slot = unsigned(key % Slots);
      if (!table[s][slot])
        table[s][slot] = plain(s, b) | squareBit[s];
      else
        std::cout << "(1) " << name << " entry already exists,occ=" << key << "\nvalue = " << table[s][slot]
                  << ", bucket" << slot << "\n";
      b = (b - neighbours) & neighbours;
    } while (b);
  }
}

}  // namespace

Bitboard warriorAttacksSlow(Square s, Bitboard occ) {
  Bitboard attacks = reach[NeighbourRow][s];
  for (Bitboard open = reach[NeighbourRow][s] & ~occ; open;) attacks |= reach[NeighbourRow][popLowest(open)];
  return attacks & ~squareBit[s];
}

Bitboard assassinAttacksSlow(Square s, Bitboard occ) {
  Bitboard attacks = reach[Assassin][s];
  // From an empty orthogonal neighbour, the only second-step square next to it is the one beyond.
  for (Bitboard open = reach[Assassin][s] & ~occ; open;)
    attacks |= reach[Assassin][popLowest(open)] & reach[AssassinSecond][s];
  return attacks;
}

void initBitboards() {
  for (Square s = 0; s < 64; ++s) squareBit[s] = Bitboard(1) << s;
  for (int i = 0; i < 8; ++i) {
    fileMask[i] = 0x0101010101010101ULL << i;
    rankMask[i] = 0xFFULL << (8 * i);
  }
  for (Square s = 0; s < 64; ++s)
    for (Square t = 0; t < 64; ++t)
      squareDistance[s][t] = std::max(std::abs(fileOf(s) - fileOf(t)), std::abs(rankOf(s) - rankOf(t)));

  std::memset(reach, 0, sizeof reach);
  initReach();
  std::memset(warriorVia, 0, sizeof warriorVia);
  std::memset(warriorViaCount, 0, sizeof warriorViaCount);
  std::memset(assassinVia, 0, sizeof assassinVia);
  initVia();
  initMagics(rookMagics, rookTable, RookSteps);
  initMagics(bishopMagics, bishopTable, BishopSteps);
  initBetween();
  initPseudoAttacks();
  initPatternTable(warriorTable, NeighbourRow, warriorAttacksSlow, "warrior");
  initPatternTable(assassinTable, Assassin, assassinAttacksSlow, "assassin");

  promotionZone[WHITE] = squareBit[A7] | squareBit[B7] | squareBit[A8] | squareBit[B8];
  promotionZone[BLACK] = squareBit[G1] | squareBit[H1] | squareBit[G2] | squareBit[H2];
}

void setDemotionReach(int type, int row) {
  for (Square s = 0; s < 64; ++s) reach[type][s] = reach[type + 16][s] = reach[row][s];
}

void printBitboard(const std::string& title, Bitboard b) {
  std::string out = title;
  for (int rank = 7; rank >= 0; --rank) {
    for (int file = 0; file < 8; ++file) out += (b & squareBit[makeSquare(file, rank)]) ? "1 " : "0 ";
    out += '\n';
  }
  std::cout << out << std::flush;
}

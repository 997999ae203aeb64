// Book keys: the published random numbers for the first six piece types, our own for the rest.
#include "search/book_key.h"

#include "core/bitboard.h"
#include "core/book_random.h"
#include "core/prng.h"

namespace {

constexpr int PublishedKinds = 12;
constexpr int ExtraKinds = 2 * (PieceTypeNb - 1) - PublishedKinds;  // types 7 to 11, both colours

// The book format knows twelve kinds of piece, and indices past them hold castling, en passant and
// the turn. Our types 7 to 11 (Magician2, Bondsman and the three Dorn forms) therefore take their
// numbers from a second table: 64 numbers per kind for kinds 12 to 21, drawn kind by kind, square by
// square, from Prng after 781 warm-up rounds. The warm-up differs from that of the position keys,
// so these numbers are not theirs; being fixed, they are the same in every run and any book written
// with this rule keeps its keys. Books made by tools that know only the published table can still
// name every position whose pieces are of types 1 to 6.
constexpr int ExtraKeyWarmupRounds = 781;

struct ExtraBookKeys {
  Key keys[ExtraKinds][64];
  ExtraBookKeys() {
    Prng rng(ExtraKeyWarmupRounds);
    for (auto& kind : keys)
      for (Key& k : kind) k = rng.next();
  }
};

const ExtraBookKeys& extraBookKeys() {
  static const ExtraBookKeys table;
  return table;
}

}  // namespace

Key bookPieceKey(PieceType type, Color c, Square s) {
  const int kind = 2 * (type - 1) + (c == WHITE ? 1 : 0);
  return kind < PublishedKinds ? Random64[64 * kind + s] : extraBookKeys().keys[kind - PublishedKinds][s];
}

Key bookKey(const Position& pos) {
  Key key = 0;
  for (Bitboard b = pos.pieces(); b;) {
    Square s = popLowest(b);
    Piece p = pos.pieceOn(s);
    key ^= bookPieceKey(typeOf(p), colorOf(p), s);
  }
  if (pos.side() == WHITE) key ^= Random64[BookTurnEntry];
  return key;
}

// Move and score text: the wire form a host sees, the game text, and the game's own SAN.
#include "movegen/notation.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>

#include "core/psqt.h"
#include "game/attack_queries.h"
#include "game/position.h"
#include "movegen/movegen.h"

namespace {

// Letters by type, code 12 standing for a tower square.
constexpr char UpperTypeLetters[] = " SGNAMWHFKJI%";
constexpr char LowerTypeLetters[] = " sgnamwhfkji%";

// SAN name of a type: leading mark, letter, trailing mark; a blank stands for nothing.
constexpr char SanLeading[] = "           -";
constexpr char SanLetter[] = " SMNAMWMFKKK";
constexpr char SanTrailing[] = "  -    +  --";

std::string sanName(PieceType t) {
  std::string s;
  if (SanLeading[t] != ' ') s += SanLeading[t];
  s += SanLetter[t];
  if (SanTrailing[t] != ' ') s += SanTrailing[t];
  return s;
}

Value swordValue() { return pieceValueMg[Sword]; }

void foldFifthCharacter(std::string& word) {
  if (word.size() == 5) word[4] = char(std::tolower(static_cast<unsigned char>(word[4])));
}

}  // namespace

std::string moveToUci(Move m, const Position* pos, bool withCaptureSign) {
  if (!pos || m == MoveNone || m == MoveNull) return moveToWire(m);
  Square from = moveFrom(m), to = moveTo(m);
  std::string s = squareToString(from);
  if (withCaptureSign && !pos->empty(to)) s += 'x';
  s += squareToString(to);
  if (isPromotion(m))
    s += LowerTypeLetters[pos->promotionType(pos->pieceOn(from), to, pos->pieceOn(to))];
  else if (isDemotion(m))
    s += LowerTypeLetters[pos->demotionType(pos->pieceOn(to))];
  return s;
}

Move classifyMove(const Position& pos, Square from, Square to) {
  if ((capturePromotions || basePromotions) && pos.promotionPair(from, to))
    return makePromotionMove(pos, from, to);
  if (pos.demotionPair(from, to)) return makeDemotionMove(pos, from, to);
  if (exchanges && pos.exchangePair(from, to)) return makeExchangeMove(pos, from, to);
  return makePlainMove(pos, from, to);
}

Move moveFromSquares(const Position& pos, std::string& word) {
  foldFifthCharacter(word);
  if (word.size() < 4) {
    std::cout << "?Illegal move " << word << "\n";
    return MoveNone;
  }
  Square from = parseSquare(word.substr(0, 2));
  Square to = parseSquare(word.substr(2, 2));
  if (from == NoSquare || to == NoSquare || pos.empty(from)) return MoveNone;
  return classifyMove(pos, from, to);
}

Move moveFromLegalList(const Position& pos, std::string& word) {
  foldFifthCharacter(word);
  ScoredMove list[MaxMoves];
  ScoredMove* end = generateLegal(pos, list);
  for (ScoredMove* it = list; it != end; ++it)
    if (moveToUci(it->move) == word) return it->move;
  return MoveNone;
}

std::string moveToSan(const Position& position, Move m) {
  if (m == MoveNone) return "(none)";
  if (m == MoveNull) return "(null)";
  Position pos(position);  // the check marks are found by playing the move
  Square from = moveFrom(m), to = moveTo(m);
  Piece pc = pos.pieceOn(from);
  std::string san = sanName(typeOf(pc));

  // Disambiguation among twins that could also go to `to`.
  if (countedPseudoLegal(pos, m)) {
    Bitboard twins = attacksFrom(pos, pc, to, pos.pieces(), false) &
                     pos.pieces(colorOf(pc), typeOf(pc)) & ~squareBit[from];
    Bitboard pinned = CheckInfo(pos).pinned;
    bool any = false, sameFile = false, sameRank = false;
    while (twins) {
      Square s = popLowest(twins);
      Move twin = classifyMove(pos, s, to);
      if (!countedPseudoLegal(pos, twin) || !pos.legal(twin, pinned)) continue;
      any = true;
      sameFile |= fileOf(s) == fileOf(from);
      sameRank |= rankOf(s) == rankOf(from);
    }
    if (any) {
      if (!sameFile) san += char('a' + fileOf(from));
      else if (!sameRank) san += char('1' + rankOf(from));
      else san += squareToString(from);
    }
  }

  if (!pos.empty(to) && !pos.exchangePair(from, to) && !isSiege1Exchange(pos, m)) san += 'x';
  san += squareToString(to);

  if (isDemotion(m)) {
    PieceType dt = pos.demotionType(pos.pieceOn(to));
    san += '<';
    san += dt ? UpperTypeLetters[dt] : (siege1 && pos.onStandingTower(to) ? '%' : ' ');
  } else if (isPromotion(m)) {
    san += '=';
    san += UpperTypeLetters[pos.promotionType(pc, to, pos.pieceOn(to))];
  } else if (isExchange(m)) {
    san += '$';
    san += typeOf(pc) == Dorn_sword ? 'S' : 'A';
  } else if (isSiege1Exchange(pos, m)) {
    san += '^';
  }

  bool goalReached = false;
  StateInfo st;
  if (siege1) {
    pos.do_move(m, st);
    Square captive = pos.siege1CaptiveSquare;
    goalReached = captive != NoSquare && !pos.empty(captive) &&
                  ((goalSquares[WHITE] | goalSquares[BLACK]) & squareBit[captive]);
    pos.undo_move(m);
    if (goalReached) san += '#';
  }
  if (!goalReached && pos.gives_check(m, CheckInfo(pos))) {
    pos.do_move(m, st);
    ScoredMove list[MaxMoves];
    san += generateLegal(pos, list) == list ? '#' : '+';
    pos.undo_move(m);
  }
  return san;
}

std::string scoreToUci(Value v, Value alpha, Value beta, int* shown) {
  std::string s;
  int n;
  if (std::abs(v) >= ValueMateInMaxPly) {
    n = v > 0 ? (ValueInfinite - v) / 2 : (-ValueMate - v) / 2;
    s = "mate " + std::to_string(n);
  } else {
    n = v * 100 / swordValue();
    s = "cs " + std::to_string(n);
  }
  if (shown) *shown = n;
  if (v >= beta) s += " lowerbound";
  else if (v <= alpha) s += " upperbound";
  return s;
}

std::string scoreToText(Value v) {
  char buf[32];
  if (v >= ValueMateInMaxPly) std::snprintf(buf, sizeof buf, "#%d", (ValueInfinite - v) / 2);
  else if (v <= -ValueMateInMaxPly) std::snprintf(buf, sizeof buf, "-#%d", (v + ValueMate) / 2);
  else std::snprintf(buf, sizeof buf, "%+.2f", double(float(v) / float(swordValue())));
  return buf;
}

std::string timeToText(int64_t ms) {
  int64_t h = ms / 3600000, m = (ms % 3600000) / 60000, s = (ms % 60000) / 1000;
  char buf[48];
  if (h) std::snprintf(buf, sizeof buf, "%lld:%02lld:%02lld", (long long)h, (long long)m, (long long)s);
  else std::snprintf(buf, sizeof buf, "%02lld:%02lld", (long long)m, (long long)s);
  return buf;
}

std::string prettyPv(Position& pos, int depth, Value v, int64_t ms, const Move* pv) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "%2d%8s%8s", depth, scoreToText(v).c_str(), timeToText(ms).c_str());
  std::string s = buf;
  // The node count: plain below a million, else in thousands or millions.
  const long long n = (long long)pos.nodes;
  if (n < 1000000) std::snprintf(buf, sizeof buf, "%8lld  ", n);
  else if (n < 1000000000) std::snprintf(buf, sizeof buf, "%7lldK  ", n / 1000);
  else std::snprintf(buf, sizeof buf, "%7lldM  ", n / 1000000);
  s += buf;

  const size_t headerWidth = s.size();
  size_t col = headerWidth;
  StateInfo states[256];
  int played = 0;
  for (const Move* m = pv; *m != MoveNone && played < 256; ++m) {
    std::string w = moveToSan(pos, *m);
    if (w.size() + col > 80) {
      s += '\n';
      s.append(headerWidth, ' ');
      col = headerWidth;
    }
    s += w + " ";
    col += w.size() + 1;
    pos.do_move(*m, states[played++]);
  }
  while (played > 0) pos.undo_move(pv[--played]);
  return s;
}

// The position's set-up from FEN text, its FEN and picture, and its from-scratch values.
#include "game/position.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdlib>
#include <iostream>

#include "core/messages.h"
#include "core/psqt.h"
#include "core/zobrist.h"
#include "game/generator_services.h"
#include "game/threat_text.h"

namespace {

constexpr Bitboard bit(Square s) { return Bitboard(1) << s; }

bool isBlank(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

// Letters of another game's FENs, read as piece codes by their place: P, B, R and Q give the
// codes 1, 3, 4 and 5, p and b the White Dorn forms 9 and 11; r and q give 12 and 13, no piece at all.
constexpr char ForeignLetters[] = " PNBRQK  pnbrqk";
constexpr Piece FirstCodeOfNoType = 12;

// The piece of a FEN letter, also of a foreign one; NoPiece for blanks and letters of neither table.
Piece pieceOfLetter(char c) {
  if (c == ' ') return NoPiece;
  for (Piece p = 0; fenLetters[p]; ++p)
    if (fenLetters[p] == c) return p;
  for (Piece p = 0; ForeignLetters[p]; ++p)
    if (ForeignLetters[p] == c) return p;
  return NoPiece;
}

// Reads the blank-separated words of a FEN after its board field.
class TokenReader {
 public:
  TokenReader(const std::string& text, size_t pos) : text_(text), pos_(pos) {}
  bool next(std::string& token) {
    while (pos_ < text_.size() && isBlank(text_[pos_])) ++pos_;
    if (pos_ >= text_.size()) return false;
    size_t start = pos_;
    while (pos_ < text_.size() && !isBlank(text_[pos_])) ++pos_;
    token.assign(text_, start, pos_ - start);
    return true;
  }
  // One character after any blanks; the side to move is given this way.
  bool nextChar(char& c) {
    while (pos_ < text_.size() && isBlank(text_[pos_])) ++pos_;
    if (pos_ >= text_.size()) return false;
    c = text_[pos_++];
    return true;
  }

 private:
  const std::string& text_;
  size_t pos_;
};

// Counters are read by plain conversion: a non-number counts as 0. Clamped so that the ply
// arithmetic cannot overflow.
long readCounter(TokenReader& in) {
  std::string token;
  if (!in.next(token)) return 0;
  long v = std::strtol(token.c_str(), nullptr, 10);
  return std::clamp(v, -1000000000L, 1000000000L);
}

// An entry of the option list: name, "{", squares, "}".
void writeEntry(std::string& out, const char* name, Bitboard squares) {
  out += name;
  out += " { ";
  for (Bitboard b = squares; b; b &= b - 1) out += squareToStringUpper(std::countr_zero(b)) + " ";
  out += " } ";
}

// Reads the squares of one option after its name. False, with the message printed, on an error;
// then nothing is stored. The end of the text closes a list like "}".
bool readSquareList(TokenReader& in, const std::string& name, Bitboard& target) {
  std::string token;
  if (!in.next(token) || token != "{") {
    std::cout << "Error: fen missing '{' after " << name << "\n";
    return false;
  }
  Bitboard squares = 0;
  while (in.next(token) && token != "}") {
    Square s = parseSquare(token);
    if (s == NoSquare) {
      std::cout << "Error: illegal square '" << token << "' in fen option list for " << name << "\n";
      return false;
    }
    squares |= bit(s);
  }
  target = squares;
  return true;
}

// Goal lists keep their count and first square with them.
bool readGoalList(TokenReader& in, const std::string& name, Color c) {
  Bitboard squares = goalSquares[c];
  if (!readSquareList(in, name, squares)) return false;
  setGoalSquares(c, squares);
  return true;
}

std::string squareOrDash(Square s) { return squareToStringUpper(s); }

// The captive squares, alive flags and option list behind the counters. Errors here are printed
// and end the reading; the position keeps what was read.
void readSiegeTail(Position& pos, TokenReader& in) {
  pos.setSiegeDefaults();
  std::string token;

  auto readCaptive = [&](Square& square, Square& last) {
    if (!in.next(token) || token == "startpos") return false;
    square = last = parseSquare(token);
    return true;
  };
  auto readAlive = [&](bool& alive) {
    if (!in.next(token)) return false;
    alive = token == "1";
    return true;
  };

  bool more = siege1 ? readCaptive(pos.siege1CaptiveSquare, pos.siege1LastCaptiveSquare)
                     : readCaptive(pos.siege2CaptiveSquare[WHITE], pos.siege2LastCaptiveSquare[WHITE]) &&
                           readAlive(pos.siege2CaptiveAlive[WHITE]) &&
                           readCaptive(pos.siege2CaptiveSquare[BLACK], pos.siege2LastCaptiveSquare[BLACK]) &&
                           readAlive(pos.siege2CaptiveAlive[BLACK]);

  // The last-named option of each mode ends the list.
  while (more && in.next(token)) {
    bool ok;
    bool last = false;
    if (siege1 && token == "Tower") ok = readSquareList(in, token, siege1TowerSquares);
    else if (siege1 && token == "Breached") ok = readSquareList(in, token, pos.siege1Breached);
    else if (siege1 && token == "WinSquaresWhite") ok = readGoalList(in, token, WHITE);
    else if (siege1 && token == "WinSquaresBlack") ok = readGoalList(in, token, BLACK), last = true;
    else if (siege2 && token == "TowerWhite") ok = readSquareList(in, token, siege2TowerSquares[WHITE]);
    else if (siege2 && token == "TowerBlack") ok = readSquareList(in, token, siege2TowerSquares[BLACK]);
    else if (siege2 && token == "BreachedWhite") ok = readSquareList(in, token, pos.siege2Breached[WHITE]);
    else if (siege2 && token == "BreachedBlack") ok = readSquareList(in, token, pos.siege2Breached[BLACK]);
    else if (siege2 && token == "DropoffSquaresWhite") ok = readGoalList(in, token, WHITE);
    else if (siege2 && token == "DropoffSquaresBlack") ok = readGoalList(in, token, BLACK), last = true;
    else {
      std::cout << "Unknown fen option '" << token << "'\n";
      ok = false;
    }
    more = ok && !last;
  }

  pos.siege1Tower = siege1 ? siege1TowerSquares & ~pos.siege1Breached : 0;
  for (Color c : {WHITE, BLACK}) {
    pos.siege2Tower[c] = siege2 ? siege2TowerSquares[c] & ~pos.siege2Breached[c] : 0;
    pos.siege2CaptiveReleased[c] = false;
  }
}

}  // namespace

// ---------------------------------------------------------------- copies

Position& Position::operator=(const Position& o) {
  if (this == &o) return *this;
  std::copy(std::begin(o.searchLine), std::end(o.searchLine), searchLine);
  searchLineCount = o.searchLineCount;
  _initialFen = o._initialFen;
  std::copy(std::begin(o.board), std::end(o.board), board);
  std::copy(std::begin(o.byType), std::end(o.byType), byType);
  std::copy(std::begin(o.byColor), std::end(o.byColor), byColor);
  std::copy(&o.pieceCount[0][0], &o.pieceCount[0][0] + 2 * TypeSlots, &pieceCount[0][0]);
  std::copy(&o.pieceList[0][0][0], &o.pieceList[0][0][0] + 2 * TypeSlots * PieceListSlots, &pieceList[0][0][0]);
  std::copy(std::begin(o.index), std::end(o.index), index);
  startState = o.startState;
  nodes = o.nodes;
  gamePly = o.gamePly;
  sideToMove = o.sideToMove;
  thisThread = o.thisThread;
  st = o.st == &o.startState ? &startState : o.st;
  siege1CaptiveSquare = o.siege1CaptiveSquare;
  siege1LastCaptiveSquare = o.siege1LastCaptiveSquare;
  siege1Tower = o.siege1Tower;
  siege1Breached = o.siege1Breached;
  for (int c = 0; c < 2; ++c) {
    siege2CaptiveSquare[c] = o.siege2CaptiveSquare[c];
    siege2LastCaptiveSquare[c] = o.siege2LastCaptiveSquare[c];
    siege2Tower[c] = o.siege2Tower[c];
    siege2Breached[c] = o.siege2Breached[c];
    siege2CaptiveAlive[c] = o.siege2CaptiveAlive[c];
    siege2CaptiveReleased[c] = o.siege2CaptiveReleased[c];
  }
  return *this;
}

// A field added to Position must be copied above; this trips when its own fields change
// (StateInfo is copied whole and may grow freely).
static_assert(sizeof(Position) - sizeof(StateInfo) == 3040, "Position changed: update Position::operator=");

Position::Position(const Position& other, EvalTables* owner) {
  *this = other;
  startState = *other.st;  // `previous` is kept, so the chain behind stays reachable
  st = &startState;
  nodes = 0;
  thisThread = owner;
}

// ---------------------------------------------------------------- clean start and board editing

void Position::clear() {
  std::fill(std::begin(searchLine), std::end(searchLine), MoveNone);
  searchLineCount = 0;
  _initialFen.clear();
  std::fill(std::begin(board), std::end(board), NoPiece);
  std::fill(std::begin(byType), std::end(byType), 0);
  std::fill(std::begin(byColor), std::end(byColor), 0);
  std::fill(&pieceCount[0][0], &pieceCount[0][0] + 2 * TypeSlots, 0);
  std::fill(&pieceList[0][0][0], &pieceList[0][0][0] + 2 * TypeSlots * PieceListSlots, uint8_t(NoSquare));
  std::fill(std::begin(index), std::end(index), 0);
  startState = StateInfo{};
  nodes = 0;
  gamePly = 0;
  sideToMove = WHITE;
  thisThread = nullptr;
  st = &startState;
  siege1CaptiveSquare = siege1LastCaptiveSquare = 0;
  siege1Tower = siege1Breached = 0;
  for (int c = 0; c < 2; ++c) {
    siege2CaptiveSquare[c] = siege2LastCaptiveSquare[c] = 0;
    siege2Tower[c] = siege2Breached[c] = 0;
    siege2CaptiveAlive[c] = siege2CaptiveReleased[c] = false;
  }
}

void Position::setSiegeDefaults() {
  applySiegeGeometryDefaults();
  if (siege1) {
    siege1CaptiveSquare = siege1LastCaptiveSquare = NoSquare;
    siege1Breached = 0;
    siege1Tower = siege1TowerSquares;
  } else if (siege2) {
    for (Color c : {WHITE, BLACK}) {
      siege2CaptiveSquare[c] = siege2LastCaptiveSquare[c] = NoSquare;
      siege2Breached[c] = 0;
      siege2Tower[c] = siege2TowerSquares[c];
      siege2CaptiveAlive[c] = true;
      siege2CaptiveReleased[c] = false;
    }
  }
}

void Position::putPiece(Piece p, Square s) {
  Color c = colorOf(p);
  PieceType t = typeOf(p);
  board[s] = p;
  byType[ALL] |= bit(s);
  byType[t] |= bit(s);
  byColor[c] |= bit(s);
  index[s] = pieceCount[c][t]++;
  pieceList[c][t][index[s]] = s;
}

void Position::removePiece(Square s) {
  Piece p = board[s];
  Color c = colorOf(p);
  PieceType t = typeOf(p);
  byType[ALL] ^= bit(s);
  byType[t] ^= bit(s);
  byColor[c] ^= bit(s);
  board[s] = NoPiece;
  // The last entry of the list fills the gap.
  Square last = pieceList[c][t][--pieceCount[c][t]];
  index[last] = index[s];
  pieceList[c][t][index[last]] = last;
  pieceList[c][t][pieceCount[c][t]] = NoSquare;
}

void Position::movePiece(Square from, Square to) {
  Piece p = board[from];
  Color c = colorOf(p);
  PieceType t = typeOf(p);
  Bitboard fromTo = bit(from) | bit(to);
  byType[ALL] ^= fromTo;
  byType[t] ^= fromTo;
  byColor[c] ^= fromTo;
  board[to] = p;
  board[from] = NoPiece;
  index[to] = index[from];
  pieceList[c][t][index[to]] = to;
}

// ---------------------------------------------------------------- FEN reader

bool Position::set(const std::string& fenText, EvalTables* thread) {
  clear();

  // Board: the running square starts on a8; a rank may stop short at "/".
  size_t i = 0;
  while (i < fenText.size() && isBlank(fenText[i])) ++i;
  Square sq = A8;
  int rank = 8, onRank = 0;
  for (; i < fenText.size() && !isBlank(fenText[i]); ++i) {
    char c = fenText[i];
    if (c == '/') {
      if (--rank < 1) {
        std::cout << "Too many ranks on board, maximum 8 rows on board\n";
        return false;
      }
      sq += (8 - onRank) - 16;
      onRank = 0;
      continue;
    }
    bool digit = c >= '0' && c <= '9';
    Piece p = digit ? NoPiece : pieceOfLetter(c);
    if (!digit && p == NoPiece) continue;  // a letter of neither table is passed over
    if (!digit && p >= FirstCodeOfNoType && p < 16) {
      std::cout << "? illegal board configuration, letter '" << c << "' names no piece\n";
      return false;
    }
    if (sq > H8) {
      std::cout << "? illegal board configuration, encountered '" << c << "' at rank=" << rank << "\n";
      return false;
    }
    int width = digit ? c - '0' : 1;
    if (onRank + width > 8) {
      std::cout << "Too many squares specified on rank " << rank << ", max is 8 squares per row\n";
      return false;
    }
    if (!digit) putPiece(p, sq);
    sq += width;
    onRank += width;
  }

  TokenReader in(fenText, i);
  char side = 0;
  in.nextChar(side);
  sideToMove = side == 'w' ? WHITE : BLACK;

  for (Color c : {WHITE, BLACK})
    if (noDorn(c) && !(bondsmenLeaders && pieceCount[c][Bondsman])) {
      std::cout << (c == WHITE ? "No white dorn on board\n" : "No black dorn on board\n");
      return false;
    }
  for (Color c : {WHITE, BLACK})
    if (pieceCount[c][Dorn] + pieceCount[c][Dorn_archer] + pieceCount[c][Dorn_sword] > 1) {
      std::cout << (c == WHITE ? "Two or more white dorns on board\n" : "Two or more black dorns on board\n");
      return false;
    }

  st->pliesSinceCapture = int(readCounter(in));
  long fullMove = readCounter(in);
  gamePly = int(std::max(2 * (fullMove - 1), 0L)) + (sideToMove == BLACK);

  if (siegeGame()) readSiegeTail(*this, in);

  computeStateFromScratch();
  computeCheckers();
  thisThread = thread;

  std::string before = lastPositionError;
  lastPositionError.clear();
  bool fit = isConsistent();
  if (!fit) std::cout << (lastPositionError.empty() ? "?bad fen board setup" : lastPositionError) << "\n";
  if (fit || lastPositionError.empty()) lastPositionError = before;
  return fit;
}

// ---------------------------------------------------------------- FEN writer

std::string Position::fen() const {
  std::string out;
  for (int r = 7; r >= 0; --r) {
    int empties = 0;
    for (int f = 0; f < 8; ++f) {
      Square s = makeSquare(f, r);
      if (board[s] == NoPiece || onStandingTower(s)) {
        ++empties;
        continue;
      }
      if (empties) out += char('0' + empties);
      empties = 0;
      out += fenLetters[board[s]];
    }
    if (empties) out += char('0' + empties);
    if (r > 0) out += '/';
  }
  out += sideToMove == WHITE ? " w " : " b ";
  int p = gamePly - (sideToMove == BLACK);
  out += std::to_string(st->pliesSinceCapture) + " " + std::to_string(p / 2 + 1);

  // A captive inside a standing tower is unknown to the reader: it is written as "-".
  auto writeCaptive = [&](Square s, bool hidden) {
    out += ' ';
    out += hidden ? std::string("-") : squareToStringUpper(s);
    out += ' ';
  };
  if (siege1) {
    bool hidden = siege1CaptiveSquare == NoSquare || ((siege1Tower >> siege1CaptiveSquare) & 1);
    bool defaultTower = siege1Tower == siege1InitialTower;
    if (!(hidden && defaultTower)) {
      writeCaptive(siege1CaptiveSquare, hidden);
      if (!defaultTower) {
        writeEntry(out, "Tower", siege1Tower | siege1Breached);
        writeEntry(out, "Breached", siege1Breached);
        writeEntry(out, "WinSquaresWhite", goalSquares[WHITE]);
        writeEntry(out, "WinSquaresBlack", goalSquares[BLACK]);
      }
    }
  } else if (siege2) {
    for (Color c : {WHITE, BLACK}) {
      Square s = siege2CaptiveSquare[c];
      writeCaptive(s, s == NoSquare || onStandingTower(s));
      out += siege2CaptiveAlive[c] ? " 1 " : " 0 ";
    }
    writeEntry(out, "TowerWhite", siege2Tower[WHITE] | siege2Breached[WHITE]);
    writeEntry(out, "BreachedWhite", siege2Breached[WHITE]);
    writeEntry(out, "TowerBlack", siege2Tower[BLACK] | siege2Breached[BLACK]);
    writeEntry(out, "BreachedBlack", siege2Breached[BLACK]);
    writeEntry(out, "DropoffSquaresWhite", goalSquares[WHITE]);
    writeEntry(out, "DropoffSquaresBlack", goalSquares[BLACK]);
  }
  return out;
}

// ---------------------------------------------------------------- picture

std::string Position::pretty(Move move, bool withLegalMoves, bool boardOnly) const {
  static const char* const Border = "\n +---+---+---+---+---+---+---+---+";
  static const char* const EmptyRank = "|   | . |   | . |   | . |   | . |";

  // Towers are drawn as pieces of their own codes on a private copy of the board.
  int codes[64];
  std::copy(std::begin(board), std::end(board), codes);
  auto markTower = [&](Bitboard squares, int code, const char* mode) {
    for (Bitboard b = squares; b; b &= b - 1) {
      Square s = std::countr_zero(b);
      if (board[s] != NoPiece)
        std::cout << "?Piece on " << mode << " tower square =" << squareToStringUpper(s) << ",piece=" << board[s]
                  << "\n";
      codes[s] = code;
    }
  };
  if (siege1) markTower(siege1Tower, 12, "siege1");
  if (siege2) {
    markTower(siege2Tower[WHITE], 12, "siege2");
    markTower(siege2Tower[BLACK], 13, "siege2");
  }

  std::string out;
  if (move != MoveNone) {
    out += "\nMove: ";
    if (sideToMove == BLACK) out += "..";
    out += moveToWire(move);  // already played: its piece has left `from`, so only the squares are named
  }

  for (int r = 7; r >= 0; --r) {
    out += Border;
    out += '\n';
    std::string row = std::string(1, char('1' + r)) + EmptyRank;
    for (int f = 0; f < 8; ++f) {
      Square s = makeSquare(f, r);
      size_t cell = 2 + 4 * f;  // first of the three characters between the bars
      if (int code = codes[s]) {
        row[cell] = secondMarks[code];
        row[cell + 1] = boardLetters[code];
        row[cell + 2] = firstMarks[code];
      }
      if (siege1 && s == siege1CaptiveSquare) row[cell] = '@';
      if (siege2 && s == siege2CaptiveSquare[WHITE]) row[cell] = '@';
      if (siege2 && s == siege2CaptiveSquare[BLACK]) row[cell] = '&';
    }
    out += row;
  }
  out += Border;
  out += "\n---a---b---c---d---e---f---g---h--";

  out += "\n";
  out += colorNames[sideToMove];
  out += " to move";
  if (siege1) {
    int state = siege1CaptiveSquare == NoSquare && siege1Tower == siege1TowerSquares ? 0
                : siege1CaptiveSquare != NoSquare && !((siege1Tower >> siege1CaptiveSquare) & 1) ? 2
                                                                                               : 1;
    out += ", captive square: " + squareOrDash(siege1CaptiveSquare);
    out += ", last square: " + squareOrDash(siege1LastCaptiveSquare);
    out += ", state=" + std::to_string(state);
  } else if (siege2) {
    out += ", captive square (white): " + squareOrDash(siege2CaptiveSquare[WHITE]);
    out += ", last square (white): " + squareOrDash(siege2LastCaptiveSquare[WHITE]);
    out += ", captive alive (white): " + std::to_string(int(siege2CaptiveAlive[WHITE]));
    out += ", captive square (black): " + squareOrDash(siege2CaptiveSquare[BLACK]);
    out += ", last square (black): " + squareOrDash(siege2LastCaptiveSquare[BLACK]);
    out += ", captive alive (black): " + std::to_string(int(siege2CaptiveAlive[BLACK]));
  }
  if (boardOnly) return out;

  if (inCheck()) out += ", " + threatensText(st->checkers, leaderSquare(sideToMove));
  out += "\n";
  if (msgFlags & MsgGameText) out += "Fen: " + fen() + "\n";
  if (withLegalMoves && (inCheck() || (msgFlags & MsgMoveList)))
    out += "Legal moves: " + generatorServices.legalMovesText(*this);
  return out;
}

// ---------------------------------------------------------------- from-scratch values

void Position::computeCheckers() {
  Square k = leaderSquare(sideToMove);
  st->checkers = severalLeaders(sideToMove) || k == NoSquare
                     ? 0
                     : checkableBy(sideToMove) & attackersTo(k, pieces(), pieces(~sideToMove), ~sideToMove);
}

Key Position::computeKey() const {
  Key k = sideToMove == BLACK ? Zobrist::sideKey : 0;
  for (Bitboard b = pieces(); b; b &= b - 1) {
    Square s = std::countr_zero(b);
    k ^= Zobrist::pieceKeys[colorOf(board[s])][typeOf(board[s])][s];
  }
  return k;
}

Key Position::computeMaterialKey() const {
  Key k = 0;
  for (Color c : {WHITE, BLACK})
    for (int t = Sword; t < PieceTypeNb; ++t)
      for (int n = 0; n < pieceCount[c][t]; ++n) k ^= Zobrist::pieceKeys[c][t][n];
  return k;
}

// Summed by halves, since a packed sum of many terms could carry between them.
Score Position::computePsqScore() const {
  int mg = 0, eg = 0;
  for (Bitboard b = pieces(); b; b &= b - 1) {
    Square s = std::countr_zero(b);
    Score sc = psq[board[s]][s];
    mg += mgValue(sc);
    eg += egValue(sc);
  }
  return makeScore(mg, eg);
}

Value Position::computeNpMaterial(Color c) const {
  Value v = 0;
  for (int t = Sword; t < PieceTypeNb; ++t)
    if (!isMinor(t)) v += pieceCount[c][t] * pieceValueMg[makePiece(c, PieceType(t))];
  return v;
}

void Position::computeStateFromScratch() {
  st->key = computeKey();
  st->materialKey = computeMaterialKey();
  st->psqScore = computePsqScore();
  st->siegeScore = computeSiegeScore();
  st->npMaterial[WHITE] = computeNpMaterial(WHITE);
  st->npMaterial[BLACK] = computeNpMaterial(BLACK);
}

// ---------------------------------------------------------------- leaders

PieceType Position::dornType(Color c) const {
  if (pieceCount[c][Dorn]) return Dorn;
  if (pieceCount[c][Dorn_archer]) return Dorn_archer;
  if (pieceCount[c][Dorn_sword]) return Dorn_sword;
  if (bondsmenLeaders && pieceCount[c][Bondsman]) return Bondsman;
  // A colour without a leader: a correct game never gets here.
  dumpPieceLists();
  std::cout << pretty(MoveNone, false, false) << std::endl;
  return Dorn;
}

// Shared vocabulary: colours, squares, piece types, pieces, move words, values and scores.
#pragma once

#include <cstdint>
#include <string>

using Bitboard = uint64_t;
using Key = uint64_t;

// ---------------------------------------------------------------- colours
enum Color : int { WHITE = 0, BLACK = 1 };
constexpr Color operator~(Color c) { return Color(c ^ 1); }
extern const char* const colorNames[2];  // "WHITE", "BLACK"

// ---------------------------------------------------------------- squares
// square = rank * 8 + file; a1 = 0, h8 = 63.
using Square = int;
constexpr Square NoSquare = 64;
constexpr int fileOf(Square s) { return s & 7; }
constexpr int rankOf(Square s) { return s >> 3; }
constexpr Square makeSquare(int file, int rank) { return rank * 8 + file; }
constexpr Square flipRank(Square s) { return s ^ 56; }

enum : Square {
  A1, B1, C1, D1, E1, F1, G1, H1, A2, B2, C2, D2, E2, F2, G2, H2,
  A3, B3, C3, D3, E3, F3, G3, H3, A4, B4, C4, D4, E4, F4, G4, H4,
  A5, B5, C5, D5, E5, F5, G5, H5, A6, B6, C6, D6, E6, F6, G6, H6,
  A7, B7, C7, D7, E7, F7, G7, H7, A8, B8, C8, D8, E8, F8, G8, H8
};

std::string squareToString(Square s);         // "e2"; "-" for NoSquare
std::string squareToStringUpper(Square s);    // "E2"; "-" for NoSquare, "??" out of range
Square parseSquare(const std::string& text);  // first two characters, any case; else NoSquare

// ---------------------------------------------------------------- piece types and pieces
enum PieceType : int {
  ALL = 0, NoPieceType = 0,
  Sword = 1, Magician1 = 2, Assassin = 3, Archer = 4, Magician = 5, Warrior = 6,
  Magician2 = 7, Bondsman = 8, Dorn = 9, Dorn_archer = 10, Dorn_sword = 11,
  PieceTypeNb = 12, TypeSlots = 16
};

// Piece = colour * 16 + type; 0 is an empty square.
using Piece = int;
constexpr Piece NoPiece = 0;
constexpr int PieceSlots = 32;
constexpr Piece makePiece(Color c, PieceType t) { return c * 16 + t; }
constexpr Color colorOf(Piece p) { return Color(p >> 4); }
constexpr PieceType typeOf(Piece p) { return PieceType(p & 15); }

constexpr bool isMount(int t) { return t == Warrior || t == Bondsman || t == Dorn; }
constexpr bool isDornForm(int t) { return t == Dorn || t == Dorn_archer || t == Dorn_sword; }
constexpr bool isMagicianForm(int t) { return t == Magician1 || t == Magician || t == Magician2; }
constexpr bool isMinor(int t) { return t == Sword || t == Magician1; }

extern const char fenLetters[];      // indexed by Piece
extern const char boardLetters[];    // pretty board, middle character; 12/13 are towers
extern const char firstMarks[];      // pretty board, third character
extern const char secondMarks[];     // pretty board, first character
extern const char* const pieceTypeNames[TypeSlots];

// ---------------------------------------------------------------- moves
// Bits 0-5 to, 6-11 from, 12-13 captive kind, 14-15 special kind.
using Move = uint16_t;
constexpr Move MoveNone = 0;
constexpr Move MoveNull = 65;

constexpr int CaptiveMask = 0x3000;
constexpr int Dropoff = 0x1000, Pickup = 0x2000, Transfer = 0x3000;
constexpr int SpecialMask = 0xC000;
constexpr int Promotion = 0x4000, Demotion = 0x8000, Exchange = 0xC000;

constexpr Square moveTo(Move m) { return m & 0x3F; }
constexpr Square moveFrom(Move m) { return (m >> 6) & 0x3F; }
constexpr Move makeMove(Square from, Square to, int flags = 0) { return Move(flags | (from << 6) | to); }
constexpr int captiveKind(Move m) { return m & CaptiveMask; }
constexpr int specialKind(Move m) { return m & SpecialMask; }
constexpr bool isPromotion(Move m) { return specialKind(m) == Promotion; }
constexpr bool isDemotion(Move m) { return specialKind(m) == Demotion; }
constexpr bool isExchange(Move m) { return specialKind(m) == Exchange; }
constexpr bool isDropoff(Move m) { return captiveKind(m) == Dropoff; }
constexpr bool isPickup(Move m) { return captiveKind(m) == Pickup; }
constexpr bool isTransfer(Move m) { return captiveKind(m) == Transfer; }
// The wire form that needs no position: the two squares, "(none)" for MoveNone, "0000" for the null move.
std::string moveToWire(Move m);

// ---------------------------------------------------------------- values and scores
using Value = int32_t;
constexpr Value ValueZero = 0;
constexpr Value ValueKnownWin = 15000;
constexpr Value ValueMateInMaxPly = 29900;
constexpr Value ValueMate = 30000;
constexpr Value ValueInfinite = 30001;
constexpr Value ValueNone = 30002;

// A Score packs a middle-game and an end-game value: mg * 65536 + eg.
using Score = int32_t;
constexpr Score makeScore(int mg, int eg) { return Score(uint32_t(mg) << 16) + eg; }
constexpr Value egValue(Score s) { return int16_t(uint16_t(uint32_t(s))); }
// Adding 0x8000 undoes the borrow a negative eg part leaves in the high half.
constexpr Value mgValue(Score s) { return int16_t(uint16_t((uint32_t(s) + 0x8000u) >> 16)); }

// ---------------------------------------------------------------- depth
using Depth = int;
constexpr Depth OnePly = 2;

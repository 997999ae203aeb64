// Moves as text and text as moves: the wire, game text and console forms, and SAN; score and time text.
#pragma once

#include <cstdint>
#include <string>

#include "core/types.h"

class Position;

// Wire form with no position: from and to squares; with a position the promotion or demotion
// letter follows, and with `withCaptureSign` an "x" marks a capture.
std::string moveToUci(Move m, const Position* pos = nullptr, bool withCaptureSign = false);
// The word's two squares as a move of this position, with no legality test; MoveNone when the
// squares are bad. A word shorter than four characters is reported.
Move moveFromSquares(const Position& pos, std::string& word);
// The first legal move whose wire form equals the word.
Move moveFromLegalList(const Position& pos, std::string& word);
// The move word that two squares make in this position.
Move classifyMove(const Position& pos, Square from, Square to);
// The game's own algebraic notation, with check and goal marks found by playing the move.
std::string moveToSan(const Position& pos, Move m);

// "mate n" or "cs n" with a bound text; `shown` receives the number.
std::string scoreToUci(Value v, Value alpha, Value beta, int* shown = nullptr);
std::string scoreToText(Value v);
std::string timeToText(int64_t ms);
// The search log's line: depth, score, time, nodes and the line in SAN, wrapped at 80 columns.
std::string prettyPv(Position& root, int depth, Value v, int64_t ms, const Move* pv);

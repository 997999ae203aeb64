// What a host that does not know the rules asks of the engine: is a move legal, what follows it, how is it written.
#pragma once

#include <istream>
#include <string>

class Position;

// Everything a host needs after a proposed move, as one report line.
struct LegalityReport {
  bool legal = false;
  bool ended = false;  // no reply after the move, or a Siege 1 goal reached; never set for a draw
  std::string draw;    // the reason, when the position before the move is drawn
  std::string checkersBefore, checkersAfter;
  std::string movesBefore, movesAfter;  // legal moves in wire form, each followed by a blank
  std::string enemyMoves;               // the other side's legal moves, were it to move now
  int phase = 0;
  std::string san;
};

// Replays `positionText` ("startpos moves ..." or a FEN with its moves) onto pos and tries `moveWord`
// there. pos is left in no particular state.
LegalityReport checkProposedMove(Position& pos, std::string moveWord, const std::string& positionText);
// "R E ^draw ^checkers before ^checkers after ^moves before ^moves after ^enemy moves ^phase ^SAN ^".
std::string legalityLine(const LegalityReport& report);

// The moves behind a FEN in SAN, each followed by a blank; "<none>" when there are none, empty when
// the FEN is refused, and cut off by " ?Illegal move..." at a move that cannot be played. As
// `position`, it leaves pos at the last move played and lists the words in playedMoves.
std::string movesToSan(Position& pos, std::istream& words);

// checklegalitymatedraw <move> <position text>
void checkLegalityMateDrawCommand(Position& pos, std::istream& words);
// convertmovestosan <FEN> [moves <move> ...]
void convertMovesToSanCommand(Position& pos, std::istream& words);

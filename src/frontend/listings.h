// The listing commands: what each move generator gives in a position, one line per list.
#pragma once

class Position;

// "\n<title> moves: " and the moves; ".." marks Black to move.
void listQuietChecks(const Position& pos);  // qc
void listCaptures(const Position& pos);     // cap
void listQuiets(const Position& pos);       // qu
void listEvasions(const Position& pos);     // ev; not in check, "Side is not in check"
void listNonEvasions(const Position& pos);  // nev
void listLegal(const Position& pos);        // leg
// see: "see values:", then each legal move in its wire form and its exchange value, one a line.
void listSeeValues(Position& pos);

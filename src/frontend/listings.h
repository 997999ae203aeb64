// The listing commands: what each move generator gives in a position, one line per list.
#pragma once

class Position;

// "\n<title> moves: " and the moves; ".." marks Black to move.
void listCaptures(const Position& pos);     // cap
void listQuiets(const Position& pos);       // qu
void listNonEvasions(const Position& pos);  // nev
void listLegal(const Position& pos);        // leg

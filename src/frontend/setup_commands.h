// Console commands that set up a game: new, sp, rules and game.
#pragma once

#include <istream>

#include "core/plain_number.h"

class Position;

void newCommand(Position& pos, std::istream& is);
void setPositionCommand(Position& pos, std::istream& is);  // "sp"
void rulesCommand(Position& pos, std::istream& is);
void showSettings();
void showRules();

// Times, skill levels and message level.
void moveTimeCommand(std::istream& is);       // "mt"
void blackMoveTimeCommand(std::istream& is);  // "mtb"
void skillCommand(std::istream& is);          // "skill", "s"
void blackSkillCommand(std::istream& is);     // "skillb", "sb"
void msgLevelCommand(std::istream& is);       // "msglevel"
void helpCommand();                           // "?"

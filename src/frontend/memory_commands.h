// Console commands for the hash memory: `setmem`, and `cc`, which gives each side a table of its own.
#pragma once

#include <istream>

void setmemCommand(std::istream& is);
void computerOnComputerCommand(std::istream& is);  // "cc"
// Turns the computer-on-computer mode on or off, with or without its confirmation line.
void setComputerOnComputer(bool on, bool report);

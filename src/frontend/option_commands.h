// The commands that list and set options: `uci` and `setoption`.
#pragma once

#include <istream>

// "id name", the author line, the visible options and "uciok".
void uciCommand();
// "name <words> [value <words>]": names and values may hold blanks.
void setoptionCommand(std::istream& is);

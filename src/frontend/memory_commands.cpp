// Console commands for the hash memory: `setmem`, and `cc`, which gives each side a table of its own.
#include "frontend/memory_commands.h"

#include <iostream>
#include <sstream>
#include <string>

#include "core/options.h"
#include "core/plain_number.h"
#include "frontend/option_commands.h"
#include "frontend/settings.h"
#include "search/transposition_table.h"

namespace {

uint64_t hashMegabytes() { return uint64_t(Options["Hash"].intValue()); }

}  // namespace

// Goes through the option, so that its bounds hold and its handler resizes the table.
void setmemCommand(std::istream& is) {
  std::string word;
  is >> word;
  if (plainNumber(word) <= 0) {
    std::cout << "Memory size (MB) must be a positive number\n";
    return;
  }
  // Between searches either table may be current; the handler resizes the first one, and turning
  // the mode off and on again the second, so that both sides get the new size.
  if (computerOnComputer) makeCurrent(firstTable);
  std::istringstream assignment("name Hash value " + word);
  setoptionCommand(assignment);
  std::cout << "Current mem size: " << hashMegabytes() << "MB\n";
  if (computerOnComputer) {
    setComputerOnComputer(false, false);
    setComputerOnComputer(true, false);
  }
}

void computerOnComputerCommand(std::istream& is) {
  std::string word;
  is >> word;
  setComputerOnComputer(word != "off" && word != "0", true);
}

void setComputerOnComputer(bool on, bool report) {
  if (on) {
    computerOnComputer = 1;
    if (report) std::cout << "ok, computer on computer mode turned on, mem size: " << hashMegabytes() << "MB\n";
    if (!secondTableReady) {
      secondTable.setSize(hashMegabytes());
      secondTableReady = true;
    }
  } else {
    computerOnComputer = 0;
    if (report) std::cout << "ok, computer on computer mode turned off\n";
    if (secondTableReady) {
      // The released table must not stay the one searches use.
      if (currentTable == &secondTable) makeCurrent(firstTable);
      secondTable.setSize(0);
      secondTableReady = false;
    }
  }
}

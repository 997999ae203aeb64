// Entry point: identification, start-up of every table, then the command loop.
#include <iostream>
#include <string>

#include "core/options.h"
#include "frontend/command_loop.h"
#include "frontend/go_command.h"
#include "frontend/option_handlers.h"
#include "search/engine_start.h"
#include "search/thread.h"
#include "search/transposition_table.h"

int main(int argc, char* argv[]) {
  // The identification comes before anything is built.
  std::cout << engineInfo(false) << std::endl;

  initEngineTables();
  attachOptionHandlers();
  // The pool's threads evaluate with tables of their own, so it starts once every table is built.
  threadPoolInit();
  installSearchReporter();

  currentTable->setSize(uint64_t(Options["Hash"].intValue()));

  // All arguments form one command line, each word followed by a blank.
  std::string args;
  for (int i = 1; i < argc; ++i) args += std::string(argv[i]) + " ";
  commandLoop(args);
  threadPoolExit();
  return 0;
}

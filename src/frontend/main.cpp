// Entry point: identification, start-up of every table, then the command loop.
#include <iostream>
#include <string>

#include "core/bitboard.h"
#include "core/zobrist.h"
#include "eval/evaluate.h"
#include "frontend/command_loop.h"

int main(int argc, char* argv[]) {
  // The identification comes before anything is built.
  std::cout << engineInfo(false) << std::endl;

  initBitboards();
  initPsqAndKeys();
  evaluate_init();

  // All arguments form one command line, each word followed by a blank.
  std::string args;
  for (int i = 1; i < argc; ++i) args += std::string(argv[i]) + " ";
  commandLoop(args);
  return 0;
}

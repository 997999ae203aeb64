// The commands that list and set options: `uci` and `setoption`.
#include "frontend/option_commands.h"

#include <iostream>
#include <mutex>
#include <string>

#include "core/options.h"
#include "frontend/command_loop.h"
#include "frontend/settings.h"

void uciCommand() {
  std::lock_guard<std::mutex> lock(syncOutLock);
  std::cout << "id name " << engineInfo(true) << "\n" << Options << "\nuciok\n";
}

namespace {

// The words up to `stop` or the end of the line, joined by single blanks.
std::string joinWords(std::istream& is, const char* stop) {
  std::string text, word;
  while (is >> word && word != stop) text += (text.empty() ? "" : " ") + word;
  return text;
}

}  // namespace

void setoptionCommand(std::istream& is) {
  std::string word;
  is >> word;  // "name"
  const std::string name = joinWords(is, "value");
  const std::string value = joinWords(is, "");

  if (Option* option = Options.find(name)) {
    *option = value;
  } else {
    std::lock_guard<std::mutex> lock(syncOutLock);
    std::cout << "No such option: " << name << "\n";
  }
}

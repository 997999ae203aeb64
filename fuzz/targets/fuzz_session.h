// One input's run: the rules and game type its first two bytes choose, a clean process state, and the
// program's output caught so that a harness can read it instead of a console.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <streambuf>
#include <string>
#include <string_view>

// Keeps the first few kilobytes written to it and drops the rest, so that a chatty input costs no
// memory and no terminal time.
class OutputKeeper : public std::streambuf {
 public:
  static constexpr size_t Capacity = 8192;
  const std::string& text() const { return kept_; }
  void clear() { kept_.clear(); }

 protected:
  int_type overflow(int_type c) override {
    if (c != traits_type::eof() && kept_.size() < Capacity) kept_ += traits_type::to_char_type(c);
    return traits_type::not_eof(c);
  }
  std::streamsize xsputn(const char* s, std::streamsize n) override {
    size_t room = Capacity - kept_.size();
    kept_.append(s, std::min(room, size_t(n)));
    return n;
  }

 private:
  std::string kept_;
};

// The leading bytes of every input. Byte 0: the game type (value mod 5) and the demotion reach of the
// Magician (value / 5 mod 3) and of the Magician2 (value / 15 mod 3). Byte 1: each bit turns one rule
// flag away from its default, in the order bondsmenLeaders, basePromotions, capturePromotions,
// exchanges, swordsCaptureMounts, magicianDemotesDorn, siegeExchanges. So "\0\0" is the basic game
// under the default rules and "\4\0" the second siege game.
constexpr size_t HeaderBytes = 2;

class FuzzSession {
 public:
  // Builds the tables on first use (and, in a fuzzer, the search threads), puts the process state
  // back to its start, applies the header, starts catching standard output and the error stream,
  // and works in a folder of its own, where commands write their files.
  FuzzSession(const uint8_t* data, size_t size);
  // Stops catching and leaves the rules, the game type and the front end's state at their defaults.
  ~FuzzSession();
  FuzzSession(const FuzzSession&) = delete;
  FuzzSession& operator=(const FuzzSession&) = delete;

  // False for an input too short to hold the header: there is nothing to run.
  bool ready() const { return ready_; }
  int gameType() const { return gameType_; }
  // The input behind the header.
  std::string_view text() const { return text_; }
  // What the program printed since the last clearOutput().
  const std::string& output() const { return keeper_.text(); }
  void clearOutput() { keeper_.clear(); }

 private:
  bool ready_ = false;
  int gameType_ = 0;
  std::string_view text_;
  OutputKeeper keeper_;
  std::streambuf* oldOut_;
  std::streambuf* oldErr_;
  char oldFolder_[4096] = "";  // the working folder to go back to
};

// The first report of an internal inconsistency in the output (the dumps and complaints of make,
// unmake, legality and the board picture), or empty. Refusals of bad input are no such report.
std::string internalReport(const std::string& output);

// A fault of the game text's form ("fen <FEN> startpos moves ..."), or empty.
std::string gameTextFault();

// The folder of this process in which inputs run and commands write their files.
const char* fuzzWorkFolder();

// The harnesses: each runs one input through a reader of outside text and returns what went wrong,
// or an empty text. The fuzzers abort on a fault; the test suite replays the corpus and every saved
// finding through the same functions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// Input: two header bytes (rules and game type, see fuzz_session.h), then a FEN.
std::string fuzzFenReader(const uint8_t* data, size_t size);
// Input: the header, then the words of a `position` command: "startpos ..." or "fen ... moves ...".
std::string fuzzPositionText(const uint8_t* data, size_t size);
// Input: the header, then command lines for the loop.
std::string fuzzCommandLines(const uint8_t* data, size_t size);
// Input: the header, then the text of a game file given to `open`.
std::string fuzzGameFile(const uint8_t* data, size_t size);

struct FuzzTarget {
  const char* name;  // also the folder of its corpus and of its saved findings under fuzz/
  std::string (*run)(const uint8_t* data, size_t size);
};

// A new harness is one more file in fuzz/targets/ named <name>_target.cpp, a row here and a corpus
// folder of the same name.
inline constexpr FuzzTarget FuzzTargets[] = {
    {"fen_reader", fuzzFenReader},
    {"position_text", fuzzPositionText},
    {"command_line", fuzzCommandLines},
    {"game_file", fuzzGameFile},
};

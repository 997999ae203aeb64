// The I/O log: everything read from standard input and written to standard output, copied to
// "io_log.txt" as a dialogue, each line opened by ">> " (read) or "<< " (written).
#pragma once

#include <fstream>
#include <mutex>
#include <streambuf>

struct IoLogger;

// A stream buffer in front of another: reading and writing go through the wrapped buffer, and each
// character that passes is copied to the logger's file.
struct Tie : std::streambuf {
  Tie(IoLogger* logger, const char* prefix) : logger(logger), prefix(prefix) {}

  int overflow(int c) override;
  int underflow() override;
  int uflow() override;
  int sync() override;

  std::streambuf* wrapped = nullptr;  // the stream's own buffer, while the log is on
  IoLogger* logger;
  const char* prefix;  // ">> " or "<< "
};

// The one logger of the process: the file and the two buffers that copy into it.
struct IoLogger {
  IoLogger();
  ~IoLogger();  // the end of the process turns the log off

  void start(bool on);
  // Copies one character that passed a Tie, opening a new line with its prefix.
  int log(int c, const char* prefix);

  std::ofstream file;
  Tie in, out;
  // Shared by both directions, so that the file reads as one dialogue; at the start a line is open.
  int lastChar = '\n';
  // The search thread writes beside the command loop; this keeps the file's buffer whole.
  std::mutex fileLock;
};

// Turns the I/O log on (appending to "io_log.txt") or off; each only when it is not so already.
// A file that cannot be opened leaves standard input and output as they were.
void logStart(bool on);

// The I/O log: the Tie buffers in front of standard input and output, and turning them on and off.
#include "frontend/io_log.h"

#include <iostream>

namespace {

constexpr int Eof = std::char_traits<char>::eof();

// Made on first use, so that it never exists in a run that does not log, and lives to the end.
IoLogger& ioLogger() {
  static IoLogger logger;
  return logger;
}

}  // namespace

int Tie::overflow(int c) {
  if (c == Eof) return wrapped->pubsync() == 0 ? std::char_traits<char>::not_eof(c) : Eof;
  return logger->log(wrapped->sputc(char(c)), prefix);
}

int Tie::underflow() { return wrapped->sgetc(); }

int Tie::uflow() { return logger->log(wrapped->sbumpc(), prefix); }

int Tie::sync() {
  {
    std::lock_guard<std::mutex> lock(logger->fileLock);
    logger->file.rdbuf()->pubsync();
  }
  return wrapped->pubsync();
}

IoLogger::IoLogger() : in(this, ">> "), out(this, "<< ") {}

IoLogger::~IoLogger() { start(false); }

int IoLogger::log(int c, const char* prefix) {
  if (c == Eof) return c;  // nothing passed
  std::lock_guard<std::mutex> lock(fileLock);
  std::streambuf* sink = file.rdbuf();
  if (lastChar == '\n') sink->sputn(prefix, 3);
  sink->sputc(char(c));
  lastChar = c;
  return c;
}

void IoLogger::start(bool on) {
  if (on && !file.is_open()) {
    file.clear();
    file.open("io_log.txt", std::ios::out | std::ios::app);
    if (!file.is_open()) return;  // no log, and input and output go on untouched
    in.wrapped = std::cin.rdbuf(&in);
    out.wrapped = std::cout.rdbuf(&out);
  } else if (!on && file.is_open()) {
    std::cout.flush();
    std::cout.rdbuf(out.wrapped);
    std::cin.rdbuf(in.wrapped);
    file.close();
  }
}

void logStart(bool on) { ioLogger().start(on); }

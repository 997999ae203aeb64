// Collects what the code under test writes to std::cout.
#pragma once

#include <iostream>
#include <sstream>
#include <string>

class CaptureStdout {
 public:
  CaptureStdout() : old_(std::cout.rdbuf(buffer_.rdbuf())) {}
  ~CaptureStdout() { std::cout.rdbuf(old_); }
  CaptureStdout(const CaptureStdout&) = delete;
  CaptureStdout& operator=(const CaptureStdout&) = delete;
  std::string text() const { return buffer_.str(); }

 private:
  std::ostringstream buffer_;
  std::streambuf* old_;
};

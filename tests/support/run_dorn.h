// Runs the engine binary on a given standard input and collects what it prints.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

// Runs the program with the given arguments and standard input; returns its standard output,
// with the error stream joined to it when `withStderr` is set.
inline std::string runDorn(const std::string& input, const std::string& args = "", bool withStderr = false) {
  char inputPath[] = "/tmp/dorn_input_XXXXXX";
  int fd = mkstemp(inputPath);
  EXPECT_GE(fd, 0);
  close(fd);
  std::ofstream(inputPath, std::ios::binary) << input;
  std::string command = std::string(DORN_BINARY) + " " + args + " < " + inputPath + (withStderr ? " 2>&1" : "");
  FILE* pipe = popen(command.c_str(), "r");
  EXPECT_NE(pipe, nullptr);
  std::string output;
  char buffer[4096];
  for (size_t n; pipe && (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;) output.append(buffer, n);
  if (pipe) {
    EXPECT_EQ(pclose(pipe), 0);
  }
  std::remove(inputPath);
  return output;
}

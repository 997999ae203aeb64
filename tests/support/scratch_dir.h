// A fresh temporary directory that is the working directory for the life of the object.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

class ScratchDir {
 public:
  ScratchDir() : previous(std::filesystem::current_path()) {
    char name[] = "/tmp/dorn_scratch_XXXXXX";
    EXPECT_NE(mkdtemp(name), nullptr);
    path = name;
    std::filesystem::current_path(path);
  }
  ~ScratchDir() {
    std::filesystem::current_path(previous);
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
  ScratchDir(const ScratchDir&) = delete;
  ScratchDir& operator=(const ScratchDir&) = delete;

  void write(const std::string& file, const std::string& text) const { std::ofstream(path / file) << text; }
  std::string read(const std::string& file) const { return readHere((path / file).string()); }
  // The whole text of a file; empty when it cannot be read.
  static std::string readHere(const std::string& file) {
    std::ifstream in(file);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
  }

  std::filesystem::path path;

 private:
  std::filesystem::path previous;
};

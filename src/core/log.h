// A text file opened for appending when made and closed when destroyed: one per log entry.
#pragma once

#include <fstream>
#include <string>

// Made anew for each entry, so that the file is whole on disk between entries; a file that cannot
// be opened leaves the stream failed and the entry goes nowhere.
struct Log : std::ofstream {
  explicit Log(const std::string& fileName) : std::ofstream(fileName, std::ios::out | std::ios::app) {}
};

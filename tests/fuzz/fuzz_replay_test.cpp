// The fuzz corpus and every saved finding, replayed through their harnesses by the normal build: the
// readers must keep accepting, refusing and leaving sound positions as when the fuzzers last ran.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "targets/fuzz_targets.h"

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> inputsOf(const char* folder, const FuzzTarget& target) {
  std::vector<fs::path> files;
  fs::path dir = fs::path(DORN_FUZZ_DIR) / folder / target.name;
  if (fs::exists(dir))
    for (const auto& entry : fs::directory_iterator(dir))
      if (entry.is_regular_file()) files.push_back(entry.path());
  return files;
}

void replay(const FuzzTarget& target, const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  EXPECT_EQ(target.run(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()), "") << file;
}

}  // namespace

TEST(FuzzReplay, EverySeedOfEveryHarnessPasses) {
  for (const FuzzTarget& target : FuzzTargets) {
    const auto seeds = inputsOf("corpus", target);
    EXPECT_GE(seeds.size(), 10u) << target.name << " needs a seed corpus";
    for (const fs::path& file : seeds) replay(target, file);
  }
}

TEST(FuzzReplay, SavedFindingsStayFixed) {
  for (const FuzzTarget& target : FuzzTargets)
    for (const fs::path& file : inputsOf("regressions", target)) replay(target, file);
}

TEST(FuzzReplay, AnInputTooShortForItsHeaderRunsNothing) {
  const uint8_t byte = 3;
  for (const FuzzTarget& target : FuzzTargets) {
    EXPECT_EQ(target.run(nullptr, 0), "") << target.name;
    EXPECT_EQ(target.run(&byte, 1), "") << target.name;
  }
}

// The source folders form layers, each including only itself and those below it:
// core < game < movegen < eval < search < frontend. With a strict order no include loop can run
// between folders.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr const char* Layers[] = {"core", "game", "movegen", "eval", "search", "frontend"};

// The place of a top folder of src/ in the order; -1 for a folder no layer names.
int layerOf(const std::string& folder) {
  for (int i = 0; i < int(std::size(Layers)); ++i)
    if (folder == Layers[i]) return i;
  return -1;
}

// What is wrong with a quoted include in a file of `folder`; empty when it is allowed.
std::string includeFault(const std::string& folder, const std::string& included) {
  size_t slash = included.find('/');
  if (slash == std::string::npos) return "";  // a neighbour in the same folder
  std::string target = included.substr(0, slash);
  int to = layerOf(target);
  if (to < 0) return "includes \"" + included + "\", which lies in no layer";
  if (to > layerOf(folder)) return "reaches up to \"" + included + "\"";
  return "";
}

// The quoted includes of a file, with their line numbers.
std::vector<std::pair<int, std::string>> quotedIncludes(const fs::path& file) {
  std::vector<std::pair<int, std::string>> found;
  std::ifstream in(file);
  int number = 0;
  for (std::string line; std::getline(in, line);) {
    ++number;
    size_t start = line.find_first_not_of(" \t");
    if (start == std::string::npos || line.compare(start, 8, "#include") != 0) continue;
    size_t open = line.find('"', start);
    size_t close = open == std::string::npos ? open : line.find('"', open + 1);
    if (close != std::string::npos) found.emplace_back(number, line.substr(open + 1, close - open - 1));
  }
  return found;
}

TEST(Layering, TheCheckRefusesUpwardAndStrayIncludes) {
  EXPECT_EQ(includeFault("movegen", "game/position.h"), "");
  EXPECT_EQ(includeFault("frontend", "search/search.h"), "");
  EXPECT_EQ(includeFault("game", "captive_state.h"), "");
  EXPECT_EQ(includeFault("eval", "eval/captive_value.h"), "");
  EXPECT_NE(includeFault("game", "movegen/movegen.h"), "");
  EXPECT_NE(includeFault("core", "frontend/settings.h"), "");
  EXPECT_NE(includeFault("search", "frontend/command_loop.h"), "");
  EXPECT_NE(includeFault("game", "../frontend/settings.h"), "");
  EXPECT_NE(includeFault("eval", "tools/x.h"), "");
}

TEST(Layering, SourceTreeIncludesOnlyDownward) {
  const fs::path root = DORN_SOURCE_DIR;
  ASSERT_TRUE(fs::is_directory(root)) << root;
  std::string faults;
  std::set<std::string> folders;
  int files = 0;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
    if (!entry.is_regular_file()) continue;
    const fs::path relative = fs::relative(entry.path(), root);
    const std::string folder = relative.begin()->string();
    ++files;
    folders.insert(folder);
    if (layerOf(folder) < 0) {
      faults += relative.string() + ": lies in no layer\n";
      continue;
    }
    for (const auto& [line, included] : quotedIncludes(entry.path()))
      if (std::string fault = includeFault(folder, included); !fault.empty())
        faults += relative.string() + ":" + std::to_string(line) + ": " + fault + "\n";
  }
  EXPECT_EQ(faults, "");
  // A wrong path would pass vacuously.
  EXPECT_GT(files, 40);
  for (const char* needed : {"core", "game", "movegen", "frontend"}) EXPECT_TRUE(folders.count(needed)) << needed;
}

}  // namespace

// The option table: construction, assignment rules, lookup and the `uci` listing.
#include "core/options.h"

#include <algorithm>
#include <cctype>
#include <mutex>
#include <thread>
#include <vector>

#include "core/plain_number.h"

OptionsMap Options;

Option::Option(OnChange onChange) : isVisible(true), typeName("button"), onChange(onChange) {}

Option::Option(const char* defaultValue, bool visible, OnChange onChange)
    : isVisible(visible), defaultValue(defaultValue), typeName("string"), onChange(onChange) {
  setValue(defaultValue);
}

Option::Option(bool defaultValue, bool visible, OnChange onChange)
    : isVisible(visible), defaultValue(defaultValue ? "true" : "false"), typeName("check"), onChange(onChange) {
  setValue(this->defaultValue);
}

Option::Option(int defaultValue, int min, int max, bool visible, OnChange onChange)
    : isVisible(visible), defaultValue(std::to_string(defaultValue)), typeName("spin"), min(min), max(max),
      onChange(onChange) {
  setValue(this->defaultValue);
}

namespace {
std::mutex textLock;  // guards every option's currentValue
}  // namespace

void Option::setValue(const std::string& value) {
  {
    std::lock_guard<std::mutex> lock(textLock);
    currentValue = value;
  }
  number = typeName == "spin" ? plainNumber(value) : value == "true";
}

Option& Option::operator=(const std::string& value) {
  const bool button = typeName == "button";
  if (!button && value.empty()) return *this;
  if (typeName == "check" && value != "true" && value != "false") return *this;
  if (typeName == "spin") {
    int n = plainNumber(value);
    if (n < min || n > max) return *this;
  }
  if (!button) setValue(value);
  if (onChange) onChange(*this);
  return *this;
}

std::string Option::text() const {
  std::lock_guard<std::mutex> lock(textLock);
  return currentValue;
}

bool CaseInsensitiveLess::operator()(std::string_view a, std::string_view b) const {
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
    return std::tolower(static_cast<unsigned char>(x)) < std::tolower(static_cast<unsigned char>(y));
  });
}

void OptionsMap::add(const std::string& name, const Option& option) {
  auto [it, added] = options.emplace(name, option);
  if (added) it->second.idx = int(options.size()) - 1;
}

Option& OptionsMap::operator[](std::string_view name) {
  if (Option* found = find(name)) return *found;
  add(std::string(name), Option());
  return *find(name);
}

Option* OptionsMap::find(std::string_view name) {
  auto it = options.find(name);
  return it == options.end() ? nullptr : &it->second;
}

std::ostream& operator<<(std::ostream& os, const OptionsMap& table) {
  std::vector<const std::pair<const std::string, Option>*> byIndex(table.size());
  for (const auto& entry : table.options) byIndex[entry.second.index()] = &entry;

  for (const auto* entry : byIndex) {
    const Option& o = entry->second;
    if (!o.visible()) continue;
    os << "\noption name " << entry->first << " type " << o.type();
    if (o.type() != "button") os << " default " << o.defaultText();
    if (o.type() == "spin") os << " min " << o.minimum() << " max " << o.maximum();
  }
  return os;
}

void buildOptions(OptionsMap& table, unsigned processors) {
  const int threads = int(std::min(processors, 64u));
  const int minSplitDepth = processors < 8 ? 4 : 7;

  table.add("Use Debug Log", Option(false, false));
  table.add("Use Search Log", Option(false, false));
  table.add("Search Log Filename", Option("SearchLog.txt", false));
  table.add("Book File", Option("book.bin", true));
  table.add("Best Book Move", Option(false, true));
  table.add("Contempt Factor", Option(0, -50, 50, true));
  table.add("Mobility (Middle Game)", Option(100, 0, 200, false));
  table.add("Mobility (Endgame)", Option(100, 0, 200, false));
  table.add("Space", Option(100, 0, 200, false));
  table.add("Min Split Depth", Option(minSplitDepth, 4, 7, false));
  table.add("Max Threads per Split Point", Option(5, 4, 8, false));
  table.add("Threads", Option(threads, 1, 64, false));
  table.add("Use Sleeping Threads", Option(true, false));
  table.add("Hash", Option(32, 4, 8192, true));
  table.add("Clear Hash", Option());
  table.add("Ponder", Option(true, true));
  table.add("OwnBook", Option(true, true));
  table.add("MultiPV", Option(1, 1, 500, true));
  table.add("Skill Level", Option(20, 0, 20, true));
  table.add("Emergency Move Horizon", Option(40, 0, 50, false));
  table.add("Emergency Base Time", Option(200, 0, 30000, false));
  table.add("Emergency Move Time", Option(70, 0, 5000, false));
  table.add("Minimum Thinking Time", Option(20, 0, 5000, false));
  table.add("Slow Mover", Option(100, 10, 1000, false));
  table.add("UCI_AnalyseMode", Option(false, false));
}

unsigned processorCount() { return std::max(1u, std::thread::hardware_concurrency()); }

// The option table: every setting a UCI host can reach, read by name wherever it is needed.
#pragma once

#include <map>
#include <ostream>
#include <string>
#include <string_view>

#include "core/relaxed.h"

class Option {
 public:
  using OnChange = void (*)(const Option&);

  // A button: no value, always listed.
  explicit Option(OnChange onChange = nullptr);
  Option(const char* defaultValue, bool visible, OnChange onChange = nullptr);
  Option(bool defaultValue, bool visible, OnChange onChange = nullptr);
  Option(int defaultValue, int min, int max, bool visible, OnChange onChange = nullptr);

  Option(const Option&) = default;
  // Assigning a text is the only way to change an option: refused values are dropped silently.
  Option& operator=(const std::string& value);
  Option& operator=(const Option&) = delete;

  // A spin's decimal value; for every other type 1 when the value is "true", else 0.
  int intValue() const { return number; }
  // A copy taken under a lock: a search reads texts while the command loop may assign them.
  std::string text() const;

  bool visible() const { return isVisible; }
  const std::string& type() const { return typeName; }
  const std::string& defaultText() const { return defaultValue; }
  int minimum() const { return min; }
  int maximum() const { return max; }
  int index() const { return idx; }

  // Handlers that act on higher layers are attached at start-up, once those layers exist.
  void setOnChange(OnChange handler) { onChange = handler; }

 private:
  friend class OptionsMap;
  void setValue(const std::string& value);

  bool isVisible;
  std::string defaultValue, currentValue, typeName;
  int min = 0, max = 0;
  int idx = 0;
  OnChange onChange;
  // intValue(), worked out once per assignment so that readers pay a lookup only; a search may
  // read it while the command loop assigns it.
  Relaxed<int> number = 0;
};

// Option names compare without regard to case: "hash" and "Hash" are one key.
struct CaseInsensitiveLess {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const;
};

class OptionsMap {
 public:
  // Adds an option behind those already there.
  void add(const std::string& name, const Option& option);
  // An absent name is added as a visible button with empty values.
  Option& operator[](std::string_view name);
  Option* find(std::string_view name);
  size_t size() const { return options.size(); }

  // The `uci` listing, in order of insertion: each visible option on a line of its own, each line
  // opened by a newline.
  friend std::ostream& operator<<(std::ostream& os, const OptionsMap& table);

 private:
  std::map<std::string, Option, CaseInsensitiveLess> options;
};

extern OptionsMap Options;

// Fills a table with every option and its default; "Threads" and "Min Split Depth" follow the
// number of processors. All handlers are left empty.
void buildOptions(OptionsMap& table, unsigned processors);

// The number of processors as the platform tells it, at least 1.
unsigned processorCount();

inline int optionInt(std::string_view name) { return Options[name].intValue(); }

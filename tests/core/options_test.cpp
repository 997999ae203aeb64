// The option table: its assignment rules, case-insensitive names and the order of the listing.
#include "core/options.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

int handlerCalls = 0;
void countCall(const Option&) { ++handlerCalls; }

class OptionsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    buildOptions(table, 2);
    handlerCalls = 0;
  }
  // Assigns and tells the text in force afterwards.
  std::string assign(const char* name, const std::string& value) { return (table[name] = value).text(); }
  OptionsMap table;
};

TEST_F(OptionsTest, RefusedValuesAreDroppedSilentlyAndRunNoHandler) {
  table["Hash"].setOnChange(countCall);
  table["Clear Hash"].setOnChange(countCall);
  for (const char* refused : {"3", "8193", "abc", "", "4294967360"})
    EXPECT_EQ(assign("Hash", refused), "32") << refused;
  EXPECT_EQ(handlerCalls, 0);
  EXPECT_EQ(assign("Hash", "4"), "4");
  EXPECT_EQ(assign("Hash", "64MB"), "64MB");  // only the leading number is weighed
  EXPECT_EQ(table["Hash"].intValue(), 64);
  EXPECT_EQ(assign("Clear Hash", ""), "");  // a button is pressed by any value, even none, and keeps none
  EXPECT_EQ(assign("Clear Hash", "now"), "");
  EXPECT_EQ(handlerCalls, 4);

  EXPECT_EQ(assign("Contempt Factor", "-50"), "-50");
  EXPECT_EQ(assign("Contempt Factor", "-51"), "-50");
  EXPECT_EQ(assign("Ponder", "TRUE"), "true");
  EXPECT_EQ(assign("Ponder", "false"), "false");
  EXPECT_EQ(table["Ponder"].intValue(), 0);
  EXPECT_EQ(assign("Book File", "my book.bin"), "my book.bin");
  EXPECT_EQ(assign("Book File", ""), "my book.bin");
}

TEST_F(OptionsTest, NamesIgnoreCaseAndUnknownNamesBecomeListedButtonsAtTheEnd) {
  const size_t size = table.size();
  EXPECT_EQ(&table["hASH"], table.find("Hash"));
  EXPECT_EQ(table.find("Nonsense"), nullptr);
  EXPECT_EQ(table["Nonsense"].index(), int(size));
  std::ostringstream listing;
  listing << table;
  const std::string tail = "max 20\noption name Nonsense type button";
  EXPECT_EQ(listing.str().substr(listing.str().size() - tail.size()), tail);
}

}  // namespace

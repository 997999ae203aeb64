// uci, setoption, setmem and cc: the wire reply, the parsing of names and values, and the tables they size.
#include "frontend/option_commands.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "../support/capture_stdout.h"
#include "../support/run_dorn.h"
#include "../support/start_picture.h"
#include "core/options.h"
#include "eval/evaluate.h"
#include "frontend/memory_commands.h"
#include "frontend/option_handlers.h"
#include "search/transposition_table.h"

namespace {

const std::string Opening = "Dorn 0.25 64bit by Alda Reve\n" + DefaultStartPicture + "\nType ? for help\n";

const std::string UciReply =
    "id name Dorn 0.25 64bit\nid author Alda Reve\n\n"
    "option name Book File type string default book.bin\n"
    "option name Best Book Move type check default false\n"
    "option name Contempt Factor type spin default 0 min -50 max 50\n"
    "option name Hash type spin default 32 min 4 max 8192\n"
    "option name Clear Hash type button\n"
    "option name Ponder type check default true\n"
    "option name OwnBook type check default true\n"
    "option name MultiPV type spin default 1 min 1 max 500\n"
    "option name Skill Level type spin default 20 min 0 max 20\n"
    "uciok\n";

TEST(OptionCommandsProgram, UciListsTheDefaultsWhateverIsInForce) {
  EXPECT_EQ(runDorn("uci\nsetoption name hash value 64\nsetoption name Nonsense value 1\nuci\n"),
            Opening + UciReply + "No such option: Nonsense\n" + UciReply);
}

TEST(OptionCommandsProgram, SetmemGoesThroughTheHashOption) {
  EXPECT_EQ(runDorn("setmem 16\nsetmem 8193\nsetmem 0\nsetmem\nsetmem 5x\ncc\nsetmem 8\ncc 0\n"),
            Opening + "Current mem size: 16MB\nCurrent mem size: 16MB\n" +
                "Memory size (MB) must be a positive number\nMemory size (MB) must be a positive number\n" +
                "Current mem size: 5MB\nok, computer on computer mode turned on, mem size: 5MB\n" +
                "Current mem size: 8MB\nok, computer on computer mode turned off\n");
}

// Works on the process-wide options and tables with their handlers attached, and puts them back.
class OptionCommands : public ::testing::Test {
 protected:
  void SetUp() override { attachOptionHandlers(); }
  void TearDown() override {
    setComputerOnComputer(false, false);
    firstTable.setSize(0);
    Options = OptionsMap();
    buildOptions(Options, processorCount());
  }
  static std::string run(void (*command)(std::istream&), const std::string& words) {
    CaptureStdout out;
    std::istringstream is(words);
    command(is);
    return out.text();
  }
};

TEST_F(OptionCommands, NamesAndValuesMayHoldSeveralWords) {
  run(setoptionCommand, "name  Book   File value my   book.bin");
  EXPECT_EQ(Options["Book File"].text(), "my book.bin");
  run(setoptionCommand, "name Search Log Filename value a value b");
  EXPECT_EQ(Options["Search Log Filename"].text(), "a value b");
  run(setoptionCommand, "name Hash");  // no value: refused, the table keeps its size
  EXPECT_EQ(firstTable.clusterCount(), 0u);
  run(setoptionCommand, "name hash value 5");
  EXPECT_EQ(firstTable.clusterCount(), 4u << 14);
  EXPECT_EQ(run(setoptionCommand, "name Hash Size value 64"), "No such option: Hash Size\n");
}

TEST_F(OptionCommands, SetmemResizesBothTablesWhicheverIsCurrent) {
  run(setoptionCommand, "name Hash value 4");
  run(computerOnComputerCommand, "");
  makeCurrent(secondTable);  // as after a move of White
  run(setmemCommand, "8");
  EXPECT_EQ(firstTable.clusterCount(), 8u << 14);
  EXPECT_EQ(secondTable.clusterCount(), 8u << 14);
  run(computerOnComputerCommand, "off");
  EXPECT_EQ(currentTable, &firstTable);
  EXPECT_EQ(secondTable.clusterCount(), 0u);
}

TEST_F(OptionCommands, MobilityAndSpaceOptionsRebuildTheEvaluationWeights) {
  run(setoptionCommand, "name Mobility (Middle Game) value 200");
  EXPECT_EQ(mgValue(MobilityWeight.load()), 504);
  EXPECT_EQ(egValue(MobilityWeight.load()), 344);
  run(setoptionCommand, "name mobility (endgame) value 0");
  EXPECT_EQ(egValue(MobilityWeight.load()), 0);
  run(setoptionCommand, "name Mobility (Middle Game) value 100");
  run(setoptionCommand, "name Mobility (Endgame) value 100");
  EXPECT_EQ(MobilityWeight.load(), makeScore(252, 344));
}

double residentMegabytes() {
  std::ifstream status("/proc/self/status");
  std::string word;
  while (status >> word && word != "VmRSS:") {
  }
  double kilobytes = 0;
  status >> kilobytes;
  return kilobytes / 1024;
}

// The program itself measured about 6 MB besides its table; this process holds more, so the bound
// counts from what it held before the first table.
TEST_F(OptionCommands, ResidentMemoryGrowsByTheHashSizeOnly) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "the sanitizer keeps freed blocks in quarantine";
#endif
  const double before = residentMegabytes();
  for (int megabytes : {64, 8}) {
    run(setoptionCommand, "name Hash value " + std::to_string(megabytes));
    run(setoptionCommand, "name Clear Hash");  // touches every page of the block
    EXPECT_LE(residentMegabytes() - before, megabytes + 16) << megabytes;
  }
}

}  // namespace

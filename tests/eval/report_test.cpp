// The evaluation report: its refusal in check, its layout, and a total that agrees with evaluate.
#include <gtest/gtest.h>

#include <iomanip>
#include <sstream>

#include "../support/run_dorn.h"
#include "eval/trace.h"
#include "eval_support.h"

using namespace eval_test;

namespace {

class ReportTest : public EvalFixture {
 protected:
  std::vector<std::string> reportLines() {
    std::vector<std::string> out;
    std::istringstream in(evaluationReport(pos));
    for (std::string l; std::getline(in, l);) out.push_back(l);
    return out;
  }
};

TEST_F(ReportTest, TableInSwordsThenClosingLinesThatMatchTheEvaluation) {
  load(gameTypeTable[DefaultGameType].startFen);
  const std::vector<std::string> l = reportLines();
  ASSERT_EQ(l.size(), 30u);
  EXPECT_EQ(l[0], "Scores material...White(+16625) Black(+16625)");
  EXPECT_EQ(l[1], "           Eval term |    White    |    Black    |     Total     ");
  EXPECT_EQ(l[2], "                     |   MG    EG  |   MG    EG  |   MG     EG   ");
  EXPECT_EQ(l[3], "---------------------+-------------+-------------+---------------");
  EXPECT_EQ(l[22], "      Captive safety |  0.00  0.00 |  0.00  0.00 |  +0.00  +0.00 ");
  EXPECT_EQ(l[25].rfind("               Total |   ---   --- |   ---   --- | ", 0), 0u);
  EXPECT_EQ(l[27], "Uncertainty margin: White: +0.00, Black: +0.00");
  EXPECT_EQ(l[28], "Scaling: 100.00% MG,   0.00% * 100.00% EG.");
  Value margin;
  const Value v = evaluate(pos, margin);
  std::ostringstream total;
  total << std::fixed << std::setprecision(2) << "Total evaluation: " << v / 200.0 << "(" << int(v / 200.0 * 100)
        << ") (v=" << v << ")";
  EXPECT_EQ(l[29], total.str());
}

TEST_F(ReportTest, EndingEvaluatorLeavesTheTableEmpty) {
  load("k7/8/8/8/8/8/8/K6W w 0 1");
  const std::vector<std::string> l = reportLines();
  for (size_t i = 4; i < 24; ++i) EXPECT_NE(l[i].find("|  +0.00  +0.00 "), std::string::npos) << l[i];
  EXPECT_EQ(l.back(), "Total evaluation: +83.55(+8355) (v=+16710)");
}

TEST(EvalCommand, ReportsTheSiegeTermsFirstAndRefusesInCheck) {
  const std::string out = runDorn("new rescuedorn\neval\nquit\n");
  const size_t white = out.find("scoreSiege2(WHITE):magicianBonus=250,");
  const size_t black = out.find("scoreSiege2(BLACK):magicianBonus=-250,");
  EXPECT_TRUE(white < black && black < out.find("final bonus=0\nScores material...")) << out;
  EXPECT_NE(runDorn("sp k7/8/8/8/8/8/w7/K7 w 0 1\neval\nquit\n").find("\nno trace evaluate on check...\n"),
            std::string::npos);
}

}  // namespace

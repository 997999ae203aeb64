// The weaker-move pick: which lines it may choose and how far below the best it may go.
#include <gtest/gtest.h>

#include <set>

#include "core/psqt.h"
#include "search/root_search.h"

namespace {

// Root lines with the given scores, best first; line i plays move i + 1.
void setLines(std::initializer_list<Value> scores) {
  RootMoves.clear();
  Move m = 1;
  for (Value v : scores) {
    RootMoves.emplace_back(m++);
    RootMoves.back().score = v;
  }
  multiPV = RootMoves.size();
}

std::multiset<Move> picksOverManyTries(int level) {
  std::multiset<Move> picked;
  for (int i = 0; i < 400; ++i) {
    Skill skill;
    skill.level = level;
    picked.insert(pickWeakerMove(skill));
  }
  return picked;
}

std::set<Move> distinct(const std::multiset<Move>& picks) { return {picks.begin(), picks.end()}; }

TEST(SkillTest, EqualLinesGiveTheFirstAndALoneLineGivesItself) {
  setLines({50, 50, 50, 50});
  EXPECT_EQ(distinct(picksOverManyTries(0)), std::set<Move>{1});
  setLines({-200});
  EXPECT_EQ(distinct(picksOverManyTries(10)), std::set<Move>{1});
}

TEST(SkillTest, ALineTwoSwordsBelowTheOneBeforeItEndsTheChoice) {
  const Value sword = pieceValueMg[Sword];
  setLines({100, 100 - 2 * sword - 1, 100 - 2 * sword - 2, -5000});
  EXPECT_EQ(distinct(picksOverManyTries(0)), std::set<Move>{1});
}

TEST(SkillTest, LowerLevelsStrayFurtherFromTheBestLine) {
  const Value sword = pieceValueMg[Sword];
  setLines({100, 100 - sword / 4, 100 - sword / 2, 100 - sword});
  std::multiset<Move> weakest = picksOverManyTries(0), strongest = picksOverManyTries(19);
  EXPECT_EQ(distinct(weakest).size(), 4u);
  // Level 19 keeps 46/128 of each gap, level 0 only 8/128: the best line wins more often at 19.
  EXPECT_GT(strongest.count(1), weakest.count(1));
  EXPECT_LT(strongest.count(4), weakest.count(4));
}

}  // namespace

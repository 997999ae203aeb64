// Threats on hand-built positions: loose pieces, one bonus per attacker and victim type, the cover
// of a Sword, the Dorn_sword row taken over only by evaluateThreatsInit; and the leader report rows.
#include <gtest/gtest.h>

#include "eval/threats.h"
#include "piece_passes.h"

using namespace eval_test;

namespace {

class ThreatsTest : public PiecePassesTest {
 protected:
  void TearDown() override {
    PiecePassesTest::TearDown();
    evaluateThreatsInit();  // back to the rows of the default rules
  }
  Score threats(const std::string& fen, Color us) {
    loadAndPass(fen);
    return evaluateThreats(pos, ei, us);
  }
};

TEST_F(ThreatsTest, LooseAndAttackedPieces) {
  // The Assassin on e5 is loose and attacked by the Warrior on e3. Its own attack on e3 is outside
  // the union that threats are read from, so Black threatens nothing.
  const char* fen = "k7/8/8/4n3/8/4W3/8/7K w 0 1";
  EXPECT_EQ(threats(fen, WHITE), makeScore(25 + 15, 10 + 39));
  EXPECT_EQ(evaluateThreats(pos, ei, BLACK), 0);
  // Three loose Archers count as two.
  EXPECT_EQ(threats("k7/8/8/1a6/2a5/a7/8/7K w 0 1", WHITE), makeScore(50, 20));
}

TEST_F(ThreatsTest, SwordCoverDetersOnlyWhatASwordCanTake) {
  // The Bondsman on d5 stands in the cover of the Sword on c6.
  EXPECT_EQ(threats("k7/8/2s5/3f4/8/3M4/8/7K w 0 1", WHITE), 0);
  EXPECT_EQ(threats("k7/8/2s5/3f4/8/3W4/8/7K w 0 1", WHITE), makeScore(20, 45));
}

TEST_F(ThreatsTest, DornSwordRowFollowsTheRulesOnlyAfterInit) {
  const char* fen = "k7/8/8/4w3/3I4/8/8/8 w 0 1";
  EXPECT_EQ(threats(fen, WHITE), 0);  // on foot it threatens no mount
  swordsCaptureMounts = 1;
  EXPECT_EQ(threats(fen, WHITE), 0);
  evaluateThreatsInit();
  EXPECT_EQ(threats(fen, WHITE), makeScore(38, 90));
}

TEST_F(ThreatsTest, LeaderReportRows) {
  // White's Dorn_archer on a1 attacks a2, b1 and b2; b2 holds its own Sword. The Bondsman on d1
  // is a second leader; the Archer on g6 is two steps from the Black Dorn.
  loadAndPass("7k/8/6A1/8/8/8/1S6/J2F4 w 0 1");
  Score safety = -1, threat = -1;
  dornSafetyReport(pos, ei, WHITE, safety, threat);
  EXPECT_EQ(safety, makeScore(2 * 2 + 1 + 10, 3 * 2 + 1 + 15));
  EXPECT_EQ(threat, makeScore(6, 9));
}

}  // namespace

// Towers and captives in do_move and undo_move: breaches, deaths on towers, pick-ups, hand-overs,
// kills and drop-offs, each made and taken back.
#include <gtest/gtest.h>

#include "core/psqt.h"
#include "core/zobrist.h"
#include "make_unmake_support.h"

using namespace make_unmake;
using Zobrist::captiveKeys;
using Zobrist::pieceKeys;
using Zobrist::sideKey;
using Zobrist::towerKeys;

namespace {

constexpr int RescueGeneral = 3, RescueDorn = 4;
constexpr Score Bonus = makeScore(120, 120);

class CaptivesTest : public ::testing::Test {
 protected:
  RulesGuard guard;
  Position pos;
  StateInfo states[8];
  int ply = 0;

  void make(Move m) { pos.do_move(m, states[ply++]); }

  // Makes m and hands back the snapshot of the position before it, for undo to be held against.
  Snapshot makeChecked(Move m) {
    Snapshot before(pos);
    make(m);
    EXPECT_EQ(boardFault(pos), "");
    EXPECT_EQ(pos.materialKey(), pos.computeMaterialKey());
    EXPECT_EQ(pos.state()->npMaterial[WHITE], pos.computeNpMaterial(WHITE));
    EXPECT_EQ(pos.state()->npMaterial[BLACK], pos.computeNpMaterial(BLACK));
    EXPECT_EQ(pos.checkers(), expectedCheckers(pos));
    return before;
  }

  void undoAndExpect(Move m, const Snapshot& before) {
    pos.undo_move(m);
    --ply;
    EXPECT_EQ(Snapshot(pos).diff(before), "");
  }
};

// ---------------------------------------------------------------- Siege 1

TEST_F(CaptivesTest, FirstBreachOnOwnHalfEarnsTheBonusOnce) {
  setUp(pos, RescueGeneral, "k7/4m3/8/8/8/8/3MM3/7K w 6 1");
  Key key = pos.key();
  Score psqBefore = pos.state()->psqScore;
  Move breach = makeMove(D2, D4, Demotion);
  Snapshot before = makeChecked(breach);
  EXPECT_EQ(pos.pieceOn(D2), makePiece(WHITE, Magician));
  EXPECT_EQ(pos.siege1Tower, bb(E4) | bb(D5) | bb(E5));
  EXPECT_EQ(pos.siege1Breached, bb(D4));
  EXPECT_EQ(pos.key(), key ^ sideKey ^ towerKeys[3]);  // the tower key alone
  EXPECT_EQ(pos.state()->psqScore, psqBefore + Bonus);
  EXPECT_EQ(pos.state()->pliesSinceCapture, 7);  // a breach is not a capture
  EXPECT_EQ(pos.state()->priorType, Magician);

  // The second breach pays nothing, whoever makes it.
  make(makeMove(A8, B8));
  Score psqMid = pos.state()->psqScore;
  make(makeMove(E2, E4, Demotion));
  EXPECT_EQ(pos.state()->psqScore, psqMid);
  EXPECT_EQ(pos.key(), states[1].key ^ sideKey ^ towerKeys[2]);
  pos.undo_move(makeMove(E2, E4, Demotion));
  pos.undo_move(makeMove(A8, B8));
  ply = 1;
  undoAndExpect(breach, before);

  // Black's first breach on its own half counts against White; White's breach on Black's half
  // earns nothing.
  pos.do_move(makeMove(D2, D3), states[0]);
  pos.do_move(makeMove(E7, E5, Demotion), states[1]);
  EXPECT_EQ(pos.state()->psqScore, states[0].psqScore - Bonus);
  Position p2;
  setUp(p2, RescueGeneral, "k7/8/8/8/8/4M3/8/7K w 0 1");
  StateInfo s;
  p2.do_move(makeMove(E3, E5, Demotion), s);
  EXPECT_EQ(p2.state()->psqScore, s.previous->psqScore);
}

TEST_F(CaptivesTest, CarrierDiesOnTheTowerAndTheCaptiveLiesThere) {
  // The White Warrior on c3 carries the captive.
  setUp(pos, RescueGeneral, "k7/8/8/8/8/2W2A2/4M3/7K w 11 1 C3");
  Key key = pos.key();
  Move walkIn = makeMove(C3, D4, Transfer);
  Snapshot before = makeChecked(walkIn);
  EXPECT_TRUE(pos.empty(C3));
  EXPECT_TRUE(pos.empty(D4));
  EXPECT_EQ(pos.count(WHITE, Warrior), 0);
  EXPECT_EQ(pos.siege1CaptiveSquare, D4);
  EXPECT_EQ(pos.state()->priorType, Warrior);
  EXPECT_EQ(pos.state()->pliesSinceCapture, 0);
  EXPECT_EQ(pos.key(), key ^ sideKey ^ pieceKeys[WHITE][Warrior][C3] ^ captiveKeys[C3]);
  EXPECT_EQ(pos.state()->psqScore, pos.computePsqScore());
  undoAndExpect(walkIn, before);
  EXPECT_EQ(pos.pieceOn(C3), makePiece(WHITE, Warrior));
  EXPECT_EQ(pos.siege1CaptiveSquare, C3);

  // Lying on d4, the captive is taken up through the breach of e4, and undo puts it back on d4.
  make(walkIn);
  make(makeMove(A8, B8));
  make(makeMove(E2, E4, Demotion));
  make(makeMove(B8, A8));
  Move pickup = makeMove(F3, E4, Pickup);
  Snapshot lying = makeChecked(pickup);
  EXPECT_EQ(pos.siege1CaptiveSquare, E4);
  EXPECT_EQ(pos.key(), states[3].key ^ sideKey ^ pieceKeys[WHITE][Archer][F3] ^ pieceKeys[WHITE][Archer][E4]);
  undoAndExpect(pickup, lying);
  EXPECT_EQ(pos.siege1CaptiveSquare, D4);
}

TEST_F(CaptivesTest, HandOverMovesOnlyTheCaptive) {
  setUp(pos, RescueGeneral, "k7/8/8/8/2A5/2W5/8/7K w 9 1 C3");
  Key key = pos.key();
  Score psqBefore = pos.state()->psqScore;
  Move handOver = makeMove(C3, C4, Transfer);
  Snapshot before = makeChecked(handOver);
  EXPECT_TRUE(pos.state()->isSiege1Exchange);
  EXPECT_EQ(pos.pieceOn(C3), makePiece(WHITE, Warrior));
  EXPECT_EQ(pos.pieceOn(C4), makePiece(WHITE, Archer));
  EXPECT_EQ(pos.siege1CaptiveSquare, C4);
  EXPECT_EQ(pos.siege1LastCaptiveSquare, C3);
  EXPECT_EQ(pos.key(), key ^ sideKey ^ captiveKeys[C3] ^ captiveKeys[C4]);
  EXPECT_EQ(pos.state()->psqScore, psqBefore);
  EXPECT_EQ(pos.state()->pliesSinceCapture, 10);
  EXPECT_EQ(pos.state()->capturedType, Archer);  // recorded, but nothing was taken
  undoAndExpect(handOver, before);
}

TEST_F(CaptivesTest, CapturingTheCarrierTakesTheCaptive) {
  setUp(pos, RescueGeneral, "k7/8/8/8/1a6/2W5/8/7K b 0 1 C3");
  Key key = pos.key();
  Move take = makeMove(B4, C3, Pickup);
  Snapshot before = makeChecked(take);
  EXPECT_EQ(pos.siege1CaptiveSquare, C3);
  EXPECT_EQ(pos.pieceOn(C3), makePiece(BLACK, Archer));
  EXPECT_EQ(pos.key(), key ^ sideKey ^ pieceKeys[BLACK][Archer][B4] ^ pieceKeys[BLACK][Archer][C3] ^
                           pieceKeys[WHITE][Warrior][C3]);
  undoAndExpect(take, before);
}

// ---------------------------------------------------------------- Siege 2

TEST_F(CaptivesTest, DropOffByTheOtherColourReleasesTheOwnersDorn) {
  // A Black Archer carries White's captive on White's drop-off square a1.
  setUp(pos, RescueDorn, "8/7f/8/8/8/8/8/a6F b 0 1 A1 1 - 1");
  Key key = pos.key();
  Move leave = makeMove(A1, B2, Dropoff);
  Snapshot before = makeChecked(leave);
  EXPECT_EQ(pos.pieceOn(A1), makePiece(WHITE, Dorn));
  EXPECT_EQ(pos.pieceOn(B2), makePiece(BLACK, Archer));
  EXPECT_TRUE(pos.byColor[WHITE] & bb(A1));
  EXPECT_FALSE(pos.byColor[BLACK] & bb(A1));
  EXPECT_TRUE(pos.state()->isSuccessfulDropoff);
  EXPECT_EQ(pos.state()->siege2_color, WHITE);
  EXPECT_TRUE(pos.siege2CaptiveReleased[WHITE]);
  EXPECT_FALSE(pos.siege2CaptiveAlive[WHITE]);
  EXPECT_EQ(pos.siege2CaptiveSquare[WHITE], NoSquare);
  EXPECT_EQ(pos.key(), key ^ sideKey ^ pieceKeys[BLACK][Archer][A1] ^ pieceKeys[BLACK][Archer][B2] ^
                           captiveKeys[A1] ^ pieceKeys[WHITE][Dorn][A1]);
  EXPECT_EQ(pos.state()->psqScore, pos.computePsqScore());
  EXPECT_EQ(pos.leaderSquare(WHITE), A1);
  undoAndExpect(leave, before);

  // An owner that already has a Dorn form gets none: the square simply empties.
  Position p2;
  setUp(p2, RescueDorn, "8/7f/8/8/8/8/8/a5IF b 0 1 A1 1 - 1");
  StateInfo s;
  p2.do_move(leave, s);
  EXPECT_TRUE(p2.empty(A1));
  EXPECT_FALSE(s.isSuccessfulDropoff);
  EXPECT_FALSE(p2.siege2CaptiveReleased[WHITE]);
  EXPECT_FALSE(p2.siege2CaptiveAlive[WHITE]);
  EXPECT_EQ(boardFault(p2), "");
}

// The released Dorn attacks like any Dorn, by its near reach as well as by its lines.
TEST_F(CaptivesTest, ReleasedDornNextToTheEnemyLeaderChecks) {
  // White's Assassin leaves a1 for c1; Black's only leader, the Bondsman on b2, is next to a1.
  setUp(pos, RescueDorn, "8/8/8/8/8/8/1f6/N6F w 0 1 A1 1 - 1");
  StateInfo s;
  pos.do_move(makeMove(A1, C1, Dropoff), s);
  EXPECT_EQ(pos.pieceOn(A1), makePiece(WHITE, Dorn));
  EXPECT_EQ(pos.checkers(), bb(A1));
}

TEST_F(CaptivesTest, DropOffOntoTheOtherBreachTakesUpTheOtherCaptive) {
  setUp(pos, RescueDorn, "8/7f/8/8/8/8/8/N6F w 0 1 A1 1 - 1 BreachedBlack { A3 }");
  Move leave = makeMove(A1, A3, Dropoff);
  Snapshot before = makeChecked(leave);
  EXPECT_EQ(pos.pieceOn(A1), makePiece(WHITE, Dorn));
  EXPECT_EQ(pos.pieceOn(A3), makePiece(WHITE, Assassin));
  EXPECT_EQ(pos.siege2CaptiveSquare[BLACK], A3);
  EXPECT_TRUE(pos.siege2CaptiveAlive[BLACK]);
  EXPECT_TRUE(pos.siege2CaptiveReleased[WHITE]);
  undoAndExpect(leave, before);
  EXPECT_EQ(pos.siege2CaptiveSquare[BLACK], NoSquare);
}

TEST_F(CaptivesTest, DropOffCarrierDyingOnATowerStillReleasesTheDorn) {
  // The carrier leaves a1 onto Black's standing tower square a3 and dies there.
  setUp(pos, RescueDorn, "8/7f/8/8/8/8/8/N6F w 0 1 A1 1 - 1");
  Move leave = makeMove(A1, A3, Dropoff);
  Snapshot before = makeChecked(leave);
  EXPECT_EQ(pos.pieceOn(A1), makePiece(WHITE, Dorn));
  EXPECT_TRUE(pos.empty(A3));
  EXPECT_EQ(pos.count(WHITE, Assassin), 0);
  EXPECT_EQ(pos.siege2CaptiveSquare[BLACK], NoSquare);
  EXPECT_EQ(pos.state()->psqScore, pos.computePsqScore());
  undoAndExpect(leave, before);
}

TEST_F(CaptivesTest, OwnCarrierTakingTheEnemyCarrierKillsTheEnemyCaptive) {
  // White's Warrior on c3 carries White's captive; Black's Archer on d4 carries Black's.
  setUp(pos, RescueDorn, "f7/8/8/8/3a4/2W5/8/7F w 0 1 C3 1 D4 1");
  Key key = pos.key();
  Score psqBefore = pos.state()->psqScore;
  Move take = makeMove(C3, D4, Transfer);
  Snapshot before = makeChecked(take);
  EXPECT_EQ(pos.state()->isSiege2EnemyTransferKill, 1);
  EXPECT_EQ(pos.state()->siege2_color, WHITE);
  EXPECT_FALSE(pos.siege2CaptiveAlive[BLACK]);
  EXPECT_EQ(pos.siege2CaptiveSquare[BLACK], NoSquare);
  EXPECT_EQ(pos.siege2CaptiveSquare[WHITE], D4);
  EXPECT_EQ(pos.key(), key ^ sideKey ^ pieceKeys[WHITE][Warrior][C3] ^ pieceKeys[WHITE][Warrior][D4] ^
                           pieceKeys[BLACK][Archer][D4] ^ captiveKeys[C3]);
  // The carrier's own travel leaves the piece-square sum alone; only the taken Archer leaves it.
  EXPECT_EQ(pos.state()->psqScore, psqBefore - psq[makePiece(BLACK, Archer)][D4]);
  undoAndExpect(take, before);
  EXPECT_TRUE(pos.siege2CaptiveAlive[BLACK]);
  EXPECT_EQ(pos.siege2CaptiveSquare[BLACK], D4);
}

TEST_F(CaptivesTest, EnemyCarrierTakingTheOwnCarrierKillsTheEnemyCaptive) {
  // White's Warrior carries Black's captive and takes the Black Archer that carries White's.
  setUp(pos, RescueDorn, "f7/8/8/8/3a4/2W5/8/7F w 0 1 D4 1 C3 1");
  Move take = makeMove(C3, D4, Transfer);
  Snapshot before = makeChecked(take);
  EXPECT_EQ(pos.state()->isSiege2EnemyTransferKill, -1);
  EXPECT_EQ(pos.state()->siege2_color, BLACK);
  EXPECT_FALSE(pos.siege2CaptiveAlive[BLACK]);
  EXPECT_EQ(pos.siege2CaptiveSquare[BLACK], NoSquare);
  EXPECT_EQ(pos.siege2CaptiveSquare[WHITE], D4);
  EXPECT_TRUE(pos.siege2CaptiveAlive[WHITE]);
  undoAndExpect(take, before);
  EXPECT_EQ(pos.siege2CaptiveSquare[BLACK], C3);
}

TEST_F(CaptivesTest, CarrierWalkingIntoATower) {
  // Into the enemy's standing tower: the own captive dies with its carrier.
  setUp(pos, RescueDorn, "f7/8/8/8/8/1W6/8/7F w 4 1 B3 1 - 1");
  Key key = pos.key();
  Move walkIn = makeMove(B3, A3, Transfer);
  Snapshot before = makeChecked(walkIn);
  EXPECT_FALSE(pos.siege2CaptiveAlive[WHITE]);
  EXPECT_EQ(pos.siege2CaptiveSquare[WHITE], A3);
  EXPECT_EQ(pos.count(WHITE, Warrior), 0);
  EXPECT_EQ(pos.state()->pliesSinceCapture, 0);
  EXPECT_EQ(pos.key(), key ^ sideKey ^ pieceKeys[WHITE][Warrior][B3] ^ captiveKeys[B3]);
  undoAndExpect(walkIn, before);
  EXPECT_TRUE(pos.siege2CaptiveAlive[WHITE]);

  // With the enemy tower gone, the own carrier's captive lies alive in the square of its death.
  Position p2;
  setUp(p2, RescueDorn, "f7/8/8/8/6W1/8/8/7F w 0 1 G4 1 - 1 BreachedBlack { A3 A4 }");
  StateInfo s;
  p2.do_move(makeMove(G4, H5, Transfer), s);
  EXPECT_TRUE(p2.siege2CaptiveAlive[WHITE]);
  EXPECT_EQ(p2.siege2CaptiveSquare[WHITE], H5);
  EXPECT_TRUE(p2.empty(G4));

  // An enemy carrier kills it in any case.
  Position p3;
  setUp(p3, RescueDorn, "f7/8/8/8/6a1/8/8/7F b 0 1 G4 1 - 1 BreachedBlack { A3 A4 }");
  p3.do_move(makeMove(G4, H5, Transfer), s);
  EXPECT_FALSE(p3.siege2CaptiveAlive[WHITE]);
}

TEST_F(CaptivesTest, PickUpsThroughABreach) {
  // A capture on a breached square of White's tower takes White's free captive out.
  setUp(pos, RescueDorn, "f7/8/8/7a/6W1/8/8/7F w 0 1 - 1 - 1 BreachedWhite { H5 }");
  Key key = pos.key();
  Move take = makeMove(G4, H5, Pickup);
  Snapshot before = makeChecked(take);
  EXPECT_EQ(pos.siege2CaptiveSquare[WHITE], H5);
  EXPECT_EQ(pos.state()->siege2_color, WHITE);
  EXPECT_EQ(pos.state()->pliesSinceCapture, 0);
  EXPECT_EQ(pos.key(), key ^ sideKey ^ pieceKeys[WHITE][Warrior][G4] ^ pieceKeys[WHITE][Warrior][H5] ^
                           pieceKeys[BLACK][Archer][H5]);
  // Undone, the Archer is back on h5 and carries nothing.
  undoAndExpect(take, before);
  EXPECT_EQ(pos.siege2CaptiveSquare[WHITE], NoSquare);

  // A quiet pick-up keys the captive in.
  Position p2;
  setUp(p2, RescueDorn, "f7/8/8/8/6W1/8/8/7F w 0 1 - 1 - 1 BreachedWhite { H5 }");
  StateInfo s;
  Key k2 = p2.key();
  p2.do_move(makeMove(G4, H5, Pickup), s);
  EXPECT_EQ(p2.siege2CaptiveSquare[WHITE], H5);
  EXPECT_EQ(p2.key(), k2 ^ sideKey ^ pieceKeys[WHITE][Warrior][G4] ^ pieceKeys[WHITE][Warrior][H5] ^ captiveKeys[H5]);
}

TEST_F(CaptivesTest, BreachOfTheEnemyTowerRecordsItsColour) {
  setUp(pos, RescueDorn, "f7/8/8/8/8/2M5/8/7F w 0 1");
  Key key = pos.key();
  Score psqBefore = pos.state()->psqScore;
  Move breach = makeMove(C3, A3, Demotion);
  Snapshot before = makeChecked(breach);
  EXPECT_EQ(pos.state()->siege2_color, BLACK);
  EXPECT_EQ(pos.siege2Tower[BLACK], bb(A4));
  EXPECT_EQ(pos.siege2Breached[BLACK], bb(A3));
  EXPECT_EQ(pos.key(), key ^ sideKey ^ towerKeys[3]);
  EXPECT_EQ(pos.state()->psqScore, psqBefore);  // not the own tower: no bonus
  undoAndExpect(breach, before);
}

}  // namespace

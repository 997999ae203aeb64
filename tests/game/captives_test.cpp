// Towers and captives in do_move and undo_move: breaches, deaths on towers, pick-ups, hand-overs,
// kills and drop-offs, each made and taken back.
#include <gtest/gtest.h>

#include <functional>

#include "../support/capture_stdout.h"
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

  // Makes m, runs the checks of the made move, then unmakes it and expects the position back.
  void makeAndUndo(Move m, const std::function<void(const StateInfo&)>& whileMade) {
    const PositionSnapshot before = snapshotOf(pos);
    const Key key = pos.key();
    make(m);
    EXPECT_EQ(positionFault(pos, Vouch::Board), "");
    EXPECT_EQ(pos.materialKey(), pos.computeMaterialKey());
    EXPECT_EQ(pos.state()->npMaterial[WHITE], pos.computeNpMaterial(WHITE));
    EXPECT_EQ(pos.state()->npMaterial[BLACK], pos.computeNpMaterial(BLACK));
    EXPECT_EQ(pos.checkers(), expectedCheckers(pos));
    whileMade(*pos.state());
    lastKeyChange = pos.key() ^ key ^ sideKey;
    pos.undo_move(m);
    --ply;
    EXPECT_EQ(snapshotDifference(before, snapshotOf(pos)), "");
  }

  Key lastKeyChange = 0;  // of the last move through makeAndUndo, side key left out
};

// ---------------------------------------------------------------- Siege 1

TEST_F(CaptivesTest, Siege1BreachesAndTheFirstBreachBonus) {
  setUp(pos, RescueGeneral, "k7/4m3/8/8/8/8/3MM3/7K w 6 1");
  makeAndUndo(makeMove(D2, D4, Demotion), [&](const StateInfo& st) {
    EXPECT_EQ(pos.pieceOn(D2), makePiece(WHITE, Magician));
    EXPECT_EQ(pos.siege1Tower, bb(E4) | bb(D5) | bb(E5));
    EXPECT_EQ(pos.siege1Breached, bb(D4));
    EXPECT_EQ(st.psqScore, st.previous->psqScore + Bonus);
    EXPECT_EQ(st.pliesSinceCapture, 7);  // a breach takes nothing
  });
  EXPECT_EQ(lastKeyChange, towerKeys[3]);

  // The second breach pays nothing; Black's first, on its own half, counts against White.
  make(makeMove(D2, D4, Demotion));
  make(makeMove(A8, B8));
  make(makeMove(E2, E4, Demotion));
  EXPECT_EQ(states[2].psqScore, states[1].psqScore);
  EXPECT_EQ(states[2].key, states[1].key ^ sideKey ^ towerKeys[2]);
  setUp(pos, RescueGeneral, "k7/4m3/8/8/8/8/3MM3/7K b 6 1");
  makeAndUndo(makeMove(E7, E5, Demotion),
              [&](const StateInfo& st) { EXPECT_EQ(st.psqScore, st.previous->psqScore - Bonus); });
  // White's breach on Black's half earns nothing.
  setUp(pos, RescueGeneral, "k7/8/8/8/8/4M3/8/7K w 0 1");
  makeAndUndo(makeMove(E3, E5, Demotion),
              [&](const StateInfo& st) { EXPECT_EQ(st.psqScore, st.previous->psqScore); });
}

TEST_F(CaptivesTest, Siege1CarrierDiesOnTheTowerAndItsCaptiveIsTakenUpAgain) {
  // The White Warrior on c3 carries the captive onto d4.
  setUp(pos, RescueGeneral, "k7/8/8/8/8/2W2A2/4M3/7K w 11 1 C3");
  Move walkIn = makeMove(C3, D4, Transfer);
  makeAndUndo(walkIn, [&](const StateInfo& st) {
    EXPECT_TRUE(pos.empty(C3) && pos.empty(D4));
    EXPECT_EQ(pos.count(WHITE, Warrior), 0);
    EXPECT_EQ(pos.siege1CaptiveSquare, D4);
    EXPECT_EQ(st.priorType, Warrior);
    EXPECT_EQ(st.pliesSinceCapture, 0);
    EXPECT_EQ(st.psqScore, pos.computePsqScore());
  });
  EXPECT_EQ(lastKeyChange, pieceKeys[WHITE][Warrior][C3] ^ captiveKeys[C3]);

  // Lying on d4, it is taken up through the breach of e4; undone, it lies on d4 again.
  make(walkIn);
  make(makeMove(A8, B8));
  make(makeMove(E2, E4, Demotion));
  make(makeMove(B8, A8));
  makeAndUndo(makeMove(F3, E4, Pickup), [&](const StateInfo&) { EXPECT_EQ(pos.siege1CaptiveSquare, E4); });
  EXPECT_EQ(lastKeyChange, pieceKeys[WHITE][Archer][F3] ^ pieceKeys[WHITE][Archer][E4]);
  EXPECT_EQ(pos.siege1CaptiveSquare, D4);
}

TEST_F(CaptivesTest, Siege1HandOverAndCaptureOfTheCarrier) {
  setUp(pos, RescueGeneral, "k7/8/8/8/1aA5/2W5/8/7K w 9 1 C3");
  makeAndUndo(makeMove(C3, C4, Transfer), [&](const StateInfo& st) {
    EXPECT_TRUE(st.isSiege1Exchange);
    EXPECT_EQ(pos.pieceOn(C3), makePiece(WHITE, Warrior));
    EXPECT_EQ(pos.pieceOn(C4), makePiece(WHITE, Archer));
    EXPECT_EQ(pos.siege1CaptiveSquare, C4);
    EXPECT_EQ(st.psqScore, st.previous->psqScore);
    EXPECT_EQ(st.pliesSinceCapture, 10);
  });
  EXPECT_EQ(lastKeyChange, captiveKeys[C3] ^ captiveKeys[C4]);

  setUp(pos, RescueGeneral, "k7/8/8/8/1aA5/2W5/8/7K b 9 1 C3");
  makeAndUndo(makeMove(B4, C3, Pickup), [&](const StateInfo&) { EXPECT_EQ(pos.siege1CaptiveSquare, C3); });
  EXPECT_EQ(lastKeyChange, pieceKeys[BLACK][Archer][B4] ^ pieceKeys[BLACK][Archer][C3] ^ pieceKeys[WHITE][Warrior][C3]);
}

// ---------------------------------------------------------------- Siege 2

TEST_F(CaptivesTest, Siege2DropOffs) {
  // A Black Archer carries White's captive off a1: the Dorn that appears there is White's.
  setUp(pos, RescueDorn, "8/7f/8/8/8/8/8/a6F b 0 1 A1 1 - 1");
  makeAndUndo(makeMove(A1, B2, Dropoff), [&](const StateInfo& st) {
    EXPECT_EQ(pos.pieceOn(A1), makePiece(WHITE, Dorn));
    EXPECT_EQ(pos.pieceOn(B2), makePiece(BLACK, Archer));
    EXPECT_TRUE(st.isSuccessfulDropoff && pos.siege2CaptiveReleased[WHITE]);
    EXPECT_FALSE(pos.siege2CaptiveAlive[WHITE]);
    EXPECT_EQ(pos.siege2CaptiveSquare[WHITE], NoSquare);
    EXPECT_EQ(st.psqScore, pos.computePsqScore());
  });
  EXPECT_EQ(lastKeyChange,
            pieceKeys[BLACK][Archer][A1] ^ pieceKeys[BLACK][Archer][B2] ^ captiveKeys[A1] ^ pieceKeys[WHITE][Dorn][A1]);

  // An owner that has a Dorn form already gets none: the square simply empties.
  setUp(pos, RescueDorn, "8/7f/8/8/8/8/8/a5IF b 0 1 A1 1 - 1");
  makeAndUndo(makeMove(A1, B2, Dropoff), [&](const StateInfo& st) {
    EXPECT_TRUE(pos.empty(A1));
    EXPECT_FALSE(st.isSuccessfulDropoff || pos.siege2CaptiveReleased[WHITE] || pos.siege2CaptiveAlive[WHITE]);
  });

  // Leaving onto a breach of the other tower takes up the other captive.
  setUp(pos, RescueDorn, "8/7f/8/8/8/8/8/N6F w 0 1 A1 1 - 1 BreachedBlack { A3 }");
  makeAndUndo(makeMove(A1, A3, Dropoff), [&](const StateInfo&) {
    EXPECT_EQ(pos.pieceOn(A1), makePiece(WHITE, Dorn));
    EXPECT_EQ(pos.siege2CaptiveSquare[BLACK], A3);
  });

  // Leaving onto a standing tower square: the carrier dies, the Dorn still appears.
  setUp(pos, RescueDorn, "8/7f/8/8/8/8/8/N6F w 0 1 A1 1 - 1");
  makeAndUndo(makeMove(A1, A3, Dropoff), [&](const StateInfo& st) {
    EXPECT_EQ(pos.pieceOn(A1), makePiece(WHITE, Dorn));
    EXPECT_TRUE(pos.empty(A3));
    EXPECT_EQ(st.psqScore, pos.computePsqScore());
  });

  // The released Dorn checks by its near reach: Black's only leader stands next to a1.
  setUp(pos, RescueDorn, "8/8/8/8/8/8/1f6/N6F w 0 1 A1 1 - 1");
  makeAndUndo(makeMove(A1, C1, Dropoff), [&](const StateInfo& st) { EXPECT_EQ(st.checkers, bb(A1)); });
}

TEST_F(CaptivesTest, Siege2KillsWhenCarriersMeet) {
  // White's Warrior carries White's captive and takes the Archer that carries Black's.
  setUp(pos, RescueDorn, "f7/8/8/8/3a4/2W5/8/7F w 0 1 C3 1 D4 1");
  makeAndUndo(makeMove(C3, D4, Transfer), [&](const StateInfo& st) {
    EXPECT_EQ(st.isSiege2EnemyTransferKill, 1);
    EXPECT_FALSE(pos.siege2CaptiveAlive[BLACK]);
    EXPECT_EQ(pos.siege2CaptiveSquare[BLACK], NoSquare);
    EXPECT_EQ(pos.siege2CaptiveSquare[WHITE], D4);
    // The carrier's own travel leaves the piece-square sum alone; only the taken Archer leaves it.
    EXPECT_EQ(st.psqScore, st.previous->psqScore - psq[makePiece(BLACK, Archer)][D4]);
  });
  EXPECT_EQ(lastKeyChange, pieceKeys[WHITE][Warrior][C3] ^ pieceKeys[WHITE][Warrior][D4] ^
                               pieceKeys[BLACK][Archer][D4] ^ captiveKeys[C3]);

  // With the captives the other way round it is again Black's captive that dies.
  setUp(pos, RescueDorn, "f7/8/8/8/3a4/2W5/8/7F w 0 1 D4 1 C3 1");
  makeAndUndo(makeMove(C3, D4, Transfer), [&](const StateInfo& st) {
    EXPECT_EQ(st.isSiege2EnemyTransferKill, -1);
    EXPECT_EQ(st.siege2_color, BLACK);
    EXPECT_FALSE(pos.siege2CaptiveAlive[BLACK]);
    EXPECT_EQ(pos.siege2CaptiveSquare[WHITE], D4);
    EXPECT_TRUE(pos.siege2CaptiveAlive[WHITE]);
  });
}

TEST_F(CaptivesTest, Siege2HandOverMovesOnlyTheCaptive) {
  setUp(pos, RescueDorn, "f7/8/8/8/2A5/2W5/8/7F w 5 1 C3 1 - 1");
  makeAndUndo(makeMove(C3, C4, Transfer), [&](const StateInfo& st) {
    EXPECT_TRUE(st.isSiege1Exchange);
    EXPECT_EQ(pos.pieceOn(C3), makePiece(WHITE, Warrior));
    EXPECT_EQ(pos.pieceOn(C4), makePiece(WHITE, Archer));
    EXPECT_EQ(pos.siege2CaptiveSquare[WHITE], C4);
    EXPECT_EQ(pos.siege2LastCaptiveSquare[WHITE], C3);
    EXPECT_EQ(st.siege2_color, WHITE);
    EXPECT_EQ(st.psqScore, st.previous->psqScore);
    EXPECT_EQ(st.pliesSinceCapture, 6);
  });
  EXPECT_EQ(lastKeyChange, captiveKeys[C3] ^ captiveKeys[C4]);
}

TEST_F(CaptivesTest, Siege2CarrierWalkingIntoATower) {
  // Into the enemy's standing tower: the own captive dies with its carrier.
  setUp(pos, RescueDorn, "f7/8/8/8/8/1W6/8/7F w 4 1 B3 1 - 1");
  makeAndUndo(makeMove(B3, A3, Transfer), [&](const StateInfo& st) {
    EXPECT_FALSE(pos.siege2CaptiveAlive[WHITE]);
    EXPECT_EQ(pos.siege2CaptiveSquare[WHITE], A3);
    EXPECT_EQ(st.pliesSinceCapture, 0);
  });
  EXPECT_EQ(lastKeyChange, pieceKeys[WHITE][Warrior][B3] ^ captiveKeys[B3]);

  // With the enemy tower gone, the own captive lies alive where its carrier died ...
  setUp(pos, RescueDorn, "f7/8/8/8/6W1/8/8/7F w 0 1 G4 1 - 1 BreachedBlack { A3 A4 }");
  makeAndUndo(makeMove(G4, H5, Transfer), [&](const StateInfo&) {
    EXPECT_TRUE(pos.siege2CaptiveAlive[WHITE]);
    EXPECT_EQ(pos.siege2CaptiveSquare[WHITE], H5);
  });
  // ... but an enemy carrier kills it in any case.
  setUp(pos, RescueDorn, "f7/8/8/8/6a1/8/8/7F b 0 1 G4 1 - 1 BreachedBlack { A3 A4 }");
  makeAndUndo(makeMove(G4, H5, Transfer), [&](const StateInfo&) { EXPECT_FALSE(pos.siege2CaptiveAlive[WHITE]); });
}

TEST_F(CaptivesTest, Siege2PickUpsAndBreaches) {
  // A capture on a breached square of White's tower takes the free captive out; undone, the
  // Archer on h5 carries nothing.
  setUp(pos, RescueDorn, "f7/8/8/7a/6W1/8/8/7F w 0 1 - 1 - 1 BreachedWhite { H5 }");
  makeAndUndo(makeMove(G4, H5, Pickup), [&](const StateInfo& st) {
    EXPECT_EQ(pos.siege2CaptiveSquare[WHITE], H5);
    EXPECT_EQ(st.pliesSinceCapture, 0);
  });
  EXPECT_EQ(lastKeyChange,
            pieceKeys[WHITE][Warrior][G4] ^ pieceKeys[WHITE][Warrior][H5] ^ pieceKeys[BLACK][Archer][H5]);

  // A quiet pick-up keys the captive in.
  setUp(pos, RescueDorn, "f7/8/8/8/6W1/8/8/7F w 0 1 - 1 - 1 BreachedWhite { H5 }");
  makeAndUndo(makeMove(G4, H5, Pickup), [&](const StateInfo&) { EXPECT_EQ(pos.siege2CaptiveSquare[WHITE], H5); });
  EXPECT_EQ(lastKeyChange, pieceKeys[WHITE][Warrior][G4] ^ pieceKeys[WHITE][Warrior][H5] ^ captiveKeys[H5]);

  // A breach of the enemy's tower is recorded under that tower's colour and earns no bonus.
  setUp(pos, RescueDorn, "f7/8/8/8/8/2M5/8/7F w 0 1");
  makeAndUndo(makeMove(C3, A3, Demotion), [&](const StateInfo& st) {
    EXPECT_EQ(st.siege2_color, BLACK);
    EXPECT_EQ(pos.siege2Tower[BLACK], bb(A4));
    EXPECT_EQ(pos.siege2Breached[BLACK], bb(A3));
    EXPECT_EQ(st.psqScore, st.previous->psqScore);
  });
  EXPECT_EQ(lastKeyChange, towerKeys[3]);

  // The first breach of the own tower pays; once any square is open, no breach pays again.
  setUp(pos, RescueDorn, "f7/8/8/8/8/7M/8/7F w 0 1");
  makeAndUndo(makeMove(H3, H5, Demotion), [&](const StateInfo& st) {
    EXPECT_EQ(st.siege2_color, WHITE);
    EXPECT_EQ(st.psqScore, st.previous->psqScore + Bonus);
  });
  setUp(pos, RescueDorn, "f7/8/8/8/8/7M/8/7F w 0 1 - 1 - 1 BreachedBlack { A4 }");
  makeAndUndo(makeMove(H3, H5, Demotion),
              [&](const StateInfo& st) { EXPECT_EQ(st.psqScore, st.previous->psqScore); });
}

TEST_F(CaptivesTest, UndoShowsTheBoardOnlyForAnEmptyToSquareThatIsAFault) {
  // Breaches and deaths on a tower leave `to` empty by right: nothing is printed.
  setUp(pos, RescueGeneral, "k7/8/8/8/8/2W5/3M4/7K w 0 1");
  for (Move m : {makeMove(D2, D4, Demotion), makeMove(C3, D4)}) {
    make(m);
    CaptureStdout out;
    pos.undo_move(m);
    --ply;
    EXPECT_EQ(out.text(), "") << (isDemotion(m) ? "breach" : "death");
  }
  // A plain move whose piece has gone from `to` is reported with the board.
  Move m = makeMove(C3, C4);
  make(m);
  pos.removePiece(C4);
  CaptureStdout out;
  pos.undo_move(m);
  EXPECT_NE(out.text(), "");
}

}  // namespace

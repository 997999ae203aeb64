// Exchange values of single moves for each special of the game, and a sweep over random games that
// holds the position unchanged by every call.
#include "search/see.h"

#include <cctype>
#include <cstring>
#include <functional>

#include "../movegen/move_list_text.h"
#include "../support/capture_stdout.h"
#include "../support/random_games.h"
#include "core/psqt.h"

namespace {

constexpr int Magicians = 1, RescueGeneral = 3, RescueDorn = 4;

struct SeeCase {
  const char* what;
  int gameType;
  void (*rules)();
  const char* fen;
  Move move;
  Value expected;
};

void PrintTo(const SeeCase& c, std::ostream* out) { *out << c.fen; }

void defaults() {}
void capturePromotionsOn() { capturePromotions = 1; }

// Values under the default rules: Sword 200, Magician1 250, Archer 650, Magician 1025, Magician2
// 1450, Warrior 1600, Bondsman 2100, Dorn 2300.
const SeeCase cases[] = {
    {"an empty square that no enemy reaches", Magicians, defaults, "k7/8/8/8/8/8/8/A6K w 0 1", makeMove(A1, B2), 0},
    {"a plain move onto a standing tower costs the mover", RescueGeneral, defaults, "7k/8/8/8/8/2W5/8/K7 w 0 1",
     makeMove(C3, D4), -1600},
    // Black's Sword may not take the Warrior, so Black's sole leader is the capturer, reach or not.
    {"the sole leader comes in last and ends the walk", Magicians, defaults, "7k/8/2s5/3a4/3W4/8/8/K7 w 0 1",
     makeMove(D4, D5), 650 - 1600},
    {"a guarded square makes the leader's capture too dear", Magicians, defaults, "7k/8/2s5/3a4/3WA3/8/8/K7 w 0 1",
     makeMove(D4, D5), 650},
    // Black has a Dorn and a Bondsman: the Bondsman is spent first since the Dorn still leads, then
    // the Dorn takes too, as nothing guards the square any more.
    {"a side with two leaders spends one", Magicians, defaults, "3f4/8/2k5/3a4/3WA3/8/8/K7 w 0 1", makeMove(D4, D5),
     500},
    {"a demotion nobody answers", Magicians, defaults, "7k/8/3w4/8/3M4/8/8/K7 w 0 1", makeMove(D4, D6, Demotion),
     1600 - 650},
    // The Warrior, an Archer now, no longer reaches d4; the Magician is what is at stake.
    {"after a demotion the Magician is at stake", Magicians, defaults, "7k/8/3w4/4a3/3M4/8/8/7K w 0 1",
     makeMove(D4, D6, Demotion), 1600 - 650 - 1025},
    {"a demotion in the walk leaves the victim demoted", Magicians, defaults, "7k/3m4/8/3a4/3W4/8/8/K7 w 0 1",
     makeMove(D4, D5), 650 - (1600 - 650)},
    {"the walk goes on at the demoting Magician", Magicians, defaults, "7k/3m4/4A3/3a4/3W4/8/8/K7 w 0 1",
     makeMove(D4, D5), 650},
    // The Magician1 cannot act on the Sword; Black's Archer takes, White's Archer takes back.
    {"a Magician1 drops out against a Sword", Magicians, defaults, "7k/8/3ga3/3a4/2S1A3/8/8/K7 w 0 1",
     makeMove(C4, D5), 650},
    // 1450 + 650 - 1025 - 1600 = -525 for the exchange; the new Magician2 is taken and the partner,
    // an Archer now, takes back.
    {"an exchange answered on the Magician's square", Magicians, defaults, "7k/8/8/4a3/3M4/3W4/8/K7 w 0 1",
     makeMove(D4, D3, Exchange), -525 - 1450 + 650},
    {"a promotion on arrival is taken in its new type", Magicians, defaults, "a7/8/2S5/8/8/8/8/K6k w 0 1",
     makeMove(C6, B7, Promotion), 1400 - 1600},
    {"a capture promotion taken back", Magicians, capturePromotionsOn, "7k/8/4a3/3a4/2S5/8/8/K7 w 0 1",
     makeMove(C4, D5, Promotion), 650 + 650 - 200 - 650},
    // The Sword becomes an Archer by taking one; without the rule the value is 0.
    {"a recapture that promotes the Sword", Magicians, capturePromotionsOn, "7k/8/2s5/3a4/4A3/8/8/K7 w 0 1",
     makeMove(E4, D5), 650 - 1100},
    {"a first breach on the own half", RescueGeneral, defaults, "7k/8/8/8/8/8/3M4/K7 w 0 1",
     makeMove(D2, D4, Demotion), 120},
    {"a breach on the enemy half", RescueGeneral, defaults, "7k/3M4/8/8/8/8/8/K7 w 0 1", makeMove(D7, D5, Demotion),
     0},
    {"a breach of the own tower", RescueDorn, defaults, "7f/8/8/8/8/7M/8/F7 w 0 1", makeMove(H3, H5, Demotion), 120},
    {"a breach of the enemy tower", RescueDorn, defaults, "7f/8/8/8/8/2M5/8/F7 w 0 1", makeMove(C3, A3, Demotion), 0},
    {"a drop-off that frees a Dorn", RescueDorn, defaults, "i7/8/8/8/8/8/8/W6F w 0 1 A1 1 - 1",
     makeMove(A1, B1, Dropoff), 2300},
    // The Archer takes the new Dorn and the carrier, which has stepped to b1, takes the Archer.
    {"a freed Dorn taken, the carrier takes back", RescueDorn, defaults, "i7/8/8/8/8/8/1a6/W6F w 0 1 A1 1 - 1",
     makeMove(A1, B1, Dropoff), 650},
    {"a pick-up counts its bonus once", RescueGeneral, defaults, "7k/8/8/8/8/2W5/8/K7 w 0 1 - Breached { D4 }",
     makeMove(C3, D4, Pickup), 100 + 100},
    {"a pick-up answered counts it twice", RescueGeneral, defaults,
     "7k/8/8/2a5/8/2W5/8/7K w 0 1 - Breached { D4 }", makeMove(C3, D4, Pickup), -1600},
};

class SeeTest : public PositionUnderRules, public ::testing::WithParamInterface<SeeCase> {};

TEST_P(SeeTest, ValueOfTheMove) {
  const SeeCase& c = GetParam();
  c.rules();
  load(c.fen, c.gameType);
  ASSERT_TRUE(pos.pseudo_legal(c.move)) << wordText(c.move);
  EXPECT_EQ(see(pos, c.move), c.expected);
}

std::string caseName(const ::testing::TestParamInfo<SeeCase>& info) {
  std::string name;
  for (const char* c = info.param.what; *c; ++c) name += std::isalnum(static_cast<unsigned char>(*c)) ? *c : '_';
  return name;
}

INSTANTIATE_TEST_SUITE_P(Specials, SeeTest, ::testing::ValuesIn(cases), caseName);

// ---------------------------------------------------------------- random games

using Snapshot = std::vector<unsigned char>;

Snapshot snapshot(const Position& pos) {
  Snapshot bytes(sizeof(Position) + sizeof(StateInfo));
  std::memcpy(bytes.data(), static_cast<const void*>(&pos), sizeof(Position));
  std::memcpy(bytes.data() + sizeof(Position), pos.state(), sizeof(StateInfo));
  return bytes;
}

// Every pseudo-legal word of every position: the position is untouched, seeSign is see wherever it
// has to ask, and no word of the generators has a type the tables do not know.
TEST(SeeSweep, RandomGamesOfEveryTypeLeaveThePositionAsItWas) {
  int met[8] = {};  // captures, demotions, breaches, exchanges, promotions, pick-ups, drop-offs, deaths
  debugMoveTypes = true;
  CaptureStdout reports;
  forRandomPositions(2, 100, 20260501u, [&](Position& pos, const std::string& where) {
    const Snapshot before = snapshot(pos);
    for (Move m : movesOf(pos, pos.inCheck() ? generateEvasions : generateNonEvasions)) {
      const Square from = moveFrom(m), to = moveTo(m);
      const bool onTower = pos.onStandingTower(to);
      const bool kinds[8] = {!pos.empty(to) && !specialKind(m), isDemotion(m) && !onTower, isDemotion(m) && onTower,
                             isExchange(m), isPromotion(m), isPickup(m), isDropoff(m), !isDemotion(m) && onTower};
      for (int k = 0; k < 8; ++k) met[k] += kinds[k];
      const Value v = see(pos, m);
      ASSERT_TRUE(snapshot(pos) == before) << where << "\nchanged by " << wordText(m);
      const bool asks = pieceValueMg[pos.pieceOn(to)] < pieceValueMg[pos.pieceOn(from)];
      ASSERT_EQ(seeSign(pos, m), asks ? v : 1) << where << "\n" << wordText(m);
    }
  });
  debugMoveTypes = false;
  EXPECT_EQ(reports.text(), "");
  for (int k = 0; k < 8; ++k) EXPECT_GT(met[k], 5) << "kind " << k;
}

}  // namespace

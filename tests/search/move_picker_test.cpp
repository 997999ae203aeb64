// The move picker: over random games of every type each search situation hands out exactly its
// lists, the table move first, in stage order; and the ratings that decide what comes first.
#include "search/move_picker.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <random>

#include "../movegen/move_list_text.h"
#include "../support/random_games.h"
#include "core/psqt.h"
#include "search/history.h"
#include "search/see.h"

namespace {

using Moves = std::vector<Move>;
using MP = MovePicker;

struct Drawn {
  Moves moves;
  std::vector<MP::Stage> stages;
};

// Everything the picker hands out; once done it keeps answering MoveNone.
Drawn drain(MovePicker&& picker) {
  Drawn d;
  for (Move m; (m = picker.nextMove()) != MoveNone && d.moves.size() < 2 * MaxMoves;) {
    d.moves.push_back(m);
    d.stages.push_back(picker.stage());
  }
  EXPECT_EQ(picker.nextMove(), MoveNone);
  return d;
}

Moves filter(const Moves& moves, const std::function<bool(Move)>& keep) {
  Moves kept;
  std::copy_if(moves.begin(), moves.end(), std::back_inserter(kept), keep);
  return kept;
}

Moves operator+(Moves a, const Moves& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

// The table move first and never again, then the words of `rest` as often as the lists hold them,
// from stages in the order given.
void expectDrawn(const Drawn& d, Move tt, Moves rest, std::initializer_list<MP::Stage> order,
                 const std::string& where) {
  Moves got = d.moves;
  if (tt != MoveNone) {
    ASSERT_FALSE(got.empty()) << where;
    EXPECT_EQ(got.front(), tt) << where;
    got.erase(got.begin());
  }
  rest.erase(std::remove(rest.begin(), rest.end(), tt), rest.end());
  std::sort(got.begin(), got.end());
  std::sort(rest.begin(), rest.end());
  EXPECT_EQ(got, rest) << where << "\nhanded out: " << listText(got) << "\nexpected:   " << listText(rest);
  auto at = order.begin();
  for (MP::Stage s : d.stages) {
    at = std::find(at, order.end(), s);
    ASSERT_NE(at, order.end()) << where << ", stage " << s;
  }
}

TEST(MovePickerSweep, EverySituationHandsOutItsListsOnceInStageOrder) {
  std::mt19937 rng(77u);
  int killers = 0, badCaptures = 0, handovers = 0;
  forRandomPositions(1, 90, 4242u, [&](Position& pos, const std::string& where) {
    std::vector<unsigned char> before(sizeof(Position));
    std::memcpy(before.data(), static_cast<const void*>(&pos), sizeof(Position));
    const Moves captures = movesOf(pos, generateCaptures), quiets = movesOf(pos, generateQuiets);
    const Moves all = movesOf(pos, pos.inCheck() ? generateEvasions : generateNonEvasions);
    // A word of the position, sometimes made an exchange, which is then mostly false here.
    Move ttm = all.empty() || rng() % 4 == 0 ? MoveNone : all[rng() % all.size()];
    if (rng() % 5 == 0) ttm = makeMove(moveFrom(ttm), moveTo(ttm), Exchange);
    const Move tt = pos.pseudo_legal(ttm) ? ttm : MoveNone;
    SearchStack ss{};
    ss.eval = Value(rng() % 2001) - 1000;
    const Value beta = rng() % 3 ? Value(rng() % 2001) - 1000 : -ValueInfinite;

    if (pos.inCheck()) {
      expectDrawn(drain(MP(pos, ttm, 8, &ss, beta)), tt, all, {MP::EvasionTT, MP::Evasions}, where);
      expectDrawn(drain(MP(pos, ttm, -2 * int(rng() % 6), NoSquare, rng() % 2)), tt, all,
                  {MP::EvasionTT, MP::Evasions}, where);
      return;
    }

    // Killers as the search keeps them, no special kind and an empty to square: quiet moves here,
    // a capture here, a word from an empty square.
    Moves choices = filter(captures, [&](Move m) { return !pos.empty(moveTo(m)) && !specialKind(m); }) +
                    filter(quiets, [&](Move m) { return pos.empty(moveTo(m)) && !specialKind(m) && rng() % 8 == 0; });
    choices.push_back(MoveNone);
    if (pos.empty(A1)) choices.push_back(makeMove(A1, A2));
    ss.killers[0] = choices[rng() % choices.size()];
    ss.killers[1] = choices[rng() % choices.size()];
    if (ss.killers[1] == ss.killers[0]) ss.killers[1] = MoveNone;

    const Drawn main = drain(MP(pos, ttm, Depth(1 + rng() % 14), &ss, beta));
    expectDrawn(main, tt, captures + quiets,
                {MP::MainTT, MP::GoodCaptures, MP::Killers, MP::QuietsFirst, MP::QuietsRest, MP::BadCaptures}, where);
    for (size_t i = 0; i < main.moves.size(); ++i) {
      const Move m = main.moves[i];
      const MP::Stage s = main.stages[i];
      if (s == MP::MainTT) continue;
      EXPECT_EQ(std::count(captures.begin(), captures.end(), m) > 0, s == MP::GoodCaptures || s == MP::BadCaptures)
          << where << " " << wordText(m);
      EXPECT_TRUE(s != MP::Killers || m == ss.killers[0] || m == ss.killers[1]) << where;
      killers += s == MP::Killers;
      badCaptures += s == MP::BadCaptures;
      // Two words for one pair of squares: a base arrival, a promotion among the captures and a
      // plain word among the quiets; and a carrying leader's exchange beside its hand-over.
      for (size_t j = 0; j < i; ++j) {
        const Move a = std::min(m, main.moves[j]), b = std::max(m, main.moves[j]);
        if ((a & 0xFFF) != (b & 0xFFF)) continue;
        const bool arrival = !specialKind(a) && isPromotion(b), handover = isSiege1Exchange(pos, a) && isExchange(b);
        EXPECT_TRUE(arrival || handover) << where << " " << wordText(a) << " " << wordText(b);
        handovers += handover;
      }
    }

    // Quiescence never hands out an exchange but as the table move.
    const Moves noExchanges = filter(captures, [](Move m) { return !isExchange(m); });
    expectDrawn(drain(MP(pos, ttm, -2 * int(rng() % 2), NoSquare, false)), tt,
                noExchanges + movesOf(pos, generateQuietChecks), {MP::QChecksTT, MP::QChecksCaptures, MP::QuietChecks},
                where);
    const Move kept = tt != MoveNone && (!pos.empty(moveTo(tt)) || specialKind(tt)) ? tt : MoveNone;
    expectDrawn(drain(MP(pos, ttm, -4 - 2 * int(rng() % 3), NoSquare, false)), kept, noExchanges,
                {MP::QCapturesTT, MP::QCaptures}, where);
    expectDrawn(drain(MP(pos, ttm, -2 * int(rng() % 6), NoSquare, true)), tt, noExchanges + quiets,
                {MP::QAllTT, MP::QAllCaptures, MP::AllQuiets}, where);
    const Square square = ttm != MoveNone ? moveTo(ttm) : A1;
    const Moves recaptures = filter(captures, [&](Move m) {
      return moveTo(m) == square ||
             (siege1 && isTransfer(m) && !isDemotion(m) && (goalSquares[pos.side()] >> moveTo(m) & 1));
    });
    expectDrawn(drain(MP(pos, ttm, -10 - 2 * int(rng() % 3), square, false)), MoveNone, recaptures, {MP::Recaptures},
                where);
    const PieceType taken = PieceType(rng() % PieceTypeNb);
    const Moves winning = filter(captures, [&](Move m) { return see(pos, m) > pieceValueMg[taken]; });
    const Move probe = tt != MoveNone && !pos.empty(moveTo(tt)) && see(pos, tt) > pieceValueMg[taken] ? tt : MoveNone;
    expectDrawn(drain(MP(pos, ttm, taken)), probe, winning, {MP::ProbCutTT, MP::ProbCutCaptures}, where);

    EXPECT_EQ(std::memcmp(before.data(), static_cast<const void*>(&pos), sizeof(Position)), 0) << where;
  });
  EXPECT_GT(killers, 1000);
  EXPECT_GT(badCaptures, 100);
  EXPECT_GT(handovers, 2);  // base arrivals are rare in random games: see ABaseArrivalComesTwice
}

// ---------------------------------------------------------------- orderings

class PickerOrder : public PositionUnderRules {
 protected:
  void TearDown() override {
    history.clear();
    PositionUnderRules::TearDown();
  }

  MP::Stage stageOf(Move m, Depth depth, Value eval, Value beta) {
    SearchStack ss{};
    ss.eval = eval;
    Drawn d = drain(MP(pos, MoveNone, depth, &ss, beta));
    auto at = std::find(d.moves.begin(), d.moves.end(), m);
    return at == d.moves.end() ? MP::MainStop : d.stages[at - d.moves.begin()];
  }
};

// The Archer's capture of the Assassin loses 50: a good capture only where the threshold allows it.
TEST_F(PickerOrder, TheCaptureThresholdFollowsEvalBetaAndDepth) {
  load("7k/8/2s5/3n4/4A3/8/8/7K w 0 1");
  const Move losing = makeMove(E4, D5);
  ASSERT_EQ(see(pos, losing), -50);
  EXPECT_EQ(stageOf(losing, 4, -500, 0), MP::GoodCaptures);  // far below beta, near the leaves
  EXPECT_EQ(stageOf(losing, 6, -500, 0), MP::BadCaptures);
  EXPECT_EQ(stageOf(losing, 6, -500, -ValueInfinite), MP::GoodCaptures);  // a PV node
  EXPECT_EQ(stageOf(losing, 6, 100, 80), MP::BadCaptures);                // only a loss of 20 would do
}

// A carrier's step onto its goal outranks a Warrior's capture, among the captures and the evasions.
TEST_F(PickerOrder, TheWinningTransferComesFirst) {
  SearchStack ss{};
  load("7k/8/8/8/1W6/8/2A5/3w3K w 0 1 B4", 3);
  EXPECT_EQ(MP(pos, MoveNone, 4, &ss, 0).nextMove(), makeMove(B4, A4, Transfer));
  load("7k/8/8/8/8/1K6/2a1W3/8 w 0 1 B3", 3);
  ASSERT_TRUE(pos.inCheck());
  MP evasions(pos, MoveNone, 4, &ss, 0);
  EXPECT_EQ(evasions.nextMove(), makeMove(B3, A4, Transfer));
  EXPECT_EQ(evasions.nextMove(), makeMove(E2, C2));  // the capture of the checker by the cheaper piece
}

// Quiets with history above 0 come first, by history; from depth 6 the rest is sorted too. A tower
// move sends the moves with history 0 to the first part, and itself to the very end.
TEST_F(PickerOrder, QuietsSplitAtZeroAndTowerMovesGoLast) {
  load("7k/8/8/8/8/8/3A4/7K w 0 1");
  const Piece archer = makePiece(WHITE, Archer);
  for (auto [to, score] : {std::pair{C3, 10}, {E3, 50}, {C1, -5}, {E1, -50}}) history.update(archer, to, score);
  SearchStack ss{};
  Drawn d = drain(MP(pos, MoveNone, 6, &ss, 0));
  const Moves byArcher = filter(d.moves, [](Move m) { return moveFrom(m) == D2; });
  ASSERT_EQ(byArcher.size(), 8u);
  EXPECT_EQ(listText({byArcher[0], byArcher[1], byArcher[6], byArcher[7]}), "d2e3 d2c3 d2c1 d2e1");
  EXPECT_EQ(d.stages[2], MP::QuietsRest);

  history.clear();
  load("7k/8/8/8/8/2W5/8/7K w 0 1", 3);  // the Warrior reaches three tower squares, where it would die
  d = drain(MP(pos, MoveNone, 6, &ss, 0));
  for (size_t i = 0, n = d.moves.size(); i < n; ++i) {
    EXPECT_EQ(pos.onStandingTower(moveTo(d.moves[i])), i + 3 >= n) << wordText(d.moves[i]);
    EXPECT_EQ(d.stages[i], i + 3 >= n ? MP::QuietsRest : MP::QuietsFirst);
  }
}

// A Sword's step into the enemy base: a promotion among the captures, a plain word among the quiets.
TEST_F(PickerOrder, ABaseArrivalComesTwice) {
  load("7k/8/2S5/8/8/8/8/7K w 0 1");
  SearchStack ss{};
  Drawn d = drain(MP(pos, MoveNone, 4, &ss, 0));
  EXPECT_EQ(d.moves[0], makeMove(C6, B7, Promotion));
  auto plain = std::find(d.moves.begin(), d.moves.end(), makeMove(C6, B7));
  ASSERT_NE(plain, d.moves.end());
  EXPECT_EQ(d.stages[plain - d.moves.begin()], MP::QuietsRest);
}

TEST(History, AnUpdateThatWouldReachTheLimitIsDroppedNotClipped) {
  const Piece p = makePiece(BLACK, Warrior);
  for (Value bonus : {1998, 5, -3996}) history.update(p, E5, bonus);
  EXPECT_EQ(history.get(p, E5), -1998);
  history.clear();
}

}  // namespace

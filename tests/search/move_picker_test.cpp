// The move picker: what each search situation hands out and in which stages, over random games of
// every type, and the orderings that decide which move comes first.
#include "search/move_picker.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <random>

#include "../movegen/move_list_text.h"
#include "../support/random_games.h"
#include "core/psqt.h"
#include "search/history.h"
#include "search/see.h"

namespace {

using Stage = MovePicker::Stage;

struct Drawn {
  std::vector<Move> moves;
  std::vector<Stage> stages;
};

// Everything the picker hands out; once done it keeps answering MoveNone.
Drawn drain(MovePicker& picker) {
  Drawn out;
  for (Move m; (m = picker.nextMove()) != MoveNone && out.moves.size() < 2 * MaxMoves;) {
    out.moves.push_back(m);
    out.stages.push_back(picker.stage());
  }
  EXPECT_EQ(picker.nextMove(), MoveNone);
  return out;
}

std::vector<Move> sorted(std::vector<Move> moves) {
  std::sort(moves.begin(), moves.end());
  return moves;
}

std::vector<Move> without(const std::vector<Move>& moves, bool (*drop)(Move), Move ttMove) {
  std::vector<Move> kept;
  for (Move m : moves)
    if (m != ttMove && !drop(m)) kept.push_back(m);
  return kept;
}

bool keepAll(Move) { return false; }
bool exchange(Move m) { return isExchange(m); }

std::vector<Move> operator+(std::vector<Move> a, const std::vector<Move>& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

// The stages the moves came from, in order, one entry per run of equal stages.
std::vector<Stage> stageRuns(const Drawn& d) {
  std::vector<Stage> runs;
  for (Stage s : d.stages)
    if (runs.empty() || runs.back() != s) runs.push_back(s);
  return runs;
}

// The table move comes first and never again; the rest is exactly `expected`, each word as often
// as its lists hold it; the stages follow the order of the situation's sequence.
void expectSequence(const Drawn& d, Move ttMove, Stage ttStage, const std::vector<Move>& expected,
                    const std::vector<Stage>& order, const std::string& where) {
  std::vector<Move> rest = d.moves;
  if (ttMove != MoveNone) {
    ASSERT_FALSE(d.moves.empty()) << where;
    EXPECT_EQ(d.moves[0], ttMove) << where;
    EXPECT_EQ(d.stages[0], ttStage) << where;
    rest.erase(rest.begin());
  }
  EXPECT_EQ(sorted(rest), sorted(expected)) << where << "\nhanded out: " << listText(rest)
                                            << "\nexpected:   " << listText(expected);
  std::vector<Stage> runs = stageRuns(d);
  auto at = order.begin();
  for (Stage s : runs) {
    at = std::find(at, order.end(), s);
    ASSERT_NE(at, order.end()) << where << "\nstage " << s << " out of order";
  }
}

struct Tally {
  int mainNodes = 0, evasionNodes = 0, killersGiven = 0, tableMovesDropped = 0, badCaptures = 0;
  int baseArrivals = 0, leaderHandovers = 0;  // pairs of squares with two words
};

// Main search, not in check: captures and quiets, each word once; killers in their stage.
void checkMainSearch(Position& pos, std::mt19937& rng, Tally& tally, const std::string& where) {
  const std::vector<Move> captures = movesOf(pos, generateCaptures), quiets = movesOf(pos, generateQuiets);
  const std::vector<Move> all = captures + quiets;
  Move ttm = rng() % 4 == 0 ? MoveNone : all.empty() ? Move(MoveNull) : all[rng() % all.size()];
  if (rng() % 5 == 0) ttm = makeMove(moveFrom(ttm), moveTo(ttm), Exchange);  // mostly a false word
  const Move ttMove = pos.pseudo_legal(ttm) ? ttm : MoveNone;
  tally.tableMovesDropped += ttm != MoveNone && ttMove == MoveNone;

  // Killers as the search keeps them, words with no special kind to an empty square: quiet moves of
  // this position; and a capture here, nothing, a word from an empty square.
  SearchStack ss{};
  std::vector<Move> choices = {MoveNone};
  if (pos.empty(A1)) choices.push_back(makeMove(A1, A2));
  for (Move m : captures)
    if (!pos.empty(moveTo(m)) && !specialKind(m)) choices.push_back(m);
  for (Move m : quiets)
    if (pos.empty(moveTo(m)) && !specialKind(m) && rng() % 8 == 0) choices.push_back(m);
  for (Move& k : ss.killers) k = choices[rng() % choices.size()];
  if (ss.killers[1] == ss.killers[0]) ss.killers[1] = MoveNone;  // as the search keeps them
  ss.eval = Value(rng() % 2001) - 1000;
  const Value beta = rng() % 3 ? Value(rng() % 2001) - 1000 : -ValueInfinite;
  const Depth depth = Depth(1 + rng() % 14);

  MovePicker picker(pos, ttm, depth, &ss, beta);
  Drawn d = drain(picker);
  expectSequence(d, ttMove, MovePicker::MainTT, without(all, keepAll, ttMove),
                 {MovePicker::MainTT, MovePicker::GoodCaptures, MovePicker::Killers, MovePicker::QuietsFirst,
                  MovePicker::QuietsRest, MovePicker::BadCaptures},
                 where + "\nkillers " + listText({ss.killers[0], ss.killers[1]}) + " table move " + wordText(ttm));
  for (size_t i = 0; i < d.moves.size(); ++i) {
    Move m = d.moves[i];
    bool isCapture = std::count(captures.begin(), captures.end(), m) > 0;
    switch (d.stages[i]) {
      case MovePicker::GoodCaptures:
      case MovePicker::BadCaptures:
        EXPECT_TRUE(isCapture) << where << " " << wordText(m);
        tally.badCaptures += d.stages[i] == MovePicker::BadCaptures;
        break;
      case MovePicker::Killers:
        EXPECT_TRUE(m == ss.killers[0] || m == ss.killers[1]) << where;
        EXPECT_TRUE(pos.empty(moveTo(m))) << where;
        ++tally.killersGiven;
        break;
      case MovePicker::QuietsFirst:
      case MovePicker::QuietsRest:
        EXPECT_FALSE(isCapture) << where << " " << wordText(m);
        break;
      default: break;
    }
  }
  // Two words for one pair of squares: a base arrival, as a promotion among the captures and as a
  // plain word among the quiets; and a carrying leader's exchange beside its hand-over of the
  // captive to the same partner.
  std::map<int, std::vector<Move>> bySquares;
  for (Move m : d.moves) bySquares[m & 0xFFF].push_back(m);
  for (const auto& [squares, words] : bySquares) {
    if (words.size() < 2) continue;
    ASSERT_EQ(words.size(), 2u) << where << " " << listText(words);
    const Move a = std::min(words[0], words[1]), b = std::max(words[0], words[1]);
    if (!specialKind(a) && isPromotion(b) && captiveKind(a) == captiveKind(b)) ++tally.baseArrivals;
    else if (isTransfer(a) && !specialKind(a) && isExchange(b) && isSiege1Exchange(pos, a)) ++tally.leaderHandovers;
    else ADD_FAILURE() << where << " " << listText(words);
  }
  ++tally.mainNodes;
}

void checkEvasions(Position& pos, std::mt19937& rng, Tally& tally, const std::string& where) {
  const std::vector<Move> evasions = movesOf(pos, generateEvasions);
  const Move ttm = evasions.empty() || rng() % 3 == 0 ? MoveNone : evasions[rng() % evasions.size()];
  SearchStack ss{};
  MovePicker mainPicker(pos, ttm, 8, &ss, 0);
  const std::vector<Stage> order = {MovePicker::EvasionTT, MovePicker::Evasions};
  expectSequence(drain(mainPicker), ttm, MovePicker::EvasionTT, without(evasions, keepAll, ttm), order, where);
  MovePicker quiescence(pos, MoveNone, -2 * int(rng() % 6), NoSquare, rng() % 2);
  expectSequence(drain(quiescence), MoveNone, MovePicker::EvasionTT, evasions, order, where);
  ++tally.evasionNodes;
}

// The quiescence situations and ProbCut, not in check.
void checkQuiescence(Position& pos, std::mt19937& rng, const std::string& where) {
  const std::vector<Move> captures = movesOf(pos, generateCaptures);
  const std::vector<Move> nonEvasions = movesOf(pos, generateNonEvasions);
  const Move ttm = nonEvasions.empty() || rng() % 4 == 0 ? MoveNone : nonEvasions[rng() % nonEvasions.size()];
  const Move tt = pos.pseudo_legal(ttm) ? ttm : MoveNone;
  const std::vector<Move> plainCaptures = without(captures, exchange, tt);

  MovePicker checks(pos, ttm, -2 * int(rng() % 2), NoSquare, false);
  expectSequence(drain(checks), tt, MovePicker::QChecksTT,
                 plainCaptures + without(movesOf(pos, generateQuietChecks), keepAll, tt),
                 {MovePicker::QChecksTT, MovePicker::QChecksCaptures, MovePicker::QuietChecks}, where);

  // The table move is kept here only if it takes a piece or is a special word.
  const Move kept = tt != MoveNone && (!pos.empty(moveTo(tt)) || specialKind(tt)) ? tt : MoveNone;
  MovePicker capturesOnly(pos, ttm, -4 - 2 * int(rng() % 3), NoSquare, false);
  expectSequence(drain(capturesOnly), kept, MovePicker::QCapturesTT, without(captures, exchange, kept),
                 {MovePicker::QCapturesTT, MovePicker::QCaptures}, where);

  const Square recapture = ttm != MoveNone ? moveTo(ttm) : A1;
  std::vector<Move> recaptures;
  for (Move m : captures)
    if (moveTo(m) == recapture ||
        (siege1 && isTransfer(m) && !isDemotion(m) && (goalSquares[pos.side()] >> moveTo(m) & 1)))
      recaptures.push_back(m);
  MovePicker deepest(pos, ttm, -10 - 2 * int(rng() % 3), recapture, false);
  expectSequence(drain(deepest), MoveNone, MovePicker::RecaptureTT, recaptures, {MovePicker::Recaptures}, where);

  MovePicker everything(pos, ttm, -2 * int(rng() % 6), NoSquare, true);
  expectSequence(drain(everything), tt, MovePicker::QAllTT,
                 plainCaptures + without(movesOf(pos, generateQuiets), keepAll, tt),
                 {MovePicker::QAllTT, MovePicker::QAllCaptures, MovePicker::AllQuiets}, where);

  const PieceType taken = PieceType(rng() % PieceTypeNb);
  const Value threshold = pieceValueMg[taken];
  const Move probCutMove = tt != MoveNone && !pos.empty(moveTo(tt)) && see(pos, tt) > threshold ? tt : MoveNone;
  std::vector<Move> winning;
  for (Move m : captures)
    if (m != probCutMove && see(pos, m) > threshold) winning.push_back(m);
  MovePicker probCut(pos, ttm, taken);
  expectSequence(drain(probCut), probCutMove, MovePicker::ProbCutTT, winning,
                 {MovePicker::ProbCutTT, MovePicker::ProbCutCaptures}, where);
}

TEST(MovePickerSweep, EverySituationHandsOutItsListsOnceInStageOrder) {
  Tally tally;
  std::mt19937 rng(77u);
  forRandomPositions(1, 90, 4242u, [&](Position& pos, const std::string& where) {
    std::vector<unsigned char> before(sizeof(Position));
    std::memcpy(before.data(), static_cast<const void*>(&pos), sizeof(Position));
    if (pos.inCheck()) {
      checkEvasions(pos, rng, tally, where);
    } else {
      checkMainSearch(pos, rng, tally, where);
      checkQuiescence(pos, rng, where);
    }
    EXPECT_EQ(std::memcmp(before.data(), static_cast<const void*>(&pos), sizeof(Position)), 0) << where;
  });
  history.clear();
  EXPECT_GT(tally.mainNodes, 1000);
  EXPECT_GT(tally.evasionNodes, 50);
  EXPECT_GT(tally.killersGiven, 1000);
  EXPECT_GT(tally.tableMovesDropped, 100);
  EXPECT_GT(tally.badCaptures, 100);
  EXPECT_GT(tally.leaderHandovers, 2);
}

// ---------------------------------------------------------------- orderings

class PickerOrder : public PositionUnderRules {
 protected:
  void TearDown() override {
    history.clear();
    PositionUnderRules::TearDown();
  }

  Stage stageOf(MovePicker& picker, Move m) {
    Drawn d = drain(picker);
    auto at = std::find(d.moves.begin(), d.moves.end(), m);
    return at == d.moves.end() ? MovePicker::MainStop : d.stages[at - d.moves.begin()];
  }
};

// The Archer's capture of the Assassin loses 50: good only where the threshold allows a loss.
TEST_F(PickerOrder, TheCaptureThresholdFollowsEvalBetaAndDepth) {
  load("7k/8/2s5/3n4/4A3/8/8/7K w 0 1");
  const Move losing = makeMove(E4, D5);
  ASSERT_EQ(see(pos, losing), -50);
  SearchStack ss{};
  ss.eval = -500;
  MovePicker farBelow(pos, MoveNone, 4, &ss, 0);
  EXPECT_EQ(stageOf(farBelow, losing), MovePicker::GoodCaptures);
  MovePicker deeper(pos, MoveNone, 6, &ss, 0);
  EXPECT_EQ(stageOf(deeper, losing), MovePicker::BadCaptures);
  MovePicker pvNode(pos, MoveNone, 6, &ss, -ValueInfinite);
  EXPECT_EQ(stageOf(pvNode, losing), MovePicker::GoodCaptures);
  ss.eval = 100;
  MovePicker aboveBeta(pos, MoveNone, 6, &ss, 80);  // a loss of 20 would still do
  EXPECT_EQ(stageOf(aboveBeta, losing), MovePicker::BadCaptures);
}

// A carrier's step onto its goal outranks a Warrior's capture, among the captures and the evasions.
TEST_F(PickerOrder, TheWinningTransferComesFirst) {
  load("7k/8/8/8/1W6/8/2A5/3w3K w 0 1 B4", 3);
  SearchStack ss{};
  MovePicker captures(pos, MoveNone, 4, &ss, 0);
  EXPECT_EQ(captures.nextMove(), makeMove(B4, A4, Transfer));

  load("7k/8/8/8/8/1K6/2a1W3/8 w 0 1 B3", 3);
  ASSERT_TRUE(pos.inCheck());
  MovePicker evasions(pos, MoveNone, 4, &ss, 0);
  EXPECT_EQ(evasions.nextMove(), makeMove(B3, A4, Transfer));
  EXPECT_EQ(evasions.nextMove(), makeMove(E2, C2));  // taking the checker with a guard to spare
}

// Quiets with a history above 0 come first, by history; the rest follows, sorted from depth 6 on.
// A tower move in the list sends the moves with history 0 to the first part instead.
TEST_F(PickerOrder, QuietsSplitAtZeroAndTowerMovesGoLast) {
  load("7k/8/8/8/8/8/3A4/7K w 0 1");
  const Piece archer = makePiece(WHITE, Archer);
  history.update(archer, C3, 10);
  history.update(archer, E3, 50);
  history.update(archer, C1, -5);
  history.update(archer, E1, -50);
  SearchStack ss{};
  MovePicker picker(pos, MoveNone, 6, &ss, 0);
  Drawn d = drain(picker);
  std::vector<Move> archerMoves;
  for (size_t i = 0; i < d.moves.size(); ++i)
    if (moveFrom(d.moves[i]) == D2) archerMoves.push_back(d.moves[i]);
  ASSERT_EQ(archerMoves.size(), 8u);
  EXPECT_EQ(archerMoves[0], makeMove(D2, E3));
  EXPECT_EQ(archerMoves[1], makeMove(D2, C3));
  EXPECT_EQ(archerMoves[6], makeMove(D2, C1));
  EXPECT_EQ(archerMoves[7], makeMove(D2, E1));
  EXPECT_EQ(d.stages[2], MovePicker::QuietsRest);

  history.clear();
  load("7k/8/8/8/8/2W5/8/7K w 0 1", 3);
  MovePicker siege(pos, MoveNone, 6, &ss, 0);
  d = drain(siege);
  // The Warrior reaches three tower squares, where it would die: those three come last.
  const size_t towerMoves = 3, n = d.moves.size();
  ASSERT_GT(n, towerMoves);
  for (size_t i = 0; i < n; ++i) {
    EXPECT_EQ(pos.onStandingTower(moveTo(d.moves[i])), i >= n - towerMoves) << wordText(d.moves[i]);
    EXPECT_EQ(d.stages[i], i >= n - towerMoves ? MovePicker::QuietsRest : MovePicker::QuietsFirst);
  }
}

// A Sword's step into the enemy base is a promotion among the captures and a plain word among the
// quiets; the picker hands out both.
TEST_F(PickerOrder, ABaseArrivalComesAsAPromotionAndAsAPlainMove) {
  load("7k/8/2S5/8/8/8/8/7K w 0 1");
  SearchStack ss{};
  MovePicker picker(pos, MoveNone, 4, &ss, 0);
  Drawn d = drain(picker);
  EXPECT_EQ(d.moves[0], makeMove(C6, B7, Promotion));
  EXPECT_EQ(d.stages[0], MovePicker::GoodCaptures);
  auto plain = std::find(d.moves.begin(), d.moves.end(), makeMove(C6, B7));
  ASSERT_NE(plain, d.moves.end());
  EXPECT_EQ(d.stages[plain - d.moves.begin()], MovePicker::QuietsRest);
}

TEST(History, AnUpdateThatWouldReachTheLimitIsDropped) {
  const Piece p = makePiece(BLACK, Warrior);
  history.update(p, E5, 1999);
  history.update(p, E5, 1);
  EXPECT_EQ(history.get(p, E5), 1999);
  history.update(p, E5, -3998);
  EXPECT_EQ(history.get(p, E5), -1999);
  history.clear();
  EXPECT_EQ(history.get(p, E5), 0);
}

}  // namespace

// Iterative deepening at the root: aspiration windows, MultiPV lines, skill, the time test, the report.
#include "search/root_search.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <sstream>

#include "core/messages.h"
#include "core/options.h"
#include "core/prng.h"
#include "core/psqt.h"
#include "core/statistics.h"
#include "eval/material.h"
#include "eval/trade_bonus.h"
#include "game/game_end.h"
#include "game/move_stack.h"
#include "movegen/movegen.h"
#include "movegen/notation.h"
#include "search/gain_table.h"
#include "search/history.h"
#include "search/opening_choice.h"
#include "search/search.h"
#include "search/search_log.h"
#include "search/thread.h"
#include "search/time_manager.h"
#include "search/transposition_table.h"

Position rootPosition;
GoLimits searchLimits = {};
std::vector<RootMove> RootMoves;
size_t pvIndex = 0;
size_t multiPV = 1;
int bestMoveChanges = 0;
std::chrono::steady_clock::time_point searchStartTime = std::chrono::steady_clock::now();

namespace {

constexpr int MaxIterations = 100;
constexpr Value AspirationDelta = 16;
constexpr int SlowIterationMs = 3000;  // past this, fail-high and fail-low lines are shown too

ReportSearchResult reporter = nullptr;

Value swordValue() { return pieceValueMg[Sword]; }

bool infoLinesOn() { return uciGo || (msgFlags & MsgSearchInfo); }

void printLocked(const std::string& text) {
  std::lock_guard<std::mutex> out(syncOutLock);
  std::cout << text << std::endl;
}

// ---------------------------------------------------------------- skill

}  // namespace

Move pickWeakerMove(Skill& skill) {
  static std::unique_ptr<Prng> skillPrng;
  if (!skillPrng) skillPrng = std::make_unique<Prng>(KeyWarmupRounds);

  auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(
                std::chrono::system_clock::now().time_since_epoch()).count();
  for (int64_t i = ms % 50; i > 0; --i) skillPrng->next();

  const Value top = RootMoves[0].score;
  const int s = std::min(swordValue(), top - RootMoves[multiPV - 1].score);
  const int w = 2 * (60 - skill.level);
  skill.best = MoveNone;
  Value bestValue = -ValueInfinite;
  for (size_t i = 0; i < multiPV; ++i) {
    // A line more than two Swords below the one before it, and all behind it, are not considered.
    if (i > 0 && RootMoves[i - 1].score > RootMoves[i].score + 2 * swordValue()) break;
    uint32_t r = uint32_t(skillPrng->next()) % uint32_t(w);
    uint32_t bonus = uint32_t(r * s + (top - RootMoves[i].score) * w);
    Value v = RootMoves[i].score + Value(bonus >> 7);
    if (v > bestValue) {
      bestValue = v;
      skill.best = RootMoves[i].pv[0];
    }
  }
  return skill.best;
}

namespace {

// ---------------------------------------------------------------- the draw value

void setDrawValue(const Position& root) {
  const Color us = root.side();
  const int factor = Options["Contempt Factor"].intValue();
  Value own = -swordValue();
  if (factor != 0 && !Options["UCI_AnalyseMode"].intValue()) {
    int c = factor * swordValue() / 100;
    int n = root.state()->npMaterial[WHITE] + root.state()->npMaterial[BLACK];
    int scale = gamePhase(n);
    own = -(scale * c / 128);
  }
  // With no contempt asked for, a draw still costs the engine's side a Sword.
  drawValue[us] = own;
  drawValue[~us] = -own;
}

// ---------------------------------------------------------------- iterative deepening

void idLoop(int& reportedScore, RootMove& bestLine) {
  static SearchStack stack[SearchStackSize];
  SearchStack* ss = stack + 1;
  Position& pos = rootPosition;

  setTradeBonusRoot(pos);
  std::fill(ss - 1, ss + 3, SearchStack{});
  (ss - 1)->currentMove = MoveNull;
  bestMoveChanges = 0;
  currentTable->newSearch();
  history.clear();
  maxGain.clear();

  Skill skill;
  skill.level = Options["Skill Level"].intValue();
  multiPV = size_t(Options["MultiPV"].intValue());
  if (skill.enabled()) multiPV = std::max<size_t>(multiPV, 4);
  multiPV = std::min(multiPV, RootMoves.size());

  const GoLimits& limits = searchLimits;
  bool bestMoveNeverChanged = true;
  Value value = -ValueInfinite;

  for (int depth = 1; depth <= MaxIterations && !Signals.stop && !(limits.depth && depth > limits.depth); ++depth) {
    for (RootMove& rm : RootMoves) rm.prevScore = rm.score;
    int prevBestMoveChanges = bestMoveChanges;
    bestMoveChanges = 0;

    for (pvIndex = 0; pvIndex < multiPV; ++pvIndex) {
      Value alpha = -ValueInfinite, beta = ValueInfinite, delta = AspirationDelta;
      Value prev = RootMoves[pvIndex].prevScore;
      if (depth >= 5 && std::abs(prev) < ValueKnownWin) {
        alpha = prev - delta;
        beta = prev + delta;
      }

      while (true) {
        value = searchRoot(pos, ss, alpha, beta, depth * OnePly);
        std::stable_sort(RootMoves.begin() + pvIndex, RootMoves.end(), higherScore);
        for (size_t i = 0; i <= pvIndex; ++i) RootMoves[i].insertPvInTable(pos);
        if (Signals.stop) goto iterationsOver;
        if (alpha < value && value < beta) break;

        if (infoLinesOn() && elapsedMs() > SlowIterationMs)
          printLocked(printInfoLines(depth, alpha, beta, &reportedScore));

        if (std::abs(value) >= ValueKnownWin) {
          alpha = -ValueInfinite;
          beta = ValueInfinite;
          continue;
        }
        // Widen only the side that failed, by half as much again each time.
        Value half = delta / 2;
        if (value < beta) {
          Signals.failedLowAtRoot = true;
          Signals.stopOnPonderhit = false;
          alpha -= delta;
        } else {
          beta += delta;
        }
        delta += half;
      }

      std::stable_sort(RootMoves.begin(), RootMoves.begin() + pvIndex + 1, higherScore);
      if (infoLinesOn() && (pvIndex + 1 == multiPV || elapsedMs() > SlowIterationMs))
        printLocked(printInfoLines(depth, alpha, beta, &reportedScore));
      bestLine.score = RootMoves[0].score;
      bestLine.prevScore = RootMoves[0].prevScore;
      bestLine.pv = RootMoves[0].pv;
    }

    if (skill.enabled() && depth == skill.level + 1) pickWeakerMove(skill);

    if (searchLogOn()) logIteration(pos, depth, value, elapsedMs(), RootMoves[0].pv.data());

    if (depth > 2 && bestMoveChanges) bestMoveNeverChanged = false;

    if (limits.mate && value >= ValueMateInMaxPly && ValueMate - value <= 2 * limits.mate) Signals.stop = true;

    if (limits.useTimeManagement() && !Signals.stopOnPonderhit) {
      bool stopNow = false;
      if (depth >= 5 && depth <= 49 && multiPV == 1)
        TimeMgr.unstablePvExtraTime =
            (TimeMgr.optimumTime / 2) * bestMoveChanges + (TimeMgr.optimumTime / 3) * prevBestMoveChanges;
      const int64_t budget = TimeMgr.optimumTime + TimeMgr.unstablePvExtraTime;

      if (elapsedMs() > budget * 62 / 100) stopNow = true;
      else if (depth >= 12 && multiPV == 1 &&
               ((bestMoveNeverChanged && pos.state()->capturedType != 0) || elapsedMs() > budget * 40 / 100)) {
        // An easy move: nothing else comes within two Swords of it.
        Value b = value - 2 * swordValue();
        ss->excludedMove = RootMoves[0].pv[0];
        ss->skipNullMove = true;
        Value v = searchNonPV(pos, ss, b - 1, b, depth * OnePly - 6);
        ss->excludedMove = MoveNone;
        ss->skipNullMove = false;
        if (v < b) stopNow = true;
      }
      if (stopNow) {
        if (pondering())
          Signals.stopOnPonderhit = true;
        else
          Signals.stop = true;
      }
    }
  }

iterationsOver:
  if (skill.enabled()) {
    if (skill.best == MoveNone) pickWeakerMove(skill);
    auto picked = std::find_if(RootMoves.begin(), RootMoves.end(),
                               [&](const RootMove& rm) { return rm.pv[0] == skill.best; });
    if (picked != RootMoves.end()) {
      std::iter_swap(RootMoves.begin(), picked);
      bestLine = RootMoves[0];
    }
  }
}

}  // namespace

// ---------------------------------------------------------------- lines and the table

bool pondering() { return std::atomic_ref<int32_t>(searchLimits.ponder).load(std::memory_order_relaxed) != 0; }
void endPonder() { std::atomic_ref<int32_t>(searchLimits.ponder).store(0, std::memory_order_relaxed); }

int64_t elapsedMs() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - searchStartTime)
      .count();
}

void RootMove::extractPvFromTable(Position& pos) {
  StateInfo states[MaxIterations + 2];
  Move m = pv[0];
  pv.clear();
  int n = 0;
  while (true) {
    pv.push_back(m);
    pos.do_move(m, states[n++]);
    const TTEntry* e = currentTable->probe(pos.key());
    if (!e) break;
    m = e->move();
    bump(stats.plTests);
    if (!pos.pseudo_legal(m)) {
      bump(stats.plFails);
      break;
    }
    if (!pos.legal(m, CheckInfo(pos).pinned) || n >= MaxIterations) break;
    if (n >= 2 && isDrawPV(pos)) break;
  }
  pv.push_back(MoveNone);
  while (n > 0) pos.undo_move(pv[--n]);
}

void RootMove::insertPvInTable(Position& pos) const {
  StateInfo states[MaxIterations + 2];
  int n = 0;
  for (; pv[n] != MoveNone; ++n) {
    const TTEntry* e = currentTable->probe(pos.key());
    if (!e || e->move() != pv[n]) currentTable->store(pos.key(), ValueNone, BoundNone, DepthNone, pv[n], ValueNone, ValueNone);
    pos.do_move(pv[n], states[n]);
  }
  while (n > 0) pos.undo_move(pv[--n]);
}

std::string printInfoLines(int depth, Value alpha, Value beta, int* reportedScore) {
  const uint64_t nodes = rootPosition.nodes;
  stats.nodesSearched.fetch_add(uint32_t(nodes), std::memory_order_relaxed);
  const int64_t elapsed = elapsedMs() + 1;
  const size_t lines = std::min(size_t(Options["MultiPV"].intValue()), RootMoves.size());
  int selDepth = 0;
  for (const Thread* t : Threads.threads) selDepth = std::max(selDepth, int(t->maxPly));

  std::ostringstream out;
  bool first = true;
  for (size_t i = 0; i < lines; ++i) {
    bool updated = i <= pvIndex;
    if (depth == 1 && !updated) continue;
    int d = updated ? depth : depth - 1;
    Value v = updated ? RootMoves[i].score : RootMoves[i].prevScore;
    // Only the line under search can carry a bound word.
    std::string score = i == pvIndex ? scoreToUci(v, alpha, beta, reportedScore)
                                     : scoreToUci(v, -ValueInfinite, ValueInfinite, reportedScore);
    if (!first) out << '\n';
    first = false;
    out << "info depth " << d << " seldepth " << selDepth << " score " << score << " nodes " << nodes << " nps "
        << nodes * 1000 / uint64_t(elapsed) << " time " << elapsed << " multipv " << i + 1 << " pv";
    for (Move m : RootMoves[i].pv) {
      if (m == MoveNone) break;
      out << ' ' << moveToUci(m);
    }
  }
  return out.str();
}

// ---------------------------------------------------------------- the whole search

void setSearchReporter(ReportSearchResult r) { reporter = r; }

Move searchHint(Move best) {
  Position& pos = rootPosition;
  StateInfo st;
  pos.do_move(best, st);
  RootMoves.clear();
  ScoredMove list[MaxMoves];
  for (ScoredMove *sm = list, *end = generateLegal(pos, list); sm != end; ++sm) RootMoves.emplace_back(sm->move);
  Move hint = MoveNone;
  if (!RootMoves.empty()) {
    static SearchStack stack[SearchStackSize];
    std::fill(std::begin(stack), std::end(stack), SearchStack{});
    SearchStack* ss = stack + 1;
    (ss - 1)->currentMove = MoveNull;
    pvIndex = 0;
    searchRoot(pos, ss, -ValueInfinite, ValueInfinite, OnePly);
    std::stable_sort(RootMoves.begin(), RootMoves.end(), higherScore);
    hint = RootMoves[0].pv[0];
  }
  pos.undo_move(best);
  return hint;
}

void think() {
  Position& pos = rootPosition;
  RootMove bestLine;
  int reportedScore = -ValueInfinite;

  resetStatistics();
  moveStackCount = 0;
  rootSideToMove = pos.side();
  TimeMgr.init(searchLimits, pos.gamePly + pos.state()->pliesSinceNull, pos.side() == WHITE);

  if (RootMoves.empty()) {
    RootMoves.emplace_back(MoveNone);
    if (infoLinesOn())
      printLocked("info depth 0 score " + scoreToUci(pos.inCheck() ? -ValueMate : ValueZero, -ValueInfinite,
                                                     ValueInfinite, &reportedScore));
    bestLine = RootMoves[0];
  } else if (openingChoice(pos, bestLine, reportedScore)) {
    // The opening book or a set-up move answered: nothing to search.
  } else {
    setDrawValue(pos);
    if (searchLogOn()) logSearchStart(pos, searchLimits);

    for (Thread* t : Threads.threads) t->maxPly = 0;
    Threads.sleepWhileIdle = Options["Use Sleeping Threads"].intValue() != 0;

    const GoLimits& limits = searchLimits;
    int tick = 100;
    if (limits.useTimeManagement())
      tick = std::clamp(int(TimeMgr.optimumTime + TimeMgr.unstablePvExtraTime) / 16, 5, 100);
    if (limits.nodes) tick = 10;
    Threads.timer->msec = tick;
    Threads.timer->wake();

    idLoop(reportedScore, bestLine);
    if (bestLine.pv[0] == MoveNone && RootMoves[0].pv[0] != MoveNone) bestLine = RootMoves[0];

    Threads.timer->msec = 0;
    Threads.sleepWhileIdle = true;
    if (searchLogOn()) logSearchEnd(pos, elapsedMs(), RootMoves[0].pv.data());
  }

  // A pondering or endless search never gives its move before it is told to.
  if (!Signals.stop && (pondering() || searchLimits.infinite)) {
    Signals.stopOnPonderhit = true;
    MainThread& main = *Threads.main();
    std::unique_lock<std::mutex> lk(main.sleepLock);
    while (!Signals.stop) main.sleepEvent.wait(lk);
  }

  if (reporter) reporter(bestLine, reportedScore);
}

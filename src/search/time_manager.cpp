// Time budgets from the clock: each move's share is its weight against the moves still to come.
#include "search/time_manager.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <iostream>
#include <string>

#include "core/options.h"
#include "core/statistics.h"
#include "search/root_search.h"
#include "search/thread.h"

TimeManager TimeMgr;

namespace {

constexpr int MoveHorizon = 50;  // plan for at most this many moves
constexpr float MaxRatio = 3.0f;
constexpr float StealRatio = 0.33f;

const int MoveImportance[512] = {
  7780, 7780, 7780, 7780, 7780, 7780, 7780, 7780, 7780, 7780, 7780, 7780, 7780, 7780, 7780, 7780,
  7780, 7780, 7780, 7780, 7778, 7778, 7776, 7776, 7776, 7773, 7770, 7768, 7766, 7763, 7757, 7751,
  7743, 7735, 7724, 7713, 7696, 7689, 7670, 7656, 7627, 7605, 7571, 7549, 7522, 7493, 7462, 7425,
  7385, 7350, 7308, 7272, 7230, 7180, 7139, 7094, 7055, 7010, 6959, 6902, 6841, 6778, 6705, 6651,
  6569, 6508, 6435, 6378, 6323, 6253, 6152, 6085, 5995, 5931, 5859, 5794, 5717, 5646, 5544, 5462,
  5364, 5282, 5172, 5078, 4988, 4901, 4831, 4764, 4688, 4609, 4536, 4443, 4365, 4293, 4225, 4155,
  4085, 4005, 3927, 3844, 3765, 3693, 3634, 3560, 3479, 3404, 3331, 3268, 3207, 3146, 3077, 3011,
  2947, 2894, 2828, 2776, 2727, 2676, 2626, 2589, 2538, 2490, 2442, 2394, 2345, 2302, 2243, 2192,
  2156, 2115, 2078, 2043, 2004, 1967, 1922, 1893, 1845, 1809, 1772, 1736, 1702, 1674, 1640, 1605,
  1566, 1536, 1509, 1479, 1452, 1423, 1388, 1362, 1332, 1304, 1289, 1266, 1250, 1228, 1206, 1180,
  1160, 1134, 1118, 1100, 1080, 1068, 1051, 1034, 1012, 1001, 980,  960,  945,  934,  916,  900,
  888,  878,  865,  852,  828,  807,  787,  770,  753,  744,  731,  722,  706,  700,  683,  676,
  671,  664,  652,  641,  634,  627,  613,  604,  591,  582,  568,  560,  552,  540,  534,  529,
  519,  509,  495,  484,  474,  467,  460,  450,  438,  427,  419,  410,  406,  399,  394,  387,
  382,  377,  372,  366,  359,  353,  348,  343,  337,  333,  328,  321,  315,  309,  303,  298,
  293,  287,  284,  281,  277,  273,  265,  261,  255,  251,  247,  241,  240,  235,  229,  218,
  217,  213,  212,  208,  206,  197,  193,  191,  189,  185,  184,  180,  177,  172,  170,  170,
  170,  166,  163,  159,  158,  156,  155,  151,  146,  141,  138,  136,  132,  130,  128,  125,
  123,  122,  118,  118,  118,  117,  115,  114,  108,  107,  105,  105,  105,  102,  97,   97,
  95,   94,   93,   91,   88,   86,   83,   80,   80,   79,   79,   79,   78,   76,   75,   72,
  72,   71,   70,   68,   65,   63,   61,   61,   59,   59,   59,   58,   56,   55,   54,   54,
  52,   49,   48,   48,   48,   48,   45,   45,   45,   44,   43,   41,   41,   41,   41,   40,
  40,   38,   37,   36,   34,   34,   34,   33,   31,   29,   29,   29,   28,   28,   28,   28,
  28,   28,   28,   27,   27,   27,   27,   27,   24,   24,   23,   23,   22,   21,   20,   20,
  19,   19,   19,   19,   19,   18,   18,   18,   18,   17,   17,   17,   17,   17,   16,   16,
  15,   15,   14,   14,   14,   12,   12,   11,   9,    9,    9,    9,    9,    9,    9,    8,
  8,    8,    8,    8,    8,    8,    8,    8,    8,    8,    8,    8,    8,    8,    8,    8,
  8,    8,    8,    8,    8,    8,    8,    8,    8,    8,    8,    8,    7,    6,    6,    6,
  6,    6,    6,    6,    6,    6,    6,    6,    5,    4,    4,    4,    4,    4,    4,    4,
  4,    4,    4,    4,    4,    4,    4,    4,    4,    4,    4,    4,    4,    4,    4,    4,
  4,    4,    4,    4,    4,    4,    4,    4,    4,    4,    4,    4,    4,    4,    4,    4,
  4,    4,    3,    3,    2,    2,    2,    2,    2,    1,    1,    1,    1,    1,    1,    1};

}  // namespace

int moveImportance(int ply) { return MoveImportance[std::clamp(ply, 0, 511)]; }

int remainingTime(int R, int movesToGo, int ply, int slowMover, float maxRatio, float stealRatio) {
  int thisMove = moveImportance(ply) * slowMover / 100;
  int otherMoves = 0;
  for (int i = 1; i < movesToGo; ++i) otherMoves += moveImportance(ply + 2 * i);
  // Late in a long game a slow-mover weight can round to nothing: then the move takes it all.
  if (thisMove + otherMoves == 0) return R;
  float ratio1 = (maxRatio * thisMove) / (maxRatio * thisMove + otherMoves);
  float ratio2 = (thisMove + stealRatio * otherMoves) / (thisMove + otherMoves);
  return int(std::floor(R * std::min(ratio1, ratio2)));
}

void TimeManager::init(const GoLimits& limits, int currentPly, bool whiteToMove) {
  const int horizon = Options["Emergency Move Horizon"].intValue();
  const int baseTime = Options["Emergency Base Time"].intValue();
  const int moveTime = Options["Emergency Move Time"].intValue();
  const int minThinking = Options["Minimum Thinking Time"].intValue();
  const int slowMover = Options["Slow Mover"].intValue();
  const int time = whiteToMove ? limits.wtime : limits.btime;
  const int inc = whiteToMove ? limits.winc : limits.binc;

  unstablePvExtraTime = 0;
  int optimum = time, maximum = time;

  const int movesToGo = limits.movestogo ? std::min(limits.movestogo, MoveHorizon) : MoveHorizon;
  for (int m = 1; m <= movesToGo; ++m) {
    int R = std::max(0, time + inc * (m - 1) - baseTime - moveTime * std::min(m, horizon));
    int t1 = minThinking + remainingTime(R, m, currentPly, slowMover, 1.0f, 0.0f);
    int t2 = minThinking + remainingTime(R, m, currentPly, slowMover, MaxRatio, StealRatio);
    optimum = std::min(optimum, t1);
    maximum = std::min(maximum, t2);
  }
  if (Options["Ponder"].intValue()) optimum += optimum / 4;
  optimumTime = std::min(optimum, maximum);
  maximumTime = maximum;
}

// ---------------------------------------------------------------- the timer's check

namespace {

// Nodes of every thread so far: their own positions and the workers at their split points.
uint64_t nodesSearched() {
  std::lock_guard<std::mutex> poolLock(Threads.mutex);
  uint64_t sum = rootPosition.nodes;
  for (Thread* t : Threads.threads) {
    for (int i = 0; i < t->splitPointsSize; ++i) {
      SplitPoint& sp = t->splitPoints[i];
      std::lock_guard<std::mutex> spLock(sp.lock);
      sum += sp.nodes;
      for (uint64_t mask = sp.slavesMask.load(std::memory_order_relaxed); mask; mask &= mask - 1) {
        int idx = __builtin_ctzll(mask);
        if (const Position* p = sp.activePositions[idx]) sum += p->nodes;
      }
    }
  }
  return sum;
}

// Once a second the developer's counters, when any of them counts; only the timer thread comes here.
void reportDebugCounters() {
  static auto lastReport = std::chrono::steady_clock::now();
  const auto now = std::chrono::steady_clock::now();
  if (now - lastReport < std::chrono::seconds(1)) return;
  lastReport = now;
  const std::string report = debugCounterReport();
  if (!report.empty()) std::cerr << report << std::flush;
}

}  // namespace

void checkTime() {
  reportDebugCounters();
  const GoLimits& limits = searchLimits;
  if (pondering()) return;

  uint64_t nodes = limits.nodes ? nodesSearched() : 0;
  int64_t elapsed = elapsedMs();
  bool stillAtFirstMove = Signals.firstRootMove && !Signals.failedLowAtRoot;
  bool noMoreTime = elapsed > TimeMgr.maximumTime - 10 ||
                    (stillAtFirstMove && elapsed > TimeMgr.optimumTime + TimeMgr.unstablePvExtraTime);

  if ((limits.useTimeManagement() && noMoreTime) || (limits.movetime && elapsed >= limits.movetime) ||
      (limits.nodes && nodes >= uint64_t(limits.nodes)))
    Signals.stop = true;
}

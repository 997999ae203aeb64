// The thread pool: sleeping and waking, split points, and the orders of a search.
#include "search/thread.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <system_error>

#include "core/options.h"
#include "core/statistics.h"
#include "movegen/movegen.h"
#include "search/root_search.h"
#include "search/search.h"
#include "search/time_manager.h"

ThreadPool Threads;
SearchSignals Signals;

namespace {

// The chain of state records behind the root position, taken over from the one who ordered the search.
std::unique_ptr<std::deque<StateInfo>> rootStates;

}  // namespace

// ---------------------------------------------------------------- Thread

Thread::Thread() : idx(int(Threads.threads.size())) {
  for (SplitPoint& sp : splitPoints) {
    sp.slavesMask = 0;
    sp.nodes = 0;
    std::memset(sp.activePositions, 0, sizeof(sp.activePositions));
  }
}

Thread::~Thread() { terminate(); }

void Thread::start() {
  try {
    handle = std::thread([this] { idleLoop(); });
  } catch (const std::system_error&) {
    std::cerr << "Failed to create thread number " << idx << std::endl;
    std::exit(1);
  }
}

// Ends the system thread; must run before the object loses its final class.
void Thread::terminate() {
  if (!handle.joinable()) return;
  exit = true;
  wake();
  handle.join();
}

void Thread::wake() {
  std::lock_guard<std::mutex> lk(sleepLock);
  sleepEvent.signal();
}

bool Thread::isAvailableTo(const Thread& master) const {
  if (searching) return false;
  int size = splitPointsSize;
  // A thread waiting at its own split point may help only a thread that helps it there.
  return size == 0 || (splitPoints[size - 1].slavesMask.load(std::memory_order_relaxed) & (1ULL << master.idx));
}

// The life of a worker, and the place where a master waits for the workers of its split point.
void Thread::idleLoop() {
  SplitPoint* const ownSp = splitPointsSize ? static_cast<SplitPoint*>(activeSplitPoint) : nullptr;

  while (!ownSp || ownSp->slavesMask.load(std::memory_order_acquire)) {
    while ((!searching && Threads.sleepWhileIdle) || exit) {
      if (exit) return;
      std::unique_lock<std::mutex> lk(sleepLock);
      if (ownSp && !ownSp->slavesMask.load(std::memory_order_acquire)) break;
      if (!searching && !exit) sleepEvent.wait(lk);
    }
    if (!searching) continue;  // with sleeping off an idle thread spins

    SplitPoint* sp;
    {
      std::lock_guard<std::mutex> poolLock(Threads.mutex);
      sp = activeSplitPoint;
    }
    Position pos(sp->pos, this);
    // The subtree below grows the stack from here: room for the deepest line, four records from the master.
    SearchStack stack[SearchStackSize];
    std::memcpy(stack, sp->ss - 1, 4 * sizeof(SearchStack));
    SearchStack* ss = stack + 1;
    ss->sp = sp;

    sp->lock.lock();
    if (sp->activePositions[idx]) std::cout << "\n\nThread error! ap!=0\n" << std::flush;
    sp->activePositions[idx] = &pos;
    if (this != sp->masterThread) bump(stats.splitsJoined);

    searchSplitPoint(pos, ss, sp);

    searching = false;
    sp->activePositions[idx] = nullptr;
    sp->slavesMask.fetch_and(~(1ULL << idx), std::memory_order_release);
    sp->nodes += pos.nodes;
    // The master may be asleep waiting for the last worker.
    if (Threads.sleepWhileIdle && this != sp->masterThread && !sp->slavesMask.load(std::memory_order_relaxed))
      sp->masterThread->wake();
    sp->lock.unlock();
  }
}

void MainThread::idleLoop() {
  while (true) {
    {
      std::unique_lock<std::mutex> lk(sleepLock);
      thinking = false;
      while (!thinking && !exit) {
        Threads.sleepCondition.signal();
        sleepEvent.wait(lk);
      }
    }
    if (exit) return;
    searching = true;
    think();
    searching = false;
  }
}

void TimerThread::idleLoop() {
  while (!exit) {
    // The check runs under the timer's lock, under which a new search is also ordered: a tick
    // that comes late never reads the limits of the next search half written.
    std::unique_lock<std::mutex> lk(sleepLock);
    if (!exit) {
      int ms = msec;
      if (ms)
        sleepEvent.waitFor(lk, ms);
      else
        sleepEvent.wait(lk);
    }
    if (msec && !exit) checkTime();
  }
}

// ---------------------------------------------------------------- the pool

bool ThreadPool::availableSlave(const Thread& master) const {
  for (const Thread* t : threads)
    if (t->isAvailableTo(master)) return true;
  return false;
}

bool ThreadPool::cutoffOccurred(const Thread& th) const {
  for (const SplitPoint* sp = th.activeSplitPoint; sp; sp = sp->parentSplitPoint)
    if (sp->cutoff) return true;
  return false;
}

Value ThreadPool::split(Position& pos, SearchStack* ss, Value alpha, Value beta, Value bestValue, Move* bestMove,
                        Depth depth, Move threatMove, int moveCount, MovePicker* movePicker, int nodeType) {
  Thread& master = *static_cast<Thread*>(pos.thisThread);
  if (master.splitPointsSize == MaxSplitPointsPerThread) return bestValue;

  SplitPoint& sp = master.splitPoints[master.splitPointsSize];
  sp.parentSplitPoint = master.activeSplitPoint;
  sp.masterThread = &master;
  sp.cutoff = false;
  sp.slavesMask.store(1ULL << master.idx, std::memory_order_relaxed);
  sp.depth = depth;
  sp.bestMove = *bestMove;
  sp.threatMove = threatMove;
  sp.alpha = alpha;
  sp.beta = beta;
  sp.nodeType = nodeType;
  sp.bestValue = bestValue;
  sp.movePicker = movePicker;
  sp.moveCount = moveCount;
  sp.pos = pos;
  sp.ss = ss;
  sp.nodes = 0;
  bump(stats.splitsSet);
  master.activeSplitPoint = &sp;

  int workers = 1;
  {
    std::lock_guard<std::mutex> poolLock(mutex);
    std::lock_guard<std::mutex> spLock(sp.lock);
    for (Thread* t : threads) {
      if (workers >= maxThreadsPerSplitPoint) break;
      if (!t->isAvailableTo(master)) continue;
      sp.slavesMask.fetch_or(1ULL << t->idx, std::memory_order_relaxed);
      t->activeSplitPoint = &sp;
      t->searching = true;
      t->wake();
      ++workers;
    }
    master.splitPointsSize = master.splitPointsSize + 1;
  }

  // The master works at its own split point at once, then waits there until every worker has left.
  if (workers > 1) master.Thread::idleLoop();

  std::lock_guard<std::mutex> poolLock(mutex);
  std::lock_guard<std::mutex> spLock(sp.lock);
  master.searching = true;
  master.splitPointsSize = master.splitPointsSize - 1;
  master.activeSplitPoint = sp.parentSplitPoint;
  pos.nodes += sp.nodes;
  *bestMove = sp.bestMove;
  return sp.bestValue;
}

void readThreadOptions() {
  Threads.maxThreadsPerSplitPoint = Options["Max Threads per Split Point"].intValue();
  Threads.minimumSplitDepth = Options["Min Split Depth"].intValue() * OnePly;
  size_t requested = size_t(Options["Threads"].intValue());
  while (Threads.size() < requested) {
    Thread* t = new Thread;
    Threads.threads.push_back(t);
    t->start();
  }
  while (Threads.size() > requested && Threads.size() > 1) {
    Thread* t = Threads.threads.back();
    Threads.threads.pop_back();
    delete t;
  }
}

void threadPoolInit() {
  Threads.sleepWhileIdle = true;
  Threads.timer = new TimerThread;
  Threads.timer->start();
  MainThread* main = new MainThread;
  Threads.threads.push_back(main);
  main->start();
  readThreadOptions();
}

void threadPoolExit() {
  // Each thread is ended before its object goes, so that no loop runs on a half-destroyed object.
  Threads.timer->terminate();
  delete Threads.timer;
  Threads.timer = nullptr;
  for (Thread* t : Threads.threads) {
    t->terminate();
    delete t;
  }
  Threads.threads.clear();
}

// ---------------------------------------------------------------- ordering a search

void waitForThinkFinished() {
  if (!Threads.main()) return;  // no pool, so no search to wait for
  MainThread& main = *Threads.main();
  std::unique_lock<std::mutex> lk(main.sleepLock);
  while (main.thinking) Threads.sleepCondition.wait(lk);
}

void startThinking(const Position& pos, const GoLimits& limits, const std::vector<Move>& searchMoves,
                   std::unique_ptr<std::deque<StateInfo>> states) {
  waitForThinkFinished();
  readThreadOptions();  // a change of the thread options during the last search applies from now
  std::unique_lock<std::mutex> timerLock(Threads.timer->sleepLock);
  searchStartTime = std::chrono::steady_clock::now();
  Signals.stop = Signals.stopOnPonderhit = Signals.firstRootMove = Signals.failedLowAtRoot = false;

  // The records the root's chain reaches stay alive until the next order.
  if (states) rootStates = std::move(states);
  rootPosition = Position(pos, Threads.main());
  searchLimits = limits;
  timerLock.unlock();

  RootMoves.clear();
  ScoredMove list[MaxMoves];
  for (ScoredMove *sm = list, *end = generateLegal(rootPosition, list); sm != end; ++sm)
    if (searchMoves.empty() || std::find(searchMoves.begin(), searchMoves.end(), sm->move) != searchMoves.end())
      RootMoves.emplace_back(sm->move);

  MainThread& main = *Threads.main();
  std::lock_guard<std::mutex> lk(main.sleepLock);
  main.thinking = true;
  main.sleepEvent.signal();
}

// The pool of search threads, their split points, and the timer that watches the clock.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "core/relaxed.h"
#include "eval/eval_tables.h"
#include "game/position.h"
#include "search/search_limits.h"
#include "search/search_stack.h"

class MovePicker;
struct Thread;

constexpr int MaxThreads = 64;  // slave masks are 64 bits wide
constexpr int MaxSplitPointsPerThread = 8;

// An event that lets one waiter through per signal, then closes again. Both sides hold the
// mutex the waiter's lock is on.
class AutoResetEvent {
 public:
  void signal() {
    signalled = true;
    cv.notify_one();
  }
  void wait(std::unique_lock<std::mutex>& lk) {
    cv.wait(lk, [this] { return signalled; });
    signalled = false;
  }
  // Returns at the signal or after `msec` milliseconds, whichever comes first.
  void waitFor(std::unique_lock<std::mutex>& lk, int msec) {
    cv.wait_for(lk, std::chrono::milliseconds(msec), [this] { return signalled; });
    signalled = false;
  }

 private:
  std::condition_variable cv;
  bool signalled = false;
};

// A node whose remaining moves several threads search at once. Fields marked shared are written
// under `lock`; the search may read them without it.
struct SplitPoint {
  Position pos;  // flat copy of the master's position at the node
  SearchStack* ss;
  Depth depth;
  Value beta;
  int nodeType;  // 0 root, 1 PV, 2 non-PV: which split form of the search to run
  Thread* masterThread;
  Move threatMove;
  MovePicker* movePicker;  // the master's; drawn from under `lock`
  SplitPoint* parentSplitPoint;

  std::mutex lock;
  Position* activePositions[MaxThreads];  // each worker's position, so that nodes can be counted
  std::atomic<uint64_t> slavesMask;        // threads still working here, the master included
  uint64_t nodes;                          // nodes of workers that have left

  // shared
  Relaxed<Value> alpha;
  Relaxed<Value> bestValue;
  Relaxed<Move> bestMove;
  Relaxed<int> moveCount;
  Relaxed<bool> cutoff;
};

// A search thread: it sleeps until a master hands it a split point. It owns the evaluation tables
// of the positions it searches, so a position's thread reference leads here.
struct Thread : EvalTables {
  Thread();
  virtual ~Thread();
  virtual void idleLoop();

  // Starts the system thread; called once the object has its final class.
  void start();
  // Ends the system thread; called before the object is destroyed.
  void terminate();
  void wake();
  // True if a split of `master` could use this thread (it is free in the sense of `split`).
  bool isAvailableTo(const Thread& master) const;

  SplitPoint splitPoints[MaxSplitPointsPerThread];
  int idx;                 // place in the pool; this thread's bit in slave masks
  Relaxed<int> maxPly;     // deepest ply reached in this search
  std::mutex sleepLock;
  AutoResetEvent sleepEvent;
  std::thread handle;
  Relaxed<SplitPoint*> activeSplitPoint = nullptr;
  Relaxed<int> splitPointsSize = 0;
  Relaxed<bool> searching = false;
  Relaxed<bool> exit = false;
};

// Runs the whole search, then sleeps until the next one is ordered.
struct MainThread : Thread {
  void idleLoop() override;
  Relaxed<bool> thinking = true;  // from the order of a search until it is over
};

// Wakes every `msec` milliseconds to check the clock; 0 means no ticks.
struct TimerThread : Thread {
  void idleLoop() override;
  Relaxed<int> msec = 0;
};

struct ThreadPool {
  Relaxed<bool> sleepWhileIdle = true;
  Depth minimumSplitDepth = 0;
  int maxThreadsPerSplitPoint = 0;
  std::vector<Thread*> threads;  // threads[0] is the main thread
  TimerThread* timer = nullptr;
  std::mutex mutex;              // guards split point set-up and the `searching` flags
  AutoResetEvent sleepCondition;  // the main thread signals it when a search has ended

  // None before the pool starts (a tool or test that drives the command loop without searching).
  MainThread* main() const { return threads.empty() ? nullptr : static_cast<MainThread*>(threads[0]); }
  size_t size() const { return threads.size(); }
  Thread& operator[](size_t i) const { return *threads[i]; }

  bool availableSlave(const Thread& master) const;
  // Searches the rest of the node's moves with the free threads; returns the best value and
  // leaves the best move in `bestMove`. Without a slot or a free thread the master goes on alone.
  Value split(Position& pos, SearchStack* ss, Value alpha, Value beta, Value bestValue, Move* bestMove, Depth depth,
              Move threatMove, int moveCount, MovePicker* movePicker, int nodeType);
  // True if a cut-off ended the thread's split point or one of its parents.
  bool cutoffOccurred(const Thread& th) const;
};

extern ThreadPool Threads;

// Signals of the running search, all false when it starts.
struct SearchSignals {
  Relaxed<bool> stop;
  Relaxed<bool> stopOnPonderhit;
  Relaxed<bool> firstRootMove;
  Relaxed<bool> failedLowAtRoot;
};
extern SearchSignals Signals;

void threadPoolInit();
// Reads "Threads", "Min Split Depth" and "Max Threads per Split Point" and grows or shrinks the
// pool; only while no search runs.
void readThreadOptions();
void threadPoolExit();
// Orders a search of `pos` and returns at once; the main thread runs it.
// The chain of state records behind `pos` is handed over with `states`, so that repetitions of the
// game stay visible to the search.
void startThinking(const Position& pos, const GoLimits& limits, const std::vector<Move>& searchMoves,
                   std::unique_ptr<std::deque<StateInfo>> states);
// Blocks until no search runs.
void waitForThinkFinished();


// bench and perft: totals over a list of positions, printed on the error stream.
#include "frontend/bench.h"

#include <algorithm>
#include <chrono>
#include <climits>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "core/options.h"
#include "frontend/command_loop.h"
#include "frontend/position_intake.h"
#include "frontend/settings.h"
#include "frontend/setup_commands.h"
#include "game/piece_values.h"
#include "game/position.h"
#include "game/rules.h"
#include "movegen/movegen.h"
#include "search/root_search.h"
#include "search/thread.h"
#include "search/transposition_table.h"

namespace {

// The default list, in the letters of another game; the reader passes over what names no piece.
const char* const DefaultPositions[] = {
  "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
  "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 10",
  "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 11",
  "4rrk1/pp1n3p/3q2pQ/2p1pb2/2PP4/2P3N1/P2B2PP/4RRK1 b - - 7 19",
  "rq3rk1/ppp2ppp/1bnpb3/3N2B1/3NP3/7P/PPPQ1PP1/2KR3R w - - 7 14",
  "r1bq1r1k/1pp1n1pp/1p1p4/4p2Q/4Pp2/1BNP4/PPP2PPP/3R1RK1 w - - 2 14",
  "r3r1k1/2p2ppp/p1p1bn2/8/1q2P3/2NPQN2/PPP3PP/R4RK1 b - - 2 15",
  "r1bbk1nr/pp3p1p/2n5/1N4p1/2Np1B2/8/PPP2PPP/2KR1B1R w kq - 0 13",
  "r1bq1rk1/ppp1nppp/4n3/3p3Q/3P4/1BP1B3/PP1N2PP/R4RK1 w - - 1 16",
  "4r1k1/r1q2ppp/ppp2n2/4P3/5Rb1/1N1BQ3/PPP3PP/R5K1 w - - 1 17",
  "2rqkb1r/ppp2p2/2npb1p1/1N1Nn2p/2P1PP2/8/PP2B1PP/R1BQK2R b KQ - 0 11",
  "r1bq1r1k/b1p1npp1/p2p3p/1p6/3PP3/1B2NN2/PP3PPP/R2Q1RK1 w - - 1 16",
  "3r1rk1/p5pp/bpp1pp2/8/q1PP1P2/b3P3/P2NQRPP/1R2B1K1 b - - 6 22",
  "r1q2rk1/2p1bppp/2Pp4/p6b/Q1PNp3/4B3/PP1R1PPP/2K4R w - - 2 18",
  "4k2r/1pb2ppp/1p2p3/1R1p4/3P4/2r1PN2/P4PPP/1R4K1 b - - 3 22",
  "3q2k1/pb3p1p/4pbp1/2r5/PpN2N2/1P2P2P/5PP1/Q2R2K1 b - - 4 26",
};

// The arguments a bench without them runs with.
const char* const DefaultHash = "32";
const char* const DefaultThreads = "1";
const char* const DefaultLimit = "12";

// One position to run: its FEN and the game type it is read and played under.
struct BenchPosition {
  int gameType;
  std::string fen;
};

int64_t nowMs() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

// A line of a position file is a FEN, read under the game type in force, or a game type's name
// and a FEN read under that type: a FEN does not say which game it belongs to, and a siege
// position read under another type would lose its towers and captives.
BenchPosition fromFileLine(const std::string& line) {
  std::istringstream words(line);
  std::string first, fen;
  words >> first;
  for (const GameType& g : gameTypeTable)
    if (first == g.name) {
      std::getline(words >> std::ws, fen);
      return {g.number, fen};
    }
  return {gameType, line};
}

bool readPositions(const std::string& source, const Position& current, std::vector<BenchPosition>& list) {
  if (source == "default") {
    for (const char* fen : DefaultPositions) list.push_back({gameType, fen});
  } else if (source == "current") {
    list.push_back({gameType, current.fen()});
  } else {
    std::ifstream file(source);
    std::error_code notAFile;
    // A directory opens on this system, and reads as empty.
    if (!file || std::filesystem::is_directory(source, notAFile)) {
      std::cerr << "Unable to open file " << source << "\n";
      return false;
    }
    for (std::string line; std::getline(file, line);)
      if (line.find_first_not_of(" \t\r") != std::string::npos) list.push_back(fromFileLine(line));
  }
  return true;
}

// The limits of one bench search: all zero but the one its kind names.
GoLimits benchLimits(const std::string& kind, int n) {
  GoLimits limits = {};
  if (kind == "time") limits.movetime = int32_t(std::min<int64_t>(1000LL * n, INT32_MAX));
  else if (kind == "nodes") limits.nodes = n;
  else if (kind == "mate") limits.mate = n;
  else limits.depth = n;
  return limits;
}

// Searches `p` as a console search and returns the nodes of its root position.
uint64_t benchSearch(const Position& p, const GoLimits& limits) {
  if (!Threads.main()) return 0;  // a tool that runs the loop without the pool cannot search
  setPieceValues(p);
  searching = true;
  // A fresh position needs no chain of its own; the last one stays alive for the loop's position.
  startThinking(p, limits, {}, nullptr);
  waitForThinkFinished();
  return rootPosition.nodes;
}

}  // namespace

uint64_t perft(Position& pos, int depth) {
  if (depth < 2) return 1;  // no ply left to count: the position itself
  ScoredMove list[MaxMoves];
  ScoredMove* end = generateLegal(pos, list);
  if (depth == 2) return uint64_t(end - list);
  uint64_t count = 0;
  StateInfo st;
  CheckInfo ci(pos);
  for (ScoredMove* m = list; m != end; ++m) {
    pos.do_move(m->move, st, ci, pos.gives_check(m->move, ci));
    count += perft(pos, depth - 2);
    pos.undo_move(m->move);
  }
  return count;
}

void benchCommand(Position& pos, std::istream& is) {
  std::string hash = DefaultHash, threads = DefaultThreads, limit = DefaultLimit, source = "default", kind = "depth";
  is >> hash >> threads >> limit >> source >> kind;
  // By the option table's rules: a value out of range leaves the option as it was.
  Options["Hash"] = hash;
  Options["Threads"] = threads;
  currentTable->clear();
  const int n = plainNumber(limit);
  // A zero limit means none: the search would never end, and perft has no sound end below one ply.
  if (n < 1) {
    std::cerr << "Bench limit must be a whole number of at least 1, not '" << limit << "'\n";
    return;
  }
  const GoLimits limits = benchLimits(kind, n);

  std::vector<BenchPosition> list;
  if (!readPositions(source, pos, list)) return;

  // Positions of other game types change the game type for their own run only.
  const int gameTypeInForce = gameType;
  const SiegeGeometry geometryInForce = currentSiegeGeometry();
  const int64_t start = nowMs();
  uint64_t total = 0;
  for (size_t i = 0; i < list.size(); ++i) {
    gameType = list[i].gameType;
    setSiegeModes(gameType);
    Position p;
    p.thisThread = Threads.main() ? static_cast<EvalTables*>(Threads.main()) : pos.thisThread;
    const bool taken = takePosition(p, list[i].fen) == Intake::Taken;
    std::cerr << "\nPosition: " << i + 1 << "/" << list.size() << "\n";
    if (!taken) {
      std::cerr << "Position " << i + 1 << "/" << list.size() << " refused by the reader, skipped\n";
      continue;
    }
    if (kind == "perft") {
      uint64_t c = perft(p, 2 * n);
      std::cerr << "\nPerft " << n << " leaf nodes: " << c << "\n";
      total += c;
    } else {
      total += benchSearch(p, limits);
    }
  }
  const int64_t elapsed = nowMs() - start + 1;
  gameType = gameTypeInForce;
  setSiegeModes(gameType);
  restoreSiegeGeometry(geometryInForce);
  setPieceValues(pos);

  std::cerr << "\n===========================" << "\nTotal time (ms) : " << elapsed
            << "\nNodes searched  : " << total << "\nNodes/second    : " << 1000 * total / elapsed << std::endl;
}

bool perftCommand(Position& pos, std::istream& is) {
  std::string depth;
  if (!(is >> depth)) return false;
  // The options are given their own values, so that they stay as they are.
  std::istringstream args(Options["Hash"].text() + " " + Options["Threads"].text() + " " + depth + " current perft");
  benchCommand(pos, args);
  return true;
}

// bench and perft: totals over a list of positions, printed on the error stream.
#include "frontend/bench.h"

#include <chrono>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "frontend/position_intake.h"
#include "frontend/setup_commands.h"
#include "game/position.h"
#include "movegen/movegen.h"

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

// Option values until the option table exists: its defaults.
const char* const DefaultHash = "32";
const char* const DefaultThreads = "1";

int64_t nowMs() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

bool readPositions(const std::string& source, const Position& current, std::vector<std::string>& fens) {
  if (source == "default") {
    fens.assign(std::begin(DefaultPositions), std::end(DefaultPositions));
  } else if (source == "current") {
    fens.push_back(current.fen());
  } else {
    std::ifstream file(source);
    if (!file) {
      std::cerr << "Unable to open file " << source << "\n";
      return false;
    }
    for (std::string line; std::getline(file, line);)
      if (!line.empty()) fens.push_back(line);
  }
  return true;
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
  std::string hash = DefaultHash, threads = DefaultThreads, limit = "12", source = "default", kind = "depth";
  is >> hash >> threads >> limit >> source >> kind;
  int n = plainNumber(limit);

  std::vector<std::string> fens;
  if (!readPositions(source, pos, fens)) return;
  if (kind != "perft") {
    std::cerr << "bench: only perft runs in this build: there is no search yet\n";
    return;
  }

  int64_t start = nowMs();
  uint64_t total = 0;
  for (size_t i = 0; i < fens.size(); ++i) {
    Position p;
    p.thisThread = pos.thisThread;
    bool ok = takePosition(p, fens[i]) == Intake::Taken;
    std::cerr << "\nPosition: " << i + 1 << "/" << fens.size() << "\n";
    if (!ok) continue;
    uint64_t c = perft(p, 2 * n);
    std::cerr << "\nPerft " << n << " leaf nodes: " << c << "\n";
    total += c;
  }
  int64_t elapsed = nowMs() - start + 1;
  std::cerr << "\n===========================" << "\nTotal time (ms) : " << elapsed
            << "\nNodes searched  : " << total << "\nNodes/second    : " << 1000 * total / elapsed << "\n";
}

bool perftCommand(Position& pos, std::istream& is) {
  std::string depth;
  if (!(is >> depth)) return false;
  std::istringstream args(std::string(DefaultHash) + " " + DefaultThreads + " " + depth + " current perft");
  benchCommand(pos, args);
  return true;
}

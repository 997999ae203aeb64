// The FEN reader as every outside position meets it: read at the door, written back and read again,
// then every legal move and reply played and taken back with the position checked throughout.
#include <string>

#include "frontend/position_intake.h"
#include "fuzz_session.h"
#include "fuzz_targets.h"
#include "game/position.h"
#include "game/rules.h"
#include "movegen/movegen.h"
#include "position_invariants.h"

namespace {

std::string after(Move m, const std::string& fault) { return "after " + moveToWire(m) + ": " + fault; }

// A captive the writer leaves out, because it is inside a standing tower, reads back as unknown.
Square shown(const Position& pos, Square captive) {
  return captive == NoSquare || pos.onStandingTower(captive) ? NoSquare : captive;
}

// The text fen() writes must read back into the same position, as far as the writer tells it.
std::string roundTripFault(const Position& pos) {
  const SiegeGeometry geometry = currentSiegeGeometry();
  Position again;
  if (takePosition(again, pos.fen()) != Intake::Taken) return "its own FEN is refused: " + pos.fen();
  PositionSnapshot a = snapshotOf(pos), b = snapshotOf(again);
  a.st = b.st = nullptr;
  a.siege1Captive = shown(pos, a.siege1Captive);
  b.siege1Captive = shown(again, b.siege1Captive);
  for (Color c : {WHITE, BLACK}) {
    a.siege2Captive[c] = shown(pos, a.siege2Captive[c]);
    b.siege2Captive[c] = shown(again, b.siege2Captive[c]);
    a.released[c] = b.released[c];  // the writer does not carry it
  }
  // With its tower as the default one, a Siege 1 FEN carries neither breaches nor goals.
  bool tailWritten = siege2 || (siege1 && pos.siege1Tower != siege1InitialTower);
  if (siege1 && !tailWritten) a.siege1Breached = b.siege1Breached;
  bool sameGeometry = currentSiegeGeometry() == geometry;
  restoreSiegeGeometry(geometry);  // a Siege 1 FEN without its tail reads back the default goals
  if (std::string d = snapshotDifference(a, b); !d.empty()) return "its own FEN reads back with other " + d + ": " + pos.fen();
  if (tailWritten && !sameGeometry) return "its own FEN reads back with other towers or goals";
  return "";
}

// Perft to two plies with the checks: each move must be legal by the legality test, leave a sound
// position, and be taken back without a trace. Where the rules' leader bookkeeping does not hold,
// with several Bondsmen, only the board and the take-back are checked.
std::string walkFault(Position& pos) {
  const PositionSnapshot root = snapshotOf(pos);
  const bool rulesHold = !severalBondsmen(pos);
  ScoredMove moves[MaxMoves];
  ScoredMove* end = generateLegal(pos, moves);
  const Bitboard pinned = CheckInfo(pos).pinned;
  for (ScoredMove* m = moves; m != end; ++m) {
    if (rulesHold && !pos.pseudo_legal(m->move)) return after(m->move, "generated but not pseudo-legal");
    if (rulesHold && !pos.legal(m->move, pinned)) return after(m->move, "generated but not legal");
    StateInfo st;
    pos.do_move(m->move, st);
    if (std::string fault = positionFault(pos, rulesHold ? Vouch::Played : Vouch::Board); !fault.empty())
      return after(m->move, fault);

    const PositionSnapshot middle = snapshotOf(pos);
    ScoredMove replies[MaxMoves];
    ScoredMove* replyEnd = generateLegal(pos, replies);
    for (ScoredMove* r = replies; r != replyEnd; ++r) {
      StateInfo st2;
      pos.do_move(r->move, st2);
      if (std::string fault = positionFault(pos, Vouch::Board); !fault.empty())
        return after(m->move, after(r->move, fault));
      pos.undo_move(r->move);
      if (std::string d = snapshotDifference(middle, snapshotOf(pos)); !d.empty())
        return after(m->move, "undo of " + moveToWire(r->move) + " leaves other " + d);
    }
    pos.undo_move(m->move);
    if (std::string d = snapshotDifference(root, snapshotOf(pos)); !d.empty())
      return "undo of " + moveToWire(m->move) + " leaves other " + d;
  }
  return "";
}

}  // namespace

std::string fuzzFenReader(const uint8_t* data, size_t size) {
  FuzzSession session(data, size);
  if (!session.ready()) return "";
  const std::string fen(session.text());
  const SiegeGeometry geometry = currentSiegeGeometry();

  Position pos;
  const PositionSnapshot clean = snapshotOf(pos);
  if (takePosition(pos, fen) != Intake::Taken) {
    if (!snapshotDifference(clean, snapshotOf(pos)).empty()) return "a refused FEN changed the position";
    if (!(currentSiegeGeometry() == geometry)) return "a refused FEN changed the towers or goals";
    return internalReport(session.output());
  }
  if (std::string fault = positionFault(pos, Vouch::SetUp); !fault.empty()) return fault;
  if (std::string report = internalReport(session.output()); !report.empty()) return report;
  if (std::string fault = roundTripFault(pos); !fault.empty()) return fault;

  // Nothing is printed while moves are made and taken back: any text is an internal report.
  session.clearOutput();
  if (std::string fault = walkFault(pos); !fault.empty()) return fault;
  if (!session.output().empty() && !severalBondsmen(pos)) return "output while walking the moves: " + session.output();
  return "";
}

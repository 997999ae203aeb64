// A `position` text with its move list, through the parser the command loop and the game replay use;
// what it builds is checked, then taken back move by move to the position it started from.
#include <sstream>
#include <string>

#include "frontend/command_loop.h"
#include "frontend/position_intake.h"
#include "frontend/settings.h"
#include "fuzz_session.h"
#include "fuzz_targets.h"
#include "game/move_stack.h"
#include "game/position.h"
#include "position_invariants.h"

namespace {

// The FEN the parser hands to the reader: the words behind "fen" up to "moves", or the start FEN.
std::string startingFen(const std::string& text) {
  std::istringstream is(text);
  std::string word, fen;
  is >> word;
  if (word == "startpos") return startFen;
  while (is >> word && word != "moves") fen += word + " ";
  return fen;
}

}  // namespace

std::string fuzzPositionText(const uint8_t* data, size_t size) {
  FuzzSession session(data, size);
  if (!session.ready()) return "";
  const std::string text(session.text());

  // The position the text starts from, read aside: the parser must arrive there before its moves.
  Position start;
  const bool startTaken = takePosition(start, startingFen(text)) == Intake::Taken;
  session.clearOutput();

  Position pos;
  const PositionSnapshot clean = snapshotOf(pos);
  std::istringstream is(text);
  bool applied = applyPositionText(pos, is);
  if (std::string report = internalReport(session.output()); !report.empty() && !(startTaken && severalBondsmen(start)))
    return report;
  if (!applied && snapshotDifference(clean, snapshotOf(pos)).empty()) return "";
  if (!startTaken) return "the parser took a FEN the reader refuses";
  // A text that stops at a bad move leaves the moves before it made: still a sound position.
  if (std::string fault = positionFault(pos, Vouch::Played); !fault.empty()) return fault;
  if (!applied) return "";

  // Each made move is on the move stack, unless there were more than it holds.
  int made = moveStackCount;
  if (setupStates == nullptr || made != int(setupStates->size())) return "";
  session.clearOutput();
  for (int i = made - 1; i >= 0; --i) pos.undo_move(moveStack[i]);
  if (!session.output().empty()) return "output while taking the moves back: " + session.output();
  if (pos.state() != &pos.startState) return "taking the moves back does not end on the start record";
  if (std::string fault = positionFault(pos, Vouch::SetUp); !fault.empty()) return "taken back: " + fault;

  PositionSnapshot a = snapshotOf(pos), b = snapshotOf(start);
  a.st = b.st = nullptr;
  if (std::string d = snapshotDifference(b, a); !d.empty()) return "taking the moves back leaves other " + d;
  return "";
}

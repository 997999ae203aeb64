// The host's legality and notation services: a proposed move judged in one line, and moves written in SAN.
#include "frontend/host_services.h"

#include <iostream>
#include <mutex>

#include "core/messages.h"
#include "eval/material.h"
#include "frontend/command_loop.h"
#include "frontend/position_intake.h"
#include "frontend/settings.h"
#include "game/game_end.h"
#include "game/position.h"
#include "game/threat_text.h"
#include "movegen/movegen.h"
#include "movegen/notation.h"

namespace {

std::string legalMoveWords(const Position& pos) {
  ScoredMove list[MaxMoves];
  std::string text;
  for (ScoredMove *it = list, *end = generateLegal(pos, list); it != end; ++it) text += moveToUci(it->move) + " ";
  return text;
}

std::string checkersText(const Position& pos) {
  return pos.inCheck() ? threatensText(pos.checkers(), pos.leaderSquare(pos.side())) : "";
}

// The other side's moves, as if the side to move passed; key, counters and checkers are put back.
std::string enemyMoveWords(Position& pos) {
  StateInfo saved;
  const Bitboard checkers = pos.st->checkers;
  pos.do_null_move(saved);
  pos.computeCheckers();
  std::string text = legalMoveWords(pos);
  pos.undo_null_move(saved);
  pos.st->checkers = checkers;
  return text;
}

// The host's replay checks more than a set-up does: one Dorn form a side, and no leader left en prise.
bool replayChecked(Position& pos, const std::string& positionText) {
  const std::string text = positionText.rfind("startpos moves", 0) == 0 ? positionText : "fen " + positionText;
  checkDornCount = checkLeaderCapture = true;
  bool applied = replayGame(pos, text, false);
  checkDornCount = checkLeaderCapture = false;
  return applied;
}

}  // namespace

LegalityReport checkProposedMove(Position& pos, std::string moveWord, const std::string& positionText) {
  LegalityReport r;
  if (!replayChecked(pos, positionText)) return r;

  r.phase = gamePhase(pos.state()->npMaterial[WHITE] + pos.state()->npMaterial[BLACK]);
  r.checkersBefore = checkersText(pos);
  r.movesBefore = legalMoveWords(pos);
  r.enemyMoves = enemyMoveWords(pos);

  // As the console's move: the first legal move whose wire form is the word.
  const Move m = moveFromLegalList(pos, moveWord);
  if (m == MoveNone) return r;
  r.legal = true;
  r.san = moveToSan(pos, m);

  StateInfo st;
  pos.do_move(m, st);
  r.checkersAfter = checkersText(pos);
  r.movesAfter = legalMoveWords(pos);
  Color goalOwner = WHITE;
  r.ended = r.movesAfter.empty() || captiveOnGoal(pos, goalOwner);
  pos.undo_move(m);

  // The draw is judged on the position the move is proposed in, not on the one it leads to.
  if (!r.ended && !leaderLost(pos)) isDrawPV(pos, &r.draw);
  return r;
}

std::string legalityLine(const LegalityReport& r) {
  std::string line = std::string(r.legal ? "1 " : "0 ") + (r.ended ? "1 " : "0 ");
  for (const std::string* field : {&r.draw, &r.checkersBefore, &r.checkersAfter, &r.movesBefore, &r.movesAfter,
                                   &r.enemyMoves})
    line += "^" + *field + " ";
  return line + "^" + std::to_string(r.phase) + " ^" + r.san + " ^";
}

std::string movesToSan(Position& pos, std::istream& words) {
  std::string fen, word;
  while (words >> word && word != "moves") fen += word + " ";
  if (takePosition(pos, fen) != Intake::Taken) return "";

  // As `position` does: the moves are played on the loop's position and listed, but not counted.
  setupStates = std::make_unique<StateList>();
  std::string reply;
  for (int n = 0; words >> word; ++n) {
    const Move m = moveFromSquares(pos, word);
    if (m == MoveNone) break;  // the list ends here, without a word
    if (n < MaxGameMoves) playedMoves[n] = " " + word;
    if (!textMoveAllowed(pos, m)) return reply + " ?Illegal move..." + word + "\n";
    reply += moveToSan(pos, m) + " ";
    pos.do_move(m, setupStates->emplace_back());
  }
  return reply.empty() ? "<none>" : reply;
}

void checkLegalityMateDrawCommand(Position& pos, std::istream& words) {
  std::string moveWord, word, positionText;
  words >> moveWord;
  while (words >> word) positionText += (positionText.empty() ? "" : " ") + word;
  const std::string line = legalityLine(checkProposedMove(pos, moveWord, positionText));
  std::lock_guard<std::mutex> lock(syncOutLock);
  std::cout << line << "\n";
}

void convertMovesToSanCommand(Position& pos, std::istream& words) {
  std::string reply;
  {
    // It may run beside the end of a search, whose report replays the game.
    std::lock_guard<std::mutex> game(gameTextLock);
    reply = movesToSan(pos, words);
  }
  std::lock_guard<std::mutex> lock(syncOutLock);
  std::cout << reply << "\n";
}

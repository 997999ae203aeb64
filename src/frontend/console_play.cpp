// The user's move with the reason a word is refused, the computer's move with its limits, and the hint.
#include "frontend/console_play.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <iostream>

#include "core/plain_number.h"
#include "frontend/command_loop.h"
#include "frontend/game_files.h"
#include "frontend/go_command.h"
#include "frontend/settings.h"
#include "game/game_end.h"
#include "game/position.h"
#include "game/threat_text.h"
#include "movegen/movegen.h"
#include "movegen/notation.h"
#include "search/transposition_table.h"

namespace {

constexpr int MaxMoveSeconds = 180;
constexpr int SkillDepthUnlimited = 60;
constexpr int SkillTimeCapMs = 60000;
constexpr int NoWinner = -1;  // gameOver names a winner only for a goal reached

// A piece's three characters on the board picture; three blanks for an empty square.
std::string cellText(Piece pc) {
  if (pc == NoPiece) return "   ";
  return {secondMarks[pc], boardLetters[pc], firstMarks[pc]};
}

bool allBlank(const std::string& text) { return text.find_first_not_of(' ') == std::string::npos; }

// The enemies that would attack the mover's sole leader after the move, and that leader's square.
Bitboard leaderThreats(const Position& pos, Move m, Square& leader) {
  const Color us = pos.side();
  leader = pos.leaderSquare(us);
  if (leader == NoSquare) return 0;
  const Square from = moveFrom(m);
  Bitboard occ = pos.pieces();
  if (pos.pieceMoves(m)) occ &= ~squareBit[from];
  const Square target = typeOf(pos.pieceOn(from)) == pos.dornType(us) ? moveTo(m) : leader;
  const Bitboard enemies = pos.checkableBy(us);
  return enemies & pos.attackersTo(target, occ, enemies, ~us);
}

}  // namespace

std::string invalidMoveExplanation(const Position& pos, const std::string& word) {
  std::string text = "Invalid Move: " + word + "\n";
  std::string parsed = word;
  const Move m = moveFromSquares(pos, parsed);  // no move reads as a1a1
  const Square from = moveFrom(m), to = moveTo(m);
  const Piece mover = pos.pieceOn(from);
  const std::string cell = cellText(mover);
  const Color us = pos.side();

  if (from != to && mover != NoPiece && colorOf(mover) == us && pos.soleLeader(us)) {
    Square leader;
    if (Bitboard threats = leaderThreats(pos, m, leader)) return text + threatensText(threats, leader) + "\n";
    return text + "[" + cell + "] cannot move like that\n";
  }
  if (!allBlank(cell)) {
    if (colorOf(mover) != us) return text + "You cannot move the enemy [" + cell + "]\n";
    return text + "[" + cell + "] cannot move like that\n";
  }
  return text + "There is no " + colorNames[us] + " piece at square " + word.substr(0, 2) + "\n";
}

void moveCommand(Position& pos, std::istream& is) {
  // The text is the game; the board may have been set aside by `position` or `flip`.
  replayGame(pos, searchFen, false);
  int winner = NoWinner;
  if (gameOver(pos, winner)) return;

  std::string word;
  if (!(is >> word)) {
    std::cout << "No move specified... type: m e2e3 for example\n";
    return;
  }
  if (word.size() < 4) {
    std::cout << "Moves must be 4 characters long, ex a2b3 <square from> + <square to>\n";
    return;
  }
  std::string match = word;
  const Move m = moveFromLegalList(pos, match);
  if (m == MoveNone) {
    std::cout << invalidMoveExplanation(pos, word);
    return;
  }

  const Color mover = pos.side();
  const std::string gameText = moveToUci(m, &pos, false);
  StateInfo st;
  pos.do_move(m, st);
  Color goalOwner;
  const bool won = captiveOnGoal(pos, goalOwner);
  std::string drawReason;
  const bool drawn = !leaderLost(pos) && isDrawPV(pos, &drawReason);
  printBoard(pos);
  const int replies = legalMoveCount(pos);
  pos.undo_move(m);

  searchFen += " " + gameText;
  if (msgFlags & MsgGameText) std::cout << "searchFen = " << searchFen << "\n";
  if (drawn) std::cout << "\nGame is a draw..." << drawReason << "\n";
  else if (replies == 0 || won) std::cout << "\nGame is over, " << colorNames[mover] << " wins...\n";
  else std::cout << "ok, moved " << word << "\n";

  forgetFuture();
  saveGame(BackupFileName, searchFen, false);
  replayGame(pos, searchFen, false);
}

void computerMoveCommand(Position& pos, std::istream& is) {
  replayGame(pos, searchFen, false);
  int winner = NoWinner;
  if (gameOver(pos, winner)) return;
  const Color us = pos.side();
  if (legalMoveCount(pos) == 0) {
    std::cout << colorNames[us] << " can't move, game is over\n";
    return;
  }

  const double seconds = us == BLACK && blackMoveTime != 0 ? blackMoveTime : defaultMoveTime;
  // A game file may hold any time at all; it must still fit the limit's field.
  int timeMs = std::isnan(seconds) ? 0 : int(std::clamp(1000 * seconds, double(INT_MIN), double(INT_MAX)));
  std::string word;
  if (is >> word) {
    const int n = plainNumber(word);  // "2.5" reads as 2
    if (n <= 0 || n > MaxMoveSeconds) {
      std::cout << "moveTime (s) is out of range (" << n << ") Valid range[0-180s]\n";
      return;
    }
    timeMs = 1000 * n;
  }

  // A skill level is a depth limit, and a skilled search never takes more than a minute.
  const int skill = us == BLACK ? blackDepth : defaultDepth;
  goLimits.depth = SkillDepthUnlimited;
  if (skill > 0) {
    goLimits.depth = skill;
    timeMs = std::min(timeMs, SkillTimeCapMs);
  }
  goLimits.movetime = timeMs;

  if (computerOnComputer) makeCurrent(us == WHITE ? secondTable : firstTable);
  if (msgLevel == 0) std::cout << "thinking...\n" << std::flush;
  goCommand(pos, is);
  redoCount = 0;
}

void hintCommand(Position& pos) {
  if (hintMove == MoveNone) {
    std::cout << "Computer must make a move first...type 'g'\n";
    return;
  }
  // The reply is a move of the game as it stands since the computer's move.
  replayGame(pos, searchFen, false);
  std::cout << "  Hint " << moveToUci(hintMove, &pos, true) << "\n";
}

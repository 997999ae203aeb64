// The evaluation report: the traced terms as a table in units of a Sword, then the closing lines.
#include <algorithm>
#include <iomanip>
#include <sstream>

#include "core/psqt.h"
#include "eval/trace.h"
#include "eval/trade_bonus.h"
#include "game/position.h"

Score tracedScores[2][TraceRows];

namespace {

struct ReportRow {
  const char* label;
  int row;
  bool full;  // both colours and their difference; otherwise the White entry alone
};

constexpr ReportRow ReportRows[] = {
    {"Material, PST, Tempo", PsqRow, false},  // the row holds the psq sum alone; Tempo is only in the total
    {"Material imbalance", ImbalanceRow, false},
    {"Swords", Sword, true},
    {"Archers", Archer, true},
    {"Assassins", Assassin, true},
    {"Magician1", Magician1, true},
    {"Magician", Magician, true},
    {"Magician2", Magician2, true},
    {"Warriors", Warrior, true},
    {"Bondsmen", Bondsman, true},
    {"Dorn", Dorn, true},
    {"Dorn Archer", Dorn_archer, true},
    {"Dorn Sword", Dorn_sword, true},
    {"Mobility", MobilityRow, true},
    {"Dorn safety", DornSafetyRow, true},
    {"Dorn threat", DornThreatRow, true},
    {"Threats", ThreatsRow, true},
    {"Trade bonus", TradeRow, true},
    {"Captive safety", CaptiveSafetyRow, true},
    {"Space", SpaceRow, true},
};

constexpr const char* Separator = "---------------------+-------------+-------------+---------------\n";

double inSwords(Value v) { return double(v) / pieceValueMg[Sword]; }

void writeRow(std::ostream& out, const char* label, int row, bool full) {
  const Score w = tracedScores[WHITE][row], b = tracedScores[BLACK][row];
  out << std::setw(20) << label;
  if (!full) {
    out << " |   ---   --- |   ---   --- | " << std::showpos << std::setw(6) << inSwords(mgValue(w)) << " "
        << std::setw(6) << inSwords(egValue(w)) << " \n";
    return;
  }
  out << " | " << std::noshowpos << std::setw(5) << inSwords(mgValue(w)) << " " << std::setw(5) << inSwords(egValue(w))
      << " | " << std::setw(5) << inSwords(mgValue(b)) << " " << std::setw(5) << inSwords(egValue(b)) << " | "
      << std::showpos << std::setw(6) << inSwords(mgValue(w) - mgValue(b)) << " " << std::setw(6)
      << inSwords(egValue(w) - egValue(b)) << " \n";
}

}  // namespace

std::string evaluationReport(const Position& pos) {
  if (pos.inCheck()) return "no trace evaluate on check...";

  // Outside a search the trade bonus compares with this position's side to move.
  rootSideToMove = pos.side();

  std::ostringstream out;
  out << std::showpoint << std::showpos << std::fixed << std::setprecision(2);
  std::fill(&tracedScores[0][0], &tracedScores[0][0] + 2 * TraceRows, 0);
  // The closing lines are written first, in the report's number format.
  std::ostringstream closing;
  closing.copyfmt(out);
  Value margin;
  tracedEvaluate(pos, margin, closing);

  const StateInfo* st = pos.state();
  out << "Scores material...White(" << st->npMaterial[WHITE] << ") Black(" << st->npMaterial[BLACK] << ")\n";
  out << std::setw(21) << "Eval term " << "|    White    |    Black    |     Total     \n"
      << "                     |   MG    EG  |   MG    EG  |   MG     EG   \n"
      << Separator;
  for (const ReportRow& r : ReportRows) writeRow(out, r.label, r.row, r.full);
  out << Separator;
  writeRow(out, "Total", TotalRow, false);
  out << closing.str();
  return out.str();
}

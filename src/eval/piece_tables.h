// Constant tables of the piece terms: mobility by squares counted, threat penalties, outposts.
#pragma once

#include "core/types.h"

namespace piece_tables {

constexpr Score S(int mg, int eg) { return makeScore(mg, eg); }

// MobilityBonus[t][n], n squares counted; slots not written are 0/0. The Dorn forms have none.
constexpr Score MobilityBonus[TypeSlots][32] = {
    {},
    // Sword
    {S(-30, -25), S(12, 7), S(18, 12), S(25, 18), S(32, 24)},
    // Magician1
    {S(-35, -25), S(12, 7), S(18, 12), S(25, 18), S(35, 24)},
    // Assassin
    {S(-38, -33), S(-25, -23), S(-12, -13), S(0, -3), S(9, 7), S(18, 15), S(26, 22), S(32, 24), S(38, 27)},
    // Archer
    {S(-38, -33), S(-25, -23), S(-12, -13), S(0, -3), S(9, 7), S(18, 15), S(26, 22), S(32, 24), S(38, 27)},
    // Magician
    {S(-38, -33), S(-25, -23), S(-12, -13), S(0, -3), S(5, 7), S(10, 17), S(15, 22), S(20, 27), S(25, 30),
     S(30, 39), S(35, 49), S(40, 59), S(45, 70)},
    // Warrior: the row ends at 24 squares
    {S(-16, -24), S(-12, -17), S(-9, -10), S(-6, -5), S(-3, 0), S(0, 7), S(3, 13), S(5, 19), S(8, 23), S(10, 27),
     S(12, 32), S(15, 34), S(16, 35), S(17, 35), S(18, 35), S(20, 35), S(22, 37), S(22, 37), S(24, 39), S(24, 39),
     S(28, 42), S(28, 42), S(28, 42), S(28, 42), S(28, 42)},
    // Magician2
    {S(-38, -33), S(-25, -23), S(-12, -13), S(0, -3), S(5, 7), S(10, 17), S(15, 22), S(20, 27), S(25, 30),
     S(30, 39), S(35, 49), S(40, 59), S(45, 70)},
    // Bondsman: the Warrior's row, then 30/44 up to the last slot
    {S(-16, -24), S(-12, -17), S(-9, -10), S(-6, -5), S(-3, 0), S(0, 7), S(3, 13), S(5, 19), S(8, 23), S(10, 27),
     S(12, 32), S(15, 34), S(16, 35), S(17, 35), S(18, 35), S(20, 35), S(22, 37), S(22, 37), S(24, 39), S(24, 39),
     S(28, 42), S(28, 42), S(28, 42), S(28, 42), S(28, 42), S(30, 44), S(30, 44), S(30, 44), S(30, 44), S(30, 44),
     S(30, 44), S(30, 44)},
};

// SwordThreatPenalty[f][t], f = 1 while Swords capture mounts. Mounts are not tested with f = 0.
constexpr Score SwordThreatPenalty[2][TypeSlots] = {
    {S(0, 0), S(0, 0), S(15, 25), S(40, 50), S(45, 60), S(56, 70), S(0, 0), S(62, 75), S(0, 0), S(0, 0), S(56, 70),
     S(0, 0)},
    {S(0, 0), S(0, 0), S(15, 25), S(40, 50), S(45, 60), S(56, 70), S(56, 70), S(62, 75), S(76, 99), S(86, 118),
     S(84, 116), S(82, 114)},
};

// Paid when an enemy Magician1 attacks the piece and no Sword penalty applies; a Magician1 is not tested.
constexpr Score Magician1ThreatPenalty[TypeSlots] = {S(0, 0),   S(0, 0),   S(0, 0),   S(30, 35),
                                                     S(32, 40), S(38, 45), S(38, 45), S(40, 47),
                                                     S(58, 60), S(53, 69), S(52, 68), S(0, 0)};

// OutpostBonus[t][s] for White, rank 1 first; Black reads s ^ 56. Ranks not written are 0.
constexpr int OutpostBonus[TypeSlots][64] = {
    {},
    {},
    // Magician1
    {0, 0, 0, 0, 0, 0, 0, 0,    0, 0, 0, 0, 0, 0, 0, 0,     0, 0, 4, 8, 8, 4, 0, 0,
     0, 2, 9, 15, 15, 9, 2, 0,  0, 6, 15, 22, 22, 15, 6, 0},
    // Assassin
    {0, 0, 0, 0, 0, 0, 0, 0,     0, 0, 0, 0, 0, 0, 0, 0,     0, 0, 6, 12, 12, 6, 0, 0,
     0, 4, 12, 22, 22, 12, 4, 0, 0, 5, 16, 26, 26, 16, 5, 0},
    // Archer
    {0, 0, 0, 0, 0, 0, 0, 0,     0, 0, 0, 0, 0, 0, 0, 0,     0, 0, 4, 8, 8, 4, 0, 0,
     0, 4, 17, 26, 26, 17, 4, 0, 0, 8, 26, 30, 30, 26, 8, 0},
    // Magician
    {0, 0, 0, 0, 0, 0, 0, 0,     0, 0, 0, 0, 0, 0, 0, 0,     0, 0, 10, 20, 20, 10, 0, 0,
     0, 6, 25, 35, 35, 25, 6, 0, 0, 8, 12, 15, 15, 12, 8, 0},
    // Warrior
    {0, 0, 0, 0, 0, 0, 0, 0,    0, 0, 0, 0, 0, 0, 0, 0,   0, 0, 5, 5, 5, 5, 0, 0,
     0, 5, 6, 12, 12, 12, 5, 0, 0, 3, 8, 9, 9, 8, 3, 0,   0, 0, 3, 3, 3, 0, 0, 0},
    // Magician2
    {0, 0, 0, 0, 0, 0, 0, 0,     0, 0, 0, 0, 0, 0, 0, 0,     0, 0, 10, 20, 20, 10, 0, 0,
     0, 6, 25, 35, 35, 25, 6, 0, 0, 8, 12, 15, 15, 12, 8, 0},
};

}  // namespace piece_tables

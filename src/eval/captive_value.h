// What carrying the captive is worth, by the type of the piece that carries it.
#pragma once

#include "core/types.h"

// Read by siege scoring and by exchange evaluation and move ordering (a pick-up's gain).
inline constexpr int captiveBaseValue[TypeSlots] = {
    0,
    5,    // Sword
    0,    // Magician1
    20,   // Assassin
    40,   // Archer
    5,    // Magician
    100,  // Warrior
    60,   // Magician2
    120,  // Bondsman
    140,  // Dorn
    50,   // Dorn_archer
    15,   // Dorn_sword
};

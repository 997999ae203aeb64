// The evaluation tables each thread owns, so that evaluate needs no lock.
#pragma once

#include <cstddef>

#include "eval/endgame.h"
#include "eval/material.h"

class Position;

// A search thread is one of these; the command loop owns one for its own position. Positions
// reach it through their thread reference.
struct EvalTables {
  MaterialTable material;  // must stay first: see prefetchMaterialEntry
  Endgames endgames;
};

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(offsetof(EvalTables, material) == 0, "the game layer's prefetch expects the material table first");
#pragma GCC diagnostic pop

// The tables of the position's owner; a position without one (a test, a tool) uses a set that
// belongs to the calling thread, made on its first use.
EvalTables& evalTablesOf(const Position& pos);

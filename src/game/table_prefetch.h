// Cache hints for the table entries a move's new keys lead to, issued before they are probed.
#pragma once

#include "core/types.h"

class Thread;

// A hint only: the memory may not be touched at all.
inline void prefetch(const void* address) { __builtin_prefetch(address); }

// The transposition table entry of a position key. No table exists yet, so nothing is fetched.
inline void prefetchTranspositionEntry(Key) {}

// The owning thread's material table entry of a material key. No table exists yet either.
inline void prefetchMaterialEntry(const Thread*, Key) {}

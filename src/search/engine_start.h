// The start-up of every process-wide table, in the one order the program, tests and benchmarks share.
#pragma once

// The option table with its defaults, attack tables, piece-square tables and keys, the generators'
// services, search tables, evaluation weights and the promotable types. Option handlers that act on
// the front end are attached by the caller; the thread pool is started by the caller.
void initEngineTables();

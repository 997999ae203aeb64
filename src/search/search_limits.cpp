// The flags of a running search, shared by the command loop and the search threads.
#include "search/search_limits.h"

std::atomic<bool> searching{false};
std::atomic<bool> uciGo{false};

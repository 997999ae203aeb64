// Start values of the message settings.
#include "core/messages.h"

int msgLevel = 0;
const int msgFlagsByLevel[3] = {5, 13, 63};
int msgFlags = msgFlagsByLevel[0];

std::mutex syncOutLock;

// The process-wide statistics record.
#include "core/statistics.h"

Statistics stats;

// The actions options take when assigned, attached at start-up once the layers they act on exist.
#pragma once

void attachOptionHandlers();

// Lends the rules layer what it needs of the generators; called once at start-up.
#pragma once

void installGeneratorServices();

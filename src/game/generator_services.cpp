// The generator services, empty until the generators install themselves.
#include "game/generator_services.h"

GeneratorServices generatorServices;

#include "Core/WellKnownKeys.h"

#include "Core/KeyInterning.h"

namespace grindle {

const char* const kWellKnownKeyNames[kWellKnownKeyCount] = {
#define GRINDLE_KEY_NAME(name) #name,
    GRINDLE_WELL_KNOWN_KEYS(GRINDLE_KEY_NAME)
#undef GRINDLE_KEY_NAME
};

uint32_t gWellKnownKeys[kWellKnownKeyCount] = {};

void InternWellKnownKeys() {
  for (size_t i = 0; i < kWellKnownKeyCount; ++i) gWellKnownKeys[i] = HashValue(kWellKnownKeyNames[i]);
}

}  // namespace grindle

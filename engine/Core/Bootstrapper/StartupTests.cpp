#include "Core/Bootstrapper/StartupTests.h"

#include "Core/Assert.h"

namespace grindle {

void RunStartupUnitTests(bool runDrivers) {
  const bool passed = !runDrivers;
  GRINDLE_ASSERT_TEXT(!passed, "!utmUnitTests.RunAllTests()", "One or more unit tests failed!");
}

}  // namespace grindle

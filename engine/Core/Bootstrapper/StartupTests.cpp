#include "Core/Bootstrapper/StartupTests.h"

#include <cstdio>

#include "Core/Assert.h"
#include "Core/UnitTests/UnitTestManager.h"

namespace grindle {

void RunStartupUnitTests(bool runDrivers) {
  UnitTestManager utmUnitTests;
  utmUnitTests.SetRunDrivers(runDrivers);
  const bool passed = utmUnitTests.RunAllTests();
  std::fflush(stdout);
  GRINDLE_ASSERT_TEXT(!passed, "!utmUnitTests.RunAllTests()", "One or more unit tests failed!");
}

}  // namespace grindle

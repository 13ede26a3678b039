#include "Core/UnitTests/UnitTestDriver.h"

#include <cstdio>

namespace grindle {

bool UnitTestDriver::RunAllTests() {
  for (const auto& [name, function] : tests_) {
    if (!RunTest(name, function)) isAllPassed_ = false;
  }
  return isAllPassed_;
}

void UnitTestDriver::AddTest(std::string name, UnitTestFunction function) {
  tests_.emplace_back(std::move(name), function);
}

bool UnitTestDriver::RunTest(const std::string& name, UnitTestFunction function) {
  const bool isPassed = function();
  std::fputs(isPassed ? kConsolePassedColour : kConsoleFailedColour, stdout);
  std::printf("%s%s\n", isPassed ? "[PASSED]" : "[FAILED]", name.c_str());
  std::fputs(kConsoleDefaultColour, stdout);
  return isPassed;
}

}  // namespace grindle

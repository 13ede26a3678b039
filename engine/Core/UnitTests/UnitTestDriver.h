// The built-in test harness's driver base: a driver owns an ordered list of named checks of one
// core service and reports each on standard output, green when it passed and red when it failed.
// Main thread only. Every check runs whatever the earlier ones returned; one failure makes the
// whole driver report false.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace grindle {

using UnitTestFunction = bool (*)();

inline constexpr const char* kConsolePassedColour = "\033[92m";
inline constexpr const char* kConsoleFailedColour = "\033[91m";
inline constexpr const char* kConsoleDefaultColour = "\033[0m";

class UnitTestDriver {
 public:
  virtual ~UnitTestDriver() = default;

  // Runs the checks in the order they were added; true when all of them passed.
  virtual bool RunAllTests();

 protected:
  void AddTest(std::string name, UnitTestFunction function);
  // Runs one check and prints its "[PASSED]" or "[FAILED]" line; returns its result.
  bool RunTest(const std::string& name, UnitTestFunction function);

  bool isAllPassed_ = true;

 private:
  std::vector<std::pair<std::string, UnitTestFunction>> tests_;
};

}  // namespace grindle

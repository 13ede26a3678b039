// Owns the built-in test drivers, registered by name in their fixed order. Main thread only.
// Shipped builds never run them: RunAllTests answers true at once unless running was switched on,
// so that start-up never depends on the tests.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Core/UnitTests/UnitTestDriver.h"

namespace grindle {

class UnitTestManager {
 public:
  UnitTestManager();

  void SetRunDrivers(bool isRunDrivers) { isRunDrivers_ = isRunDrivers; }
  // True when every driver passed (or when running is switched off). Every driver runs, even
  // after one has failed.
  bool RunAllTests();

  const std::vector<std::pair<std::string, std::unique_ptr<UnitTestDriver>>>& Drivers() const {
    return drivers_;
  }

 private:
  std::vector<std::pair<std::string, std::unique_ptr<UnitTestDriver>>> drivers_;
  bool isRunDrivers_ = false;
};

// Runs every driver now, whatever the shipped switch says; for a command-line option.
bool RunBuiltInUnitTests();

}  // namespace grindle

#include "Core/UnitTests/UnitTestManager.h"

#include "Core/UnitTests/CoreUnitTestDrivers.h"

namespace grindle {

UnitTestManager::UnitTestManager() {
  drivers_.emplace_back("MemoryManagerUnitTestDriver",
                        std::make_unique<MemoryManagerUnitTestDriver>());
  drivers_.emplace_back("ThreadManagerUnitTestDriver",
                        std::make_unique<ThreadManagerUnitTestDriver>());
  drivers_.emplace_back("DatabaseUnitTestDriver", std::make_unique<DatabaseUnitTestDriver>());
  drivers_.emplace_back("ReflectionUnitTestDriver", std::make_unique<ReflectionUnitTestDriver>());
  drivers_.emplace_back("MessageUnitTestDriver", std::make_unique<MessageUnitTestDriver>());
}

bool UnitTestManager::RunAllTests() {
  if (!isRunDrivers_) return true;
  bool isAllPassed = true;
  for (auto& [name, driver] : drivers_) {
    if (!driver->RunAllTests()) isAllPassed = false;
  }
  return isAllPassed;
}

bool RunBuiltInUnitTests() {
  UnitTestManager manager;
  manager.SetRunDrivers(true);
  return manager.RunAllTests();
}

}  // namespace grindle

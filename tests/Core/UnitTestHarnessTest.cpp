#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "Core/UnitTests/UnitTestDriver.h"
#include "Core/UnitTests/UnitTestManager.h"
#include "TestOutput.h"

namespace grindle {
namespace {

// Each report line: the colour, the verdict and the name, then the reset that the next line (or
// the end of the output) begins with.
std::string Passed(const std::string& name) { return "\033[92m[PASSED]" + name; }
std::string Failed(const std::string& name) { return "\033[91m[FAILED]" + name; }

class ScriptedDriver : public UnitTestDriver {
 public:
  ScriptedDriver() {
    AddTest("fails_first", [] { return false; });
    AddTest("passes_after", [] { return true; });
    AddTest("fails_again", [] { return false; });
  }
};

TEST(UnitTestHarness, AFailureIsReportedAndTheRestOfTheDriverStillRuns) {
  ScriptedDriver driver;
  bool result = true;
  const std::string output = CaptureStdout([&] { result = driver.RunAllTests(); });
  EXPECT_FALSE(result);
  EXPECT_EQ(output, Failed("fails_first") + "\n\033[0m" + Passed("passes_after") + "\n\033[0m" +
                        Failed("fails_again") + "\n\033[0m");
}

TEST(UnitTestHarness, ShippedManagerRunsNothing) {
  UnitTestManager manager;
  bool result = false;
  const std::string output = CaptureStdout([&] { result = manager.RunAllTests(); });
  EXPECT_TRUE(result);
  EXPECT_EQ(output, "");
}

TEST(UnitTestHarness, EveryBuiltInTestPassesInItsFixedOrder) {
  UnitTestManager manager;
  std::vector<std::string> driverNames;
  for (const auto& [name, driver] : manager.Drivers()) driverNames.push_back(name);
  EXPECT_EQ(driverNames,
            (std::vector<std::string>{"MemoryManagerUnitTestDriver", "ThreadManagerUnitTestDriver",
                                      "DatabaseUnitTestDriver", "ReflectionUnitTestDriver",
                                      "MessageUnitTestDriver"}));

  bool result = false;
  const std::string output = CaptureStdout([&] { result = RunBuiltInUnitTests(); });
  EXPECT_TRUE(result) << output;
  std::istringstream names(
      "allocate_pod_mem_test allocate_udt_mem_test read_write_pod_mem_test read_write_udt_mem_test "
      "add_thread_job add_thread_multi_job database_add_default_pod database_add_default_pod_twice "
      "database_add_default_udt database_add_default_udt_twice database_add_copy_pod "
      "database_add_copy_udt database_add_remove_pod database_add_remove_udt meta_int_test "
      "message_test_add_listener message_test_call_function_one_arg "
      "message_test_call_function_two_arg message_test_call_function_three_arg");
  std::string expected;
  for (std::string name; names >> name;) expected += Passed(name) + "\n\033[0m";
  EXPECT_EQ(output, expected);
}

}  // namespace
}  // namespace grindle

// The assertion routine: the one way the engine reports a broken expectation. It shows the
// "Assertion Triggered!" box where a display exists, writes the expression, file, line and time to
// standard output and stops the process abnormally. It never returns. Callable from any thread.
#pragma once

namespace grindle {

[[noreturn]] void AssertionFailed(const char* expression, const char* unit, int line,
                                  const char* details);

// The source unit as the engine names it ("Core/Database"), not the build machine's full path.
constexpr const char* SourceUnit(const char* path) {
  const char* unit = path;
  for (const char* p = path; *p != '\0'; ++p) {
    if (p[0] == 'e' && p[1] == 'n' && p[2] == 'g' && p[3] == 'i' && p[4] == 'n' && p[5] == 'e' &&
        p[6] == '/') {
      unit = p + 7;
    }
  }
  return unit;
}

}  // namespace grindle

// Stops the program when `failure` holds; the expression text printed is the failure condition.
#define GRINDLE_ASSERT(failure, details)                                                   \
  do {                                                                                     \
    if (failure) ::grindle::AssertionFailed(#failure, ::grindle::SourceUnit(__FILE__),     \
                                            __LINE__, (details));                          \
  } while (false)

// For checks whose documented expression text differs from the code that tests it.
#define GRINDLE_ASSERT_TEXT(failure, expressionText, details)                               \
  do {                                                                                     \
    if (failure) ::grindle::AssertionFailed((expressionText), ::grindle::SourceUnit(__FILE__), \
                                            __LINE__, (details));                          \
  } while (false)

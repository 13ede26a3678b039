#include "Core/Assert.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

#include "Platform/Dialogs.h"

namespace grindle {

void AssertionFailed(const char* expression, const char* unit, int line, const char* details) {
  platform::ShowCursor();
  const std::time_t now = std::time(nullptr);

  char text[2048];
  std::snprintf(text, sizeof text,
                "Warning!\n Check the expression at....\nFILE: %s\nLINE: %d\nDETAILS: %s\n", unit,
                line, details);
  platform::ShowMessageBox("Assertion Triggered!", text);

  std::printf("The expression %s failed.\nIn file %s\nAt line %d\nTime & Date of occurence: %s",
              expression, unit, line, std::ctime(&now));
  std::fflush(stdout);
  std::abort();
}

}  // namespace grindle

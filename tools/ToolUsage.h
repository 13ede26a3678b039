// The command-line convention every content tool follows, so that no option is ever taken for a
// folder to write into: "--help" or "-h" prints the usage on standard output and does nothing
// else; any other argument starting with '-', or a wrong argument count, prints the usage on
// standard error. Header-only; each tool's main calls it first.
#pragma once

#include <cstdio>
#include <optional>
#include <string_view>

namespace grindle::tools {

// The exit status to end with before any work is done, or nothing when the arguments are usable.
inline std::optional<int> CheckArguments(int argc, char** argv, int expectedArgs,
                                         const char* usage) {
  for (int i = 1; i < argc; ++i) {
    const std::string_view arg = argv[i];
    if (arg == "--help" || arg == "-h") {
      std::printf("usage: %s\n", usage);
      return 0;
    }
    if (arg.starts_with('-')) {
      std::fprintf(stderr, "unknown option %s\nusage: %s\n", argv[i], usage);
      return 2;
    }
  }
  if (argc != expectedArgs + 1) {
    std::fprintf(stderr, "usage: %s\n", usage);
    return 2;
  }
  return std::nullopt;
}

}  // namespace grindle::tools

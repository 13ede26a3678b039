// Shared by the libFuzzer harnesses: the readers under test take a path, so each input is written
// to one scratch file of the process first.
#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

namespace grindle::fuzz {

inline const std::string& WriteInput(const uint8_t* data, size_t size, const char* extension) {
  static const std::string path = "/tmp/grindle_fuzz_" + std::to_string(getpid()) + extension;
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (file != nullptr) {
    std::fwrite(data, 1, size, file);
    std::fclose(file);
  }
  return path;
}

}  // namespace grindle::fuzz

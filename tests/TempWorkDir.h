// Test helpers for files on disk: a scratch working directory, and a whole file read back.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace grindle {

// The file's bytes; empty when it cannot be read.
inline std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// A fresh temporary folder made the working directory for one test, and the previous one restored.
class TempWorkDir {
 public:
  TempWorkDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "grindle-XXXXXX").string();
    path = mkdtemp(pattern.data());
    std::filesystem::current_path(path);
  }
  ~TempWorkDir() {
    std::filesystem::current_path(previous);
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
  void Write(const std::string& relative, const std::string& text) const {
    std::filesystem::create_directories((path / relative).parent_path());
    std::ofstream(path / relative) << text;
  }

  const std::filesystem::path previous = std::filesystem::current_path();
  std::filesystem::path path;
};

}  // namespace grindle

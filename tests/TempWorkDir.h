// Test helpers for files on disk: a scratch working directory, and a whole file read back.
#pragma once

#include <stdlib.h>
#include <unistd.h>

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

// A scratch file or folder name of this process's own in the temporary folder: ctest runs the cases
// of one test file as processes side by side, which must not write the same path.
inline std::filesystem::path ScratchPath(const std::string& stem,
                                         const std::string& extension = "") {
  return std::filesystem::temp_directory_path() /
         (stem + "_" + std::to_string(getpid()) + extension);
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

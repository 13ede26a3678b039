// A fresh temporary folder made the working directory for one test (level files are read by
// relative path), and the previous working directory restored afterwards.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

class TempWorkDir {
 public:
  TempWorkDir() : previous_(std::filesystem::current_path()) {
    std::string pattern = (std::filesystem::temp_directory_path() / "grindle-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
    std::filesystem::current_path(path_);
  }
  ~TempWorkDir() {
    std::filesystem::current_path(previous_);
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempWorkDir(const TempWorkDir&) = delete;
  TempWorkDir& operator=(const TempWorkDir&) = delete;

  const std::filesystem::path& Path() const { return path_; }

  void Write(const std::string& relative, const std::string& text) const {
    const std::filesystem::path file = path_ / relative;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << text;
  }

 private:
  std::filesystem::path previous_;
  std::filesystem::path path_;
};

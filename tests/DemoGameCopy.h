// A scratch copy of the demo game for tests that run the engine on levels of their own: the demo's
// asset folders are linked, its levels and scripts copied into folders the test may add to.
#pragma once

#include <filesystem>
#include <string>

#include "TempWorkDir.h"

namespace grindle {

class DemoGameCopy : public TempWorkDir {
 public:
  explicit DemoGameCopy(const std::filesystem::path& demo) : demo_(demo) {
    namespace fs = std::filesystem;
    fs::create_directories(path / "Assets" / "Levels");
    for (const auto& entry : fs::directory_iterator(demo)) {
      const fs::path name = entry.path().filename();
      if (name == "Scripts")
        fs::copy(entry, path / name, fs::copy_options::recursive);  // modules in subfolders too
      else if (name != "Assets")
        fs::create_directory_symlink(entry, path / name);
    }
    for (const auto& entry : fs::directory_iterator(demo / "Assets")) {
      if (entry.path().filename() != "Levels")
        fs::create_directory_symlink(entry, path / "Assets" / entry.path().filename());
    }
    for (const auto& level : fs::directory_iterator(demo / "Assets" / "Levels")) {
      fs::copy_file(level, path / "Assets" / "Levels" / level.path().filename());
    }
  }

  // The text of one of the demo's own levels, to be changed into a broken one.
  std::string DemoLevel(const std::string& name) const {
    return ReadFile(demo_ / "Assets" / "Levels" / (name + ".xml"));
  }
  void WriteLevel(const std::string& name, const std::string& text) const {
    Write("Assets/Levels/" + name + ".xml", text);
  }

 private:
  std::filesystem::path demo_;
};

}  // namespace grindle

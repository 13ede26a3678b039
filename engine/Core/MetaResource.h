// Anything that reloads itself when its file is written (scripts, effect files, ...). The name is
// the file's path relative to the working directory with '/' separators ("Scripts/Player.lua"),
// exactly as the directory watcher reports it. Reload runs on the main thread.
#pragma once

#include <string>
#include <utility>

namespace grindle {

class MetaResource {
 public:
  explicit MetaResource(std::string name) : sName_(std::move(name)) {}
  virtual ~MetaResource() = default;
  virtual void Reload() = 0;

  const std::string& Name() const { return sName_; }

 private:
  std::string sName_;
};

}  // namespace grindle

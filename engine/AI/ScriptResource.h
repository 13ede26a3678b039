// A script file as the resource manager sees it ("Scripts/<FileName>"): when the file is written,
// the manager's Reload hands its FileName to the host's hot reload. One per file, owned by the
// script host, enlisted with `Systems.ResourceManager` when the root has one. Main thread only;
// withdrawn before it is destroyed.
#pragma once

#include <string>

#include "Core/MetaResource.h"

namespace grindle {

class Database;
class ResourceManager;
class ScriptHost;

class ScriptResource final : public MetaResource {
 public:
  ScriptResource(ScriptHost& host, std::string name, std::string fileName)
      : MetaResource(std::move(name)), host_(host), sFileName_(std::move(fileName)) {}

  void Reload() override;
  // Registers with, or unregisters from, the root's resource manager (nothing when absent).
  void Enlist(Database& root);
  void Withdraw();

 private:
  ScriptHost& host_;
  std::string sFileName_;
  ResourceManager* pManager_ = nullptr;
};

}  // namespace grindle

// The systems list: the six engine systems in their fixed order (AI, Physics, Networking,
// Graphics, Audio, Input), owned here and driven through ISystem in list order. Main thread only.
// Nothing is added or removed once the life cycle has begun.
#pragma once

#include <functional>
#include <vector>

#include "Core/ISystem.h"

namespace grindle {

class SystemList {
 public:
  SystemList() = default;
  // Deletes the systems in list order; no destructor is reachable through ISystem itself.
  ~SystemList();
  SystemList(const SystemList&) = delete;
  SystemList& operator=(const SystemList&) = delete;

  // Creates every system and appends it, in the engine's order.
  void CreateSystems();

  void SynchronizeAll(void** args, int count);
  void LoadAll();
  void StartAll();
  void ExitAll();
  void UnloadAll();

  const std::vector<ISystem*>& Systems() const { return systems_; }

 private:
  template <class T, class... Args>
  void Append(Args&&... args);

  std::vector<ISystem*> systems_;
  std::vector<std::function<void()>> deleters_;
};

}  // namespace grindle

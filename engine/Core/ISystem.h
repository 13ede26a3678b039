// The interface the start-up code drives every engine system through, and nothing else. All slots
// are called on the main thread, each exactly once except Update (once per frame), in the order
// synchronize, Load, Start, Update..., Exit, Unload.
#pragma once

namespace grindle {

class ISystem {
 public:
  virtual void synchronize(void** args, int count) = 0;
  virtual void Load() = 0;
  virtual void Start() = 0;
  virtual void Update(float dt) = 0;
  virtual void Exit() = 0;
  virtual void Unload() = 0;

 protected:
  ~ISystem() = default;
};

// Indices of the array that synchronize receives (at least kSynchronizeArgCount entries).
enum SynchronizeArg { kSyncDatabase = 0, kSyncMemoryRegistry = 1, kSyncThreadManager = 2 };
inline constexpr int kSynchronizeArgCount = 4;

}  // namespace grindle

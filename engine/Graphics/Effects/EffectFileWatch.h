// Registers every effect file of both sets with the resource manager, so that an edited file is
// announced with "ResourceReloaded", which the effect library acts on; unregisters them when
// destroyed. Without a manager nothing is registered. Main thread; the renderer owns one while its
// device exists, and the manager must outlive it.
#pragma once

#include <memory>
#include <vector>

namespace grindle {
class MetaResource;
class ResourceManager;
}  // namespace grindle

namespace grindle::gfx {

class EffectFileWatch {
 public:
  explicit EffectFileWatch(ResourceManager* manager);
  ~EffectFileWatch();
  EffectFileWatch(const EffectFileWatch&) = delete;
  EffectFileWatch& operator=(const EffectFileWatch&) = delete;

 private:
  ResourceManager* manager_ = nullptr;
  std::vector<std::unique_ptr<MetaResource>> files_;
};

}  // namespace grindle::gfx

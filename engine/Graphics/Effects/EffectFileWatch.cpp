#include "Graphics/Effects/EffectFileWatch.h"

#include <string>

#include "Core/MetaResource.h"
#include "Core/ResourceManager.h"
#include "Graphics/Effects/EffectSlots.h"

namespace grindle::gfx {

namespace {

// Registering is what makes the manager announce the file; the wrapper is rebuilt by the effect
// library when the announcement is delivered, so the reload itself has nothing to do.
class EffectFileResource final : public MetaResource {
 public:
  using MetaResource::MetaResource;
  void Reload() override {}
};

}  // namespace

EffectFileWatch::EffectFileWatch(ResourceManager* manager) : manager_(manager) {
  if (manager_ == nullptr) return;
  for (const std::string& path : EffectFilePaths()) {
    files_.push_back(std::make_unique<EffectFileResource>(path));
    manager_->Register(files_.back().get());
  }
}

EffectFileWatch::~EffectFileWatch() {
  for (auto& file : files_) manager_->Unregister(file.get());
}

}  // namespace grindle::gfx

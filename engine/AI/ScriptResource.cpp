#include "AI/ScriptResource.h"

#include "AI/Script.h"
#include "Core/Database.h"
#include "Core/ResourceManager.h"
#include "Core/WellKnownKeys.h"

namespace grindle {

void ScriptResource::Reload() {
  host_.ReloadScriptFile(sFileName_);
  // The manager announces this reload with "ResourceReloaded" next; that one is not repeated.
  host_.NoteResourceReload(sFileName_);
}

void ScriptResource::Enlist(Database& root) {
  const DataHandle<Database> systems = root.Find<Database>(KeyOf(WellKnown::Systems));
  if (!systems) return;
  const auto manager = systems->Find<ResourceManager*>(KeyOf(WellKnown::ResourceManager));
  if (!manager || *manager == nullptr) return;
  pManager_ = *manager;
  pManager_->Register(this);
}

void ScriptResource::Withdraw() {
  if (pManager_ != nullptr) pManager_->Unregister(this);
  pManager_ = nullptr;
}

}  // namespace grindle

// Walks a level's `ComponentLists.Meshes` list each frame without interning names: entries are
// resolved by key to the object in `GameObjects` (the entry is keyed by the object's name) and to
// its `Mesh` component, so a list entry whose object went away is skipped, never dereferenced.
// Main thread. Invalidate() after anything changes the list; a list changed behind its back is
// noticed at the next walk (size or entry identity) and re-read then.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "Core/Database.h"
#include "Core/WellKnownKeys.h"

namespace grindle {

class ListedMeshes {
 public:
  void Invalidate() { isStale_ = true; }

  // Calls visit(object, meshComponent) for each live entry of `list`, in listing order.
  template <class Visit>
  void ForEach(const Database& list, const Database& gameObjects, Visit&& visit) {
    if (isStale_ || &list != pList_ || list.Records().size() != uRecordCount_) Rebuild(list);
    const uint32_t meshKey = KeyOf(WellKnown::Mesh);
    for (const Slot& slot : slots_) {
      if (list.FindEntry(slot.key) != slot.entry) {
        isStale_ = true;
        continue;
      }
      const DataHandle<Database> object = gameObjects.Find<Database>(slot.key);
      if (!object) continue;
      const DataHandle<Database> mesh = object->Find<Database>(meshKey);
      if (!mesh) continue;
      visit(*object, *mesh);
    }
  }

 private:
  struct Slot {
    uint32_t key;
    const MetaDatabaseEntry* entry;
  };

  void Rebuild(const Database& list);

  std::vector<Slot> slots_;
  const Database* pList_ = nullptr;
  size_t uRecordCount_ = 0;
  bool isStale_ = true;
};

}  // namespace grindle

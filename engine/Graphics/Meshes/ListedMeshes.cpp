#include "Graphics/Meshes/ListedMeshes.h"

namespace grindle {

void ListedMeshes::Rebuild(const Database& list) {
  slots_.clear();
  for (const Database::Record& record : list.Records()) {
    const uint32_t key = HashValue(record.name);
    // A replaced entry leaves its old record behind; only the record of the live entry counts.
    if (list.FindEntry(key) == record.entry) slots_.push_back({key, record.entry});
  }
  pList_ = &list;
  uRecordCount_ = list.Records().size();
  isStale_ = false;
}

}  // namespace grindle

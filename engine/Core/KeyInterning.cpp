#include "Core/KeyInterning.h"

#include "Core/Assert.h"

namespace grindle {

KeyInterner::KeyInterner() : cReverseLookupTable_(MAX_STRING_NUM) {}

uint32_t KeyInterner::HashValue(std::string_view name) {
  const auto found = forward_.find(name);
  if (found != forward_.end() && found->second != 0) return found->second;

  const uint32_t key = static_cast<uint32_t>(nextOpenHash);
  forward_.insert_or_assign(std::string(name), key);
  cReverseLookupTable_[key] = name;
  nextOpenHash = (nextOpenHash + 7) % MAX_STRING_NUM;
  if (cReverseLookupTable_[nextOpenHash] != "") {
    // Unit and line are part of the engine's documented output for this check.
    AssertionFailed("cReverseLookupTable_[nextOpenHash] != \"\"", "Core/Database", 138,
                    "Collision in HashValue function \n Increase MAX_STRING_NUM");
  }
  return key;
}

const std::string& KeyInterner::NameOf(uint32_t key) const {
  static const std::string kNone;
  return key < cReverseLookupTable_.size() ? cReverseLookupTable_[key] : kNone;
}

KeyInterner& ProcessKeys() {
  static KeyInterner keys;
  return keys;
}

DatabaseCounters gDatabaseCounters;

}  // namespace grindle

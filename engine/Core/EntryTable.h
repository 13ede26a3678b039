// The key-to-entry map of one Database: open addressing with linear probing over a power-of-two
// array. Keys are the interner's small integers, handed out 7 apart, so the key itself is a good
// slot index. Each slot also carries what a typed lookup needs (kind, value pointer), so a Find
// touches one slot and never the entry. Owned by its Database; not thread-safe. Invariant: slots
// from a key's home to its slot are all occupied (deletion shifts followers back).
#pragma once

#include <cstdint>
#include <memory>

#include "Core/TypeCodes.h"

namespace grindle {

class MetaDatabaseEntry;

class EntryTable {
 public:
  struct Slot {
    uint32_t key = kEmpty;
    MetaDatabaseEntry* entry = nullptr;
    void* value = nullptr;
    KindId kind = nullptr;
  };
  static constexpr uint32_t kEmpty = 0xFFFFFFFFu;

  EntryTable() = default;
  EntryTable(EntryTable&& other) noexcept { Swap(other); }
  EntryTable& operator=(EntryTable&& other) noexcept {
    Swap(other);
    return *this;
  }

  const Slot* Find(uint32_t key) const {
    if (size_ == 0) return nullptr;
    for (uint32_t i = key & mask_;; i = (i + 1) & mask_) {
      const Slot& slot = pSlots_[i];
      if (slot.key == key) return &slot;
      if (slot.key == kEmpty) return nullptr;
    }
  }
  // Stores the entry under key, in place of whatever was there.
  void Put(uint32_t key, MetaDatabaseEntry* entry);
  void Erase(uint32_t key);
  void Clear();

  size_t Size() const { return size_; }
  template <class Visit>
  void ForEach(Visit&& visit) const {
    for (uint32_t i = 0; size_ != 0 && i <= mask_; ++i) {
      if (pSlots_[i].key != kEmpty) visit(pSlots_[i].key, pSlots_[i].entry);
    }
  }

 private:
  void Swap(EntryTable& other) noexcept;
  void Grow();
  // The slot holding key, or the empty slot where it would go; the table must have room.
  Slot& SlotFor(uint32_t key);

  std::unique_ptr<Slot[]> pSlots_;
  uint32_t mask_ = 0;  // capacity - 1 once allocated
  uint32_t size_ = 0;
};

}  // namespace grindle

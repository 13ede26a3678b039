#include "Core/EntryTable.h"

#include <utility>

#include "Core/DatabaseEntry.h"

namespace grindle {
namespace {

// Most databases are game object groups of a few entries.
constexpr uint32_t kFirstCapacity = 4;

}  // namespace

void EntryTable::Put(uint32_t key, MetaDatabaseEntry* entry) {
  // At most three quarters full, so that a miss ends on an empty slot soon.
  if (!pSlots_ || (size_ + 1) * 4 > (mask_ + 1) * 3) Grow();
  Slot& slot = SlotFor(key);
  if (slot.key == kEmpty) ++size_;
  slot = {key, entry, entry->Value(), entry->Kind()};
}

EntryTable::Slot& EntryTable::SlotFor(uint32_t key) {
  uint32_t i = key & mask_;
  while (pSlots_[i].key != key && pSlots_[i].key != kEmpty) i = (i + 1) & mask_;
  return pSlots_[i];
}

void EntryTable::Erase(uint32_t key) {
  if (size_ == 0) return;
  uint32_t hole = key & mask_;
  while (pSlots_[hole].key != key) {
    if (pSlots_[hole].key == kEmpty) return;
    hole = (hole + 1) & mask_;
  }
  // Move back every follower whose home is not between the hole and its slot.
  for (uint32_t i = (hole + 1) & mask_; pSlots_[i].key != kEmpty; i = (i + 1) & mask_) {
    const uint32_t home = pSlots_[i].key & mask_;
    const bool homeAfterHole = ((i - home) & mask_) < ((i - hole) & mask_);
    if (homeAfterHole) continue;
    pSlots_[hole] = pSlots_[i];
    hole = i;
  }
  pSlots_[hole] = Slot{};
  --size_;
}

void EntryTable::Clear() {
  pSlots_.reset();
  mask_ = 0;
  size_ = 0;
}

void EntryTable::Swap(EntryTable& other) noexcept {
  std::swap(pSlots_, other.pSlots_);
  std::swap(mask_, other.mask_);
  std::swap(size_, other.size_);
}

void EntryTable::Grow() {
  const uint32_t capacity = pSlots_ ? (mask_ + 1) * 2 : kFirstCapacity;
  EntryTable bigger;
  bigger.pSlots_ = std::make_unique<Slot[]>(capacity);
  bigger.mask_ = capacity - 1;
  for (uint32_t i = 0; size_ != 0 && i <= mask_; ++i) {
    if (pSlots_[i].key != kEmpty) bigger.SlotFor(pSlots_[i].key) = pSlots_[i];
  }
  bigger.size_ = size_;
  Swap(bigger);
}

}  // namespace grindle

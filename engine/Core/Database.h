// The meta database: a tree of named, typed entries through which every system shares state.
// Lookups are by interned integer key. Main thread only, no locks. Adding under an existing name
// replaces the entry (old handles then dangle) and deliberately leaves the name twice in the
// listing, so nothing may walk Records() expecting unique names.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "Core/DataHandle.h"
#include "Core/DatabaseEntry.h"
#include "Core/EntryTable.h"
#include "Core/KeyInterning.h"
#include "Core/LookupDiagnostics.h"

namespace grindle {

class Database {
 public:
  struct Record {
    std::string name;
    // Identity only: after a replacement the older record points at a destroyed entry.
    const MetaDatabaseEntry* entry;
  };

  Database() = default;
  Database(const Database& other);
  Database& operator=(const Database& other);
  ~Database();

  template <class T>
  DataHandle<T> Add(std::string_view name) {
    return Insert<T>(name, PoolNew<T>());
  }
  template <class T>
  DataHandle<T> Add(std::string_view name, const T& value) {
    return Insert<T>(name, PoolNew<T>(value));
  }

  // A handle to the entry under key, or a null handle when there is none or it holds another kind.
  template <class T>
  DataHandle<T> Find(uint32_t key) const {
    ++Counters().lookups;
    const EntryTable::Slot* slot = entries_.Find(key);
    if (slot == nullptr || slot->kind != KindOf<T>()) {
      gLastMissedLookup = {this, key};
      return {};
    }
    return {static_cast<T*>(slot->value), slot->entry};
  }
  template <class T>
  DataHandle<T> Find(std::string_view name) const {
    return Find<T>(HashValue(name));
  }

  // The entry under key whatever it holds, or null.
  MetaDatabaseEntry* FindEntry(uint32_t key) const {
    ++Counters().lookups;
    const EntryTable::Slot* slot = entries_.Find(key);
    if (slot != nullptr) return slot->entry;
    gLastMissedLookup = {this, key};
    return nullptr;
  }
  MetaDatabaseEntry* FindEntry(std::string_view name) const { return FindEntry(HashValue(name)); }

  uint32_t GetEntryType(std::string_view name) const;
  void Remove(std::string_view name) { Remove(HashValue(name)); }
  void Remove(uint32_t key);
  void Print(int depth) const;

  const std::vector<Record>& Records() const { return records_; }
  size_t EntryCount() const { return entries_.Size(); }

  const std::string& Name() const { return sName_; }
  void SetName(std::string name) { sName_ = std::move(name); }

 private:
  template <class T>
  DataHandle<T> Insert(std::string_view name, T* value) {
    // A nested database knows its own name, which is what scripts read as "*Name".
    if constexpr (std::is_same_v<T, Database>) value->SetName(std::string(name));
    MetaDatabaseEntry* entry = MakeEntry<T>(std::string(name), value);
    Place(name, entry);
    return {value, entry};
  }
  void Place(std::string_view name, MetaDatabaseEntry* entry);
  void Clear();

  std::vector<Record> records_;
  EntryTable entries_;  // owns the entries
  std::string sName_;
  void* pOwner_ = nullptr;
  std::string sPath_;
};

template <>
void DatabaseEntry<Database>::Print(int depth) const;

template <class T>
void DataHandle<T>::TrackEntry() {
  if (pEntry_ != nullptr) pEntry_->AddHandleSlot(reinterpret_cast<void**>(&pData_));
}

template <class T>
void DataHandle<T>::UntrackEntry() {
  if (pData_ != nullptr) pEntry_->RemoveHandleSlot(reinterpret_cast<void**>(&pData_));
}

}  // namespace grindle

#include "Core/Database.h"

#include <algorithm>
#include <cstdio>
#include <vector>

namespace grindle {

Database::Database(const Database& other)
    : sName_(other.sName_), pOwner_(other.pOwner_), sPath_(other.sPath_) {
  for (const Record& record : other.records_) {
    const uint32_t key = HashValue(record.name);
    const EntryTable::Slot* live = other.entries_.Find(key);
    // Only the record that still names the live entry is copied, so the copy lists each name once.
    if (live == nullptr || live->entry != record.entry) continue;
    MetaDatabaseEntry* clone = live->entry->Clone();
    records_.push_back({record.name, clone});
    entries_.Put(key, clone);
  }
}

Database& Database::operator=(const Database& other) {
  if (this != &other) {
    Database copy(other);
    Clear();
    records_ = std::move(copy.records_);
    entries_ = std::move(copy.entries_);
    sName_ = other.sName_;
    pOwner_ = other.pOwner_;
    sPath_ = other.sPath_;
  }
  return *this;
}

Database::~Database() { Clear(); }

void Database::Clear() {
  // Nested databases are emptied here, through a worklist, before their entries are destroyed, so
  // that a tree nested 100,000 deep comes down without one set of stack frames per level.
  std::vector<MetaDatabaseEntry*> doomed;
  doomed.reserve(entries_.Size());
  entries_.ForEach([&](uint32_t, MetaDatabaseEntry* entry) { doomed.push_back(entry); });
  entries_.Clear();
  records_.clear();
  while (!doomed.empty()) {
    MetaDatabaseEntry* entry = doomed.back();
    doomed.pop_back();
    if (entry->TypeCode() == kTypeDatabase) {
      Database& inner = *static_cast<Database*>(entry->Value());
      inner.entries_.ForEach([&](uint32_t, MetaDatabaseEntry* child) { doomed.push_back(child); });
      inner.entries_.Clear();
      inner.records_.clear();
    }
    MetaDatabaseEntry::Destroy(entry);
  }
}

void Database::Place(std::string_view name, MetaDatabaseEntry* entry) {
  uint32_t key = HashValue(name);
  if (const EntryTable::Slot* old = entries_.Find(key)) MetaDatabaseEntry::Destroy(old->entry);
  records_.push_back({std::string(name), entry});
  key = HashValue(name);
  entries_.Put(key, entry);
}

uint32_t Database::GetEntryType(std::string_view name) const {
  const MetaDatabaseEntry* entry = FindEntry(name);
  return entry == nullptr ? kTypeNone : entry->TypeCode();
}

void Database::Remove(uint32_t key) {
  const EntryTable::Slot* found = entries_.Find(key);
  if (found == nullptr) return;
  MetaDatabaseEntry* entry = found->entry;
  entries_.Erase(key);
  // By name, not by entry: after a replacement an older record of the same name points at a
  // destroyed entry whose address the pool may since have handed to another entry.
  const auto record = std::find_if(records_.begin(), records_.end(),
                                   [entry](const Record& r) { return r.name == entry->Name(); });
  if (record != records_.end()) records_.erase(record);
  MetaDatabaseEntry::Destroy(entry);
}

void Database::Print(int depth) const {
  entries_.ForEach([depth](uint32_t, const MetaDatabaseEntry* entry) { entry->Print(depth); });
}

template <>
void DatabaseEntry<Database>::Print(int depth) const {
  Indent(depth);
  std::printf("Database (%s) =\n", Name().c_str());
  static_cast<const Database*>(Value())->Print(depth + 1);
}

}  // namespace grindle

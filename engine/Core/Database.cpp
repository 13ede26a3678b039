#include "Core/Database.h"

#include <algorithm>
#include <cstdio>
#include <vector>

namespace grindle {

Database::Database(const Database& other)
    : sName_(other.sName_), pOwner_(other.pOwner_), sPath_(other.sPath_) {
  for (const Record& record : other.records_) {
    const uint32_t key = HashValue(record.name);
    const auto live = other.entries_.find(key);
    // Only the record that still names the live entry is copied, so the copy lists each name once.
    if (live == other.entries_.end() || live->second != record.entry) continue;
    MetaDatabaseEntry* clone = live->second->Clone();
    records_.push_back({record.name, clone});
    entries_[key] = clone;
  }
}

Database& Database::operator=(const Database& other) {
  if (this != &other) {
    Database copy(other);
    Clear();
    records_ = std::move(copy.records_);
    entries_ = std::move(copy.entries_);
    copy.entries_.clear();
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
  doomed.reserve(entries_.size());
  for (auto& [key, entry] : entries_) doomed.push_back(entry);
  entries_.clear();
  records_.clear();
  while (!doomed.empty()) {
    MetaDatabaseEntry* entry = doomed.back();
    doomed.pop_back();
    if (entry->TypeCode() == kTypeDatabase) {
      Database& inner = *static_cast<Database*>(entry->Value());
      for (auto& [key, child] : inner.entries_) doomed.push_back(child);
      inner.entries_.clear();
      inner.records_.clear();
    }
    MetaDatabaseEntry::Destroy(entry);
  }
}

void Database::Place(std::string_view name, MetaDatabaseEntry* entry) {
  uint32_t key = HashValue(name);
  const auto old = entries_.find(key);
  if (old != entries_.end()) MetaDatabaseEntry::Destroy(old->second);
  records_.push_back({std::string(name), entry});
  key = HashValue(name);
  entries_[key] = entry;
}

uint32_t Database::GetEntryType(std::string_view name) const {
  const MetaDatabaseEntry* entry = FindEntry(name);
  return entry == nullptr ? kTypeNone : entry->TypeCode();
}

void Database::Remove(uint32_t key) {
  const auto found = entries_.find(key);
  if (found == entries_.end()) return;
  MetaDatabaseEntry* entry = found->second;
  entries_.erase(found);
  // By name, not by entry: after a replacement an older record of the same name points at a
  // destroyed entry whose address the pool may since have handed to another entry.
  const auto record = std::find_if(records_.begin(), records_.end(),
                                   [entry](const Record& r) { return r.name == entry->Name(); });
  if (record != records_.end()) records_.erase(record);
  MetaDatabaseEntry::Destroy(entry);
}

void Database::Print(int depth) const {
  for (const auto& [key, entry] : entries_) entry->Print(depth);
}

template <>
void DatabaseEntry<Database>::Print(int depth) const {
  Indent(depth);
  std::printf("Database (%s) =\n", Name().c_str());
  static_cast<const Database*>(Value())->Print(depth + 1);
}

}  // namespace grindle

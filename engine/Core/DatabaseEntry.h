// The entries a Database holds: a polymorphic base with the type code, the value and the name, and
// one derived kind per stored type. Every kind has the same object size, so an entry goes back to
// one pool whatever it holds; its value sits in a pooled block of its own.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "Core/MemoryManager.h"
#include "Core/TypeCodes.h"

namespace grindle {

class MetaDatabaseEntry {
 public:
  virtual ~MetaDatabaseEntry() = default;
  virtual void Print(int depth) const = 0;
  virtual uint32_t GetSize() const = 0;
  virtual MetaDatabaseEntry* Clone() const = 0;
  virtual KindId Kind() const = 0;

  void InvalidateHandles() {
    for (void** slot : handleSlots_) *slot = nullptr;
    handleSlots_.clear();
  }
  void AddHandleSlot(void** slot) { handleSlots_.push_back(slot); }
  void RemoveHandleSlot(void** slot) { std::erase(handleSlots_, slot); }

  uint32_t TypeCode() const { return uTypeCode_; }
  void* Value() const { return pValue_; }
  const std::string& Name() const { return sName_; }

  // Destroys an entry made by MakeEntry and gives its block back with the size it reports.
  static void Destroy(MetaDatabaseEntry* entry) {
    const uint32_t size = entry->GetSize();
    entry->~MetaDatabaseEntry();
    Free(entry, size);
  }

 protected:
  MetaDatabaseEntry(uint32_t typeCode, void* value, std::string name)
      : uTypeCode_(typeCode), pValue_(value), sName_(std::move(name)) {}

  static void Indent(int depth) {
    for (int i = 0; i < depth; ++i) std::fputs("  ", stdout);
  }

 private:
  uint32_t uTypeCode_;
  std::vector<void**> handleSlots_;
  void* pValue_;
  std::string sName_;
};

// How each kind prints itself. Bool deliberately prints as "unknown".
template <class T>
struct EntryPrinter {
  static void Print(const char* name, const T&) { std::printf("unknown (%s)\n", name); }
};
template <>
struct EntryPrinter<double> {
  static void Print(const char* name, double v) { std::printf("double (%s) = %f\n", name, v); }
};
template <>
struct EntryPrinter<int> {
  static void Print(const char* name, int v) { std::printf("int (%s) = %d\n", name, v); }
};
template <>
struct EntryPrinter<std::string> {
  static void Print(const char* name, const std::string& v) {
    std::printf("string (%s) = %s\n", name, v.c_str());
  }
};
template <>
struct EntryPrinter<float> {
  static void Print(const char* name, float v) {
    std::printf("float (%s) = %f\n", name, static_cast<double>(v));
  }
};
template <>
struct EntryPrinter<char> {
  static void Print(const char* name, char v) { std::printf("char (%s) = %c\n", name, v); }
};

template <class T>
class DatabaseEntry final : public MetaDatabaseEntry {
 public:
  DatabaseEntry(std::string name, T* value)
      : MetaDatabaseEntry(kEntryTypeCode<T>, value, std::move(name)) {}
  ~DatabaseEntry() override {
    InvalidateHandles();
    PoolDelete(static_cast<T*>(Value()));
  }

  void Print(int depth) const override;
  uint32_t GetSize() const override { return sizeof(DatabaseEntry<T>); }
  MetaDatabaseEntry* Clone() const override {
    return PoolNew<DatabaseEntry<T>>(Name(), PoolNew<T>(*static_cast<T*>(Value())));
  }
  KindId Kind() const override { return KindOf<T>(); }
};

template <class T>
void DatabaseEntry<T>::Print(int depth) const {
  Indent(depth);
  EntryPrinter<T>::Print(Name().c_str(), *static_cast<const T*>(Value()));
}

template <class T>
MetaDatabaseEntry* MakeEntry(std::string name, T* value) {
  return PoolNew<DatabaseEntry<T>>(std::move(name), value);
}

}  // namespace grindle

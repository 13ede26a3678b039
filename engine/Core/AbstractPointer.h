// A typed owning pointer for values of any kind that must travel, above all message arguments.
// The object and the value it owns both live in pool blocks; Release gives both back. Readers test
// the type code (or ask for a kind with As<T>) before they read the value.
#pragma once

#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>

#include "Core/MemoryManager.h"
#include "Core/TypeCodes.h"

namespace grindle {

class AbstractPointerBase {
 public:
  virtual ~AbstractPointerBase() = default;
  // A new pooled pointer to a pooled copy of the same value.
  virtual AbstractPointerBase* Clone() const = 0;
  virtual KindId Kind() const = 0;
  virtual void* Get() const = 0;

  uint32_t TypeCode() const { return uTypeCode_; }
  uint32_t Size() const { return uSize_; }

  template <class T>
  T* As() const {
    return Kind() == KindOf<T>() ? static_cast<T*>(Get()) : nullptr;
  }

  // Destroys a pointer made by MakeArgument and gives its block back.
  static void Release(AbstractPointerBase* pointer) {
    if (pointer == nullptr) return;
    const uint32_t size = pointer->uSize_;
    pointer->~AbstractPointerBase();
    Free(pointer, size);
  }

 protected:
  AbstractPointerBase(uint32_t typeCode, uint32_t size) : uTypeCode_(typeCode), uSize_(size) {}
  AbstractPointerBase(const AbstractPointerBase&) = delete;
  AbstractPointerBase& operator=(const AbstractPointerBase&) = delete;

 private:
  uint32_t uTypeCode_ = kTypeNone;
  uint32_t uSize_ = 0;
};

template <class T>
class AbstractPointer final : public AbstractPointerBase {
 public:
  explicit AbstractPointer(const T& value)
      : AbstractPointerBase(kArgumentTypeCode<T>, sizeof(AbstractPointer<T>)),
        pValue_(PoolNew<T>(value)) {}
  explicit AbstractPointer(T&& value)
      : AbstractPointerBase(kArgumentTypeCode<T>, sizeof(AbstractPointer<T>)),
        pValue_(PoolNew<T>(std::move(value))) {}
  ~AbstractPointer() override { PoolDelete(pValue_); }

  AbstractPointerBase* Clone() const override { return PoolNew<AbstractPointer<T>>(*pValue_); }
  KindId Kind() const override { return KindOf<T>(); }
  void* Get() const override { return pValue_; }
  T& Value() const { return *pValue_; }

 private:
  T* pValue_;
};

// String literals travel as std::string; everything else as its own type.
template <class T>
using ArgumentType =
    std::conditional_t<std::is_same_v<std::decay_t<T>, const char*> ||
                           std::is_same_v<std::decay_t<T>, char*>,
                       std::string, std::decay_t<T>>;

template <class T>
AbstractPointerBase* MakeArgument(T&& value) {
  using Stored = ArgumentType<T>;
  return PoolNew<AbstractPointer<Stored>>(Stored(std::forward<T>(value)));
}

}  // namespace grindle

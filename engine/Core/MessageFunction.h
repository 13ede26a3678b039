// What a message listener calls. Delivery hands every function the message's arguments; bound
// values are whatever the concrete function captured when it was made.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "Core/AbstractPointer.h"

namespace grindle {

// A message's argument array as listeners see it.
struct MessageArgs {
  AbstractPointerBase* const* data = nullptr;
  uint32_t count = 0;

  AbstractPointerBase* operator[](uint32_t i) const { return i < count ? data[i] : nullptr; }
  uint32_t TypeCode(uint32_t i) const { return i < count ? data[i]->TypeCode() : kTypeNone; }
  // The argument's value when it holds a T, otherwise null.
  template <class T>
  T* Get(uint32_t i) const {
    return i < count ? data[i]->As<T>() : nullptr;
  }
};

class BaseMessageFunction {
 public:
  virtual ~BaseMessageFunction() = default;
  virtual void Call(MessageArgs args) = 0;
};

// Wraps any callable taking MessageArgs (a lambda with its captures as the bound values).
template <class F>
class MessageFunction final : public BaseMessageFunction {
 public:
  explicit MessageFunction(F function) : function_(std::move(function)) {}
  void Call(MessageArgs args) override { function_(args); }

 private:
  F function_;
};

// A window-message receiver: `Handle(code, wParam, lParam)` when `IsEnabled()` holds. The mouse
// stores one of these in the database so the window procedure can reach it without knowing it.
class BaseWindowMessageFunction {
 public:
  virtual ~BaseWindowMessageFunction() = default;
  virtual void Handle(uint32_t code, uint64_t wParam, int64_t lParam) = 0;
  virtual bool IsEnabled() const = 0;
};

template <class T>
class WindowMessageFunction final : public BaseWindowMessageFunction {
 public:
  using Handler = void (T::*)(uint32_t, uint64_t, int64_t);
  using Enabled = bool (T::*)() const;

  WindowMessageFunction() = default;
  WindowMessageFunction(T* object, Handler handler, Enabled enabled)
      : pObject_(object), handler_(handler), enabled_(enabled) {}

  void Handle(uint32_t code, uint64_t wParam, int64_t lParam) override {
    (pObject_->*handler_)(code, wParam, lParam);
  }
  bool IsEnabled() const override { return pObject_ != nullptr && (pObject_->*enabled_)(); }

 private:
  T* pObject_ = nullptr;
  Handler handler_ = nullptr;
  Enabled enabled_ = nullptr;
};

}  // namespace grindle

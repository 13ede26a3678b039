// One registration of a function for a message name. The owner names who registered it, so that
// UnListen(name, owner) can take it back; the window's own listeners use the empty owner.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Core/MessageFunction.h"

namespace grindle {

struct MessageListener {
  MessageListener(std::unique_ptr<BaseMessageFunction> function, uintptr_t word, void* pointer,
                  std::string message, std::string owner);

  std::unique_ptr<BaseMessageFunction> pFunction_;
  uintptr_t uWord_;
  void* pPointer_;
  std::string sMessage_;
  std::string sOwner_;
  // Set by UnListen while a delivery is running; the record is dropped once delivery unwinds.
  bool isRemoved_ = false;
};

}  // namespace grindle

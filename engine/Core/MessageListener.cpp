#include "Core/MessageListener.h"

#include "Core/Assert.h"

namespace grindle {

MessageListener::MessageListener(std::unique_ptr<BaseMessageFunction> function, uintptr_t word,
                                 void* pointer, std::string message, std::string owner)
    : pFunction_(std::move(function)),
      uWord_(word),
      pPointer_(pointer),
      sMessage_(std::move(message)),
      sOwner_(std::move(owner)) {
  GRINDLE_ASSERT_TEXT(pPointer_ != nullptr && sMessage_ == "", "sMessage_ == \"\"",
                      "Cannot have blank message");
}

}  // namespace grindle

// The one message hub: listeners per message name and a FIFO queue of messages for later delivery.
// Main thread only, no lock. Delivery stays correct when a listener sends, listens or unlistens
// while it runs: new listeners hear the next message, removed ones are skipped at once. A message
// owns its arguments (pooled AbstractPointers) until its delivery ends.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Core/KeyInterning.h"
#include "Core/MessageFunction.h"
#include "Core/MessageListener.h"

namespace grindle {

inline constexpr uint32_t kMaxQueuedMessages = 357913940;

struct ListenerList {
  std::vector<MessageListener*> listeners;
};

struct Message {
  Message(AbstractPointerBase** args, uint32_t count);
  ~Message();
  Message(const Message&) = delete;
  Message& operator=(const Message&) = delete;

  AbstractPointerBase** pArgs_ = nullptr;
  uint32_t uArgCount_ = 0;
  Message* pNext_ = nullptr;
  // The name's listener list, found when the message is built; the name itself is the list's key
  // in the handler, so a message never copies it (long names would allocate on every send).
  ListenerList* pListeners_ = nullptr;
};

class MessageHandler {
 public:
  MessageHandler() = default;
  ~MessageHandler();
  MessageHandler(const MessageHandler&) = delete;
  MessageHandler& operator=(const MessageHandler&) = delete;

  void Listen(std::string_view name, std::unique_ptr<BaseMessageFunction> function,
              std::string_view owner, uintptr_t word = 0, void* pointer = nullptr);
  template <class F>
  void Listen(std::string_view name, std::string_view owner, F&& function) {
    Listen(name, std::make_unique<MessageFunction<std::decay_t<F>>>(std::forward<F>(function)),
           owner);
  }
  // Removes every registration of `owner` for `name`.
  void UnListen(std::string_view name, std::string_view owner);
  size_t ListenerCount(std::string_view name) const;
  // Every name with a live listener (checks use it to hold systems to catalogued names).
  std::vector<std::string_view> ListenedNames() const;

  // Queues a message; it takes ownership of the argument objects (the array itself is copied).
  void Send(std::string_view name, AbstractPointerBase** args = nullptr, uint32_t count = 0);
  // Calls every listener now, in registration order; nothing is queued.
  void SendImmediate(std::string_view name, AbstractPointerBase** args = nullptr,
                     uint32_t count = 0);

  // Convenience forms that wrap each value in an AbstractPointer ("text" travels as std::string).
  template <class... T>
  void SendArgs(std::string_view name, T&&... values) {
    AbstractPointerBase* args[] = {MakeArgument(std::forward<T>(values))..., nullptr};
    Send(name, args, sizeof...(T));
  }
  template <class... T>
  void SendImmediateArgs(std::string_view name, T&&... values) {
    AbstractPointerBase* args[] = {MakeArgument(std::forward<T>(values))..., nullptr};
    SendImmediate(name, args, sizeof...(T));
  }

  // Delivers queued messages in order; kDeliverAll runs until the queue is empty, including
  // messages that listeners send meanwhile.
  static constexpr int64_t kDeliverAll = -1;
  void Deliver(int64_t limit);

  size_t QueuedCount() const { return uQueueCount_; }
  // Messages handled since the last call (the frame loop reads this once per frame).
  uint32_t TakeHandledCount() { return std::exchange(uHandled_, 0); }

 private:
  ListenerList& ListFor(std::string_view name);
  void Dispatch(ListenerList& list, MessageArgs args);
  void PurgeRemoved();

  std::unordered_map<std::string, ListenerList, StringHash, std::equal_to<>> listeners_;
  Message* pQueueHead_ = nullptr;
  Message* pQueueTail_ = nullptr;
  size_t uQueueCount_ = 0;
  uint32_t uHandled_ = 0;
  int dispatchDepth_ = 0;
  bool hasRemovedListeners_ = false;
};

// Sends the message it receives on under another name, arguments copied (the physics phantoms'
// contact reports use this).
class MessageForwarder final : public BaseMessageFunction {
 public:
  MessageForwarder(MessageHandler& handler, std::string target)
      : handler_(handler), sTarget_(std::move(target)) {}
  void Call(MessageArgs args) override;

 private:
  MessageHandler& handler_;
  std::string sTarget_;
};

}  // namespace grindle

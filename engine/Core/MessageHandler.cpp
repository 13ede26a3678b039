#include "Core/MessageHandler.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "Core/MemoryManager.h"

namespace grindle {

Message::Message(AbstractPointerBase** args, uint32_t count) : uArgCount_(count) {
  if (count == 0) return;
  const uint32_t bytes = count * static_cast<uint32_t>(sizeof(AbstractPointerBase*));
  pArgs_ = static_cast<AbstractPointerBase**>(Allocate(bytes));
  std::memcpy(pArgs_, args, bytes);
}

Message::~Message() {
  if (pArgs_ == nullptr) return;
  for (uint32_t i = 0; i < uArgCount_; ++i) AbstractPointerBase::Release(pArgs_[i]);
  Free(pArgs_, uArgCount_ * static_cast<uint32_t>(sizeof(AbstractPointerBase*)));
}

MessageHandler::~MessageHandler() {
  while (pQueueHead_ != nullptr) PoolDelete(std::exchange(pQueueHead_, pQueueHead_->pNext_));
  for (auto& [name, list] : listeners_) {
    for (MessageListener* listener : list.listeners) PoolDelete(listener);
  }
}

ListenerList& MessageHandler::ListFor(std::string_view name) {
  const auto found = listeners_.find(name);
  if (found != listeners_.end()) return found->second;
  return listeners_.emplace(std::string(name), ListenerList{}).first->second;
}

void MessageHandler::Listen(std::string_view name, std::unique_ptr<BaseMessageFunction> function,
                            std::string_view owner, uintptr_t word, void* pointer) {
  ListFor(name).listeners.push_back(PoolNew<MessageListener>(
      std::move(function), word, pointer, std::string(name), std::string(owner)));
}

void MessageHandler::UnListen(std::string_view name, std::string_view owner) {
  const auto found = listeners_.find(name);
  if (found == listeners_.end()) return;
  for (MessageListener* listener : found->second.listeners) {
    if (listener->sOwner_ == owner) listener->isRemoved_ = true;
    hasRemovedListeners_ = hasRemovedListeners_ || listener->isRemoved_;
  }
  if (dispatchDepth_ == 0) PurgeRemoved();
}

size_t MessageHandler::ListenerCount(std::string_view name) const {
  const auto found = listeners_.find(name);
  if (found == listeners_.end()) return 0;
  return std::count_if(found->second.listeners.begin(), found->second.listeners.end(),
                       [](const MessageListener* l) { return !l->isRemoved_; });
}

std::vector<std::string_view> MessageHandler::ListenedNames() const {
  std::vector<std::string_view> names;
  for (const auto& [name, list] : listeners_) {
    if (ListenerCount(name) > 0) names.push_back(name);
  }
  return names;
}

void MessageHandler::PurgeRemoved() {
  if (!hasRemovedListeners_) return;
  hasRemovedListeners_ = false;
  for (auto& [name, list] : listeners_) {
    std::erase_if(list.listeners, [](MessageListener* listener) {
      if (!listener->isRemoved_) return false;
      PoolDelete(listener);
      return true;
    });
  }
}

void MessageHandler::Dispatch(ListenerList& list, MessageArgs args) {
  ++dispatchDepth_;
  // Listeners added meanwhile wait for the next message; the vector may grow, so index it afresh.
  const size_t count = list.listeners.size();
  for (size_t i = 0; i < count; ++i) {
    MessageListener* listener = list.listeners[i];
    if (!listener->isRemoved_) listener->pFunction_->Call(args);
  }
  if (--dispatchDepth_ == 0) PurgeRemoved();
}

void MessageHandler::Send(std::string_view name, AbstractPointerBase** args, uint32_t count) {
  if (uQueueCount_ >= kMaxQueuedMessages) throw std::length_error("list<T> too long");
  Message* message = PoolNew<Message>(args, count);
  message->pListeners_ = &ListFor(name);
  if (pQueueTail_ == nullptr) {
    pQueueHead_ = message;
  } else {
    pQueueTail_->pNext_ = message;
  }
  pQueueTail_ = message;
  ++uQueueCount_;
}

void MessageHandler::SendImmediate(std::string_view name, AbstractPointerBase** args,
                                   uint32_t count) {
  Message* message = PoolNew<Message>(args, count);
  Dispatch(ListFor(name), {message->pArgs_, message->uArgCount_});
  ++uHandled_;
  PoolDelete(message);
}

void MessageHandler::Deliver(int64_t limit) {
  while (limit > 0 || limit == kDeliverAll) {
    Message* message = pQueueHead_;
    if (message == nullptr) return;
    // Unlinked before its listeners run, so that a listener calling Deliver itself goes on with
    // the messages behind this one instead of hearing (and freeing) this one again. It still
    // counts as queued until it is freed.
    pQueueHead_ = message->pNext_;
    if (pQueueHead_ == nullptr) pQueueTail_ = nullptr;
    Dispatch(*message->pListeners_, {message->pArgs_, message->uArgCount_});
    ++uHandled_;
    --uQueueCount_;
    PoolDelete(message);
    if (limit != kDeliverAll) --limit;
  }
}

void MessageForwarder::Call(MessageArgs args) {
  std::vector<AbstractPointerBase*> copies(args.count);
  for (uint32_t i = 0; i < args.count; ++i) copies[i] = args.data[i]->Clone();
  handler_.Send(sTarget_, copies.data(), args.count);
}

}  // namespace grindle

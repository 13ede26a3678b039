// A catalogued message: its exact name and the kinds of its arguments in order. Senders post
// through Post/PostNow, which build each argument by its kind, so a sender cannot get a kind or
// the count wrong; receivers read argument I with Read<I>, which applies that kind's one rule.
// Main thread only, like the handler itself.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "Core/MessageFunction.h"
#include "Core/MessageHandler.h"
#include "Core/Messages/MessageKinds.h"

namespace grindle::msg {

template <class... Kinds>
struct MessageType {
  std::string_view name;

  static constexpr size_t kArity = sizeof...(Kinds);
  template <size_t I>
  using KindAt = std::tuple_element_t<I, std::tuple<Kinds...>>;

  template <size_t I>
  static auto Read(MessageArgs args) {
    return KindAt<I>::Read(args[static_cast<uint32_t>(I)]);
  }

  // "number, number, text": the argument kinds as the reference lists them.
  static std::string KindList() {
    std::string list;
    ((list += (list.empty() ? "" : ", "), list += Kinds::kName), ...);
    return list;
  }
};

// The name as a C string for printf-style output; catalogue names are literals, so their data
// ends in a NUL.
template <class... Kinds>
constexpr const char* NameOf(const MessageType<Kinds...>& message) {
  return message.name.data();
}

template <class Kind, class Value>
AbstractPointerBase* Encode(Value&& value) {
  using Sent = typename Kind::Sent;
  return MakeArgument(Sent(static_cast<Sent>(std::forward<Value>(value))));
}

// Queues `message` with its arguments, each built as its declared kind.
template <class... Kinds, class... Values>
void Post(MessageHandler& handler, const MessageType<Kinds...>& message, Values&&... values) {
  static_assert(sizeof...(Kinds) == sizeof...(Values), "argument count differs from the catalogue");
  AbstractPointerBase* args[] = {Encode<Kinds>(std::forward<Values>(values))..., nullptr};
  handler.Send(message.name, args, sizeof...(Kinds));
}

// Delivers `message` to its listeners at once; nothing is queued.
template <class... Kinds, class... Values>
void PostNow(MessageHandler& handler, const MessageType<Kinds...>& message, Values&&... values) {
  static_assert(sizeof...(Kinds) == sizeof...(Values), "argument count differs from the catalogue");
  AbstractPointerBase* args[] = {Encode<Kinds>(std::forward<Values>(values))..., nullptr};
  handler.SendImmediate(message.name, args, sizeof...(Kinds));
}

}  // namespace grindle::msg

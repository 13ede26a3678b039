// A system's message routes in one table: which catalogued message goes to which handler. The same
// table both listens (in table order, which is delivery order among one owner's listeners) and
// unlistens, so the two can never disagree. Routes name catalogue entries, so a listened name is
// always a catalogued one. Main thread only; the target must outlive the registration.
#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "Core/MessageHandler.h"
#include "Core/Messages/MessageType.h"

namespace grindle::msg {

template <class Target>
struct Route {
  template <class... Kinds>
  constexpr Route(const MessageType<Kinds...>& message, void (*call)(Target&, MessageArgs))
      : name(message.name), handler(call) {}

  std::string_view name;
  void (*handler)(Target&, MessageArgs);
};

template <class Target>
class RouteTable {
 public:
  constexpr RouteTable(std::string_view owner, std::span<const Route<Target>> routes)
      : owner_(owner), routes_(routes) {}

  // Every handler reaches the target that `resolve()` returns at delivery time; none when null.
  template <class Resolve>
  void ListenVia(MessageHandler& messages, Resolve resolve) const {
    for (const Route<Target>& route : routes_) {
      messages.Listen(route.name, owner_, [resolve, call = route.handler](MessageArgs args) {
        if (Target* target = resolve()) call(*target, args);
      });
    }
  }
  void Listen(MessageHandler& messages, Target& target) const {
    ListenVia(messages, [&target] { return &target; });
  }
  // The handlers share ownership of the target; it lives as long as the longest of them.
  void Listen(MessageHandler& messages, std::shared_ptr<Target> target) const {
    ListenVia(messages, [target] { return target.get(); });
  }
  void UnListen(MessageHandler& messages) const {
    for (const Route<Target>& route : routes_) messages.UnListen(route.name, owner_);
  }

  std::string_view Owner() const { return owner_; }
  std::span<const Route<Target>> Routes() const { return routes_; }

 private:
  std::string_view owner_;
  std::span<const Route<Target>> routes_;
};

}  // namespace grindle::msg

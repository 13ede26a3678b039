// The request table: each "SCR:" message a script sends becomes the engine message of the system
// that owns the effect (object name first, resolved in the current level to a handle; numbers
// after it as doubles, in the order received). Main thread only, during message delivery. The
// countdowns and the date flag it sets belong to the AI system, which counts them down.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Core/DataHandle.h"
#include "Core/Messages/RouteTable.h"

namespace grindle {

class Database;
class MessageHandler;

inline constexpr size_t kCountdownCount = 8;

struct ScriptTimers {
  std::array<double, kCountdownCount> countdowns{};
  bool isDateTracked = true;
};

class ScriptRequests {
 public:
  ScriptRequests(Database& root, MessageHandler& messages, ScriptTimers& timers)
      : root_(root), messages_(messages), timers_(timers) {}

  // Every request with its handler, listened to under the owner "AI".
  static const msg::RouteTable<ScriptRequests>& Routes();

 private:
  void AddForce(MessageArgs args);
  void AddRelativeForce(MessageArgs args);
  void RotateAboutY(MessageArgs args);
  void RotateWithLightAboutY(MessageArgs args);
  void SetVelocity(MessageArgs args);
  void SetVelocityXZ(MessageArgs args);
  void SetRelativeVelocity(MessageArgs args);
  void SetColor(MessageArgs args);
  void SetSpeed(MessageArgs args);
  void SetVibration(MessageArgs args);
  void CreateObject(MessageArgs args);
  void DestroyObject(MessageArgs args);
  void SetCountdown(MessageArgs args);
  void TrackDate(MessageArgs args);

  // Levels.<current level>.GameObjects.<name> as a handle (null when it does not resolve).
  DataHandle<Database> ObjectNamed(MessageArgs args) const;
  // Sends `message`(object handle, the request's numbers 1..N).
  template <class... Numbers>
  void ForwardWithNumbers(const msg::MessageType<msg::Object, Numbers...>& message,
                          MessageArgs args);

  Database& root_;
  MessageHandler& messages_;
  ScriptTimers& timers_;
};

}  // namespace grindle

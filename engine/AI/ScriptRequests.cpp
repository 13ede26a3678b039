#include "AI/ScriptRequests.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>

#include "AI/DataPath.h"
#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/Messages/Catalogue.h"
#include "Core/WellKnownKeys.h"

namespace grindle {

const msg::RouteTable<ScriptRequests>& ScriptRequests::Routes() {
  using S = ScriptRequests;
  static constexpr msg::Route<S> kRoutes[] = {
      {msg::scr::kAddForceToObject, [](S& s, MessageArgs a) { s.AddForce(a); }},
      {msg::scr::kAddRelativeForceToObject, [](S& s, MessageArgs a) { s.AddRelativeForce(a); }},
      {msg::scr::kRotateObjectAboutY, [](S& s, MessageArgs a) { s.RotateAboutY(a); }},
      {msg::scr::kRotateObjectWithLightAboutY,
       [](S& s, MessageArgs a) { s.RotateWithLightAboutY(a); }},
      {msg::scr::kSetVelocityOnBody, [](S& s, MessageArgs a) { s.SetVelocity(a); }},
      {msg::scr::kSetVelocityXZOnBody, [](S& s, MessageArgs a) { s.SetVelocityXZ(a); }},
      {msg::scr::kSetRelativeVelocityOnBody, [](S& s, MessageArgs a) { s.SetRelativeVelocity(a); }},
      {msg::scr::kSetObjectColor, [](S& s, MessageArgs a) { s.SetColor(a); }},
      {msg::scr::kSetBodySpeed, [](S& s, MessageArgs a) { s.SetSpeed(a); }},
      {msg::scr::kSetControllerVibration, [](S& s, MessageArgs a) { s.SetVibration(a); }},
      {msg::scr::kCreateObject, [](S& s, MessageArgs a) { s.CreateObject(a); }},
      {msg::scr::kDestroyObject, [](S& s, MessageArgs a) { s.DestroyObject(a); }},
      {msg::scr::kSetCountdown, [](S& s, MessageArgs a) { s.SetCountdown(a); }},
      {msg::scr::kTrackDate, [](S& s, MessageArgs a) { s.TrackDate(a); }},
  };
  static constexpr msg::RouteTable<S> kTable{"AI", kRoutes};
  return kTable;
}

DataHandle<Database> ScriptRequests::ObjectNamed(MessageArgs args) const {
  const DataHandle<std::string> level = root_.Find<std::string>(KeyOf(WellKnown::CurrentLevel));
  if (!level) return {};
  return ResolveDatabase(root_, "Levels." + *level + ".GameObjects." + msg::TextOr(args[0]));
}

template <class... Numbers>
void ScriptRequests::ForwardWithNumbers(const msg::MessageType<msg::Object, Numbers...>& message,
                                        MessageArgs args) {
  [&]<size_t... I>(std::index_sequence<I...>) {
    msg::Post(messages_, message, ObjectNamed(args), msg::ScriptNumber::Read(args[I + 1])...);
  }
  (std::index_sequence_for<Numbers...>{});
}

// Nobody listens to the force and speed answers; they are sent all the same, and scripts that
// want motion use the velocity requests.
void ScriptRequests::AddForce(MessageArgs args) { ForwardWithNumbers(msg::kAddForceToBody, args); }
void ScriptRequests::AddRelativeForce(MessageArgs args) {
  ForwardWithNumbers(msg::kAddRelativeForceToBody, args);
}
void ScriptRequests::SetSpeed(MessageArgs args) { ForwardWithNumbers(msg::kSetBodySpeed, args); }

void ScriptRequests::RotateAboutY(MessageArgs args) {
  msg::Post(messages_, msg::kSetBodyRotation, ObjectNamed(args), 0.0, 1.0, 0.0,
            msg::ScriptNumber::Read(args[1]));
}

// The light turns with the body: its horizontal direction becomes the body's forward (+Z) turned
// by the same angle, keeping its length and its vertical part.
void ScriptRequests::RotateWithLightAboutY(MessageArgs args) {
  RotateAboutY(args);
  const DataHandle<Database> object = ObjectNamed(args);
  const DataHandle<Database> light =
      object ? object->Find<Database>(KeyOf(WellKnown::Light)) : DataHandle<Database>{};
  if (!light) return;
  const auto x = light->Find<double>(KeyOf(WellKnown::DirectionX));
  const auto z = light->Find<double>(KeyOf(WellKnown::DirectionZ));
  if (!x || !z) return;
  const double angle = msg::ScriptNumber::Read(args[1]);
  const double length = std::hypot(*x, *z);
  *x = length * std::sin(angle);
  *z = length * std::cos(angle);
}

void ScriptRequests::SetVelocity(MessageArgs args) {
  const DataHandle<Database> object = ObjectNamed(args);
  if (!object) return;
  msg::Post(messages_, msg::kSetBodyVelocity, object, msg::ScriptNumber::Read(args[1]),
            msg::ScriptNumber::Read(args[2]), msg::ScriptNumber::Read(args[3]));
}

void ScriptRequests::SetVelocityXZ(MessageArgs args) {
  ForwardWithNumbers(msg::kSetBodyVelocityXZ, args);
}

// Kept: served as an impulse, which the physics system applies as a replaced velocity.
void ScriptRequests::SetRelativeVelocity(MessageArgs args) {
  std::printf("AddImpulse: %f %f %f\n", msg::ScriptNumber::Read(args[1]),
              msg::ScriptNumber::Read(args[2]), msg::ScriptNumber::Read(args[3]));
  ForwardWithNumbers(msg::kAddImpulse, args);
}

void ScriptRequests::SetVibration(MessageArgs args) {
  msg::Post(messages_, msg::kSetControllerVibration, msg::ScriptNumber::Read(args[0]),
            msg::ScriptNumber::Read(args[1]), msg::ScriptNumber::Read(args[2]));
}

}  // namespace grindle

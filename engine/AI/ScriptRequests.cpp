#include "AI/ScriptRequests.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "AI/DataPath.h"
#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"

namespace grindle {

std::string TextAt(MessageArgs args, uint32_t i) {
  const std::string* text = args.Get<std::string>(i);
  return text != nullptr ? *text : std::string();
}

// A number the script wrote as text ("3") counts as that number; anything else as 0.
double NumberAt(MessageArgs args, uint32_t i) {
  if (const double* number = args.Get<double>(i)) return *number;
  if (const std::string* text = args.Get<std::string>(i))
    return std::strtod(text->c_str(), nullptr);
  return 0.0;
}

const std::vector<std::string_view>& ScriptRequests::Names() {
  static const std::vector<std::string_view> names = {"SCR:AddForceToObject",
                                                      "SCR:AddRelativeForceToObject",
                                                      "SCR:RotateObjectAboutY",
                                                      "SCR:RotateObjectWithLightAboutY",
                                                      "SCR:SetVelocityOnBody",
                                                      "SCR:SetVelocityXZOnBody",
                                                      "SCR:SetRelativeVelocityOnBody",
                                                      "SCR:SetObjectColor",
                                                      "SCR:SetBodySpeed",
                                                      "SCR:SetControllerVibration",
                                                      "SCR:CreateObject",
                                                      "SCR:DestroyObject",
                                                      "SCR:SetCountdown",
                                                      "SCR:TrackDate"};
  return names;
}

ScriptRequests::Handler ScriptRequests::HandlerOf(std::string_view request) {
  static const Handler handlers[] = {&ScriptRequests::AddForce,
                                     &ScriptRequests::AddRelativeForce,
                                     &ScriptRequests::RotateAboutY,
                                     &ScriptRequests::RotateWithLightAboutY,
                                     &ScriptRequests::SetVelocity,
                                     &ScriptRequests::SetVelocityXZ,
                                     &ScriptRequests::SetRelativeVelocity,
                                     &ScriptRequests::SetColor,
                                     &ScriptRequests::SetSpeed,
                                     &ScriptRequests::SetVibration,
                                     &ScriptRequests::CreateObject,
                                     &ScriptRequests::DestroyObject,
                                     &ScriptRequests::SetCountdown,
                                     &ScriptRequests::TrackDate};
  const auto& names = Names();
  for (size_t i = 0; i < names.size(); ++i) {
    if (names[i] == request) return handlers[i];
  }
  return nullptr;
}

void ScriptRequests::Listen(std::string_view request, std::string_view owner) {
  const Handler handler = HandlerOf(request);
  if (handler == nullptr) return;
  messages_.Listen(request, owner, [this, handler](MessageArgs args) { (this->*handler)(args); });
}

DataHandle<Database> ScriptRequests::ObjectNamed(MessageArgs args) const {
  const DataHandle<std::string> level = root_.Find<std::string>(KeyOf(WellKnown::CurrentLevel));
  if (!level) return {};
  return ResolveDatabase(root_, "Levels." + *level + ".GameObjects." + TextAt(args, 0));
}

void ScriptRequests::ForwardWithNumbers(const char* message, MessageArgs args, uint32_t count) {
  AbstractPointerBase* out[5] = {MakeArgument(ObjectNamed(args))};
  for (uint32_t i = 1; i <= count; ++i) out[i] = MakeArgument(NumberAt(args, i));
  messages_.Send(message, out, count + 1);
}

// Nobody listens to "AddForceToBody", "AddRelativeForceToBody" or "SetBodySpeed"; they are sent
// all the same, and scripts that want motion use the velocity requests.
void ScriptRequests::AddForce(MessageArgs args) { ForwardWithNumbers("AddForceToBody", args, 3); }
void ScriptRequests::AddRelativeForce(MessageArgs args) {
  ForwardWithNumbers("AddRelativeForceToBody", args, 3);
}
void ScriptRequests::SetSpeed(MessageArgs args) { ForwardWithNumbers("SetBodySpeed", args, 1); }

void ScriptRequests::RotateAboutY(MessageArgs args) {
  messages_.SendArgs("msgSetBodyRotation", ObjectNamed(args), 0.0, 1.0, 0.0, NumberAt(args, 1));
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
  const double angle = NumberAt(args, 1);
  const double length = std::hypot(*x, *z);
  *x = length * std::sin(angle);
  *z = length * std::cos(angle);
}

void ScriptRequests::SetVelocity(MessageArgs args) {
  const DataHandle<Database> object = ObjectNamed(args);
  if (!object) return;
  messages_.SendArgs("msgSetBodyVelocity", object, NumberAt(args, 1), NumberAt(args, 2),
                     NumberAt(args, 3));
}

void ScriptRequests::SetVelocityXZ(MessageArgs args) {
  ForwardWithNumbers("msgSetBodyVelocityXZ", args, 2);
}

// Kept: served as an impulse, which the physics system applies as a replaced velocity.
void ScriptRequests::SetRelativeVelocity(MessageArgs args) {
  std::printf("AddImpulse: %f %f %f\n", NumberAt(args, 1), NumberAt(args, 2), NumberAt(args, 3));
  ForwardWithNumbers("msgAddImpulse", args, 3);
}

void ScriptRequests::SetVibration(MessageArgs args) {
  // The pad index arrives as a script number and leaves as the integer the input system reads.
  messages_.SendArgs("msgSetControllerVibration", static_cast<int32_t>(NumberAt(args, 0)),
                     NumberAt(args, 1), NumberAt(args, 2));
}

}  // namespace grindle

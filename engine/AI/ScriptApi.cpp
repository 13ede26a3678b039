#include "AI/ScriptApi.h"

#include <cstdio>
#include <lua.hpp>
#include <memory>
#include <string>

#include "AI/Script.h"
#include "AI/ScriptListener.h"
#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/RayCaster.h"
#include "Core/WellKnownKeys.h"

namespace grindle {
namespace {

// The reach of a scripted ray is this many times the (unnormalised) direction's length.
constexpr double kRayLengthFactor = 9000000.0;

std::string StringArgument(lua_State* state, int index) {
  size_t length = 0;
  const char* text = lua_tolstring(state, index, &length);
  return text == nullptr ? std::string() : std::string(text, length);
}

// Numbers travel as doubles, everything else as the string Lua makes of it ("" when it makes none).
AbstractPointerBase* MessageArgument(lua_State* state, int index) {
  if (lua_type(state, index) == LUA_TNUMBER)
    return MakeArgument(lua_tonumberx(state, index, nullptr));
  return MakeArgument(StringArgument(state, index));
}

int SendMessage(lua_State* state, bool immediate) {
  const int values = lua_gettop(state) - 1;
  if (!immediate && values > 4) {
    std::printf("Can't send message with > 4 arguments\n");
    return 0;
  }
  if (immediate && values > 3) {
    std::printf("Can't send immediate message with > 3 arguments\n");
    return 0;
  }
  const std::string name = StringArgument(state, 1);
  AbstractPointerBase* args[4] = {};
  for (int i = 0; i < values; ++i) args[i] = MessageArgument(state, i + 2);
  MessageHandler& messages = ScriptHost::Of(state).Messages();
  if (immediate) {
    messages.SendImmediate(name, args, static_cast<uint32_t>(values > 0 ? values : 0));
  } else {
    messages.Send(name, args, static_cast<uint32_t>(values > 0 ? values : 0));
  }
  return 0;
}

int SayHey(lua_State* state) {
  std::printf("Hey Guys!%s\n", StringArgument(state, 1).c_str());
  return 0;
}

int Send(lua_State* state) { return SendMessage(state, false); }
int SendImmediate(lua_State* state) { return SendMessage(state, true); }

int Listen(lua_State* state) {
  const std::string message = StringArgument(state, 1);
  const std::string function = StringArgument(state, 2);
  ScriptHost& host = ScriptHost::Of(state);
  const std::string owner = ScriptListenerOwner(state, function);
  host.Messages().Listen(message, std::make_unique<ScriptListener>(state, function), owner);
  host.TrackListener(state, message, owner);
  return 0;
}

int UnListen(lua_State* state) {
  const std::string message = StringArgument(state, 1);
  const std::string owner = ScriptListenerOwner(state, StringArgument(state, 2));
  ScriptHost& host = ScriptHost::Of(state);
  host.Messages().UnListen(message, owner);
  host.ForgetListener(state, message, owner);
  return 0;
}

// Without a physics system in the root the cast misses: -1 and "".
RayHit CastRay(lua_State* state) {
  double v[6];
  for (int i = 0; i < 6; ++i) v[i] = lua_tonumberx(state, i + 1, nullptr);
  const DataHandle<Database> systems =
      ScriptHost::Of(state).Root().Find<Database>(KeyOf(WellKnown::Systems));
  const auto caster = systems ? systems->Find<RayCaster*>("RayCaster") : DataHandle<RayCaster*>{};
  if (!caster || *caster == nullptr) return {-1.0, ""};
  return (*caster)->Cast(v[0], v[1], v[2], v[3] * kRayLengthFactor, v[4] * kRayLengthFactor,
                         v[5] * kRayLengthFactor);
}

int RayCast(lua_State* state) {
  lua_pushnumber(state, CastRay(state).distance);
  return 1;
}

int RayCastName(lua_State* state) {
  const RayHit hit = CastRay(state);
  lua_pushlstring(state, hit.name.data(), hit.name.size());
  return 1;
}

}  // namespace

void RegisterScriptApi(lua_State* state) {
  static constexpr struct {
    const char* name;
    lua_CFunction function;
  } kFunctions[] = {{"SayHey", SayHey},
                    {"FindData", FindData},
                    {"SetData", SetData},
                    {"Send", Send},
                    {"SendImmediate", SendImmediate},
                    {"Listen", Listen},
                    {"UnListen", UnListen},
                    {"RayCast", RayCast},
                    {"RayCastName", RayCastName}};
  for (const auto& entry : kFunctions) {
    lua_pushcclosure(state, entry.function, 0);
    lua_setglobal(state, entry.name);
  }
}

}  // namespace grindle

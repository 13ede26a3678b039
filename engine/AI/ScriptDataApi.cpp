// "FindData" and "SetData": the scripts' view of the meta database through dotted paths.
#include <cstdio>
#include <lua.hpp>
#include <string>

#include "AI/DataPath.h"
#include "AI/Script.h"
#include "AI/ScriptApi.h"
#include "Core/Database.h"

namespace grindle {
namespace {

constexpr std::string_view kCurrentObject = "*CurrentObject";

// The object that owns the calling script, asked for only when the path needs it.
std::string CurrentObjectPath(lua_State* state, std::string_view path) {
  if (path.find(kCurrentObject) == std::string_view::npos) return {};
  std::string component = ScriptHost::Of(state).GetScriptPath(state);
  const size_t dot = component.rfind('.');
  return dot == std::string::npos ? std::string() : component.substr(0, dot);
}

EntryPath Resolve(lua_State* state, std::string_view path, std::string& objectPath) {
  objectPath = CurrentObjectPath(state, path);
  return ResolveEntryPath(ScriptHost::Of(state).Root(), path, objectPath);
}

bool HoldsScalar(const MetaDatabaseEntry& entry) {
  const KindId kind = entry.Kind();
  return kind == KindOf<double>() || kind == KindOf<std::string>() || kind == KindOf<bool>() ||
         kind == KindOf<int>() || kind == KindOf<float>();
}

// Writes in place when the entry already holds a T (handles to it stay valid); replaces a value
// of another plain kind; never replaces a database or an engine object.
template <class T>
void Write(Database& database, std::string_view key, const T& value) {
  MetaDatabaseEntry* entry = database.FindEntry(key);
  if (entry != nullptr && entry->Kind() == KindOf<T>()) {
    *static_cast<T*>(entry->Value()) = value;
  } else if (entry == nullptr || HoldsScalar(*entry)) {
    database.Add<T>(key, value);
  } else {
    std::printf("SetData: \"%.*s\" holds a database or an engine object and is not replaced\n",
                static_cast<int>(key.size()), key.data());
  }
}

}  // namespace

int FindData(lua_State* state) {
  size_t length = 0;
  const char* text = lua_tolstring(state, 1, &length);
  if (text == nullptr) return 0;
  std::string objectPath;
  const EntryPath path = Resolve(state, {text, length}, objectPath);
  if (!path.database) return 0;
  if (path.key == "*Name") {
    const std::string& name = path.database->Name();
    lua_pushlstring(state, name.data(), name.size());
    return 1;
  }
  const MetaDatabaseEntry* entry = path.database->FindEntry(path.key);
  if (entry == nullptr) return 0;
  if (entry->Kind() == KindOf<double>()) {
    lua_pushnumber(state, *static_cast<const double*>(entry->Value()));
  } else if (entry->Kind() == KindOf<std::string>()) {
    const auto* value = static_cast<const std::string*>(entry->Value());
    lua_pushlstring(state, value->data(), value->size());
  } else if (entry->Kind() == KindOf<bool>()) {
    lua_pushboolean(state, *static_cast<const bool*>(entry->Value()) ? 1 : 0);
  } else {
    return 0;
  }
  return 1;
}

int SetData(lua_State* state) {
  if (lua_gettop(state) != 2) {
    std::printf("Wrong number of args passed to set database!");
    return 0;
  }
  size_t length = 0;
  const char* text = lua_tolstring(state, 1, &length);
  if (text == nullptr) return 0;
  std::string objectPath;
  const EntryPath path = Resolve(state, {text, length}, objectPath);
  if (!path.database || path.key.empty()) return 0;
  switch (lua_type(state, 2)) {
    case LUA_TBOOLEAN:
      Write<bool>(*path.database, path.key, lua_toboolean(state, 2) != 0);
      break;
    case LUA_TNUMBER:
      Write<double>(*path.database, path.key, lua_tonumberx(state, 2, nullptr));
      break;
    case LUA_TSTRING: {
      size_t size = 0;
      const char* value = lua_tolstring(state, 2, &size);
      Write<std::string>(*path.database, path.key, std::string(value, size));
      break;
    }
    default:
      break;
  }
  return 0;
}

}  // namespace grindle

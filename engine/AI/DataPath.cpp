#include "AI/DataPath.h"

#include <string>

#include "Core/Database.h"
#include "Core/WellKnownKeys.h"

namespace grindle {
namespace {

DataHandle<Database> CurrentLevel(Database& root) {
  const DataHandle<std::string> name = root.Find<std::string>(KeyOf(WellKnown::CurrentLevel));
  const DataHandle<Database> levels = root.Find<Database>(KeyOf(WellKnown::Levels));
  if (!name || !levels) return {};
  return levels->Find<Database>(*name);
}

}  // namespace

DataHandle<Database> ResolveDatabase(Database& root, std::string_view path,
                                     std::string_view currentObjectPath) {
  DataHandle<Database> at{&root, nullptr};
  while (at && !path.empty()) {
    const size_t dot = path.find('.');
    const std::string_view part = path.substr(0, dot);
    path = dot == std::string_view::npos ? std::string_view{} : path.substr(dot + 1);
    if (part == "*CurrentLevel") {
      at = CurrentLevel(root);
    } else if (part == "*CurrentObject") {
      at = currentObjectPath.empty() ? DataHandle<Database>{}
                                     : ResolveDatabase(root, currentObjectPath);
    } else {
      at = at->Find<Database>(part);
    }
  }
  return at;
}

EntryPath ResolveEntryPath(Database& root, std::string_view path,
                           std::string_view currentObjectPath) {
  const size_t dot = path.rfind('.');
  if (dot == std::string_view::npos) return {{&root, nullptr}, path};
  return {ResolveDatabase(root, path.substr(0, dot), currentObjectPath), path.substr(dot + 1)};
}

DataHandle<Database> ScriptRegistry(Database& root, std::string_view level) {
  const DataHandle<Database> levels = root.Find<Database>(KeyOf(WellKnown::Levels));
  const DataHandle<Database> levelDb =
      levels ? levels->Find<Database>(level) : DataHandle<Database>{};
  const DataHandle<Database> lists =
      levelDb ? levelDb->Find<Database>(KeyOf(WellKnown::ComponentLists)) : DataHandle<Database>{};
  return lists ? lists->Find<Database>(KeyOf(WellKnown::Scripts)) : DataHandle<Database>{};
}

}  // namespace grindle

// The checks on one game object of a level or of the archetypes: its mesh, scripts, sprites and
// the kinds of the well-known keys it writes. Scripts it names are read once each into `scripts`.
#pragma once

#include <map>
#include <string>

#include "Findings.h"
#include "ScriptFacts.h"

namespace grindle::levelcheck {

struct ObjectContext {
  const ParsedFile& file;
  bool hasMeshList;  // the level lists meshes (ComponentLists.Meshes)
  std::map<std::string, ScriptFacts>& scripts;
  uint32_t firstMeshLine = 0;  // set on the first object with a Mesh
};

void CheckObject(ObjectContext& context, const std::string& name, const Database& object,
                 uint32_t line, Findings& out);

// "Scripts/<file>" read once and kept in `scripts`.
const ScriptFacts& ScriptAt(std::map<std::string, ScriptFacts>& scripts, const std::string& path);

// Each entry of `database` that still holds its record (a replaced name is listed twice).
template <class F>
void ForEachLiveEntry(const Database& database, F&& visit) {
  for (const Database::Record& record : database.Records()) {
    const MetaDatabaseEntry* entry = database.FindEntry(record.name);
    if (entry == record.entry) visit(record.name, *entry);
  }
}

}  // namespace grindle::levelcheck

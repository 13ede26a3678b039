// Finding what the renderer reads from the root database: levels (`Levels.<name>`, the one
// `CurrentLevel` names, and its `GameObjects`) and the resource manager published under
// `Systems`. Main thread. Null wherever a step is missing; nothing here creates entries.
#pragma once

#include <string_view>

#include "Core/DataHandle.h"

namespace grindle {
class Database;
class ResourceManager;
}  // namespace grindle

namespace grindle::gfx {

DataHandle<Database> FindLevel(const Database& root, std::string_view levelName);
DataHandle<Database> FindCurrentLevel(const Database& root);
Database* FindCurrentGameObjects(const Database& root);
ResourceManager* FindResourceManager(const Database& root);

}  // namespace grindle::gfx

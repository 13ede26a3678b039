// Finding levels in the root database the way every part of the renderer does: `Levels.<name>`,
// the one `CurrentLevel` names, and its `GameObjects`. Main thread. Null wherever a step is
// missing; nothing here creates entries.
#pragma once

#include <string_view>

#include "Core/DataHandle.h"

namespace grindle {
class Database;
}

namespace grindle::gfx {

DataHandle<Database> FindLevel(const Database& root, std::string_view levelName);
DataHandle<Database> FindCurrentLevel(const Database& root);
Database* FindCurrentGameObjects(const Database& root);

}  // namespace grindle::gfx

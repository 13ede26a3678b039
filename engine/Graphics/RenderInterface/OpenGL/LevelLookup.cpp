#include "Graphics/RenderInterface/OpenGL/LevelLookup.h"

#include <string>

#include "Core/Database.h"
#include "Core/ResourceManager.h"
#include "Core/WellKnownKeys.h"

namespace grindle::gfx {

DataHandle<Database> FindLevel(const Database& root, std::string_view levelName) {
  const DataHandle<Database> levels = root.Find<Database>(KeyOf(WellKnown::Levels));
  return levels ? levels->Find<Database>(levelName) : DataHandle<Database>();
}

DataHandle<Database> FindCurrentLevel(const Database& root) {
  const DataHandle<std::string> current = root.Find<std::string>(KeyOf(WellKnown::CurrentLevel));
  return current ? FindLevel(root, *current) : DataHandle<Database>();
}

Database* FindCurrentGameObjects(const Database& root) {
  const DataHandle<Database> level = FindCurrentLevel(root);
  return level ? level->Find<Database>(KeyOf(WellKnown::GameObjects)).Get() : nullptr;
}

ResourceManager* FindResourceManager(const Database& root) {
  const DataHandle<Database> systems = root.Find<Database>(KeyOf(WellKnown::Systems));
  if (!systems) return nullptr;
  const DataHandle<ResourceManager*> manager =
      systems->Find<ResourceManager*>(KeyOf(WellKnown::ResourceManager));
  return manager ? *manager : nullptr;
}

}  // namespace grindle::gfx

#include "Graphics/RenderInterface/OpenGL/Particles/ParticleManager.h"

#include <cstdio>

#include "Core/Database.h"
#include "Core/DatabaseNumbers.h"
#include "Core/KeyInterning.h"
#include "Core/WellKnownKeys.h"
#include "Graphics/RenderInterface/OpenGL/LevelLookup.h"
#include "Graphics/RenderInterface/OpenGL/Particles/ParticleTextures.h"
#include "Graphics/RenderInterface/OpenGL/RenderDevice.h"

namespace grindle::gfx {

namespace {

DataHandle<Database> ParticleList(Database& level) {
  DataHandle<Database> lists = level.Find<Database>(KeyOf(WellKnown::ComponentLists));
  if (!lists) lists = level.Add<Database>("ComponentLists");
  DataHandle<Database> list = lists->Find<Database>(KeyOf(WellKnown::ParticleSystems));
  if (!list) list = lists->Add<Database>("ParticleSystems");
  return list;
}

glm::vec3 ReadVector(const Database& database, WellKnown x, WellKnown y, WellKnown z) {
  return {static_cast<float>(ReadDouble(database, KeyOf(x), 0.0)),
          static_cast<float>(ReadDouble(database, KeyOf(y), 0.0)),
          static_cast<float>(ReadDouble(database, KeyOf(z), 0.0))};
}

}  // namespace

ParticleManager::ParticleManager(RenderDevice& device, Database& root)
    : device_(device), root_(root) {}

ParticleManager::~ParticleManager() = default;

Database* ParticleManager::CurrentLevel() const { return FindCurrentLevel(root_).Get(); }

void ParticleManager::AddObject(const Database& object, std::string_view objectName) {
  const DataHandle<Database> component = object.Find<Database>(KeyOf(WellKnown::ParticleSystem));
  if (!component) return;
  const DataHandle<std::string> type = component->Find<std::string>(KeyOf(WellKnown::Type));
  const std::optional<ParticleKind> kind = KindFromTypeName(type ? *type : std::string());
  if (!kind) {
    std::printf(
        "ParticleSystem of \"%.*s\": Type \"%s\" is not one of Fire, Explosion, Rain, "
        "ExplosionSmall, ExplosionMine, Dust, Blink; no particles\n",
        static_cast<int>(objectName.size()), objectName.data(), type ? type->c_str() : "");
    return;
  }
  systems_[std::string(objectName)].reset(new Entry{ParticleSystem(*kind), HashValue(objectName)});
  if (Database* level = CurrentLevel()) {
    Database& list = *ParticleList(*level);
    if (const auto listed = list.Find<DataHandle<Database>>(objectName)) {
      *listed = component;
    } else {
      list.Add<DataHandle<Database>>(objectName, component);
    }
  }
}

void ParticleManager::RemoveObject(std::string_view objectName) {
  const auto found = systems_.find(objectName);
  if (found == systems_.end()) return;
  systems_.erase(found);
  if (Database* level = CurrentLevel()) {
    if (const auto lists = level->Find<Database>(KeyOf(WellKnown::ComponentLists))) {
      if (const auto list = lists->Find<Database>(KeyOf(WellKnown::ParticleSystems)))
        list->Remove(objectName);
    }
  }
}

bool ParticleManager::Restart(std::string_view objectName) {
  const auto found = systems_.find(objectName);
  if (found == systems_.end()) return false;
  found->second->system.Restart();
  return true;
}

const ParticleSystem* ParticleManager::Find(std::string_view objectName) const {
  const auto found = systems_.find(objectName);
  return found == systems_.end() ? nullptr : &found->second->system;
}

void ParticleManager::Place(ParticleSystem& system, const Database& object) const {
  glm::vec3 position = eye_;
  if (!KindInfo(system.Kind()).followsEye) {
    const DataHandle<Database> transform = object.Find<Database>(KeyOf(WellKnown::Transform));
    position = transform ? ReadVector(*transform, WellKnown::PositionX, WellKnown::PositionY,
                                      WellKnown::PositionZ)
                         : glm::vec3(0.0f);
  }
  glm::vec3 direction(0.0f);
  if (const auto component = object.Find<Database>(KeyOf(WellKnown::ParticleSystem))) {
    direction = ReadVector(*component, WellKnown::EmitDirectionX, WellKnown::EmitDirectionY,
                           WellKnown::EmitDirectionZ);
  }
  system.SetEmitter(position, direction);
}

void ParticleManager::Draw(const glm::mat4& viewProj, float dt) {
  if (systems_.empty()) return;
  const Database* level = CurrentLevel();
  const DataHandle<Database> objects =
      level ? level->Find<Database>(KeyOf(WellKnown::GameObjects)) : DataHandle<Database>();
  if (!objects) return;
  if (!textures_) textures_ = std::make_unique<ParticleTextures>();
  const ParticleFrame frame{viewProj, eye_, dt};
  for (auto& [name, entry] : systems_) {
    const DataHandle<Database> object = objects->Find<Database>(entry->objectKey);
    if (!object) continue;
    ParticleEffect* effect = KindEffect(device_.Effects(), entry->system.Kind());
    if (effect == nullptr) continue;
    Place(entry->system, *object);
    entry->system.Advance(*effect, device_.Assembler(), frame, *textures_);
    entry->system.Draw(*effect, device_.Assembler(), frame);
  }
}

}  // namespace grindle::gfx

// The model manager's objects: registering model components, the per-level component lists, and
// the per-frame gathering of instance batches and skinned poses with their database write-back.
#include <cstdio>
#include <cstring>

#include "Core/Database.h"
#include "Core/WellKnownKeys.h"
#include "Graphics/Loader/SkeletonPose.h"
#include "Core/DatabaseNumbers.h"
#include "Graphics/RenderInterface/OpenGL/Models/ModelManager.h"

namespace grindle::gfx {
namespace {

// Optional in `ModelSkinned`: 0 plays the clip once and holds its last pose.
constexpr std::string_view kLoopEntry = "Loop";

DataHandle<Database> ListOf(Database& level, WellKnown list, std::string_view listName) {
  DataHandle<Database> lists = level.Find<Database>(KeyOf(WellKnown::ComponentLists));
  if (!lists) lists = level.Add<Database>("ComponentLists");
  DataHandle<Database> found = lists->Find<Database>(KeyOf(list));
  return found ? found : lists->Add<Database>(listName);
}

void ListComponent(Database* level, WellKnown list, std::string_view listName,
                   std::string_view objectName, DataHandle<Database> component) {
  if (level == nullptr) return;
  Database& entries = *ListOf(*level, list, listName);
  if (const auto listed = entries.Find<DataHandle<Database>>(objectName)) {
    *listed = component;
  } else {
    entries.Add<DataHandle<Database>>(objectName, component);
  }
}

std::optional<std::string> ModelName(const Database& component, std::string_view objectName,
                                     const char* componentName) {
  if (const auto name = component.Find<std::string>(KeyOf(WellKnown::Name))) return *name;
  std::printf("Object %.*s: %s has no string Name; it is not drawn\n",
              static_cast<int>(objectName.size()), objectName.data(), componentName);
  return std::nullopt;
}

ModelTint ReadTint(const Database& object) {
  ModelTint tint;
  if (object.Find<Database>(KeyOf(WellKnown::Material))) {
    tint.present = true;
    tint.colours = ReadMaterial(object);
  }
  return tint;
}

bool IsPaused(const Database& root) {
  const auto paused = root.Find<bool>(KeyOf(WellKnown::isGamePaused));
  return paused && *paused;
}

}  // namespace

bool ModelTint::operator==(const ModelTint& other) const {
  return present == other.present &&
         (!present || std::memcmp(&colours, &other.colours, sizeof(colours)) == 0);
}

Database* ModelManager::CurrentLevel() const {
  const auto name = root_.Find<std::string>(KeyOf(WellKnown::CurrentLevel));
  const auto levels = root_.Find<Database>(KeyOf(WellKnown::Levels));
  if (!name || !levels) return nullptr;
  return levels->Find<Database>(*name).Get();
}

const Database* ModelManager::CurrentGameObjects() const {
  const Database* level = CurrentLevel();
  return level ? level->Find<Database>(KeyOf(WellKnown::GameObjects)).Get() : nullptr;
}

void ModelManager::AddObject(DataHandle<Database> object, std::string_view objectName) {
  if (object) Register(*object, objectName, CurrentLevel());
}

void ModelManager::Register(Database& object, std::string_view objectName, Database* level) {
  const uint32_t key = HashValue(objectName);
  if (const auto component = object.Find<Database>(KeyOf(WellKnown::ModelStatic))) {
    if (const auto name = ModelName(*component, objectName, "ModelStatic")) {
      StaticObject& entry = statics_[std::string(objectName)];
      entry = {key, *name, &store_.Get(ModelKind::kStatic, *name)};
      ListComponent(level, WellKnown::StaticModels, "StaticModels", objectName, component);
    }
  }
  if (const auto component = object.Find<Database>(KeyOf(WellKnown::ModelSkinned))) {
    if (const auto name = ModelName(*component, objectName, "ModelSkinned")) {
      SkinnedObject& entry = skinned_[std::string(objectName)];
      entry = SkinnedObject{};
      entry.key = key;
      entry.modelName = *name;
      entry.model = &store_.Get(ModelKind::kSkinned, *name);
      ListComponent(level, WellKnown::SkinnedModels, "SkinnedModels", objectName, component);
    }
  }
}

void ModelManager::RemoveObject(std::string_view objectName) {
  if (const auto found = statics_.find(objectName); found != statics_.end()) statics_.erase(found);
  if (const auto found = skinned_.find(objectName); found != skinned_.end()) skinned_.erase(found);
  if (Database* level = CurrentLevel()) {
    if (const auto lists = level->Find<Database>(KeyOf(WellKnown::ComponentLists))) {
      for (const WellKnown list : {WellKnown::StaticModels, WellKnown::SkinnedModels}) {
        if (const auto entries = lists->Find<Database>(KeyOf(list))) entries->Remove(objectName);
      }
    }
  }
}

void ModelManager::BuildLevelLists(Database& level) {
  ListOf(level, WellKnown::StaticModels, "StaticModels");
  ListOf(level, WellKnown::SkinnedModels, "SkinnedModels");
  const auto gameObjects = level.Find<Database>(KeyOf(WellKnown::GameObjects));
  if (!gameObjects) return;
  for (const Database::Record& record : gameObjects->Records()) {
    const uint32_t key = HashValue(record.name);
    // A name listed twice was replaced; only its live record counts.
    if (gameObjects->FindEntry(key) != record.entry) continue;
    if (const auto object = gameObjects->Find<Database>(key))
      Register(*object, record.name, &level);
  }
}

GpuModel* ModelManager::FollowName(const Database& component, ModelKind kind,
                                   std::string& modelName, GpuModel* drawn) {
  const auto name = component.Find<std::string>(KeyOf(WellKnown::Name));
  if (!name || *name == modelName) return drawn;
  modelName = *name;
  return &store_.Get(kind, modelName);
}

void ModelManager::Animate(SkinnedObject& skinned, Database& component, float dt) {
  const GpuModel& model = *skinned.model;
  const auto clipName = component.Find<std::string>(KeyOf(WellKnown::AnimationName));
  const std::string wanted = clipName                       ? *clipName
                             : model.skeleton.clips.empty() ? std::string()
                                                            : model.skeleton.clips.begin()->first;
  bool restart = false;
  if (wanted != skinned.clipName || skinned.generation != model.generation ||
      (skinned.clip == nullptr && !skinned.clipName.empty())) {
    restart = wanted != skinned.clipName;
    const auto found = model.skeleton.clips.find(wanted);
    if (found == model.skeleton.clips.end() && wanted != skinned.clipName) {
      std::printf("Model %s has no animation clip \"%s\"; drawn in its bind pose\n",
                  model.path.c_str(), wanted.c_str());
    }
    skinned.clip = found == model.skeleton.clips.end() ? nullptr : &found->second;
    skinned.clipName = wanted;
    skinned.generation = model.generation;
  }
  skinned.loop = ReadDouble(component, HashValue(kLoopEntry), 1.0) != 0.0;
  const auto marker = component.Find<double>(KeyOf(WellKnown::TimeMarker));
  if (skinned.clip == nullptr) {
    skinned.time = 0.0f;
    skinned.finals.assign(model.skeleton.boneNames.size(), glm::mat4(1.0f));
  } else {
    const models::AnimationClip& clip = *skinned.clip;
    if (marker && *marker != skinned.writtenTime) {
      // A script (or the level file) wrote the marker: jump there and show that pose this frame,
      // also when the clip changes in the same frame.
      skinned.time = static_cast<float>(*marker);
    } else if (restart) {
      skinned.time = clip.startTime;
    } else {
      skinned.time = models::AdvanceClipTime(clip, skinned.time, dt, skinned.loop);
    }
    models::ComputeFinalTransforms(model.skeleton, clip, skinned.time, skinned.finals);
  }
  skinned.writtenTime = skinned.time;
  WriteDouble(component, KeyOf(WellKnown::TimeMarker), skinned.writtenTime);
  DataHandle<Database> finals = component.Find<Database>(KeyOf(WellKnown::FinalTransformations));
  if (!finals) finals = component.Add<Database>("FinalTransformations");
  for (size_t bone = 0; bone < skinned.finals.size(); ++bone) {
    if (const auto entry = finals->Find<glm::mat4>(model.boneKeys[bone])) {
      *entry = skinned.finals[bone];
    } else {
      finals->Add<glm::mat4>(model.skeleton.boneNames[bone], skinned.finals[bone]);
    }
  }
}

void ModelManager::GatherSkinned(const Database& gameObjects, float dt) {
  skinnedDrawn_.clear();
  for (auto& [name, skinned] : skinned_) {
    const auto object = gameObjects.Find<Database>(skinned.key);
    if (!object) continue;
    const auto component = object->Find<Database>(KeyOf(WellKnown::ModelSkinned));
    if (!component) continue;
    GpuModel* model = FollowName(*component, ModelKind::kSkinned, skinned.modelName, skinned.model);
    if (model != skinned.model) {
      // The clip starts again on the new model, as for a new clip name.
      skinned.model = model;
      skinned.clip = nullptr;
      skinned.clipName.clear();
    }
    Animate(skinned, *component, dt);
    if (skinned.model->ranges.empty()) continue;
    skinnedDrawn_.push_back({skinned.model, ReadWorldMatrix(*object), ReadTint(*object),
                             ReadGlowColour(*object), &skinned.finals});
  }
}

void ModelManager::GatherStatic(const Database& gameObjects) {
  batches_.clear();
  glowingStatics_.clear();
  std::vector<std::pair<uint32_t, glm::mat4>> placed;
  placed.reserve(statics_.size());
  for (auto& [name, entry] : statics_) {
    const auto object = gameObjects.Find<Database>(entry.key);
    if (!object) continue;
    const auto component = object->Find<Database>(KeyOf(WellKnown::ModelStatic));
    if (!component) continue;
    entry.model = FollowName(*component, ModelKind::kStatic, entry.modelName, entry.model);
    if (entry.model->ranges.empty()) continue;
    const glm::mat4 world = ReadWorldMatrix(*object);
    const ModelTint tint = ReadTint(*object);
    // Few distinct model and colour pairs per level: a linear search finds the batch.
    size_t batch = 0;
    while (batch < batches_.size() &&
           !(batches_[batch].model == entry.model && batches_[batch].tint == tint)) {
      ++batch;
    }
    if (batch == batches_.size()) batches_.push_back({entry.model, tint, 0, 0});
    ++batches_[batch].count;
    placed.emplace_back(static_cast<uint32_t>(batch), world);
    if (auto glow = ReadGlowColour(*object)) {
      glowingStatics_.push_back({entry.model, world, tint, glow, nullptr});
    }
  }
  uint32_t next = 0;
  for (Batch& batch : batches_) {
    batch.first = next;
    next += batch.count;
    batch.count = 0;
  }
  instanceWorlds_.resize(next);
  for (const auto& [batch, world] : placed) {
    Batch& b = batches_[batch];
    instanceWorlds_[b.first + b.count++] = world;
  }
  instances_.Upload(instanceWorlds_.data(), instanceWorlds_.size() * sizeof(glm::mat4));
}

void ModelManager::AdvanceAnimation(const glm::mat4& /*viewProj*/, float dt) {
  const Database* gameObjects = CurrentGameObjects();
  if (gameObjects == nullptr) {
    batches_.clear();
    glowingStatics_.clear();
    skinnedDrawn_.clear();
    return;
  }
  GatherSkinned(*gameObjects, IsPaused(root_) ? 0.0f : dt);
  GatherStatic(*gameObjects);
}

}  // namespace grindle::gfx

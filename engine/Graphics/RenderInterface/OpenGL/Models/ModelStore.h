// Every model file the running game has named, read once and shared: GPU buffers, the drawable
// subset ranges, materials and (skinned) the skeleton with its clips. Files are registered for hot
// reload; rewriting one replaces the model in place, so every object drawing it shows the new one.
// Main thread, GL context current. Model pointers stay valid for the store's lifetime.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Core/MetaResource.h"
#include "Graphics/Loader/ModelCheck.h"
#include "Graphics/Loader/ModelData.h"
#include "Graphics/RenderInterface/OpenGL/GpuBuffer.h"

namespace grindle {
class ResourceManager;
}

namespace grindle::gfx {

enum class ModelKind { kStatic, kSkinned };

inline constexpr std::string_view kStaticModelFolder = "Assets/Models/Static/";
inline constexpr std::string_view kSkinnedModelFolder = "Assets/Models/Skinned/";

struct GpuModel {
  ModelKind kind = ModelKind::kStatic;
  std::string path;
  GpuBuffer vertices;
  GpuBuffer indices;  // 32-bit on the GPU; the file's 16-bit values already wrapped
  std::vector<models::DrawRange> ranges;
  std::vector<models::ModelMaterial> materials;
  models::Skeleton skeleton;
  std::vector<uint32_t> boneKeys;  // interned bone names, for `FinalTransformations`
  uint32_t generation = 0;         // grows with every reload
};

// "Assets/Models/Static/<name>.mdl" or "Assets/Models/Skinned/<name>.smdl".
std::string ModelPath(ModelKind kind, std::string_view name);

class ModelStore {
 public:
  // `resources` may be null (no hot reload).
  explicit ModelStore(ResourceManager* resources) : resources_(resources) {}
  ~ModelStore();
  ModelStore(const ModelStore&) = delete;
  ModelStore& operator=(const ModelStore&) = delete;

  // The model for `name`, read now if it was not yet. A file that cannot be opened stops the
  // program with the loader's assertion; one with bad content is reported once and drawn in part.
  GpuModel& Get(ModelKind kind, std::string_view name);
  // Reads the file at `path` again if it is a model of this store; a file that is now unreadable
  // or undrawable leaves the old model in place. Returns whether the model was replaced.
  bool Reload(const std::string& path);
  size_t Count() const { return models_.size(); }

 private:
  struct Entry {
    std::unique_ptr<GpuModel> model;
    std::unique_ptr<MetaResource> resource;  // registered for hot reload
  };
  std::unique_ptr<GpuModel> Load(ModelKind kind, const std::string& path, bool& drawable);

  ResourceManager* resources_;
  std::unordered_map<std::string, std::unique_ptr<Entry>> models_;
};

}  // namespace grindle::gfx

#include "Graphics/RenderInterface/OpenGL/Models/ModelStore.h"

#include <cstdio>

#include "Core/KeyInterning.h"
#include "Core/ResourceManager.h"
#include "Graphics/Loader/Loader.h"

namespace grindle::gfx {
namespace {

class ModelFileResource final : public MetaResource {
 public:
  ModelFileResource(std::string path, ModelStore& store)
      : MetaResource(std::move(path)), store_(store) {}
  void Reload() override { store_.Reload(Name()); }

 private:
  ModelStore& store_;
};

template <class Vertex>
void Upload(GpuModel& model, const models::ModelGeometry<Vertex>& geometry) {
  const std::vector<uint32_t> wide(geometry.indices.begin(), geometry.indices.end());
  // GL refuses empty immutable storage; an empty model keeps null buffers and draws nothing.
  if (!geometry.vertices.empty()) {
    model.vertices = GpuBuffer(geometry.vertices.data(), geometry.vertices.size() * sizeof(Vertex));
  }
  if (!wide.empty()) model.indices = GpuBuffer(wide.data(), wide.size() * sizeof(uint32_t));
}

bool CanOpen(const std::string& path) {
  FILE* file = std::fopen(path.c_str(), "r");
  if (file == nullptr) return false;
  std::fclose(file);
  return true;
}

}  // namespace

std::string ModelPath(ModelKind kind, std::string_view name) {
  return kind == ModelKind::kStatic
             ? std::string(kStaticModelFolder) + std::string(name) + ".mdl"
             : std::string(kSkinnedModelFolder) + std::string(name) + ".smdl";
}

ModelStore::~ModelStore() {
  for (auto& [path, entry] : models_) {
    if (resources_ != nullptr) resources_->Unregister(entry->resource.get());
  }
}

std::unique_ptr<GpuModel> ModelStore::Load(ModelKind kind, const std::string& path,
                                           bool& drawable) {
  auto model = std::make_unique<GpuModel>();
  model->kind = kind;
  model->path = path;
  models::ScanProblem scan;
  models::CheckedModel checked;
  if (kind == ModelKind::kStatic) {
    models::StaticModelData data;
    models::LoadStaticMesh(path, data.vertices, data.indices, data.subsets, data.materials, &scan);
    checked = models::CheckStaticModel(path, data, scan);
    if (checked.drawable) Upload(*model, data);
  } else {
    models::SkinnedModelData data;
    models::LoadSkinnedMesh(path, data.vertices, data.indices, data.subsets, data.materials,
                            data.skeleton, &scan);
    checked = models::CheckSkinnedModel(path, data, scan);
    if (checked.drawable) Upload(*model, data);
    model->skeleton = std::move(data.skeleton);
    for (const std::string& bone : model->skeleton.boneNames) {
      model->boneKeys.push_back(HashValue(bone));
    }
  }
  if (!checked.problems.empty()) std::printf("Model %s\n", SummariseProblems(checked).c_str());
  model->ranges = std::move(checked.ranges);
  model->materials = std::move(checked.materials);
  drawable = checked.drawable;
  return model;
}

GpuModel& ModelStore::Get(ModelKind kind, std::string_view name) {
  const std::string path = ModelPath(kind, name);
  if (const auto found = models_.find(path); found != models_.end()) return *found->second->model;
  bool drawable = false;
  auto entry = std::make_unique<Entry>();
  entry->model = Load(kind, path, drawable);
  entry->resource = std::make_unique<ModelFileResource>(path, *this);
  if (resources_ != nullptr) resources_->Register(entry->resource.get());
  GpuModel& model = *entry->model;
  models_.emplace(path, std::move(entry));
  return model;
}

bool ModelStore::Reload(const std::string& path) {
  const auto found = models_.find(path);
  if (found == models_.end()) return false;
  GpuModel& current = *found->second->model;
  if (!CanOpen(path)) {
    std::printf("Model %s could not be opened again; the old model stays\n", path.c_str());
    return false;
  }
  bool drawable = false;
  std::unique_ptr<GpuModel> fresh = Load(current.kind, path, drawable);
  if (!drawable) {
    std::printf("Model %s: the rewritten file cannot be drawn; the old model stays\n",
                path.c_str());
    return false;
  }
  fresh->generation = current.generation + 1;
  current = std::move(*fresh);
  std::printf("Model %s reloaded\n", path.c_str());
  return true;
}

}  // namespace grindle::gfx

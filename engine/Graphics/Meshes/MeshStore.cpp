#include "Graphics/Meshes/MeshStore.h"

#include "Core/Assert.h"
#include "Graphics/Meshes/PrimitiveCatalogue.h"

namespace grindle::gfx {

std::optional<uint32_t> MeshStore::Find(std::string_view name) const {
  for (uint32_t i = 0; i < records_.size(); ++i) {
    if (records_[i].name == name) return i;
  }
  return std::nullopt;
}

uint32_t MeshStore::FindOrBuild(std::string_view name) {
  if (const std::optional<uint32_t> index = Find(name)) return *index;
  records_.push_back(Upload(std::string(name), BuildPrimitive(name)));
  return Count() - 1;
}

const MeshRecord& MeshStore::At(uint32_t index) const {
  GRINDLE_ASSERT(index >= records_.size(), "MeshIndex does not name a mesh of the store");
  return records_[index];
}

const MeshRecord& MeshStore::DebugMesh() {
  if (!debugMesh_) debugMesh_ = Upload(std::string(kDebugMeshName), BuildDebugMesh());
  return *debugMesh_;
}

template <class Vertex>
MeshRecord MeshStore::Upload(std::string name, const MeshGeometry<Vertex>& geometry) {
  MeshRecord record;
  record.vertices = GpuBuffer(geometry.vertices.data(), geometry.vertices.size() * sizeof(Vertex));
  record.indices = GpuBuffer(geometry.indices.data(), geometry.indices.size() * sizeof(uint32_t));
  record.indexCount = static_cast<uint32_t>(geometry.indices.size());
  record.name = std::move(name);
  return record;
}

}  // namespace grindle::gfx

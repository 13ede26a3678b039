// The shared store of generated meshes: one record per distinct `Filename`, in creation order.
// A mesh's index is its position and never changes while the store lives (records are never
// removed), so `MeshIndex` values stay valid across levels. Main thread, GL context current.
// The debug mesh is kept apart from the records so that no `Filename` can reach its 28-byte
// vertices through the 44-byte mesh layout.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Graphics/Meshes/MeshVertex.h"
#include "Graphics/RenderInterface/OpenGL/GpuBuffer.h"

namespace grindle::gfx {

struct MeshRecord {
  GpuBuffer vertices;
  GpuBuffer indices;  // 32-bit
  uint32_t indexCount = 0;
  std::string name;
};

class MeshStore {
 public:
  // The index of the first record named exactly `name`, or nothing.
  std::optional<uint32_t> Find(std::string_view name) const;
  // The record for `name`, generating its primitive (an unknown name asserts) when none exists.
  uint32_t FindOrBuild(std::string_view name);

  uint32_t Count() const { return static_cast<uint32_t>(records_.size()); }
  // Asserts when `index` names no record (a `MeshIndex` the store never handed out).
  const MeshRecord& At(uint32_t index) const;

  // "NoFile:DebugMesh", built on first use.
  const MeshRecord& DebugMesh();

 private:
  template <class Vertex>
  static MeshRecord Upload(std::string name, const MeshGeometry<Vertex>& geometry);

  std::vector<MeshRecord> records_;
  std::optional<MeshRecord> debugMesh_;
};

}  // namespace grindle::gfx

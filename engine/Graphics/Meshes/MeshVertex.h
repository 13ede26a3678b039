// The vertex records of generated meshes and the CPU-side geometry a generator hands back.
// Plain data, any thread. The byte layouts are what the mesh and position-colour input layouts
// read: a GeneratedVertex must stay 44 bytes with the offsets below, a DebugVertex 28 bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>
#include <vector>

namespace grindle {

// Field order follows the mesh input layout (TEXCOORD at 24, TANGENT at 32), the same order the
// model files use, so one layout reads generated and loaded meshes alike.
struct GeneratedVertex {
  glm::vec3 position;
  glm::vec3 normal;
  glm::vec2 texCoord;
  glm::vec3 tangent;
};
static_assert(sizeof(GeneratedVertex) == 44);
static_assert(offsetof(GeneratedVertex, normal) == 12);
static_assert(offsetof(GeneratedVertex, texCoord) == 24);
static_assert(offsetof(GeneratedVertex, tangent) == 32);

struct DebugVertex {
  glm::vec3 position;
  glm::vec4 colour;
};
static_assert(sizeof(DebugVertex) == 28);
static_assert(offsetof(DebugVertex, colour) == 12);

// Triangle lists; every generator winds its triangles counter-clockwise seen from outside, in
// the right-handed world the renderer uses.
template <class Vertex>
struct MeshGeometry {
  std::vector<Vertex> vertices;
  std::vector<uint32_t> indices;
};

using MeshData = MeshGeometry<GeneratedVertex>;
using DebugMeshData = MeshGeometry<DebugVertex>;

}  // namespace grindle

// The records that model files (.mdl static, .smdl skinned) hold in memory: vertices in the layouts
// the mesh and skinned-mesh input layouts read, 16-bit indices, subsets, materials, and for skinned
// models the skeleton and its animation clips. Plain data without GL, shared by the loaders, the
// writer (tools) and the model manager. Any thread; nothing here is shared.
#pragma once

#include <cstdint>
#include <glm/mat4x4.hpp>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>
#include <map>
#include <string>
#include <vector>

namespace grindle::models {

// A texture name of this token means "no map": "%s" cannot read an empty name.
inline constexpr const char* kNoTexture = "none";
// 16-bit indices address at most this many vertices.
inline constexpr size_t kMaxVertices = 65536;
inline constexpr int kInfluences = 5;

struct StaticVertex {
  glm::vec3 position{0.0f};
  glm::vec3 normal{0.0f};
  glm::vec2 texC{0.0f};
  glm::vec3 tangent{0.0f};
};
static_assert(sizeof(StaticVertex) == 44);

struct SkinnedVertex {
  glm::vec3 position{0.0f};
  glm::vec3 normal{0.0f};
  glm::vec2 texC{0.0f};
  glm::vec3 tangent{0.0f};
  float weights[kInfluences] = {};
  int32_t boneIndices[kInfluences] = {};
};
static_assert(sizeof(SkinnedVertex) == 84);

// Memory order; the file lists the last four fields in the reverse order.
struct Subset {
  int32_t Index = 0;
  int32_t MaterialIndex = 0;
  int32_t VertexStartIndex = 0;
  int32_t VertexCount = 0;
  int32_t FaceStartIndex = 0;
  int32_t FaceCount = 0;
};

struct ModelMaterial {
  glm::vec4 ambient{0.0f};
  glm::vec4 diffuse{0.0f};
  glm::vec4 specular{0.0f};
  glm::vec4 reflect{0.0f};  // the lighting block's fourth vector; files do not carry it
  std::string diffuseMapName;
  std::string specularMapName;
  std::string normalMapName;
};

struct PositionKey {
  float time = 0.0f;
  glm::vec3 value{0.0f};
};
struct RotationKey {
  float time = 0.0f;
  glm::vec4 value{0.0f, 0.0f, 0.0f, 1.0f};  // quaternion x, y, z, w
};
struct ScaleKey {
  float time = 0.0f;
  glm::vec3 value{1.0f};
};

struct BoneAnimation {
  std::vector<PositionKey> positions;
  std::vector<RotationKey> rotations;
  std::vector<ScaleKey> scales;
};

struct AnimationClip {
  float startTime = 0.0f;
  float endTime = 0.0f;
  std::vector<BoneAnimation> boneAnimations;  // one per bone, in bone order
};

// Matrices are stored as the file writes them, row by row of the row-vector convention, which in
// GLM's column-major storage is the same transform for column vectors (M * v).
struct Skeleton {
  std::vector<std::string> boneNames;
  std::vector<int32_t> parents;  // -1 for a root
  std::vector<glm::mat4> offsets;
  std::map<std::string, AnimationClip> clips;
};

template <class Vertex>
struct ModelGeometry {
  std::vector<Vertex> vertices;
  std::vector<uint16_t> indices;
  std::vector<Subset> subsets;
  std::vector<ModelMaterial> materials;
};

using StaticModelData = ModelGeometry<StaticVertex>;
struct SkinnedModelData : ModelGeometry<SkinnedVertex> {
  Skeleton skeleton;
};

}  // namespace grindle::models

#include "Graphics/Meshes/PrimitiveGenerators.h"

#include <cmath>
#include <glm/geometric.hpp>

#include "Core/Assert.h"

namespace grindle {
namespace {

constexpr float kPi = 3.14159265358979f;

// Two triangles over the quad a-b (one row) and c-d (the next row), a and c in the same column.
// `flip` reverses both for quads whose rows run the other way round the outward normal.
void AddQuad(std::vector<uint32_t>& indices, uint32_t a, uint32_t b, uint32_t c, uint32_t d,
             bool flip) {
  if (flip) {
    indices.insert(indices.end(), {a, c, b, b, c, d});
  } else {
    indices.insert(indices.end(), {a, b, c, c, b, d});
  }
}

// One box face: four corners around `centre`, spanned by the tangent and by normal x tangent.
void AddBoxFace(MeshData& mesh, const glm::vec3& centre, const glm::vec3& normal,
                const glm::vec3& tangent, const glm::vec3& halfExtents) {
  const glm::vec3 up = glm::cross(normal, tangent);
  const glm::vec3 across = tangent * glm::dot(glm::abs(tangent), halfExtents);
  const glm::vec3 upward = up * glm::dot(glm::abs(up), halfExtents);
  const auto first = static_cast<uint32_t>(mesh.vertices.size());
  // Bottom-left, bottom-right, top-right, top-left; v = 0 is the texture's top row.
  mesh.vertices.push_back({centre - across - upward, normal, {0.0f, 1.0f}, tangent});
  mesh.vertices.push_back({centre + across - upward, normal, {1.0f, 1.0f}, tangent});
  mesh.vertices.push_back({centre + across + upward, normal, {1.0f, 0.0f}, tangent});
  mesh.vertices.push_back({centre - across + upward, normal, {0.0f, 0.0f}, tangent});
  mesh.indices.insert(mesh.indices.end(),
                      {first, first + 1, first + 2, first, first + 2, first + 3});
}

// A flat disc closing one end of a cylinder.
void AddCylinderCap(MeshData& mesh, float radius, float y, uint32_t slices, bool top) {
  const glm::vec3 normal(0.0f, top ? 1.0f : -1.0f, 0.0f);
  const glm::vec3 tangent(1.0f, 0.0f, 0.0f);
  const auto centre = static_cast<uint32_t>(mesh.vertices.size());
  mesh.vertices.push_back({{0.0f, y, 0.0f}, normal, {0.5f, 0.5f}, tangent});
  for (uint32_t j = 0; j <= slices; ++j) {
    const float theta = 2.0f * kPi * static_cast<float>(j) / static_cast<float>(slices);
    const float c = std::cos(theta), s = std::sin(theta);
    mesh.vertices.push_back(
        {{radius * c, y, radius * s}, normal, {0.5f + 0.5f * c, 0.5f + 0.5f * s}, tangent});
  }
  for (uint32_t j = 0; j < slices; ++j) {
    const uint32_t here = centre + 1 + j, next = here + 1;
    if (top) {
      mesh.indices.insert(mesh.indices.end(), {centre, next, here});
    } else {
      mesh.indices.insert(mesh.indices.end(), {centre, here, next});
    }
  }
}

}  // namespace

MeshData CreateGrid(float width, float depth, uint32_t rows, uint32_t columns) {
  GRINDLE_ASSERT(rows < 2 || columns < 2, "A grid needs at least two rows and two columns");
  MeshData mesh;
  mesh.vertices.reserve(size_t{rows} * columns);
  const float du = 1.0f / static_cast<float>(columns - 1);
  const float dv = 1.0f / static_cast<float>(rows - 1);
  for (uint32_t i = 0; i < rows; ++i) {
    for (uint32_t j = 0; j < columns; ++j) {
      const float u = static_cast<float>(j) * du, v = static_cast<float>(i) * dv;
      mesh.vertices.push_back({{(u - 0.5f) * width, 0.0f, (0.5f - v) * depth},
                               {0.0f, 1.0f, 0.0f},
                               {u, v},
                               {1.0f, 0.0f, 0.0f}});
    }
  }
  mesh.indices.reserve(size_t{rows - 1} * (columns - 1) * 6);
  for (uint32_t i = 0; i + 1 < rows; ++i) {
    for (uint32_t j = 0; j + 1 < columns; ++j) {
      const uint32_t a = i * columns + j, c = a + columns;
      AddQuad(mesh.indices, a, a + 1, c, c + 1, false);
    }
  }
  return mesh;
}

MeshData CreateBox(float width, float height, float depth) {
  const glm::vec3 half(0.5f * width, 0.5f * height, 0.5f * depth);
  MeshData mesh;
  mesh.vertices.reserve(24);
  mesh.indices.reserve(36);
  const struct {
    glm::vec3 normal, tangent;
  } faces[] = {
      {{0, 0, 1}, {1, 0, 0}},  {{0, 0, -1}, {-1, 0, 0}}, {{1, 0, 0}, {0, 0, -1}},
      {{-1, 0, 0}, {0, 0, 1}}, {{0, 1, 0}, {1, 0, 0}},   {{0, -1, 0}, {1, 0, 0}},
  };
  for (const auto& face : faces) {
    AddBoxFace(mesh, face.normal * half, face.normal, face.tangent, half);
  }
  return mesh;
}

MeshData CreateSphere(float radius, uint32_t slices, uint32_t stacks) {
  GRINDLE_ASSERT(slices < 3 || stacks < 2, "A sphere needs at least three slices and two stacks");
  MeshData mesh;
  const uint32_t ringSize = slices + 1;
  mesh.vertices.reserve(size_t{stacks - 1} * ringSize + 2);
  mesh.vertices.push_back(
      {{0.0f, radius, 0.0f}, {0.0f, 1.0f, 0.0f}, {0.0f, 0.0f}, {1.0f, 0.0f, 0.0f}});
  for (uint32_t i = 1; i < stacks; ++i) {
    const float phi = kPi * static_cast<float>(i) / static_cast<float>(stacks);
    for (uint32_t j = 0; j <= slices; ++j) {
      const float theta = 2.0f * kPi * static_cast<float>(j) / static_cast<float>(slices);
      const glm::vec3 normal(std::sin(phi) * std::cos(theta), std::cos(phi),
                             std::sin(phi) * std::sin(theta));
      mesh.vertices.push_back({radius * normal,
                               normal,
                               {theta / (2.0f * kPi), phi / kPi},
                               {-std::sin(theta), 0.0f, std::cos(theta)}});
    }
  }
  const auto south = static_cast<uint32_t>(mesh.vertices.size());
  mesh.vertices.push_back(
      {{0.0f, -radius, 0.0f}, {0.0f, -1.0f, 0.0f}, {0.0f, 1.0f}, {1.0f, 0.0f, 0.0f}});

  mesh.indices.reserve(size_t{6} * slices * (stacks - 1));
  for (uint32_t j = 0; j < slices; ++j) {
    mesh.indices.insert(mesh.indices.end(), {0, 1 + j + 1, 1 + j});
  }
  for (uint32_t i = 0; i + 2 < stacks; ++i) {
    for (uint32_t j = 0; j < slices; ++j) {
      const uint32_t a = 1 + i * ringSize + j, c = a + ringSize;
      AddQuad(mesh.indices, a, a + 1, c, c + 1, false);
    }
  }
  const uint32_t lastRing = 1 + (stacks - 2) * ringSize;
  for (uint32_t j = 0; j < slices; ++j) {
    mesh.indices.insert(mesh.indices.end(), {lastRing + j, lastRing + j + 1, south});
  }
  return mesh;
}

MeshData CreateCylinder(float bottomRadius, float topRadius, float height, uint32_t slices,
                        uint32_t stacks) {
  GRINDLE_ASSERT(slices < 3 || stacks < 1, "A cylinder needs at least three slices and a stack");
  MeshData mesh;
  const uint32_t ringSize = slices + 1;
  const float radiusStep = (topRadius - bottomRadius) / static_cast<float>(stacks);
  // The side's slope tilts its normals: up when the cylinder narrows towards the top.
  const float slope = bottomRadius - topRadius;
  for (uint32_t i = 0; i <= stacks; ++i) {
    const float y = -0.5f * height + height * static_cast<float>(i) / static_cast<float>(stacks);
    const float r = bottomRadius + radiusStep * static_cast<float>(i);
    for (uint32_t j = 0; j <= slices; ++j) {
      const float theta = 2.0f * kPi * static_cast<float>(j) / static_cast<float>(slices);
      const float c = std::cos(theta), s = std::sin(theta);
      mesh.vertices.push_back({{r * c, y, r * s},
                               glm::normalize(glm::vec3(height * c, slope, height * s)),
                               {static_cast<float>(j) / static_cast<float>(slices),
                                1.0f - static_cast<float>(i) / static_cast<float>(stacks)},
                               {-s, 0.0f, c}});
    }
  }
  for (uint32_t i = 0; i < stacks; ++i) {
    for (uint32_t j = 0; j < slices; ++j) {
      const uint32_t a = i * ringSize + j, c = a + ringSize;
      AddQuad(mesh.indices, a, a + 1, c, c + 1, true);
    }
  }
  AddCylinderCap(mesh, topRadius, 0.5f * height, slices, true);
  AddCylinderCap(mesh, bottomRadius, -0.5f * height, slices, false);
  return mesh;
}

}  // namespace grindle

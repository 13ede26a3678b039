#include "MeshBuilder.h"

#include <cmath>
#include <glm/geometric.hpp>

namespace grindle::modelgen {
namespace {

constexpr float kPi = 3.14159265f;

}  // namespace

models::ModelMaterial Colour(const glm::vec3& diffuse, float specularPower, const char* texture) {
  models::ModelMaterial m;
  m.ambient = glm::vec4(diffuse * 0.6f, 1.0f);
  m.diffuse = glm::vec4(diffuse, 1.0f);
  m.specular = glm::vec4(0.3f, 0.3f, 0.3f, specularPower);
  m.diffuseMapName = texture;
  m.specularMapName = models::kNoTexture;
  m.normalMapName = models::kNoTexture;
  return m;
}

void MeshBuilder::BeginSubset(int material) {
  CloseSubset();
  models::Subset s;
  s.Index = static_cast<int32_t>(subsets_.size());
  s.MaterialIndex = material;
  s.FaceStartIndex = static_cast<int32_t>(indices_.size() / 3);
  s.VertexStartIndex = static_cast<int32_t>(vertices_.size());
  subsets_.push_back(s);
}

void MeshBuilder::CloseSubset() {
  if (subsets_.empty()) return;
  models::Subset& s = subsets_.back();
  s.FaceCount = static_cast<int32_t>(indices_.size() / 3) - s.FaceStartIndex;
  s.VertexCount = static_cast<int32_t>(vertices_.size()) - s.VertexStartIndex;
}

uint16_t MeshBuilder::Add(const glm::vec3& p, const glm::vec3& n, const glm::vec2& uv,
                          const glm::vec3& t) {
  vertices_.push_back({p, n, uv, t});
  bones_.push_back(bone_);
  return static_cast<uint16_t>(vertices_.size() - 1);
}

// Counter-clockwise seen from outside: a, b, c, d around the face.
void MeshBuilder::Quad(uint16_t a, uint16_t b, uint16_t c, uint16_t d) {
  indices_.insert(indices_.end(), {a, b, c, a, c, d});
}

void MeshBuilder::Box(const glm::vec3& center, const glm::vec3& half) {
  const glm::vec3 axes[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  for (int axis = 0; axis < 3; ++axis) {
    for (const float sign : {1.0f, -1.0f}) {
      const glm::vec3 n = axes[axis] * sign;
      const glm::vec3 u = axes[(axis + 1) % 3] * sign;
      const glm::vec3 v = axes[(axis + 2) % 3];
      // u x v points along n, so (-u,-v), (u,-v), (u,v), (-u,v) runs counter-clockwise.
      const glm::vec3 c = center + n * half;
      const glm::vec3 du = u * half, dv = v * half;
      const uint16_t a = Add(c - du - dv, n, {0, 1}, u);
      const uint16_t b = Add(c + du - dv, n, {1, 1}, u);
      const uint16_t d = Add(c + du + dv, n, {1, 0}, u);
      const uint16_t e = Add(c - du + dv, n, {0, 0}, u);
      Quad(a, b, d, e);
    }
  }
}

void MeshBuilder::Lathe(const glm::vec3& base, float height,
                        const std::function<float(float)>& radius, int slices, int stacks) {
  const auto ring = [&](float t, float ny) {
    const uint16_t first = static_cast<uint16_t>(vertices_.size());
    const float r = radius(t);
    // The slope of the profile tilts the normal up or down.
    const float dr = (radius(std::min(t + 0.01f, 1.0f)) - radius(std::max(t - 0.01f, 0.0f))) /
                     (0.02f * height);
    for (int s = 0; s <= slices; ++s) {
      const float a = 2.0f * kPi * static_cast<float>(s) / static_cast<float>(slices);
      const glm::vec3 out(std::cos(a), 0.0f, std::sin(a));
      const glm::vec3 n = ny == 0.0f ? glm::normalize(out - glm::vec3(0, dr, 0)) : glm::vec3(0, ny, 0);
      Add(base + out * r + glm::vec3(0, t * height, 0), n,
          {static_cast<float>(s) / static_cast<float>(slices), 1.0f - t}, {-out.z, 0, out.x});
    }
    return first;
  };
  std::vector<uint16_t> rings;
  for (int i = 0; i <= stacks; ++i) rings.push_back(ring(static_cast<float>(i) / stacks, 0.0f));
  for (int i = 0; i < stacks; ++i) {
    for (int s = 0; s < slices; ++s) {
      const uint16_t a = static_cast<uint16_t>(rings[i] + s), b = static_cast<uint16_t>(a + 1);
      const uint16_t c = static_cast<uint16_t>(rings[i + 1] + s + 1), d = static_cast<uint16_t>(c - 1);
      Quad(a, d, c, b);
    }
  }
  for (const float end : {0.0f, 1.0f}) {
    const float ny = end == 0.0f ? -1.0f : 1.0f;
    const uint16_t rim = ring(end, ny);
    const uint16_t centre = Add(base + glm::vec3(0, end * height, 0), {0, ny, 0}, {0.5f, 0.5f},
                                {1, 0, 0});
    for (int s = 0; s < slices; ++s) {
      const uint16_t a = static_cast<uint16_t>(rim + s), b = static_cast<uint16_t>(a + 1);
      if (ny > 0) {
        indices_.insert(indices_.end(), {centre, b, a});
      } else {
        indices_.insert(indices_.end(), {centre, a, b});
      }
    }
  }
}

void MeshBuilder::Ellipsoid(const glm::vec3& center, const glm::vec3& radii,
                            const std::function<float(const glm::vec3&)>& bump, int slices,
                            int stacks) {
  const uint16_t first = static_cast<uint16_t>(vertices_.size());
  const auto point = [&](float phi, float theta) {
    const glm::vec3 dir(std::sin(phi) * std::cos(theta), std::cos(phi),
                        std::sin(phi) * std::sin(theta));
    return center + dir * radii * bump(dir);
  };
  for (int i = 0; i <= stacks; ++i) {
    const float phi = kPi * static_cast<float>(i) / static_cast<float>(stacks);
    for (int s = 0; s <= slices; ++s) {
      const float theta = 2.0f * kPi * static_cast<float>(s) / static_cast<float>(slices);
      // Normals from neighbouring points, so the bumps shade as bumps.
      const float e = 0.01f;
      const glm::vec3 p = point(phi, theta);
      const glm::vec3 dTheta = point(phi, theta + e) - point(phi, theta - e);
      const glm::vec3 dPhi = point(phi + e, theta) - point(phi - e, theta);
      glm::vec3 n = glm::cross(dTheta, dPhi);
      const glm::vec3 outward = p - center;
      if (glm::length(n) < 1e-6f) n = outward;
      if (glm::dot(n, outward) < 0.0f) n = -n;
      const glm::vec3 tangent = glm::length(dTheta) > 1e-6f ? glm::normalize(dTheta) : glm::vec3(1, 0, 0);
      Add(p, glm::normalize(n),
          {static_cast<float>(s) / static_cast<float>(slices),
           static_cast<float>(i) / static_cast<float>(stacks)},
          tangent);
    }
  }
  const int row = slices + 1;
  for (int i = 0; i < stacks; ++i) {
    for (int s = 0; s < slices; ++s) {
      const uint16_t a = static_cast<uint16_t>(first + i * row + s), b = static_cast<uint16_t>(a + 1);
      const uint16_t d = static_cast<uint16_t>(a + row), c = static_cast<uint16_t>(d + 1);
      Quad(a, b, c, d);
    }
  }
}

models::StaticModelData MeshBuilder::Static(std::vector<models::ModelMaterial> materials) const {
  MeshBuilder copy = *this;
  copy.CloseSubset();
  models::StaticModelData model;
  model.vertices = copy.vertices_;
  model.indices = copy.indices_;
  model.subsets = copy.subsets_;
  model.materials = std::move(materials);
  return model;
}

models::SkinnedModelData MeshBuilder::Skinned(std::vector<models::ModelMaterial> materials) const {
  const models::StaticModelData plain = Static(std::move(materials));
  models::SkinnedModelData model;
  for (size_t i = 0; i < plain.vertices.size(); ++i) {
    const models::StaticVertex& v = plain.vertices[i];
    models::SkinnedVertex s;
    s.position = v.position;
    s.normal = v.normal;
    s.texC = v.texC;
    s.tangent = v.tangent;
    s.weights[0] = 1.0f;
    s.boneIndices[0] = bones_[i];
    model.vertices.push_back(s);
  }
  model.indices = plain.indices;
  model.subsets = plain.subsets;
  model.materials = plain.materials;
  return model;
}

}  // namespace grindle::modelgen

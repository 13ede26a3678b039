// Builds model geometry from simple solids (boxes, lathed profiles, bumpy ellipsoids) one subset at
// a time, each vertex remembering the bone it belongs to, so the same parts make static props and
// rigidly skinned characters. Used only by the content generator.
#pragma once

#include <functional>
#include <glm/vec3.hpp>
#include <vector>

#include "Graphics/Loader/ModelData.h"

namespace grindle::modelgen {

class MeshBuilder {
 public:
  // Faces added from now on form a new subset drawn with `material`.
  void BeginSubset(int material);
  // Vertices added from now on follow `bone` (skinned models only).
  void SetBone(int bone) { bone_ = bone; }

  void Box(const glm::vec3& center, const glm::vec3& half);
  // A solid of revolution about the y axis through `base`: radius(t) for t in 0..1 over `height`,
  // closed with flat caps.
  void Lathe(const glm::vec3& base, float height, const std::function<float(float)>& radius,
             int slices, int stacks);
  // An ellipsoid whose surface is pushed out by bump(direction) (1 for none).
  void Ellipsoid(const glm::vec3& center, const glm::vec3& radii,
                 const std::function<float(const glm::vec3&)>& bump, int slices, int stacks);

  models::StaticModelData Static(std::vector<models::ModelMaterial> materials) const;
  models::SkinnedModelData Skinned(std::vector<models::ModelMaterial> materials) const;

 private:
  uint16_t Add(const glm::vec3& p, const glm::vec3& n, const glm::vec2& uv, const glm::vec3& t);
  void Quad(uint16_t a, uint16_t b, uint16_t c, uint16_t d);
  void CloseSubset();

  std::vector<models::StaticVertex> vertices_;
  std::vector<int> bones_;
  std::vector<uint16_t> indices_;
  std::vector<models::Subset> subsets_;
  int bone_ = 0;
};

models::ModelMaterial Colour(const glm::vec3& diffuse, float specularPower,
                             const char* texture = models::kNoTexture);

}  // namespace grindle::modelgen

#include "Graphics/Meshes/MeshDrawInputs.h"

#include <glm/gtc/matrix_transform.hpp>

#include "Core/Database.h"
#include "Core/DatabaseNumbers.h"
#include "Core/MathTypes.h"
#include "Core/WellKnownKeys.h"

namespace grindle {
namespace {

// Files and scripts write numbers as doubles, code may store the other numeric kinds.
bool IsSetFlag(const Database& db, WellKnown name) {
  return ReadNumber(db, KeyOf(name), 0.0) != 0.0;
}

// A colour or scale, written in level files either as `vec4` (w left 0) or as `xmfloat4`.
glm::vec4 FourFloats(const Database& db, WellKnown name) {
  if (const auto v = db.Find<Vector4>(KeyOf(name))) return {v->x, v->y, v->z, v->w};
  return *db.Find<glm::vec4>(KeyOf(name));
}

float Narrow(const Database& db, WellKnown name) {
  return static_cast<float>(*db.Find<double>(KeyOf(name)));
}

}  // namespace

glm::mat4 ReadWorldMatrix(const Database& object) {
  const Database& transform = *object.Find<Database>(KeyOf(WellKnown::Transform));
  const glm::vec3 position(Narrow(transform, WellKnown::PositionX),
                           Narrow(transform, WellKnown::PositionY),
                           Narrow(transform, WellKnown::PositionZ));
  const glm::mat4& rotation = *transform.Find<glm::mat4>(KeyOf(WellKnown::Rotation));
  const glm::vec4 scale = FourFloats(transform, WellKnown::Scale);
  // A GLM matrix holds a row-vector matrix row by row, so the product S x R x T reads T * R * S.
  return glm::translate(glm::mat4(1.0f), position) * rotation *
         glm::scale(glm::mat4(1.0f), glm::vec3(scale));
}

glm::mat4 ReadTextureTransform(const Database& object) {
  const auto textureTransform = object.Find<Database>(KeyOf(WellKnown::TextureTransform));
  if (!textureTransform) {
    // Kept: untransformed objects have always shown their textures tiled 1.5 times.
    return glm::scale(glm::mat4(1.0f), glm::vec3(1.5f));
  }
  const Database& t = *textureTransform;
  const glm::vec3 scale(Narrow(t, WellKnown::scaleU), Narrow(t, WellKnown::scaleV), 1.0f);
  const glm::vec3 offset(Narrow(t, WellKnown::translateU), Narrow(t, WellKnown::translateV), 0.0f);
  // Scale first, then translate: offsets are in texture units whatever the tiling.
  return glm::translate(glm::mat4(1.0f), offset) * glm::scale(glm::mat4(1.0f), scale);
}

LitTechniqueChoice ChooseLitTechnique(const Database& meshComponent) {
  using gfx::LitTech;
  LitTechniqueChoice choice;
  const uint32_t hasTextureKey = KeyOf(WellKnown::HasTexture);
  const std::optional<double> number = FindNumber(meshComponent, hasTextureKey);
  // Absent, it is read all the same, which stops the program with the null-handle assertion.
  const double hasTexture = number ? *number : *meshComponent.Find<double>(hasTextureKey);
  if (hasTexture == 0.0) return choice;

  const auto name = [&meshComponent](WellKnown key) {
    return meshComponent.Find<std::string>(KeyOf(key)).operator->();
  };
  choice.diffuseMap = name(WellKnown::TextureName);
  const bool specular = IsSetFlag(meshComponent, WellKnown::HasSpecularMap);
  const bool normal = IsSetFlag(meshComponent, WellKnown::HasNormalMap);
  if (specular) choice.specularMap = name(WellKnown::SpecularMapName);
  if (normal) choice.normalMap = name(WellKnown::NormalMapName);
  choice.technique = specular && normal ? LitTech::D3D10_Tex_Spec_Norm
                     : specular         ? LitTech::D3D10_Tex_Spec
                     : normal           ? LitTech::D3D10_Tex_Norm
                                        : LitTech::D3D10_Tex;
  return choice;
}

MaterialBlock ReadMaterial(const Database& object) {
  const Database& material = *object.Find<Database>(KeyOf(WellKnown::Material));
  return {FourFloats(material, WellKnown::Ambient), FourFloats(material, WellKnown::Diffuse),
          FourFloats(material, WellKnown::Specular)};
}

float ReadShadowFlag(const Database& object) {
  static const uint32_t kIgnoreShadows = HashValue("IgnoreShadows");
  return object.FindEntry(kIgnoreShadows) != nullptr ? 0.0f : 1.0f;
}

std::optional<glm::vec4> ReadGlowColour(const Database& object) {
  const auto glow = object.Find<Database>(KeyOf(WellKnown::Glow));
  if (!glow) return std::nullopt;
  return glm::vec4(Narrow(*glow, WellKnown::r), Narrow(*glow, WellKnown::g),
                   Narrow(*glow, WellKnown::b), 1.0f);
}

}  // namespace grindle

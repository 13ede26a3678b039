// What the mesh passes read from a game object and its `Mesh` component each frame: the world
// and texture matrices, the technique with its texture maps, the 64-byte material, the shadow and
// glow settings. Pure reads of the database, main thread (the database has no lock). Required
// entries (`Transform` with its position, `Rotation` and `Scale`, `Material`, `HasTexture`) are
// dereferenced without a test: a missing one stops the program with the null-handle assertion.
#pragma once

#include <glm/mat4x4.hpp>
#include <glm/vec4.hpp>
#include <optional>
#include <string>

#include "Graphics/Effects/EffectWrappers.h"

namespace grindle {

class Database;

// The lighting shaders' material block: three colours and a fourth vector objects never supply.
struct MaterialBlock {
  glm::vec4 ambient;
  glm::vec4 diffuse;
  glm::vec4 specular;
  glm::vec4 reflect{0.0f};
};
static_assert(sizeof(MaterialBlock) == 64);

// The lit technique and the texture names it binds; a name is null when the technique does not
// use that map. The names point into the component and are valid until it changes.
struct LitTechniqueChoice {
  gfx::LitTech technique = gfx::LitTech::D3D10_NoTextures;
  const std::string* diffuseMap = nullptr;
  const std::string* specularMap = nullptr;
  const std::string* normalMap = nullptr;
};

// Row-vector matrices as the shaders take them: scaling x `Rotation` x translation.
glm::mat4 ReadWorldMatrix(const Database& object);
// `TextureTransform` when present, else the deliberate default that tiles textures 1.5 times.
glm::mat4 ReadTextureTransform(const Database& object);
LitTechniqueChoice ChooseLitTechnique(const Database& meshComponent);
MaterialBlock ReadMaterial(const Database& object);
// 0 when the object holds `IgnoreShadows` (of any kind), else 1.
float ReadShadowFlag(const Database& object);
// (Glow.r, Glow.g, Glow.b, 1) when the object has a `Glow` database, else nothing.
std::optional<glm::vec4> ReadGlowColour(const Database& object);

}  // namespace grindle

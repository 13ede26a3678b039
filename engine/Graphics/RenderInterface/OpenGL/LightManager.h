// Lights of the current level and their shadow maps, and the sky dome. Reads `Light` components of
// the objects it was told about (falling back to the default lights slot by slot), renders one
// depth map per light with the mesh pass's shadow casters, uploads lights and shadow data to the
// lit effects, and draws the sky. Main thread, GL context current; the renderer owns the one
// instance. It keeps object names, never handles, so a level unloading under it cannot dangle.
#pragma once

#include <array>
#include <glm/mat4x4.hpp>
#include <glm/vec2.hpp>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "Core/DataHandle.h"
#include "Graphics/RenderInterface/OpenGL/Lights.h"
#include "Graphics/RenderInterface/OpenGL/RenderTarget.h"
#include "Graphics/RenderInterface/OpenGL/SkyDome.h"

namespace grindle {
class Database;
}

namespace grindle::gfx {

class MeshPass;
class ModelManager;
class RenderDevice;

inline constexpr int kDirectionalShadowSize = 1024;
inline constexpr int kSpotShadowSize = 512;
// An object holding an entry of this name (any kind) asks for the sky dome in its level.
inline constexpr std::string_view kSkyEntry = "Sky";
// A `Light` entry (number, 1 or 0) saying whether the light casts shadows; without it the light
// keeps its slot's default (only the first directional light casts).
inline constexpr std::string_view kCastsShadowEntry = "CastsShadow";

class LightManager {
 public:
  LightManager(Database& root, RenderDevice& device);

  // Remembers objects with a `Light` component, and those that ask for the sky.
  void AddObject(const Database& object, std::string_view objectName);
  void RemoveObject(std::string_view objectName);
  bool HasObject(std::string_view objectName) const {
    return lightObjects_.count(std::string(objectName)) != 0;
  }

  // Rebuilds the light set from the defaults and the current level's light objects, then the
  // view-projection of every shadow-casting light around `focus`.
  void Update(const glm::vec3& focus);
  // Either caster source may be null.
  void RenderShadowMaps(MeshPass* meshes, ModelManager* models);
  // Uploads lights and shadow data to the lit effects and draws the sky dome around the eye.
  void Apply(const glm::vec3& eye, const glm::mat4& viewProj);

  LightSet& Lights() { return lights_; }
  const LightSet& DefaultSet() const { return defaults_; }
  // Degrees; the sky turns with the first.
  void SetAnimationAngles(float first, float second) { angles_ = {first, second}; }
  // The first spot light's x and z as the tracked object sets them (its height stays).
  void SetTrackedSpotPosition(float x, float z);

 private:
  void ReadLight(const Database& object, const Database& light, int& nextDirectional,
                 int& nextSpot);

  Database& root_;
  RenderDevice& device_;
  LightSet defaults_;
  LightSet lights_;
  std::set<std::string> lightObjects_;
  std::set<std::string> skyObjects_;
  std::optional<glm::vec2> trackedSpot_;
  std::array<glm::mat4, kDirectionalLightCount> directionalViewProj_{};
  std::array<glm::mat4, kSpotLightCount> spotViewProj_{};
  std::array<RenderTarget, kDirectionalLightCount> directionalMaps_;
  std::array<RenderTarget, kSpotLightCount> spotMaps_;
  std::array<float, 2> angles_{};
  SkyDome sky_;
};

}  // namespace grindle::gfx

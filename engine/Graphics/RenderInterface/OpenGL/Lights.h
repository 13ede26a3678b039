// The light records the lit effects read through their untyped light blocks (std140 layout, hence
// the explicit padding) and the default lights used where a level supplies none. Plain data, any
// thread. Field order and sizes must match the structures in shaders/basic.fx.
#pragma once

#include <array>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

namespace grindle::gfx {

struct DirectionalLight {
  glm::vec4 ambient;
  glm::vec4 diffuse;
  glm::vec4 specular;
  glm::vec3 direction;
  float pad;
};
static_assert(sizeof(DirectionalLight) == 64);

struct SpotLight {
  glm::vec4 ambient;
  glm::vec4 diffuse;
  glm::vec4 specular;
  glm::vec3 position;
  float range;
  glm::vec3 direction;
  float spot;             // exponent
  glm::vec3 attenuation;  // constant, linear, quadratic
  float innerAngle;       // degrees
  float outerAngle;       // degrees
  float pad[3];
};
static_assert(sizeof(SpotLight) == 112);

inline constexpr int kDirectionalLightCount = 3;
inline constexpr int kSpotLightCount = 2;

struct LightSet {
  std::array<DirectionalLight, kDirectionalLightCount> directional;
  std::array<SpotLight, kSpotLightCount> spot;
  // 1 where the light casts shadows (the shaders' per-light flags). By default only the first
  // directional light does: five casting lights would give every object five shadows.
  std::array<float, kDirectionalLightCount> directionalCasts{1.0f, 0.0f, 0.0f};
  std::array<float, kSpotLightCount> spotCasts{0.0f, 0.0f};
};

inline LightSet DefaultLights() {
  LightSet lights{};
  lights.directional[0] = {{0.3f, 0.3f, 0.3f, 1},
                           {0.7f, 0.7f, 0.7f, 1},
                           {0.5f, 0.5f, 0.5f, 1},
                           {0.57735f, -0.57735f, 0.57735f},
                           0};
  lights.directional[1] = {{0, 0, 0, 1},
                           {0.3f, 0.3f, 0.3f, 1},
                           {0.25f, 0.25f, 0.25f, 1},
                           {-0.57735f, -0.57735f, 0.57735f},
                           0};
  lights.directional[2] = {
      {0, 0, 0, 1}, {0.5f, 0.5f, 0.5f, 1}, {0, 0, 0, 1}, {0.0f, -0.707f, -0.707f}, 0};
  lights.spot[0] = {{0, 0, 0, 1},
                    {1, 0.4f, 0, 1},
                    {1, 0.4f, 0, 1},
                    {0, 40, 0},
                    200,
                    {0, -1, 0},
                    64,
                    {1, 0, 0},
                    20,
                    45,
                    {0, 0, 0}};
  lights.spot[1] = {{0, 0, 0, 1},
                    {0.5f, 0.5f, 0.5f, 1},
                    {0.5f, 0.5f, 0.5f, 1},
                    {0, 40, 0},
                    200,
                    {0, -1, 0},
                    64,
                    {1, 0, 0},
                    25,
                    75,
                    {0, 0, 0}};
  return lights;
}

}  // namespace grindle::gfx

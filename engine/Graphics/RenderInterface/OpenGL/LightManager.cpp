#include "Graphics/RenderInterface/OpenGL/LightManager.h"

#include <cmath>
#include <glm/geometric.hpp>
#include <glm/trigonometric.hpp>
#include <string>

#include "Core/Database.h"
#include "Core/KeyInterning.h"
#include "Core/WellKnownKeys.h"
#include "Core/DatabaseNumbers.h"
#include "Graphics/RenderInterface/OpenGL/LevelLookup.h"
#include "Graphics/RenderInterface/OpenGL/MeshPass.h"
#include "Graphics/RenderInterface/OpenGL/Models/ModelManager.h"
#include "Graphics/RenderInterface/OpenGL/RenderDevice.h"
#include "Graphics/RenderInterface/OpenGL/RenderMath.h"
#include "Graphics/RenderInterface/OpenGL/RenderStates.h"

namespace grindle::gfx {

namespace {

// Half the side of the square a directional light's shadow map covers around the focus point.
constexpr float kDirectionalShadowExtent = 60.0f;
constexpr float kDirectionalShadowDistance = 200.0f;

glm::vec3 ReadDirection(const Database& light, const glm::vec3& fallback) {
  return {static_cast<float>(ReadDouble(light, KeyOf(WellKnown::DirectionX), fallback.x)),
          static_cast<float>(ReadDouble(light, KeyOf(WellKnown::DirectionY), fallback.y)),
          static_cast<float>(ReadDouble(light, KeyOf(WellKnown::DirectionZ), fallback.z))};
}

// "Directional"/"Spot" in any case, or 0 / 1.
bool IsSpotLight(const Database& light) {
  if (const DataHandle<std::string> type = light.Find<std::string>(KeyOf(WellKnown::type))) {
    return type->size() == 4 && (type->at(0) == 'S' || type->at(0) == 's');
  }
  return ReadDouble(light, KeyOf(WellKnown::type), 0.0) == 1.0;
}

glm::mat4 ShadowViewProj(const glm::vec3& eye, const glm::vec3& direction,
                         const glm::mat4& projection) {
  const glm::vec3 up = std::abs(direction.y) > 0.99f ? glm::vec3(0, 0, 1) : glm::vec3(0, 1, 0);
  return projection * LookAtMatrix(eye, direction, up);
}

}  // namespace

LightManager::LightManager(Database& root, RenderDevice& device)
    : root_(root), device_(device), defaults_(DefaultLights()), lights_(defaults_), sky_(device) {
  for (RenderTarget& map : directionalMaps_)
    map.Create(kDirectionalShadowSize, kDirectionalShadowSize, {.colour = false});
  for (RenderTarget& map : spotMaps_)
    map.Create(kSpotShadowSize, kSpotShadowSize, {.colour = false});
}

void LightManager::AddObject(const Database& object, std::string_view objectName) {
  if (object.Find<Database>(KeyOf(WellKnown::Light))) lightObjects_.insert(std::string(objectName));
  if (object.FindEntry(kSkyEntry) != nullptr) skyObjects_.insert(std::string(objectName));
}

void LightManager::RemoveObject(std::string_view objectName) {
  lightObjects_.erase(std::string(objectName));
  skyObjects_.erase(std::string(objectName));
}

void LightManager::SetTrackedSpotPosition(float x, float z) { trackedSpot_ = glm::vec2(x, z); }

void LightManager::ReadLight(const Database& object, const Database& light, int& nextDirectional,
                             int& nextSpot) {
  const auto color = [&](WellKnown key, const glm::vec4& fallback) {
    return ReadFour(light, KeyOf(key)).value_or(fallback);
  };
  static const uint32_t castsShadowKey = HashValue(kCastsShadowEntry);
  const auto casts = [&](float fallback) {
    return ReadDouble(light, castsShadowKey, fallback) != 0.0 ? 1.0f : 0.0f;
  };
  if (!IsSpotLight(light)) {
    if (nextDirectional >= kDirectionalLightCount) return;
    const auto slot = static_cast<size_t>(nextDirectional++);
    lights_.directionalCasts[slot] = casts(lights_.directionalCasts[slot]);
    DirectionalLight& target = lights_.directional[slot];
    target.ambient = color(WellKnown::Ambient, target.ambient);
    target.diffuse = color(WellKnown::Diffuse, target.diffuse);
    target.specular = color(WellKnown::Specular, target.specular);
    target.direction = glm::normalize(ReadDirection(light, target.direction));
    return;
  }
  if (nextSpot >= kSpotLightCount) return;
  const auto slot = static_cast<size_t>(nextSpot++);
  lights_.spotCasts[slot] = casts(lights_.spotCasts[slot]);
  SpotLight& target = lights_.spot[slot];
  target.ambient = color(WellKnown::Ambient, target.ambient);
  target.diffuse = color(WellKnown::Diffuse, target.diffuse);
  target.specular = color(WellKnown::Specular, target.specular);
  target.direction = glm::normalize(ReadDirection(light, target.direction));
  target.range = static_cast<float>(ReadDouble(light, KeyOf(WellKnown::Range), target.range));
  target.spot = static_cast<float>(ReadDouble(light, KeyOf(WellKnown::SpotExponent), target.spot));
  target.innerAngle =
      static_cast<float>(ReadDouble(light, KeyOf(WellKnown::SpotInnerAngle), target.innerAngle));
  target.outerAngle =
      static_cast<float>(ReadDouble(light, KeyOf(WellKnown::SpotOuterAngle), target.outerAngle));
  if (const auto attenuation = ReadFour(light, KeyOf(WellKnown::Attenuation))) {
    target.attenuation = glm::vec3(*attenuation);
  } else {
    target.attenuation.x =
        static_cast<float>(ReadDouble(light, KeyOf(WellKnown::Attenuation), target.attenuation.x));
  }
  // A spot light sits at its object plus the offset.
  glm::vec3 position = target.position;
  if (const DataHandle<Database> transform = object.Find<Database>(KeyOf(WellKnown::Transform))) {
    position = {static_cast<float>(ReadDouble(*transform, KeyOf(WellKnown::PositionX), 0.0)),
                static_cast<float>(ReadDouble(*transform, KeyOf(WellKnown::PositionY), 0.0)),
                static_cast<float>(ReadDouble(*transform, KeyOf(WellKnown::PositionZ), 0.0))};
  }
  target.position =
      position +
      glm::vec3(static_cast<float>(ReadDouble(light, KeyOf(WellKnown::PositionOffsetX), 0.0)),
                static_cast<float>(ReadDouble(light, KeyOf(WellKnown::PositionOffsetY), 0.0)),
                static_cast<float>(ReadDouble(light, KeyOf(WellKnown::PositionOffsetZ), 0.0)));
}

void LightManager::Update(const glm::vec3& focus) {
  lights_ = defaults_;
  int nextDirectional = 0;
  int nextSpot = 0;
  if (const Database* objects = FindCurrentGameObjects(root_)) {
    for (const std::string& name : lightObjects_) {
      const DataHandle<Database> object = objects->Find<Database>(name);
      if (!object) continue;
      if (const DataHandle<Database> light = object->Find<Database>(KeyOf(WellKnown::Light))) {
        ReadLight(*object, *light, nextDirectional, nextSpot);
      }
    }
  }
  if (trackedSpot_) {
    lights_.spot[0].position.x = trackedSpot_->x;
    lights_.spot[0].position.z = trackedSpot_->y;
  }
  const glm::mat4 directionalProjection =
      OrthographicMatrix(2.0f * kDirectionalShadowExtent, 2.0f * kDirectionalShadowExtent);
  for (int i = 0; i < kDirectionalLightCount; ++i) {
    const glm::vec3 direction = lights_.directional[static_cast<size_t>(i)].direction;
    directionalViewProj_[static_cast<size_t>(i)] = ShadowViewProj(
        focus - direction * kDirectionalShadowDistance, direction, directionalProjection);
  }
  for (int i = 0; i < kSpotLightCount; ++i) {
    const SpotLight& spot = lights_.spot[static_cast<size_t>(i)];
    const float cone = glm::radians(std::min(2.0f * spot.outerAngle, 170.0f));
    spotViewProj_[static_cast<size_t>(i)] =
        ShadowViewProj(spot.position, spot.direction, PerspectiveMatrix(cone, 1.0f));
  }
}

void LightManager::RenderShadowMaps(MeshPass* meshes, ModelManager* models) {
  if (!device_.SceneShadersLoaded()) return;
  const auto render = [&](RenderTarget& map, const glm::mat4& viewProj) {
    map.Begin();
    ResetRenderStates();
    SetRasterizerState(kRasterShadow);
    if (meshes != nullptr) meshes->DrawShadowCasters(viewProj);
    if (models != nullptr) models->DrawShadowCasters(viewProj);
    map.End(device_.Copier());
  };
  // A light that casts no shadow costs no shadow map.
  for (size_t i = 0; i < kDirectionalLightCount; ++i) {
    if (lights_.directionalCasts[i] != 0.0f) render(directionalMaps_[i], directionalViewProj_[i]);
  }
  for (size_t i = 0; i < kSpotLightCount; ++i) {
    if (lights_.spotCasts[i] != 0.0f) render(spotMaps_[i], spotViewProj_[i]);
  }
  ResetRenderStates();
}

void LightManager::Apply(const glm::vec3& eye, const glm::mat4& viewProj) {
  const auto& directionalCasts = lights_.directionalCasts;
  const auto& spotCasts = lights_.spotCasts;
  const auto upload = [&](auto* effect, auto var) {
    using Var = decltype(var);
    if (effect == nullptr) return;
    effect->SetRaw(effect->Var(Var::gDirLights), lights_.directional.data(),
                   sizeof(lights_.directional));
    effect->SetRaw(effect->Var(Var::gSpotLights), lights_.spot.data(), sizeof(lights_.spot));
    effect->SetMatrixArray(effect->Var(Var::gDirShadowTransforms), directionalViewProj_.data(),
                           kDirectionalLightCount);
    effect->SetMatrixArray(effect->Var(Var::gSpotShadowTransforms), spotViewProj_.data(),
                           kSpotLightCount);
    // The lit effects look up only casting lights' maps; the others stay unmade and unbound.
    for (uint32_t i = 0; i < kDirectionalLightCount; ++i) {
      const GLuint map = directionalCasts[i] != 0.0f ? directionalMaps_[i].DepthTexture() : 0;
      effect->SetTexture(effect->Var(Var::gDirShadowMaps), map, i);
    }
    for (uint32_t i = 0; i < kSpotLightCount; ++i) {
      const GLuint map = spotCasts[i] != 0.0f ? spotMaps_[i].DepthTexture() : 0;
      effect->SetTexture(effect->Var(Var::gSpotShadowMaps), map, i);
    }
    effect->SetRaw(effect->Var(Var::gDirFloateans), directionalCasts.data(),
                   sizeof(directionalCasts));
    effect->SetRaw(effect->Var(Var::gSpotFloateans), spotCasts.data(), sizeof(spotCasts));
  };
  EffectSlots& effects = device_.Effects();
  upload(effects.basic.get(), BasicVar{});
  upload(effects.normalMap.get(), SkinnedVar{});
  upload(effects.instanced.get(), InstancedVar{});

  // The sky belongs to levels that ask for it with an object carrying a `Sky` entry.
  if (const Database* objects = FindCurrentGameObjects(root_)) {
    for (const std::string& name : skyObjects_) {
      if (objects->FindEntry(name) != nullptr) {
        sky_.Draw(eye, viewProj, angles_[0]);
        break;
      }
    }
  }
}

}  // namespace grindle::gfx

#include "Props.h"

#include <cmath>

#include "MeshBuilder.h"

namespace grindle::modelgen {

models::StaticModelData MakeCrate() {
  MeshBuilder mesh;
  mesh.BeginSubset(0);
  mesh.Box({0, 0, 0}, {0.5f, 0.5f, 0.5f});
  return mesh.Static({Colour({1, 1, 1}, 8.0f, "Crate.png")});
}

models::StaticModelData MakeBarrel() {
  const float height = 1.2f;
  const glm::vec3 base(0, -0.6f, 0);
  MeshBuilder mesh;
  mesh.BeginSubset(0);
  mesh.Lathe(base, height, [](float t) { return 0.42f + 0.08f * std::sin(3.14159265f * t); }, 20, 6);
  mesh.BeginSubset(1);
  for (const float t : {0.12f, 0.88f}) {
    const float r = 0.43f + 0.08f * std::sin(3.14159265f * t);
    mesh.Lathe(base + glm::vec3(0, t * height - 0.03f, 0), 0.06f, [r](float) { return r + 0.015f; },
               20, 1);
  }
  return mesh.Static({Colour({0.55f, 0.33f, 0.16f}, 8.0f), Colour({0.25f, 0.25f, 0.28f}, 48.0f)});
}

models::StaticModelData MakePillar() {
  MeshBuilder mesh;
  mesh.BeginSubset(0);
  mesh.Box({0, -1.85f, 0}, {0.55f, 0.15f, 0.55f});
  mesh.Box({0, 1.85f, 0}, {0.55f, 0.15f, 0.55f});
  mesh.Lathe({0, -1.7f, 0}, 3.4f, [](float t) { return 0.38f - 0.05f * t; }, 16, 4);
  return mesh.Static({Colour({0.82f, 0.8f, 0.74f}, 16.0f, "FloorTiles.png")});
}

models::StaticModelData MakePotato() {
  MeshBuilder mesh;
  mesh.BeginSubset(0);
  // Fixed low-frequency waves make the lumps; no randomness, so the file never changes.
  const auto lumps = [](const glm::vec3& d) {
    return 1.0f + 0.08f * std::sin(5.0f * d.x + 1.3f) * std::sin(4.0f * d.y + 0.7f) +
           0.06f * std::sin(7.0f * d.z + 2.1f) * std::cos(3.0f * d.x) + 0.04f * std::sin(9.0f * d.y);
  };
  mesh.Ellipsoid({0, 0, 0}, {0.55f, 0.4f, 0.42f}, lumps, 24, 14);
  mesh.BeginSubset(1);
  mesh.Lathe({0.05f, 0.34f, 0}, 0.28f, [](float t) { return 0.045f - 0.02f * t; }, 8, 2);
  return mesh.Static({Colour({0.78f, 0.6f, 0.33f}, 6.0f), Colour({0.12f, 0.1f, 0.08f}, 4.0f)});
}

}  // namespace grindle::modelgen

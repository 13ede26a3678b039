// The names a `Mesh` component's `Filename` may hold, each bound to one generator and its fixed
// arguments, and the debug mesh. Pure functions, any thread. An unknown name stops the program
// with the engine's assertion: level data must only name the primitives listed here.
#pragma once

#include <string_view>

#include "Graphics/Meshes/MeshVertex.h"

namespace grindle {

inline constexpr std::string_view kDebugMeshName = "NoFile:DebugMesh";

// "Grid.mesh", "Box.mesh", "Sphere.mesh", "CubeMap.mesh" (the sky dome) or "Cylinder.mesh".
MeshData BuildPrimitive(std::string_view name);

// A 2 x 2 x 2 box reduced to positions, coloured translucent green, for debug lines.
DebugMeshData BuildDebugMesh();

}  // namespace grindle

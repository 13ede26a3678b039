// Generators of the procedural primitives: grid, box, sphere and cylinder, centred on the origin
// with y up. Pure functions, any thread. Normals are unit length and point away from the solid;
// tangents follow the direction in which the texture's u grows.
#pragma once

#include <cstdint>

#include "Graphics/Meshes/MeshVertex.h"

namespace grindle {

// A flat grid in the XZ plane facing +y, rows x columns vertices (both at least 2).
MeshData CreateGrid(float width, float depth, uint32_t rows, uint32_t columns);

// An axis-aligned box; each face has its own four vertices so that its normals stay flat.
MeshData CreateBox(float width, float height, float depth);

// A UV sphere: one vertex at each pole and stacks - 1 rings of slices + 1 vertices (the seam is
// doubled so that u runs 0..1 around it). Needs slices >= 3 and stacks >= 2.
MeshData CreateSphere(float radius, uint32_t slices, uint32_t stacks);

// A capped cylinder (a truncated cone when the radii differ) from y = -height/2 to +height/2,
// its side split into `stacks` bands. Needs slices >= 3 and stacks >= 1.
MeshData CreateCylinder(float bottomRadius, float topRadius, float height, uint32_t slices,
                        uint32_t stacks);

}  // namespace grindle

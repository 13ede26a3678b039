#include "Graphics/Meshes/PrimitiveCatalogue.h"

#include "Core/Assert.h"
#include "Graphics/Meshes/PrimitiveGenerators.h"

namespace grindle {

MeshData BuildPrimitive(std::string_view name) {
  if (name == "Grid.mesh") return CreateGrid(1.0f, 1.0f, 2, 2);
  if (name == "Box.mesh") return CreateBox(1.0f, 1.0f, 1.0f);
  if (name == "Sphere.mesh") return CreateSphere(1.0f, 20, 20);
  if (name == "CubeMap.mesh") return CreateSphere(20.0f, 30, 30);
  if (name == "Cylinder.mesh") return CreateCylinder(1.0f, 1.0f, 1.0f, 30, 1);
  // The wording is historical: only the names above have ever been supported.
  GRINDLE_ASSERT(true,
                 "This is for user generated mesh data at the moment and you can only allocate a "
                 "grid!");
  return {};
}

DebugMeshData BuildDebugMesh() {
  const MeshData box = CreateBox(2.0f, 2.0f, 2.0f);
  DebugMeshData mesh;
  mesh.vertices.reserve(box.vertices.size());
  for (const GeneratedVertex& vertex : box.vertices) {
    mesh.vertices.push_back({vertex.position, {0.0f, 1.0f, 0.0f, 0.2f}});
  }
  mesh.indices = box.indices;
  return mesh;
}

}  // namespace grindle

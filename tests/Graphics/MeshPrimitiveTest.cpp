// The generated primitives: sizes that follow from their parameters, unit normals and tangents,
// outward winding, tangents along u, bounds, and the names a level may use.
#include <gtest/gtest.h>

#include <glm/geometric.hpp>

#include "Graphics/Meshes/PrimitiveCatalogue.h"
#include "Graphics/Meshes/PrimitiveGenerators.h"
#include "TestOutput.h"

namespace grindle {
namespace {

constexpr float kTolerance = 1e-4f;

struct Bounds {
  glm::vec3 min{1e9f}, max{-1e9f};
};

Bounds BoundsOf(const MeshData& mesh) {
  Bounds b;
  for (const GeneratedVertex& v : mesh.vertices) {
    b.min = glm::min(b.min, v.position);
    b.max = glm::max(b.max, v.position);
  }
  return b;
}

void ExpectBounds(const MeshData& mesh, const glm::vec3& halfExtents) {
  const Bounds b = BoundsOf(mesh);
  for (int axis = 0; axis < 3; ++axis) {
    EXPECT_NEAR(b.min[axis], -halfExtents[axis], kTolerance) << "axis " << axis;
    EXPECT_NEAR(b.max[axis], halfExtents[axis], kTolerance) << "axis " << axis;
  }
}

// What every generator promises, whatever its shape.
void ExpectWellFormed(const MeshData& mesh) {
  ASSERT_EQ(mesh.indices.size() % 3, 0u);
  for (uint32_t index : mesh.indices) ASSERT_LT(index, mesh.vertices.size());
  for (const GeneratedVertex& v : mesh.vertices) {
    EXPECT_NEAR(glm::length(v.normal), 1.0f, kTolerance);
    EXPECT_NEAR(glm::length(v.tangent), 1.0f, kTolerance);
    EXPECT_NEAR(glm::dot(v.normal, v.tangent), 0.0f, kTolerance);
    EXPECT_GE(v.texCoord.x, 0.0f);
    EXPECT_LE(v.texCoord.x, 1.0f);
    EXPECT_GE(v.texCoord.y, 0.0f);
    EXPECT_LE(v.texCoord.y, 1.0f);
  }
  int inward = 0, againstU = 0;
  for (size_t i = 0; i < mesh.indices.size(); i += 3) {
    const GeneratedVertex& a = mesh.vertices[mesh.indices[i]];
    const GeneratedVertex& b = mesh.vertices[mesh.indices[i + 1]];
    const GeneratedVertex& c = mesh.vertices[mesh.indices[i + 2]];
    const glm::vec3 e1 = b.position - a.position, e2 = c.position - a.position;
    const glm::vec3 face = glm::cross(e1, e2);
    ASSERT_GT(glm::length(face), 0.0f) << "degenerate triangle " << i / 3;
    // Counter-clockwise seen from outside: the face normal agrees with the vertex normals.
    if (glm::dot(face, a.normal + b.normal + c.normal) <= 0.0f) ++inward;
    // The direction in which u grows over the triangle must agree with the stored tangents.
    const glm::vec2 d1 = b.texCoord - a.texCoord, d2 = c.texCoord - a.texCoord;
    const float det = d1.x * d2.y - d2.x * d1.y;
    if (std::abs(det) > 1e-8f) {
      const glm::vec3 uDirection = (e1 * d2.y - e2 * d1.y) / det;
      if (glm::dot(uDirection, a.tangent + b.tangent + c.tangent) <= 0.0f) ++againstU;
    }
  }
  EXPECT_EQ(inward, 0) << "triangles wound inwards";
  EXPECT_EQ(againstU, 0) << "triangles whose tangents oppose u";
}

TEST(MeshPrimitiveTest, GridSpansItsSizeInTheXZPlane) {
  for (const auto& [rows, columns] : {std::pair{2u, 2u}, std::pair{3u, 5u}}) {
    SCOPED_TRACE(testing::Message() << rows << "x" << columns);
    const MeshData grid = CreateGrid(4.0f, 2.0f, rows, columns);
    ExpectWellFormed(grid);
    EXPECT_EQ(grid.vertices.size(), rows * columns);
    EXPECT_EQ(grid.indices.size(), (rows - 1) * (columns - 1) * 6);
    ExpectBounds(grid, {2.0f, 0.0f, 1.0f});
    for (const GeneratedVertex& v : grid.vertices) EXPECT_EQ(v.normal, glm::vec3(0, 1, 0));
  }
}

TEST(MeshPrimitiveTest, BoxHasFlatFacesOfFourVertices) {
  const MeshData box = CreateBox(2.0f, 4.0f, 6.0f);
  ExpectWellFormed(box);
  EXPECT_EQ(box.vertices.size(), 24u);
  EXPECT_EQ(box.indices.size(), 36u);
  ExpectBounds(box, {1.0f, 2.0f, 3.0f});
  // Each face's vertices lie on the plane its normal points out of.
  for (const GeneratedVertex& v : box.vertices) {
    const float extent = glm::dot(glm::abs(v.normal), glm::vec3(1.0f, 2.0f, 3.0f));
    EXPECT_NEAR(glm::dot(v.position, v.normal), extent, kTolerance);
  }
}

TEST(MeshPrimitiveTest, SphereVerticesLieOnItsSurface) {
  for (const auto& [radius, slices, stacks] :
       {std::tuple{1.0f, 20u, 20u}, std::tuple{3.0f, 7u, 2u}, std::tuple{20.0f, 30u, 30u}}) {
    SCOPED_TRACE(testing::Message() << radius << " " << slices << " " << stacks);
    const MeshData sphere = CreateSphere(radius, slices, stacks);
    ExpectWellFormed(sphere);
    EXPECT_EQ(sphere.vertices.size(), (stacks - 1) * (slices + 1) + 2);
    EXPECT_EQ(sphere.indices.size(), 6 * slices * (stacks - 1));
    for (const GeneratedVertex& v : sphere.vertices) {
      EXPECT_NEAR(glm::length(v.position), radius, radius * kTolerance);
      EXPECT_LT(glm::distance(v.position / radius, v.normal), kTolerance);
    }
    EXPECT_NEAR(BoundsOf(sphere).max.y, radius, kTolerance);
    EXPECT_NEAR(BoundsOf(sphere).min.y, -radius, kTolerance);
  }
}

TEST(MeshPrimitiveTest, CylinderSideKeepsItsRadiiAndCapsCloseIt) {
  for (const auto& [bottom, top, stacks] :
       {std::tuple{1.0f, 1.0f, 1u}, std::tuple{2.0f, 0.5f, 3u}}) {
    SCOPED_TRACE(testing::Message() << bottom << " " << top << " " << stacks);
    const uint32_t slices = 12;
    const MeshData cylinder = CreateCylinder(bottom, top, 4.0f, slices, stacks);
    ExpectWellFormed(cylinder);
    EXPECT_EQ(cylinder.vertices.size(), (stacks + 1) * (slices + 1) + 2 * (slices + 2));
    EXPECT_EQ(cylinder.indices.size(), 6 * slices * stacks + 6 * slices);
    const Bounds b = BoundsOf(cylinder);
    EXPECT_NEAR(b.min.y, -2.0f, kTolerance);
    EXPECT_NEAR(b.max.y, 2.0f, kTolerance);
    EXPECT_NEAR(b.max.x, std::max(bottom, top), kTolerance);
    for (const GeneratedVertex& v : cylinder.vertices) {
      const float along = (v.position.y + 2.0f) / 4.0f;
      const float radius = glm::length(glm::vec2(v.position.x, v.position.z));
      // Side vertices sit on the slanted wall; cap vertices on it or at the centre of a cap.
      const bool isCap = std::abs(v.normal.y) == 1.0f;
      if (!isCap) {
        EXPECT_NEAR(radius, bottom + (top - bottom) * along, kTolerance);
      }
    }
  }
}

TEST(MeshPrimitiveTest, NamedPrimitivesUseTheirFixedArguments) {
  ExpectBounds(BuildPrimitive("Grid.mesh"), {0.5f, 0.0f, 0.5f});
  EXPECT_EQ(BuildPrimitive("Grid.mesh").vertices.size(), 4u);
  ExpectBounds(BuildPrimitive("Box.mesh"), {0.5f, 0.5f, 0.5f});
  const MeshData sphere = BuildPrimitive("Sphere.mesh");
  EXPECT_EQ(sphere.vertices.size(), CreateSphere(1.0f, 20, 20).vertices.size());
  ExpectBounds(sphere, {1.0f, 1.0f, 1.0f});
  const MeshData sky = BuildPrimitive("CubeMap.mesh");
  EXPECT_EQ(sky.indices.size(), CreateSphere(20.0f, 30, 30).indices.size());
  EXPECT_NEAR(BoundsOf(sky).max.y, 20.0f, kTolerance);
  const MeshData cylinder = BuildPrimitive("Cylinder.mesh");
  EXPECT_EQ(cylinder.indices.size(), CreateCylinder(1.0f, 1.0f, 1.0f, 30, 1).indices.size());
  EXPECT_NEAR(BoundsOf(cylinder).max.y, 0.5f, kTolerance);
  float widest = 0.0f;
  for (const GeneratedVertex& v : cylinder.vertices) {
    widest = std::max(widest, glm::length(glm::vec2(v.position.x, v.position.z)));
  }
  EXPECT_NEAR(widest, 1.0f, kTolerance);
}

TEST(MeshPrimitiveTest, DebugMeshIsATranslucentGreenBoxOfSizeTwo) {
  const DebugMeshData debug = BuildDebugMesh();
  const MeshData box = CreateBox(2.0f, 2.0f, 2.0f);
  ASSERT_EQ(debug.vertices.size(), box.vertices.size());
  EXPECT_EQ(debug.indices, box.indices);
  for (size_t i = 0; i < debug.vertices.size(); ++i) {
    EXPECT_EQ(debug.vertices[i].position, box.vertices[i].position);
    EXPECT_EQ(debug.vertices[i].colour, glm::vec4(0.0f, 1.0f, 0.0f, 0.2f));
  }
}

TEST(MeshPrimitiveDeathTest, UnknownOrMisspelledNamesStopTheProgram) {
  for (const char* name : {"Teapot.mesh", "box.mesh", "Box.mesh ", "NoFile:DebugMesh"}) {
    SCOPED_TRACE(name);
    EXPECT_DEATH(
        {
          StdoutToStderr();
          BuildPrimitive(name);
        },
        "you can only allocate a grid!");
  }
}

}  // namespace
}  // namespace grindle

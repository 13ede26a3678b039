// The generated primitives, as levels name them and with other arguments: unit normals and
// tangents, outward winding, tangents along u, vertices on the shape's surface and its size.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <glm/geometric.hpp>

#include "Graphics/Meshes/PrimitiveCatalogue.h"
#include "Graphics/Meshes/PrimitiveGenerators.h"
#include "TestOutput.h"

namespace grindle {
namespace {

constexpr float kTolerance = 1e-4f;

// What every generator promises, whatever its shape.
void ExpectWellFormed(const MeshData& mesh) {
  ASSERT_EQ(mesh.indices.size() % 3, 0u);
  for (uint32_t index : mesh.indices) ASSERT_LT(index, mesh.vertices.size());
  for (const GeneratedVertex& v : mesh.vertices) {
    EXPECT_NEAR(glm::length(v.normal), 1.0f, kTolerance);
    EXPECT_NEAR(glm::length(v.tangent), 1.0f, kTolerance);
    EXPECT_NEAR(glm::dot(v.normal, v.tangent), 0.0f, kTolerance);
    EXPECT_TRUE(glm::all(glm::greaterThanEqual(v.texCoord, glm::vec2(0.0f))));
    EXPECT_TRUE(glm::all(glm::lessThanEqual(v.texCoord, glm::vec2(1.0f))));
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

// How far a vertex is from where its shape puts it (position and normal).
using OffSurface = std::function<float(const GeneratedVertex&)>;
OffSurface Flat() {
  return [](const GeneratedVertex& v) {
    return std::abs(v.position.y) + glm::distance(v.normal, {0, 1, 0});
  };
}
OffSurface BoxFaces(const glm::vec3& half) {
  return [half](const GeneratedVertex& v) {
    return std::abs(glm::dot(v.position, v.normal) - glm::dot(glm::abs(v.normal), half));
  };
}
OffSurface Sphere(float radius) {
  return [radius](const GeneratedVertex& v) {
    return std::abs(glm::length(v.position) - radius) +
           glm::distance(v.position / radius, v.normal);
  };
}
// The side's vertices (not facing straight up or down) on the wall slanting from bottom to top.
OffSurface Wall(float bottom, float top, float height) {
  return [=](const GeneratedVertex& v) {
    if (std::abs(v.normal.y) == 1.0f) return 0.0f;
    const float along = v.position.y / height + 0.5f;
    return std::abs(glm::length(glm::vec2(v.position.x, v.position.z)) -
                    (bottom + (top - bottom) * along));
  };
}

TEST(MeshPrimitiveTest, ShapesAreWellFormedWithTheirVerticesOnTheirSurfaceAndTheirSize) {
  const struct {
    const char* label;
    MeshData mesh;
    float halfHeight, widest;  // the widest distance from the y axis
    OffSurface offSurface;
  } shapes[] = {
      {"Grid.mesh", BuildPrimitive("Grid.mesh"), 0.0f, std::sqrt(0.5f), Flat()},
      {"grid 4x2, 3 rows 5 columns", CreateGrid(4.0f, 2.0f, 3, 5), 0.0f, std::sqrt(5.0f), Flat()},
      {"Box.mesh", BuildPrimitive("Box.mesh"), 0.5f, std::sqrt(0.5f), BoxFaces(glm::vec3(0.5f))},
      {"box 2x4x6", CreateBox(2.0f, 4.0f, 6.0f), 2.0f, std::sqrt(10.0f), BoxFaces({1, 2, 3})},
      {"Sphere.mesh", BuildPrimitive("Sphere.mesh"), 1.0f, 1.0f, Sphere(1.0f)},
      {"CubeMap.mesh", BuildPrimitive("CubeMap.mesh"), 20.0f, 20.0f, Sphere(20.0f)},
      {"sphere of 7 slices, 2 stacks", CreateSphere(3.0f, 7, 2), 3.0f, 3.0f, Sphere(3.0f)},
      {"Cylinder.mesh", BuildPrimitive("Cylinder.mesh"), 0.5f, 1.0f, Wall(1.0f, 1.0f, 1.0f)},
      {"cone of 3 stacks", CreateCylinder(2.0f, 0.5f, 4.0f, 12, 3), 2.0f, 2.0f,
       Wall(2.0f, 0.5f, 4.0f)},
  };
  for (const auto& shape : shapes) {
    SCOPED_TRACE(shape.label);
    ExpectWellFormed(shape.mesh);
    float top = -1e9f, bottom = 1e9f, widest = 0.0f, worst = 0.0f;
    for (const GeneratedVertex& v : shape.mesh.vertices) {
      top = std::max(top, v.position.y);
      bottom = std::min(bottom, v.position.y);
      widest = std::max(widest, glm::length(glm::vec2(v.position.x, v.position.z)));
      worst = std::max(worst, shape.offSurface(v));
    }
    EXPECT_NEAR(top, shape.halfHeight, kTolerance);
    EXPECT_NEAR(bottom, -shape.halfHeight, kTolerance);
    EXPECT_NEAR(widest, shape.widest, kTolerance);
    EXPECT_LT(worst, kTolerance * shape.widest);
  }
}

TEST(MeshPrimitiveTest, TheDebugMeshIsATranslucentGreenBoxOfSizeTwo) {
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

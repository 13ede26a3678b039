// What the mesh passes read from an object: matrices in the layout the shaders take, the
// technique picked by the maps present, the material block, shadow and glow settings.
#include <gtest/gtest.h>

#include <cstring>
#include <glm/gtc/matrix_inverse.hpp>
#include <glm/gtc/matrix_transform.hpp>
#include <glm/gtc/type_ptr.hpp>

#include "Core/Database.h"
#include "Core/MathTypes.h"
#include "Core/WellKnownKeys.h"
#include "Graphics/Meshes/MeshDrawInputs.h"
#include "TestOutput.h"

namespace grindle {
namespace {

constexpr float kTolerance = 1e-5f;
constexpr float kHalfPi = 1.57079632679f;

void ExpectNear(const glm::vec4& actual, const glm::vec4& expected) {
  for (int i = 0; i < 4; ++i) EXPECT_NEAR(actual[i], expected[i], kTolerance) << "component " << i;
}

// A row vector times the matrix, as the shaders apply it.
glm::vec4 Transform(const glm::mat4& m, const glm::vec4& v) { return m * v; }

// The passes look entries up by the pre-interned keys, as they do once start-up has run.
class MeshDrawInputsTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { InternWellKnownKeys(); }
};
using MeshDrawInputsDeathTest = MeshDrawInputsTest;

Database& AddTransform(Database& object, const glm::vec3& position, const glm::mat4& rotation,
                       const Vector4& scale) {
  Database& transform = *object.Add<Database>("Transform");
  transform.Add<double>("PositionX", position.x);
  transform.Add<double>("PositionY", position.y);
  transform.Add<double>("PositionZ", position.z);
  transform.Add<glm::mat4>("Rotation", rotation);
  transform.Add<Vector4>("Scale", scale);
  return transform;
}

TEST_F(MeshDrawInputsTest, WorldMatrixScalesThenRotatesThenTranslates) {
  Database object;
  const glm::mat4 quarterTurnAboutY = glm::rotate(glm::mat4(1.0f), kHalfPi, glm::vec3(0, 1, 0));
  AddTransform(object, {1.0f, 2.0f, 3.0f}, quarterTurnAboutY, {2.0f, 1.0f, 1.0f, 0.0f});
  const glm::mat4 world = ReadWorldMatrix(object);

  // (1,0,0) stretched to (2,0,0), turned to (0,0,-2), moved by (1,2,3).
  ExpectNear(Transform(world, {1, 0, 0, 1}), {1.0f, 2.0f, 1.0f, 1.0f});
  // Rotating first would have left the stretch on x: (0,1,0) must only move.
  ExpectNear(Transform(world, {0, 1, 0, 1}), {1.0f, 3.0f, 3.0f, 1.0f});
  // Row-major storage: the translation is the fourth row, floats 12..14 of the upload.
  const float* floats = glm::value_ptr(world);
  EXPECT_FLOAT_EQ(floats[12], 1.0f);
  EXPECT_FLOAT_EQ(floats[13], 2.0f);
  EXPECT_FLOAT_EQ(floats[14], 3.0f);
}

TEST_F(MeshDrawInputsTest, InverseTransposeKeepsNormalsPerpendicularUnderUnevenScale) {
  Database object;
  const glm::mat4 tilt = glm::rotate(glm::mat4(1.0f), 0.3f, glm::normalize(glm::vec3(1, 2, 3)));
  // Scale kept as the `xmfloat4` kind to cover both ways files write four floats.
  Database& transform = AddTransform(object, {4.0f, 0.0f, -1.0f}, tilt, {});
  transform.Remove("Scale");
  transform.Add<glm::vec4>("Scale", glm::vec4(3.0f, 0.5f, 1.0f, 1.0f));
  const glm::mat4 world = ReadWorldMatrix(object);
  const glm::mat4 normals = glm::inverseTranspose(world);

  const glm::vec4 surface = glm::normalize(glm::vec4(1, -1, 0, 0));
  const glm::vec4 normal = glm::normalize(glm::vec4(1, 1, 0, 0));
  const glm::vec4 movedSurface = Transform(world, surface);
  const glm::vec4 movedNormal = Transform(normals, normal);
  EXPECT_NEAR(glm::dot(movedSurface, movedNormal), 0.0f, kTolerance);
  // The plain world matrix would bend the normal off the surface.
  EXPECT_GT(std::abs(glm::dot(movedSurface, Transform(world, normal))), 0.1f);
}

TEST_F(MeshDrawInputsTest, TextureTransformDefaultsToTilingOneAndAHalfTimes) {
  Database object;
  ExpectNear(Transform(ReadTextureTransform(object), {1, 1, 0, 1}), {1.5f, 1.5f, 0.0f, 1.0f});
  ExpectNear(Transform(ReadTextureTransform(object), {0, 0, 0, 1}), {0.0f, 0.0f, 0.0f, 1.0f});

  Database& t = *object.Add<Database>("TextureTransform");
  t.Add<double>("scaleU", 2.0);
  t.Add<double>("scaleV", 3.0);
  t.Add<double>("translateU", 0.25);
  t.Add<double>("translateV", 0.5);
  // Scaled, then offset by whole texture units.
  ExpectNear(Transform(ReadTextureTransform(object), {1, 1, 0, 1}), {2.25f, 3.5f, 0.0f, 1.0f});
}

TEST_F(MeshDrawInputsTest, TechniqueFollowsTheMapsPresentInTestOrder) {
  using gfx::LitTech;
  struct Case {
    double hasTexture;
    std::optional<double> specular, normal;
    LitTech expected;
  };
  const Case cases[] = {
      {0.0, 1.0, 1.0, LitTech::D3D10_NoTextures},
      {1.0, std::nullopt, std::nullopt, LitTech::D3D10_Tex},
      {1.0, 0.0, 0.0, LitTech::D3D10_Tex},
      {1.0, std::nullopt, 1.0, LitTech::D3D10_Tex_Norm},
      {1.0, 0.0, 1.0, LitTech::D3D10_Tex_Norm},
      {1.0, 1.0, std::nullopt, LitTech::D3D10_Tex_Spec},
      {1.0, 1.0, 0.0, LitTech::D3D10_Tex_Spec},
      {2.0, 1.0, -1.0, LitTech::D3D10_Tex_Spec_Norm},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "tex " << c.hasTexture << " spec " << c.specular.value_or(-9)
                                    << " norm " << c.normal.value_or(-9));
    Database mesh;
    mesh.Add<double>("HasTexture", c.hasTexture);
    mesh.Add<std::string>("TextureName", "Crate.png");
    mesh.Add<std::string>("SpecularMapName", "CrateSpec.png");
    mesh.Add<std::string>("NormalMapName", "CrateNorm.png");
    if (c.specular) mesh.Add<double>("HasSpecularMap", *c.specular);
    // Flags written as integers count like the doubles files usually hold.
    if (c.normal) mesh.Add<int>("HasNormalMap", static_cast<int>(*c.normal));

    const LitTechniqueChoice choice = ChooseLitTechnique(mesh);
    EXPECT_EQ(choice.technique, c.expected);
    const bool textured = c.expected != LitTech::D3D10_NoTextures;
    const bool specular =
        c.expected == LitTech::D3D10_Tex_Spec || c.expected == LitTech::D3D10_Tex_Spec_Norm;
    const bool normal =
        c.expected == LitTech::D3D10_Tex_Norm || c.expected == LitTech::D3D10_Tex_Spec_Norm;
    EXPECT_EQ(choice.diffuseMap ? *choice.diffuseMap : "", textured ? "Crate.png" : "");
    EXPECT_EQ(choice.specularMap ? *choice.specularMap : "", specular ? "CrateSpec.png" : "");
    EXPECT_EQ(choice.normalMap ? *choice.normalMap : "", normal ? "CrateNorm.png" : "");
  }
}

TEST_F(MeshDrawInputsTest, MaterialFillsSixtyFourBytesWithAZeroFourthVector) {
  Database object;
  Database& material = *object.Add<Database>("Material");
  material.Add<Vector4>("Ambient", {0.1f, 0.2f, 0.3f, 0.0f});
  material.Add<glm::vec4>("Diffuse", glm::vec4(0.4f, 0.5f, 0.6f, 0.7f));
  material.Add<glm::vec4>("Specular", glm::vec4(0.8f, 0.9f, 1.0f, 16.0f));
  const MaterialBlock block = ReadMaterial(object);
  float raw[16];
  std::memcpy(raw, &block, sizeof(raw));
  const float expected[16] = {0.1f, 0.2f, 0.3f, 0.0f,  0.4f, 0.5f, 0.6f, 0.7f,
                              0.8f, 0.9f, 1.0f, 16.0f, 0.0f, 0.0f, 0.0f, 0.0f};
  for (int i = 0; i < 16; ++i) EXPECT_FLOAT_EQ(raw[i], expected[i]) << "float " << i;
}

TEST_F(MeshDrawInputsTest, IgnoreShadowsOfAnyKindSwitchesShadowsOff) {
  Database object;
  EXPECT_EQ(ReadShadowFlag(object), 1.0f);
  object.Add<Database>("IgnoreShadows");
  EXPECT_EQ(ReadShadowFlag(object), 0.0f);
}

TEST_F(MeshDrawInputsDeathTest, MissingRequiredEntriesStopAtTheNullHandle) {
  Database object;
  Database mesh;
  EXPECT_DEATH(
      {
        StdoutToStderr();
        ChooseLitTechnique(mesh);
      },
      "Attempt to dereference null data pointer");
  EXPECT_DEATH(
      {
        StdoutToStderr();
        ReadMaterial(object);
      },
      "Attempt to dereference null data pointer");
  AddTransform(object, {}, glm::mat4(1.0f), {1, 1, 1, 0}).Remove("Rotation");
  EXPECT_DEATH(
      {
        StdoutToStderr();
        ReadWorldMatrix(object);
      },
      "Attempt to dereference null data pointer");
}

}  // namespace
}  // namespace grindle

// What the mesh passes read from an object: matrices in the layout the shaders take, the
// technique picked by the maps present, the material block, shadow and glow settings; and the
// walk over a level's mesh list that finds those objects.
#include <gtest/gtest.h>

#include <functional>
#include <glm/gtc/matrix_transform.hpp>
#include <glm/gtc/type_ptr.hpp>
#include <string>
#include <vector>

#include "Core/Database.h"
#include "Core/MathTypes.h"
#include "Core/WellKnownKeys.h"
#include "Graphics/Meshes/ListedMeshes.h"
#include "Graphics/Meshes/MeshDrawInputs.h"
#include "TestOutput.h"

namespace grindle {
namespace {

void ExpectNear(const glm::vec4& actual, const glm::vec4& expected) {
  for (int i = 0; i < 4; ++i) EXPECT_NEAR(actual[i], expected[i], 1e-5f) << "component " << i;
}

// The passes look entries up by the pre-interned keys, as they do once start-up has run.
class MeshDrawInputsTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { InternWellKnownKeys(); }
};
using MeshDrawInputsDeathTest = MeshDrawInputsTest;

Database& AddTransform(Database& object, const glm::vec3& position, const glm::mat4& rotation) {
  Database& transform = *object.Add<Database>("Transform");
  transform.Add<double>("PositionX", position.x);
  transform.Add<double>("PositionY", position.y);
  transform.Add<double>("PositionZ", position.z);
  transform.Add<glm::mat4>("Rotation", rotation);
  return transform;
}

TEST_F(MeshDrawInputsTest, WorldMatrixScalesThenRotatesThenTranslates) {
  Database object;
  const glm::mat4 quarterTurnAboutY = glm::rotate(glm::mat4(1.0f), 1.5707963f, glm::vec3(0, 1, 0));
  Database& transform = AddTransform(object, {1.0f, 2.0f, 3.0f}, quarterTurnAboutY);
  transform.Add<Vector4>("Scale", {2.0f, 1.0f, 1.0f, 0.0f});
  const glm::mat4 world = ReadWorldMatrix(object);
  // (1,0,0) stretched to (2,0,0), turned to (0,0,-2), moved by (1,2,3).
  ExpectNear(world * glm::vec4(1, 0, 0, 1), {1.0f, 2.0f, 1.0f, 1.0f});
  // Rotating first would have left the stretch on x: (0,1,0) must only move.
  ExpectNear(world * glm::vec4(0, 1, 0, 1), {1.0f, 3.0f, 3.0f, 1.0f});
  // Row-major storage: the translation is the fourth row, floats 12..14 of the upload.
  EXPECT_EQ(glm::make_vec3(glm::value_ptr(world) + 12), glm::vec3(1.0f, 2.0f, 3.0f));

  // A scale kept as the `xmfloat4` kind reads the same: files write four floats both ways.
  transform.Remove("Scale");
  transform.Add<glm::vec4>("Scale", glm::vec4(1.0f, 3.0f, 1.0f, 1.0f));
  ExpectNear(ReadWorldMatrix(object) * glm::vec4(0, 1, 0, 1), {1.0f, 5.0f, 3.0f, 1.0f});
}

TEST_F(MeshDrawInputsTest, TextureTransformDefaultsToTilingOneAndAHalfTimes) {
  Database object;
  ExpectNear(ReadTextureTransform(object) * glm::vec4(1, 1, 0, 1), {1.5f, 1.5f, 0.0f, 1.0f});
  ExpectNear(ReadTextureTransform(object) * glm::vec4(0, 0, 0, 1), {0.0f, 0.0f, 0.0f, 1.0f});
  Database& t = *object.Add<Database>("TextureTransform");
  t.Add<double>("scaleU", 2.0);
  t.Add<double>("scaleV", 3.0);
  t.Add<double>("translateU", 0.25);
  t.Add<double>("translateV", 0.5);
  // Scaled, then offset by whole texture units.
  ExpectNear(ReadTextureTransform(object) * glm::vec4(1, 1, 0, 1), {2.25f, 3.5f, 0.0f, 1.0f});
}

TEST_F(MeshDrawInputsTest, TechniqueFollowsTheMapsPresentInTestOrder) {
  using gfx::LitTech;
  const struct {
    double hasTexture;
    std::optional<double> specular, normal;
    LitTech expected;
    const char* maps;  // diffuse, specular and normal map bound, "-" for none
  } cases[] = {
      {0.0, 1.0, 1.0, LitTech::D3D10_NoTextures, "- - -"},
      {1.0, std::nullopt, std::nullopt, LitTech::D3D10_Tex, "D - -"},
      {1.0, 0.0, 0.0, LitTech::D3D10_Tex, "D - -"},
      {1.0, std::nullopt, 1.0, LitTech::D3D10_Tex_Norm, "D - N"},
      {1.0, 0.0, 1.0, LitTech::D3D10_Tex_Norm, "D - N"},
      {1.0, 1.0, std::nullopt, LitTech::D3D10_Tex_Spec, "D S -"},
      {1.0, 1.0, 0.0, LitTech::D3D10_Tex_Spec, "D S -"},
      {2.0, 1.0, -1.0, LitTech::D3D10_Tex_Spec_Norm, "D S N"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(static_cast<int>(&c - cases));
    Database mesh;
    mesh.Add<double>("HasTexture", c.hasTexture);
    mesh.Add<std::string>("TextureName", "D");
    mesh.Add<std::string>("SpecularMapName", "S");
    mesh.Add<std::string>("NormalMapName", "N");
    if (c.specular) mesh.Add<double>("HasSpecularMap", *c.specular);
    // Flags written as integers count like the doubles files usually hold.
    if (c.normal) mesh.Add<int>("HasNormalMap", static_cast<int>(*c.normal));
    const LitTechniqueChoice choice = ChooseLitTechnique(mesh);
    EXPECT_EQ(choice.technique, c.expected);
    std::string maps;
    for (const std::string* map : {choice.diffuseMap, choice.specularMap, choice.normalMap}) {
      maps += (maps.empty() ? "" : " ") + (map ? *map : "-");
    }
    EXPECT_EQ(maps, c.maps);
  }
}

TEST_F(MeshDrawInputsTest, MaterialTakesThreeColoursOfEitherKindAndIgnoreShadowsOfAnyKindCounts) {
  Database object;
  Database& material = *object.Add<Database>("Material");
  material.Add<Vector4>("Ambient", {0.1f, 0.2f, 0.3f, 0.0f});
  material.Add<glm::vec4>("Diffuse", glm::vec4(0.4f, 0.5f, 0.6f, 0.7f));
  material.Add<glm::vec4>("Specular", glm::vec4(0.8f, 0.9f, 1.0f, 16.0f));
  const MaterialBlock block = ReadMaterial(object);
  EXPECT_EQ(block.ambient, glm::vec4(0.1f, 0.2f, 0.3f, 0.0f));
  EXPECT_EQ(block.diffuse, glm::vec4(0.4f, 0.5f, 0.6f, 0.7f));
  EXPECT_EQ(block.specular, glm::vec4(0.8f, 0.9f, 1.0f, 16.0f));
  EXPECT_EQ(block.reflect, glm::vec4(0.0f));
  EXPECT_EQ(ReadShadowFlag(object), 1.0f);
  object.Add<Database>("IgnoreShadows");
  EXPECT_EQ(ReadShadowFlag(object), 0.0f);
}

// The per-frame walk of a level's mesh list: it visits each listed object with a Mesh component
// once, in listing order, and keeps doing so while the list and the objects change under it.
class MeshListTest : public MeshDrawInputsTest {
 protected:
  void List(const std::string& name, bool withMesh = true) {
    DataHandle<Database> object = objects_.Add<Database>(name);
    DataHandle<Database> mesh;
    if (withMesh) mesh = object->Add<Database>("Mesh");
    list_.Add<DataHandle<Database>>(name, mesh);
  }

  // The objects visited, checked to come with their own Mesh component.
  std::vector<std::string> Walk() {
    std::vector<std::string> names;
    walker_.ForEach(list_, objects_, [&](const Database& object, const Database& mesh) {
      EXPECT_EQ(&mesh, object.Find<Database>("Mesh").Get());
      names.push_back(object.Name());
    });
    return names;
  }

  Database objects_;
  Database list_;
  ListedMeshes walker_;
};

using Names = std::vector<std::string>;

TEST_F(MeshListTest, VisitsListedObjectsWithMeshesInListingOrderAsTheListAndObjectsChange) {
  List("Crate");
  List("Marker", false);
  List("Ball");
  List("Pillar");
  EXPECT_EQ(Walk(), (Names{"Crate", "Ball", "Pillar"}));
  EXPECT_EQ(Walk(), (Names{"Crate", "Ball", "Pillar"}));
  objects_.Remove("Crate");
  objects_.Find<Database>("Ball")->Remove("Mesh");
  EXPECT_EQ(Walk(), (Names{"Pillar"}));
  // An object made again under a listed name is drawn again, from its new database.
  objects_.Add<Database>("Crate")->Add<Database>("Mesh");
  EXPECT_EQ(Walk(), (Names{"Crate", "Pillar"}));
  // Replacing an entry leaves a stale record of the same name; it must not be drawn twice.
  list_.Add<DataHandle<Database>>("Crate",
                                  objects_.Find<Database>("Crate")->Find<Database>("Mesh"));
  EXPECT_EQ(Walk(), (Names{"Pillar", "Crate"}));
  // Removed and re-added keeps the size the same; a walk at most one frame later sees the change.
  list_.Remove("Pillar");
  List("Lamp");
  Walk();
  EXPECT_EQ(Walk(), (Names{"Crate", "Lamp"}));
}

TEST_F(MeshDrawInputsDeathTest, MissingRequiredEntriesStopAtTheNullHandle) {
  Database object;
  AddTransform(object, {}, glm::mat4(1.0f));  // no Scale
  const std::function<void()> reads[] = {[] { ChooseLitTechnique(Database()); },
                                         [&] { ReadMaterial(object); },
                                         [&] { ReadWorldMatrix(object); }};
  for (const auto& read : reads) {
    EXPECT_DEATH(
        {
          StdoutToStderr();
          read();
        },
        "Attempt to dereference null data pointer");
  }
}

}  // namespace
}  // namespace grindle

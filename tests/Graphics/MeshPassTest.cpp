// The lit and glow passes drawn with the real scene effects from game/shaders on a real context:
// what reaches GL is counted with a primitives-generated query, and the program left current shows
// which technique drew.
#include <unistd.h>

#include "Core/MathTypes.h"
#include "Graphics/Effects/EffectSlots.h"
#include "Graphics/Effects/InputLayouts.h"
#include "Graphics/Meshes/PrimitiveCatalogue.h"
#include "Graphics/RenderInterface/OpenGL/TextureStore.h"
#include "MeshTestLevel.h"
#include "TestOutput.h"

namespace grindle::gfx {
namespace {

class MeshPassTest : public MeshGlFixture {
 protected:
  static void SetUpTestSuite() {
    MeshGlFixture::SetUpTestSuite();
    ASSERT_EQ(chdir(GRINDLE_GAME_DIR), 0);
    LoadSceneShaders();
    // Layouts read their attributes from the effects' programs, which must exist first.
    if (Effects().basic && Effects().basic->IsLoaded()) CreateSceneLayouts();
  }
  static void TearDownTestSuite() {
    MessageHandler unused;
    UnloadAllEffects(unused);
  }

  void SetUp() override {
    MeshGlFixture::SetUp();
    ASSERT_TRUE(Effects().basic && Effects().basic->IsLoaded());
    ASSERT_TRUE(Effects().glowMap && Effects().glowMap->IsLoaded());
    textures_ = std::make_unique<TextureStore>("Asphalt.jpg");
    level_ = &AddLevel("Arena");
  }
  void TearDown() override {
    textures_.reset();
    MeshGlFixture::TearDown();
  }

  // An announced object with everything the lit pass reads.
  DataHandle<Database> AddDrawable(const std::string& name, const char* fileName) {
    DataHandle<Database> object = AddObject(*level_, name, fileName);
    Database& transform = *object->Add<Database>("Transform");
    for (const char* axis : {"PositionX", "PositionY", "PositionZ"}) transform.Add<double>(axis, 0);
    transform.Add<glm::mat4>("Rotation", glm::mat4(1.0f));
    transform.Add<Vector4>("Scale", {1.0f, 1.0f, 1.0f, 0.0f});
    Database& material = *object->Add<Database>("Material");
    for (const char* colour : {"Ambient", "Diffuse", "Specular"}) {
      material.Add<glm::vec4>(colour, glm::vec4(0.5f));
    }
    Announce(object, name);
    return object;
  }

  static void Glow(const DataHandle<Database>& object) {
    Database& glow = *object->Add<Database>("Glow");
    glow.Add<double>("r", 1.0);
    glow.Add<double>("g", 0.2);
    glow.Add<double>("b", 0.0);
  }

  template <class Body>
  static GLuint PrimitivesDrawnBy(Body&& body) {
    GLuint query = 0, primitives = 0;
    glGenQueries(1, &query);
    glBeginQuery(GL_PRIMITIVES_GENERATED, query);
    body();
    glEndQuery(GL_PRIMITIVES_GENERATED);
    glGetQueryObjectuiv(query, GL_QUERY_RESULT, &primitives);
    glDeleteQueries(1, &query);
    return primitives;
  }

  static uint32_t Triangles(const char* fileName) {
    return static_cast<uint32_t>(BuildPrimitive(fileName).indices.size() / 3);
  }

  std::unique_ptr<TextureStore> textures_;
  Database* level_ = nullptr;
};

TEST_F(MeshPassTest, GlowPassDrawsOnlyObjectsThatGlow) {
  Glow(AddDrawable("Lamp", "Box.mesh"));
  AddDrawable("Ball", "Sphere.mesh");
  Glow(AddDrawable("Floor", "Grid.mesh"));
  RenderGlowMapEffect& glow = *Effects().glowMap;
  const uint32_t passes = glow.PassCount(glow.Tech(GlowTech::D3D10_NonSkinnedTech));
  ASSERT_GT(passes, 0u);

  const GLuint drawn = PrimitivesDrawnBy([&] { meshes_->Draw(true, glm::mat4(1.0f), *textures_); });
  EXPECT_EQ(drawn, (Triangles("Box.mesh") + Triangles("Grid.mesh")) * passes);
  EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(MeshPassTest, LitPassDrawsEveryListedObjectWithTheTechniqueOfItsMaps) {
  BasicEffect& basic = *Effects().basic;
  const auto crate = AddDrawable("Crate", "Box.mesh");
  Database& mesh = *crate->Find<Database>("Mesh");
  mesh.Add<std::string>("TextureName", "Missing.png");
  mesh.Add<std::string>("NormalMapName", "MissingNormal.png");
  mesh.Add<std::string>("SpecularMapName", "MissingSpecular.png");
  struct Case {
    double hasTexture, specular, normal;
    LitTech technique;
  };
  for (const Case& c :
       {Case{0, 1, 1, LitTech::D3D10_NoTextures}, Case{1, 0, 0, LitTech::D3D10_Tex},
        Case{1, 0, 1, LitTech::D3D10_Tex_Norm}, Case{1, 1, 0, LitTech::D3D10_Tex_Spec},
        Case{1, 1, 1, LitTech::D3D10_Tex_Spec_Norm}}) {
    SCOPED_TRACE(static_cast<int>(c.technique));
    *mesh.Find<double>("HasTexture") = c.hasTexture;
    mesh.Add<double>("HasSpecularMap", c.specular);
    mesh.Add<double>("HasNormalMap", c.normal);
    const TechniqueHandle technique = basic.Tech(c.technique);
    const uint32_t passes = basic.PassCount(technique);
    ASSERT_GT(passes, 0u);

    const GLuint drawn =
        PrimitivesDrawnBy([&] { meshes_->Draw(false, glm::mat4(1.0f), *textures_); });
    EXPECT_EQ(drawn, Triangles("Box.mesh") * passes);
    GLint current = 0;
    glGetIntegerv(GL_CURRENT_PROGRAM, &current);
    EXPECT_EQ(static_cast<GLuint>(current), basic.PassProgram(technique, passes - 1));
  }

  AddDrawable("Ball", "Sphere.mesh");
  const uint32_t passes = basic.PassCount(basic.Tech(LitTech::D3D10_Tex_Spec_Norm));
  const uint32_t ballPasses = basic.PassCount(basic.Tech(LitTech::D3D10_NoTextures));
  EXPECT_EQ(PrimitivesDrawnBy([&] { meshes_->Draw(false, glm::mat4(1.0f), *textures_); }),
            Triangles("Box.mesh") * passes + Triangles("Sphere.mesh") * ballPasses);
  EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(MeshPassTest, ShadowCastersAndDebugBoxesCoverEveryListedObject) {
  AddDrawable("Crate", "Box.mesh");
  const auto ghost = AddDrawable("Ghost", "Cylinder.mesh");
  ghost->Add<double>("IgnoreShadows", 1.0);
  BuildShadowMapEffect& shadow = *Effects().shadowMap;
  const uint32_t shadowPasses = shadow.PassCount(shadow.Tech(ShadowTech::BuildShadowMapTech));
  ASSERT_GT(shadowPasses, 0u);
  // Objects that ignore shadows still cast them.
  EXPECT_EQ(PrimitivesDrawnBy([&] { meshes_->DrawShadowCasters(glm::mat4(1.0f)); }),
            (Triangles("Box.mesh") + Triangles("Cylinder.mesh")) * shadowPasses);

  ColorEffect& colour = *Effects().color;
  const uint32_t colourPasses = colour.PassCount(colour.Tech(ColorTech::ColorTech));
  ASSERT_GT(colourPasses, 0u);
  SetInputLayout(LayoutKind::kPosColor);
  SetTopology(Topology::kLineStrip);
  const GLuint segments = PrimitivesDrawnBy([&] { meshes_->DrawDebugLines(glm::mat4(1.0f)); });
  SetTopology(Topology::kTriangleList);
  // One strip through the debug box's indices per object.
  const auto stripSegments = static_cast<GLuint>(BuildDebugMesh().indices.size() - 1);
  EXPECT_EQ(segments, 2 * stripSegments * colourPasses);
  EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(MeshPassTest, MissingTextureFileWarnsOnceAndDrawsWithTheDefault) {
  const auto crate = AddDrawable("Crate", "Box.mesh");
  *crate->Find<Database>("Mesh")->Find<double>("HasTexture") = 1.0;
  crate->Find<Database>("Mesh")->Add<std::string>("TextureName", "NoSuchCrate.png");
  AddDrawable("Twin", "Box.mesh")
      ->Find<Database>("Mesh")
      ->Add<std::string>("TextureName", "NoSuchCrate.png");
  const std::string printed = CaptureStdout([&] {
    for (int frame = 0; frame < 3; ++frame) meshes_->Draw(false, glm::mat4(1.0f), *textures_);
  });
  EXPECT_NE(printed.find("NoSuchCrate.png"), std::string::npos);
  EXPECT_EQ(printed.find("NoSuchCrate.png"), printed.rfind("NoSuchCrate.png")) << printed;
  EXPECT_EQ(textures_->Find("NoSuchCrate.png"), textures_->DefaultTexture());
}

}  // namespace
}  // namespace grindle::gfx

// Mesh components end to end through the renderer that owns their handler: levels built by hand,
// their objects announced with "msgLevelObjectCreated" and "msgObjectDestroyed" as the level
// manager sends them, the shared store behind the renderer's context (SDL offscreen, llvmpipe),
// and the passes drawn with the scene effects from game/shaders: what reaches GL is counted with a
// primitives-generated query, and the program left current shows which technique drew. The store
// outlives tests run in one process, so indices are compared with each other, not with numbers.
#include "Graphics/MeshCompHandler.h"
#include "Graphics/Meshes/PrimitiveCatalogue.h"
#include "RendererFixture.h"

namespace grindle::gfx {
namespace {

class MeshCompHandlerTest : public RendererFixture {
 protected:
  static MeshCompHandler& Handler() { return dynamic_cast<MeshCompHandler&>(*Renderer().Meshes()); }
  static const MeshStore& Store() { return Handler().Store(); }
  // An object with a Mesh component naming `fileName` (none when null, no Filename when empty).
  static DataHandle<Database> AddObject(Database& level, const std::string& name,
                                        const char* fileName) {
    DataHandle<Database> object = level.Find<Database>("GameObjects")->Add<Database>(name);
    if (fileName != nullptr) {
      Database& mesh = *object->Add<Database>("Mesh");
      if (*fileName != '\0') mesh.Add<std::string>("Filename", fileName);
      mesh.Add<double>("HasTexture", 0.0);
    }
    return object;
  }
  void Announce(const DataHandle<Database>& object, const std::string& name) {
    messages_.SendArgs("msgLevelObjectCreated", object, name,
                       *root_.Find<std::string>("CurrentLevel"));
    Deliver();
  }
  static Database& MeshList(Database& level) {
    return *level.Find<Database>("ComponentLists")->Find<Database>("Meshes");
  }
  static int MeshIndexOf(const DataHandle<Database>& object) {
    return *object->Find<Database>("Mesh")->Find<int>("MeshIndex");
  }
};

TEST_F(MeshCompHandlerTest, ObjectsNamingOneMeshShareItsRecordAndIndexAcrossLevels) {
  Database& level = AddLevel("Arena");
  const char* files[] = {"Box.mesh", "Box.mesh", "Sphere.mesh", "Box.mesh"};
  std::vector<DataHandle<Database>> objects;
  for (int i = 0; i < 4; ++i) {
    objects.push_back(AddObject(level, "Thing" + std::to_string(i), files[i]));
    Announce(objects.back(), "Thing" + std::to_string(i));
  }
  const int box = MeshIndexOf(objects[0]), sphere = MeshIndexOf(objects[2]);
  EXPECT_EQ(MeshIndexOf(objects[1]), box);
  EXPECT_EQ(MeshIndexOf(objects[3]), box);
  EXPECT_NE(sphere, box);
  EXPECT_EQ(Store().At(box).name, "Box.mesh");
  EXPECT_EQ(Store().At(sphere).name, "Sphere.mesh");
  EXPECT_NE(Store().At(sphere).vertices.Id(), 0u);
  // Each object's list entry refers to its own Mesh component.
  Database& list = MeshList(level);
  ASSERT_EQ(list.Records().size(), 4u);
  for (int i = 0; i < 4; ++i) {
    const auto entry = list.Find<DataHandle<Database>>("Thing" + std::to_string(i));
    ASSERT_TRUE(entry.IsValid());
    EXPECT_EQ(entry->Get(), objects[i]->Find<Database>("Mesh").Get());
  }

  // The indices outlive the level that made them.
  root_.Find<Database>("Levels")->Remove("Arena");
  Database& second = AddLevel("Second");
  const auto ball = AddObject(second, "Ball", "Sphere.mesh");
  const auto pillar = AddObject(second, "Pillar", "Cylinder.mesh");
  Announce(ball, "Ball");
  Announce(pillar, "Pillar");
  EXPECT_EQ(MeshIndexOf(ball), sphere);
  EXPECT_EQ(Store().At(MeshIndexOf(pillar)).name, "Cylinder.mesh");
}

TEST_F(MeshCompHandlerTest, ListingFollowsLevelStartReannouncementAndDestruction) {
  // Level start-up makes the list and registers the objects that carry a mesh, once.
  Database& level = AddLevel("Arena");
  level.Remove("ComponentLists");
  const auto crate = AddObject(level, "Crate", "Grid.mesh");
  AddObject(level, "Marker", nullptr);
  const auto ball = AddObject(level, "Ball", "Sphere.mesh");
  Handler().BuildLevelLists(level);
  Handler().BuildLevelLists(level);
  Database& list = MeshList(level);
  EXPECT_EQ(list.Records().size(), 2u);
  EXPECT_TRUE(list.FindEntry("Crate") != nullptr);
  EXPECT_EQ(Store().At(MeshIndexOf(ball)).name, "Sphere.mesh");
  Announce(AddObject(level, "Scenery", nullptr), "Scenery");
  Announce(crate, "Crate");
  // Announced again, listed and indexed once.
  EXPECT_EQ(list.Records().size(), 2u);
  EXPECT_EQ(crate->Find<Database>("Mesh")->Records().size(), 3u);
  const size_t records = Store().Count();
  messages_.SendArgs("msgObjectDestroyed", root_.Find<Database>("Levels")->Find<Database>("Arena"),
                     std::string("Crate"));
  Deliver();
  EXPECT_EQ(list.EntryCount(), 1u);
  EXPECT_EQ(list.FindEntry("Crate"), nullptr);
  EXPECT_EQ(Store().Count(), records) << "records outlive their objects";
}

using MeshCompHandlerDeathTest = MeshCompHandlerTest;

TEST_F(MeshCompHandlerDeathTest, RegistrationStopsOnMissingListOrFilenameOrUnknownMesh) {
  const auto expectStop = [this](const DataHandle<Database>& object, const std::string& name,
                                 const char* pattern) {
    EXPECT_DEATH(
        {
          StdoutToStderr();
          Announce(object, name);
        },
        pattern);
  };
  Database& unlisted = AddLevel("Unlisted");
  unlisted.Remove("ComponentLists");
  const auto crate = AddObject(unlisted, "Crate", "Box.mesh");
  expectStop(crate, "Crate",
             "Um hello\\? component list much\\?(.|\n)*The expression "
             "!dhdCurrMeshList.IsValid\\(\\) failed");
  root_.Add<std::string>("CurrentLevel", "Elsewhere");
  expectStop(crate, "Crate", "Um hello\\? component list much\\?");
  Database& level = AddLevel("Arena");
  expectStop(AddObject(level, "Nameless", ""), "Nameless",
             "All meshes must contain a database entry called 'Filename'");
  expectStop(AddObject(level, "Teapot", "Teapot.mesh"), "Teapot", "you can only allocate a grid!");
  root_.Add<std::string>("CurrentLevel", "Gone");
  EXPECT_DEATH(
      {
        StdoutToStderr();
        Handler().Draw(false, glm::mat4(1.0f), Renderer().Textures());
      },
      "Current level not found(.|\n)*The expression !dhCurLevel.IsValid\\(\\) failed");
}

template <class Body>
GLuint PrimitivesDrawnBy(Body&& body) {
  GLuint query = 0, primitives = 0;
  glGenQueries(1, &query);
  glBeginQuery(GL_PRIMITIVES_GENERATED, query);
  body();
  glEndQuery(GL_PRIMITIVES_GENERATED);
  glGetQueryObjectuiv(query, GL_QUERY_RESULT, &primitives);
  glDeleteQueries(1, &query);
  return primitives;
}

uint32_t Triangles(const char* fileName) {
  return static_cast<uint32_t>(BuildPrimitive(fileName).indices.size() / 3);
}

TEST_F(MeshCompHandlerTest, EachPassDrawsItsListedObjectsWithTheTechniqueOfTheirMaps) {
  Database& level = AddLevel("Arena");
  Database& lamp = AddMeshObject(level, "Lamp", "Box.mesh", {}, {1, 1, 1}, glm::vec4(0.5f));
  Database& glow = *lamp.Add<Database>("Glow");
  for (const char* channel : {"r", "g", "b"}) glow.Add<double>(channel, 0.5);
  Database& mesh = *lamp.Find<Database>("Mesh");
  *mesh.Find<double>("HasTexture") = 1.0;
  for (const char* map : {"Specular", "Normal"}) {
    mesh.Add<double>(std::string("Has") + map + "Map", 1.0);
    mesh.Add<std::string>(std::string(map) + "MapName", std::string("NoLamp") + map + ".png");
  }
  mesh.Add<std::string>("TextureName", "NoLamp.png");
  AddMeshObject(level, "Ball", "Sphere.mesh", {}, {1, 1, 1}, glm::vec4(0.5f))
      .Add<double>("IgnoreShadows", 1.0);
  StartLevel("Arena");
  const uint32_t box = Triangles("Box.mesh"), ball = Triangles("Sphere.mesh");
  BasicEffect& basic = *Renderer().Device().Effects().basic;
  const TechniqueHandle lampTechnique = basic.Tech(LitTech::D3D10_Tex_Spec_Norm);
  const TechniqueHandle ballTechnique = basic.Tech(LitTech::D3D10_NoTextures);
  const uint32_t lampPasses = basic.PassCount(lampTechnique);
  const uint32_t ballPasses = basic.PassCount(ballTechnique);
  ASSERT_GT(lampPasses * ballPasses, 0u);
  TextureStore& textures = Renderer().Textures();
  const auto drawnByLitOrGlowPass = [&](bool glowPass) {
    return PrimitivesDrawnBy([&] { Handler().Draw(glowPass, glm::mat4(1.0f), textures); });
  };
  const std::string printed = CaptureStdout([&] {
    for (int frame = 0; frame < 3; ++frame) {
      EXPECT_EQ(drawnByLitOrGlowPass(false), box * lampPasses + ball * ballPasses);
    }
  });
  // The ball, listed last, drew last.
  GLint current = 0;
  glGetIntegerv(GL_CURRENT_PROGRAM, &current);
  EXPECT_EQ(static_cast<GLuint>(current), basic.PassProgram(ballTechnique, ballPasses - 1));
  // Each missing map warned about once, however often it is drawn, and drawn with the default.
  std::string expected;
  for (const char* name : {"NoLamp.png", "NoLampNormal.png", "NoLampSpecular.png"}) {
    expected += "Texture Assets/Textures/" + std::string(name) +
                " could not be loaded (can't fopen); using Asphalt.jpg instead\n";
  }
  EXPECT_EQ(printed, expected);
  EXPECT_EQ(textures.Find("NoLampNormal.png"), textures.DefaultTexture());
  EXPECT_NE(textures.Find("Crate.png"), textures.DefaultTexture());

  RenderGlowMapEffect& glowMap = *Renderer().Device().Effects().glowMap;
  const uint32_t glowPasses = glowMap.PassCount(glowMap.Tech(GlowTech::D3D10_NonSkinnedTech));
  ASSERT_GT(glowPasses, 0u);
  EXPECT_EQ(drawnByLitOrGlowPass(true), box * glowPasses);
  BuildShadowMapEffect& shadow = *Renderer().Device().Effects().shadowMap;
  const uint32_t shadowPasses = shadow.PassCount(shadow.Tech(ShadowTech::BuildShadowMapTech));
  ASSERT_GT(shadowPasses, 0u);
  // Objects that ignore shadows still cast them.
  EXPECT_EQ(PrimitivesDrawnBy([&] { Handler().DrawShadowCasters(glm::mat4(1.0f)); }),
            (box + ball) * shadowPasses);
  ColorEffect& colour = *Renderer().Device().Effects().color;
  const uint32_t colourPasses = colour.PassCount(colour.Tech(ColorTech::ColorTech));
  ASSERT_GT(colourPasses, 0u);
  InputAssembler& assembler = Renderer().Device().Assembler();
  assembler.SetInputLayout(LayoutKind::kPosColor);
  assembler.SetTopology(Topology::kLineStrip);
  const GLuint segments = PrimitivesDrawnBy([&] { Handler().DrawDebugLines(glm::mat4(1.0f)); });
  assembler.SetTopology(Topology::kTriangleList);
  // One strip through the debug box's indices per object.
  EXPECT_EQ(segments, 2 * (BuildDebugMesh().indices.size() - 1) * colourPasses);
  EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

}  // namespace
}  // namespace grindle::gfx

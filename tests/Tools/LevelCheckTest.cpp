// `grindle --check-level`: a set of broken levels, each with the report it must produce, and the
// demo game's own levels, which must come out clean.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "DemoGameCopy.h"
#include "ProcessRun.h"

namespace grindle {
namespace {

ProcessResult CheckLevel(const std::filesystem::path& data, const std::string& level) {
  return RunProcess("'" GRINDLE_BINARY "' --data '" + data.string() + "' --check-level " + level +
                    " 2>&1");
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// An object with a mesh component made of the given lines, and the mesh list the renderer needs.
std::string MeshLevel(const std::string& meshLines, const std::string& extra = "") {
  return "<Database name=\"ComponentLists\"><Database name=\"Meshes\"></Database></Database>\n"
         "<Database name=\"GameObjects\">\n"
         "  <Database name=\"Thing\">\n"
         "    <Database name=\"Mesh\">\n" +
         meshLines +
         "    </Database>\n"
         "  </Database>\n" +
         extra + "</Database>\n";
}

std::string ScriptObject(const std::string& object, const std::string& file) {
  return "  <Database name=\"" + object +
         "\"><Database name=\"Script\">\n"
         "    <string name=\"FileName\">" +
         file +
         "</string>\n"
         "  </Database></Database>\n";
}

constexpr const char* kLoader =
    "function Start() Send(\"LoadShaders\") end function Update() end function End() end\n";

TEST(LevelCheck, BrokenLevelsAreReportedWithFileLineAndWhatIsWrong) {
  struct Case {
    const char* level;
    std::string text;
    std::vector<std::string> report;  // without the closing count line
  };
  const std::string loader = ScriptObject("Loader", "Loader.lua");
  const Case cases[] = {
      {"NoMeshList",
       "<Database name=\"GameObjects\"><Database name=\"Thing\">\n<Database name=\"Mesh\">\n"
       "<string name=\"Filename\">Box.mesh</string><double name=\"HasTexture\">0</double>\n"
       "</Database></Database>\n" +
           loader + "</Database>\n",
       {"Assets/Levels/NoMeshList.xml:2: object \"Thing\": Mesh: the level has no "
        "ComponentLists.Meshes database (the engine stops: \"Um hello? component list much?\")"}},
      {"BadMeshes",
       MeshLevel("      <string name=\"Filename\">Teapot.mesh</string>\n"
                 "      <double name=\"HasTexture\">1</double>\n"
                 "      <string name=\"TextureName\">Nope.png</string>\n",
                 "  <Database name=\"Bare\"><Database name=\"Mesh\"></Database></Database>\n"
                 "  <Database name=\"Prop\"><Database name=\"ModelStatic\">\n"
                 "    <string name=\"Name\">Anvil</string></Database>\n"
                 "    <Database name=\"ModelSkinned\"></Database></Database>\n" +
                     loader),
       {"Assets/Levels/BadMeshes.xml:5: object \"Thing\": Mesh: unknown primitive \"Teapot.mesh\" "
        "(Grid.mesh, Box.mesh, Sphere.mesh, CubeMap.mesh or Cylinder.mesh; a model file goes in a "
        "ModelStatic or ModelSkinned component)",
        "Assets/Levels/BadMeshes.xml:7: object \"Thing\": Mesh: TextureName \"Nope.png\" not "
        "found: no file Assets/Textures/Nope.png",
        "Assets/Levels/BadMeshes.xml:10: object \"Bare\": Mesh: no Filename (the engine stops: "
        "\"All meshes must contain a database entry called 'Filename'\")",
        "Assets/Levels/BadMeshes.xml:10: object \"Bare\": Mesh: no HasTexture (the engine stops "
        "when it draws the object)",
        "Assets/Levels/BadMeshes.xml:12: object \"Prop\": ModelStatic: Name \"Anvil\" not found: "
        "no file Assets/Models/Static/Anvil.mdl",
        "Assets/Levels/BadMeshes.xml:13: object \"Prop\": ModelSkinned: no Name"}},
      {"WrongKinds",
       MeshLevel("      <string name=\"HasTexture\">0</string>\n"
                 "      <string name=\"Filename\">Box.mesh</string>\n",
                 "  <Database name=\"Placed\"><Database name=\"Transform\">\n"
                 "    <string name=\"PositionX\">3</string>\n"
                 "  </Database></Database>\n" +
                     loader),
       {"Assets/Levels/WrongKinds.xml:5: object \"Thing\": Mesh: HasTexture is written as string; "
        "the engine reads int, float or double",
        "Assets/Levels/WrongKinds.xml:10: object \"Placed\": Transform: PositionX is written as "
        "string; the engine reads double"}},
      {"Scripted",
       "<Database name=\"GameObjects\">\n" + ScriptObject("Ghost", "Ghost.lua") +
           ScriptObject("Partial", "Partial.lua") + ScriptObject("Typo", "Typo.lua") +
           "  <Database name=\"Nameless\"><Database name=\"Script1\"></Database></Database>\n"
           "</Database>\n",
       {"Assets/Levels/Scripted.xml:3: object \"Ghost\": Script: script \"Ghost.lua\" not found: "
        "no file Scripts/Ghost.lua (the engine stops when it calls \"Start\")",
        "Assets/Levels/Scripted.xml:11: object \"Nameless\": Script1: no FileName (the script is "
        "not loaded)",
        "Scripts/Partial.lua:1: no function \"End\" (a fatal script error when the engine calls "
        "it)",
        "Scripts/Partial.lua:3: unknown archetype \"Dragon\" in SCR:CreateObject",
        "Scripts/Partial.lua:4: sound \"Boing\" not found in Assets/Audio/Sounds",
        "Scripts/Partial.lua:5: level \"Nowhere\" not found: no file Assets/Levels/Nowhere.xml",
        "Scripts/Typo.lua:2: unexpected symbol near 'then' (the script does not compile)"}},
      {"Twice",
       "<Database name=\"GameObjects\">\n" + loader + loader + "  <Database name=\"Cut\">\n",
       {"Assets/Levels/Twice.xml:5: \"Loader\" is defined twice in the same database (first at "
        "line 2); the second replaces the first",
        "Assets/Levels/Twice.xml:8: \"Cut\" is not closed: the file ends inside it (2 open "
        "element(s)); it may be cut short"}},
      {"Dark",
       MeshLevel("      <string name=\"Filename\">Box.mesh</string>\n"
                 "      <double name=\"HasTexture\">0</double>\n"),
       {"Assets/Levels/Dark.xml:4: objects with a Mesh need the scene shaders, but no script of "
        "this level or of a level leading to it sends \"LoadShaders\": the scene stays black"}},
      {"Declared",
       "<?xml version=\"1.0\"?>\n<int name=\"A\">1</int>\n",
       {"Assets/Levels/Declared.xml:1: unknown element type at \"<?xml version=\"1.0\"?><int "
        "name=\"A\">1</in\" (the engine stops here)"}},
      {"Absent",
       "",
       {"Assets/Levels/Absent.xml:1: no such level file (the engine stops: \"Missing "
        "File\")"}},
  };
  DemoGameCopy game(GRINDLE_GAME_DIR);
  std::filesystem::remove_all(game.path / "Scripts");
  game.Write("Scripts/Loader.lua", kLoader);
  game.Write(
      "Scripts/Partial.lua",
      "function Start() end function Update() end\n"
      "-- no End\nfunction Later() Send(\"SCR:CreateObject\", \"Dragon\", \"D1\") end\n"
      "function Noise() Send(\"PlaySound\", \"Boing\", 1) Send(\"PlaySound\", \"Jump\", 1) end\n"
      "function Leave() SetData(\"NextLevel\", \"Nowhere\") end\n");
  game.Write("Scripts/Typo.lua", "function Start()\n  if then\nend\n");
  for (const Case& c : cases) {
    SCOPED_TRACE(c.level);
    if (!c.text.empty()) game.WriteLevel(c.level, c.text);
    const ProcessResult run = CheckLevel(game.path, c.level);
    EXPECT_EQ(run.status, 1);
    std::vector<std::string> expected = c.report;
    expected.push_back("Assets/Levels/" + std::string(c.level) +
                       ".xml: " + std::to_string(c.report.size()) + " problem(s)");
    EXPECT_EQ(Lines(run.output), expected);
  }
}

TEST(LevelCheck, TheDemoLevelsPass) {
  int levels = 0;
  for (const auto& file : std::filesystem::directory_iterator(
           std::filesystem::path(GRINDLE_GAME_DIR) / "Assets/Levels")) {
    const std::string level = file.path().stem().string();
    SCOPED_TRACE(level);
    ++levels;
    const ProcessResult run = CheckLevel(GRINDLE_GAME_DIR, level);
    EXPECT_EQ(run.status, 0) << run.output;
    EXPECT_EQ(run.output, "Assets/Levels/" + level + ".xml: 0 problem(s)\n");
  }
  EXPECT_GE(levels, 5);
}

}  // namespace
}  // namespace grindle

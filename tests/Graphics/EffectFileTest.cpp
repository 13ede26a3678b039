// The effect file format on its own: sections, ordered techniques and passes, includes, the #line
// bookkeeping that lets compiler messages name files and lines, and the errors for malformed files.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "Graphics/Effects/EffectFile.h"

namespace grindle::gfx {
namespace {

class EffectFileTest : public testing::Test {
 protected:
  bool Parse(const std::string& text) {
    return ParseEffectSource("shaders/test.fx", text, source_, error_,
                             [this](std::string_view name, std::string& out) {
                               const auto found = includes_.find(std::string(name));
                               if (found == includes_.end()) return false;
                               out = found->second;
                               return true;
                             });
  }

  EffectSource source_;
  std::string error_;
  std::map<std::string, std::string> includes_;
};

TEST_F(EffectFileTest, TechniquesKeepFileOrderWithTheirPassesStatesAndDefines) {
  ASSERT_TRUE(
      Parse("// header comment\n"
            "@common\nuniform mat4 gWVP;\n"
            "@vertex VS\nvoid main() {}\n"
            "@fragment PS\nout vec4 c;\nvoid main() { c = vec4(1); }\n"
            "@technique Second\n"
            "pass A vertex=VS fragment=PS define=ONE,TWO raster=2 blend=1 depth=0\n"
            "// between passes\n"
            "pass B vertex=VS fragment=PS\n"
            "@technique First\npass Only vertex=VS fragment=PS\n"))
      << error_;
  std::string listing;
  for (const TechniqueSource& technique : source_.techniques) {
    listing += technique.name + ":";
    for (const PassSource& p : technique.passes) {
      listing += " " + p.name + "(" + p.vertex + "," + p.geometry + "," + p.fragment;
      for (const std::string& define : p.defines) listing += "+" + define;
      listing += "," + std::to_string(p.rasterizer) + "," + std::to_string(p.blend) + "," +
                 std::to_string(p.depthStencil) + ")";
    }
    listing += "\n";
  }
  EXPECT_EQ(listing,
            "Second: A(VS,,PS+ONE+TWO,2,1,0) B(VS,,PS,-1,-1,-1)\nFirst: Only(VS,,PS,-1,-1,-1)\n");
}

TEST_F(EffectFileTest, AssembledStagesCarryDefinesAndTheLinesOfEveryFileThatLogsNameAgain) {
  includes_["Shared.fxh"] = "float Shared() { return 1.0; }\nfloat Other() { return 2.0; }\n";
  ASSERT_TRUE(
      Parse("@common\n"              // line 1
            "uniform float a;\n"     // 2
            "@include Shared.fxh\n"  // 3
            "uniform float b;\n"     // 4
            "@fragment PS\n"         // 5
            "void main() {}\n"       // 6
            "@vertex VS\n"           // 7
            "void main() {}\n"       // 8
            "@technique T\n"
            "pass P vertex=VS fragment=PS define=USE_X\n"))
      << error_;
  EXPECT_EQ(source_.files, (std::vector<std::string>{"shaders/test.fx", "Shared.fxh"}));
  const std::string glsl = AssembleStage(source_, source_.techniques[0].passes[0],
                                         *source_.FindStage(StageKind::kFragment, "PS"));
  EXPECT_EQ(glsl.rfind("#version 450 core\n", 0), 0u);
  EXPECT_NE(glsl.find("#define FRAGMENT_STAGE\n#define USE_X\n"), std::string::npos);
  // Each jump between files or lines restarts the numbering where the next line came from.
  EXPECT_NE(glsl.find("#line 2 0\nuniform float a;\n#line 1 1\nfloat Shared()"), std::string::npos);
  EXPECT_NE(glsl.find("float Other() { return 2.0; }\n#line 4 0\nuniform float b;\n"),
            std::string::npos);
  EXPECT_NE(glsl.find("#line 6 0\nvoid main() {}\n"), std::string::npos);
  EXPECT_EQ(glsl.find("VERTEX_STAGE"), std::string::npos);
  // Compiler logs give those file indices; each location names its file again.
  EXPECT_EQ(NameFilesInLog(source_.files, "0:12(5): error: x\n1:40(2): warning: y\nplain line"),
            "shaders/test.fx:12(5): error: x\nShared.fxh:40(2): warning: y\nplain line\n");
  // An index no file has is left as the compiler wrote it.
  EXPECT_EQ(NameFilesInLog(source_.files, "7:3(1): error"), "7:3(1): error\n");
}

TEST_F(EffectFileTest, MalformedFilesNameTheFileLineAndWhatWasExpected) {
  includes_["Bad.fxh"] = "// fine\n@vertex\n";
  includes_["Loop.fxh"] = "@include Loop.fxh\n";
  const struct {
    const char* text;
    const char* expected;
  } cases[] = {
      {"uniform float stray;\n", "shaders/test.fx:1: expected a section line starting with '@'"},
      {"@vertex VS\nvoid main(){}\n@fragment PS\nvoid main(){}\n@technique T\npass P vertex=VS\n",
       "shaders/test.fx:6: expected vertex= and fragment= in pass 'P'"},
      {"@vertex VS\nvoid main(){}\n@technique T\npass P vertex=VS fragment=Missing\n",
       "shaders/test.fx:4: no @fragment Missing"},
      {"@vertex VS\n@vertex VS\n", "shaders/test.fx:2: stage 'VS' defined twice"},
      {"@vertex VS\n@fragment PS\n@technique T\npass P vertex=VS fragment=PS blend=x\n",
       "shaders/test.fx:4: expected a state index after blend="},
      {"@vertex VS\n@fragment PS\n@technique T\npass P vertex=VS fragment=PS colour=1\n",
       "shaders/test.fx:4: unknown pass key 'colour'"},
      {"@common\n@include Nowhere.fxh\n",
       "shaders/test.fx:2: cannot read included file 'Nowhere.fxh'"},
      {"@shader X\n",
       "shaders/test.fx:1: expected @common, @vertex, @geometry, @fragment, @technique or "
       "@include"},
      {"@technique Empty\n", "shaders/test.fx: technique 'Empty' has no pass"},
      // Errors inside an included file name that file.
      {"@common\n@include Bad.fxh\n", "Bad.fxh:2: expected one name after @vertex"},
      {"@include Loop.fxh\n", "Loop.fxh:1: includes nest too deeply"},
  };
  for (const auto& entry : cases) {
    EXPECT_FALSE(Parse(entry.text)) << entry.text;
    EXPECT_EQ(error_, entry.expected);
  }
}

}  // namespace
}  // namespace grindle::gfx

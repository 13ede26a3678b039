// Every XML and Lua example in README.md and docs/ is run. A level, a GameObjects block or a single
// object is made into a level that the level checker must pass and the engine must run for a few
// frames; the scripts an example names come from the Lua example that follows it in the same page
// (or are empty ones); the typed-XML quirks of xml-format.md are read and their documented result
// checked; a Lua snippet runs as a script's top-level code.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "Core/Database.h"
#include "Core/xmlParser.h"
#include "DemoGameCopy.h"
#include "ProcessRun.h"

namespace grindle {
namespace {

namespace fs = std::filesystem;

struct Example {
  std::string where;  // "docs/levels.md:26"
  std::string language;
  std::string text;
};

std::vector<Example> ExamplesIn(const fs::path& file, const std::string& shownAs) {
  std::vector<Example> examples;
  std::ifstream in(file);
  int number = 0;
  Example* open = nullptr;
  for (std::string line; std::getline(in, line);) {
    ++number;
    if (line.starts_with("```")) {
      if (open != nullptr) {
        open = nullptr;
      } else {
        examples.push_back({shownAs + ":" + std::to_string(number), line.substr(3), ""});
        open = &examples.back();
      }
    } else if (open != nullptr) {
      open->text += line + "\n";
    }
  }
  std::erase_if(examples,
                [](const Example& e) { return e.language != "xml" && e.language != "lua"; });
  return examples;
}

std::vector<Example> AllExamples() {
  const fs::path source = fs::path(GRINDLE_GAME_DIR).parent_path();
  std::vector<Example> all = ExamplesIn(source / "README.md", "README.md");
  for (const auto& page : fs::directory_iterator(source / "docs")) {
    if (page.path().extension() != ".md") continue;
    std::vector<Example> more = ExamplesIn(page.path(), "docs/" + page.path().filename().string());
    all.insert(all.end(), more.begin(), more.end());
  }
  return all;
}

constexpr const char* kEntries = "function Start() end function Update() end function End() end\n";

// A level in which `body` (a whole level, a GameObjects block or one object) is the content.
std::string LevelAround(const std::string& body) {
  const std::string lists =
      "<Database name=\"ComponentLists\"><Database name=\"Meshes\"></Database></Database>\n";
  if (body.starts_with("<Database name=\"GameObjects\">") ||
      body.starts_with("<Database name=\"ComponentLists\">") || body.starts_with("<!--") ||
      body.starts_with("<string name=\"LevelTitle\">")) {
    return body;
  }
  return lists + "<Database name=\"GameObjects\">\n" + body + "</Database>\n";
}

// The typed-XML quirks, read as a file and checked against what the page says they do.
bool CheckQuirk(const Example& example, const std::string& path) {
  std::ofstream(path) << example.text;
  Database db;
  if (example.text.starts_with("<type name=\"Name\">")) return true;  // the shape, not a file
  ParseFile(path, db);
  if (example.text.find("<!--") != std::string::npos) {
    // Only the line after "<!-- right: -->" survives: Lives is listed once.
    int lives = 0;
    for (const auto& record : db.Records()) lives += record.name == "Lives";
    EXPECT_EQ(lives, 1) << example.where;
  } else if (example.text.find("name=\"Title\"") != std::string::npos) {
    EXPECT_EQ(*db.Find<std::string>("Title"), "Helloworld") << example.where;
  } else if (example.text.find("name=\"Player\"") != std::string::npos) {
    EXPECT_FALSE(db.FindEntry("Score")) << example.where;
    EXPECT_TRUE(db.Find<Database>("Player")->Find<int>("Score")) << example.where;
  } else {
    return false;
  }
  return true;
}

TEST(DocExamples, EveryLevelObjectAndScriptExampleRuns) {
  const std::vector<Example> examples = AllExamples();
  ASSERT_GE(examples.size(), 10u);
  DemoGameCopy game(GRINDLE_GAME_DIR);
  // The first level loads the scene shaders and moves on to the example, drawn at the smallest
  // render resolution: the examples must run, their look is the golden images' business.
  game.WriteLevel("DocStart",
                  "<Database name=\"GameObjects\"><Database name=\"Starter\">\n"
                  "<Database name=\"Script\"><string name=\"FileName\">DocStart.lua"
                  "</string></Database></Database></Database>\n");
  game.Write("Scripts/DocStart.lua",
             "function Start() Send(\"LoadShaders\") Send(\"ChangeResolution\", \"640x360\")\n"
             "  SetData(\"NextLevel\", \"DocExample\") end\n"
             "function Update() end function End() end\n");
  const std::regex scriptName("<string name=\"FileName\">([^<]+)</string>");
  int levels = 0;
  for (size_t i = 0; i < examples.size(); ++i) {
    const Example& example = examples[i];
    SCOPED_TRACE(example.where);
    std::string level;
    if (example.language == "lua") {
      const bool usedByThePrevious = i > 0 && examples[i - 1].language == "xml" &&
                                     examples[i - 1].text.find("FileName") != std::string::npos;
      if (usedByThePrevious) continue;
      // A snippet: the top-level code of a script on an object with a position.
      game.Write("Scripts/DocSnippet.lua", example.text + kEntries);
      level = LevelAround(
          "<Database name=\"Probe\"><Database name=\"Transform\"><double name=\"PositionX\">1"
          "</double></Database><Database name=\"Script\"><string name=\"FileName\">DocSnippet.lua"
          "</string></Database></Database>\n");
    } else if (example.where.starts_with("docs/xml-format.md") &&
               !example.text.starts_with("<Database name=\"ComponentLists\">")) {
      EXPECT_TRUE(CheckQuirk(example, (game.path / "Quirk.xml").string()))
          << "an example this test does not know how to run:\n"
          << example.text;
      continue;
    } else {
      level = LevelAround(example.text);
      const bool nextIsItsScript = i + 1 < examples.size() && examples[i + 1].language == "lua";
      for (std::sregex_iterator it(level.begin(), level.end(), scriptName), end; it != end; ++it) {
        game.Write("Scripts/" + (*it)[1].str(), nextIsItsScript ? examples[i + 1].text : kEntries);
      }
    }
    ++levels;
    game.WriteLevel("DocExample", level);
    const ProcessResult check = RunProcess("'" GRINDLE_BINARY "' --data '" + game.path.string() +
                                           "' --check-level DocExample 2>&1");
    EXPECT_EQ(check.status, 0) << check.output;
    const ProcessResult run =
        RunProcess("SDL_VIDEODRIVER=offscreen ALSOFT_DRIVERS=null '" GRINDLE_BINARY "' --data '" +
                   game.path.string() + "' --level DocStart --frames 6 2>&1");
    EXPECT_EQ(run.status, 0) << run.output;
    for (const char* error : {"LUA ERR", "Error executing", "Assertion"}) {
      EXPECT_EQ(run.output.find(error), std::string::npos) << run.output;
    }
  }
  EXPECT_GE(levels, 6);
}

}  // namespace
}  // namespace grindle

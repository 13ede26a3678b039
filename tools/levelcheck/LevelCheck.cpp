#include "LevelCheck.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <set>
#include <tuple>

#include "Audio/SoundBank.h"
#include "ObjectRules.h"

namespace grindle::levelcheck {
namespace {

namespace fs = std::filesystem;

constexpr const char* kArchetypesFile = "Assets/GameObjects/Archetypes.xml";
constexpr const char* kLevelFolder = "Assets/Levels/";

const Database* Child(const Database& database, const char* name) {
  return database.Find<Database>(name).Get();
}

// The names a folder of sounds or songs offers, as the audio system names its files.
std::set<std::string> SoundNames(const char* folder) {
  std::set<std::string> names;
  std::error_code error;
  for (const auto& file : fs::directory_iterator(folder, error)) {
    names.insert(SoundNameOf(file.path().filename().string()));
  }
  return names;
}

// Every object of the file's `GameObjects` (or of the archetype collection) checked in listing
// order.
void CheckObjects(ObjectContext& context, const Database* objects, Findings& out) {
  if (objects == nullptr) return;
  ForEachLiveEntry(*objects, [&](const std::string& name, const MetaDatabaseEntry& entry) {
    if (entry.TypeCode() != kTypeDatabase) return;
    CheckObject(context, name, *static_cast<const Database*>(entry.Value()),
                context.file.LineOf(objects, name), out);
  });
}

// The script files the objects of a level file name.
std::vector<std::string> ScriptsOf(const Database& level) {
  std::vector<std::string> paths;
  const Database* objects = Child(level, "GameObjects");
  if (objects == nullptr) return paths;
  ForEachLiveEntry(*objects, [&](const std::string&, const MetaDatabaseEntry& entry) {
    if (entry.TypeCode() != kTypeDatabase) return;
    ForEachLiveEntry(*static_cast<const Database*>(entry.Value()),
                     [&](const std::string& key, const MetaDatabaseEntry& component) {
                       if (!key.starts_with("Script") || component.TypeCode() != kTypeDatabase)
                         return;
                       const auto* db = static_cast<const Database*>(component.Value());
                       if (const auto file = db->Find<std::string>("FileName"))
                         paths.push_back("Scripts/" + *file);
                     });
  });
  return paths;
}

// Whether a script of `level`, or of any level whose scripts lead to it, sends "LoadShaders".
bool ShadersInReach(const std::string& level, std::map<std::string, ScriptFacts>& scripts) {
  std::map<std::string, std::vector<std::string>> scriptsOf;  // level -> its script paths
  std::error_code error;
  for (const auto& file : fs::directory_iterator(kLevelFolder, error)) {
    if (file.path().extension() != ".xml") continue;
    ParsedFile parsed;
    ReadForCheck(file.path().string(), parsed);
    scriptsOf[file.path().stem().string()] = ScriptsOf(parsed.root);
  }
  std::set<std::string> reach = {level};
  for (bool grew = true; grew;) {
    grew = false;
    for (const auto& [from, paths] : scriptsOf) {
      if (reach.contains(from)) continue;
      for (const std::string& path : paths) {
        for (const NamedUse& next : ScriptAt(scripts, path).nextLevels) {
          if (reach.contains(next.name) && reach.insert(from).second) grew = true;
        }
      }
    }
  }
  for (const std::string& from : reach) {
    for (const std::string& path : scriptsOf[from]) {
      if (ScriptAt(scripts, path).loadsShaders) return true;
    }
  }
  return false;
}

// What the level's own scripts get wrong: compile errors, missing entry functions, and names of
// archetypes, levels, sounds and songs that do not exist.
void CheckScripts(const std::vector<std::string>& paths, const Database& root,
                  std::map<std::string, ScriptFacts>& scripts, Findings& out) {
  const std::set<std::string> sounds = SoundNames("Assets/Audio/Sounds");
  const std::set<std::string> songs = SoundNames("Assets/Audio/Music");
  const Database* archetypes = Child(root, "GameObjectArchetypes");
  std::set<std::string> seen;
  for (const std::string& path : paths) {
    if (!seen.insert(path).second) continue;
    const ScriptFacts& facts = ScriptAt(scripts, path);
    if (!facts.exists) continue;
    if (!facts.compileError.empty()) {
      out.lines.push_back(facts.compileError + " (the script does not compile)");
      continue;
    }
    for (const auto& [has, name] :
         {std::pair{facts.hasStart, "Start"}, std::pair{facts.hasUpdate, "Update"},
          std::pair{facts.hasEnd, "End"}}) {
      if (!has) {
        out.Add(path, 1,
                std::string("no function \"") + name +
                    "\" (a fatal script error when the engine calls it)");
      }
    }
    std::vector<NamedUse> unknown;  // the message in place of the name, reported in line order
    for (const NamedUse& use : facts.archetypes) {
      if (archetypes == nullptr || !archetypes->Find<Database>(use.name)) {
        unknown.push_back({"unknown archetype \"" + use.name + "\" in SCR:CreateObject", use.line});
      }
    }
    for (const NamedUse& use : facts.nextLevels) {
      if (!fs::is_regular_file(kLevelFolder + use.name + ".xml")) {
        unknown.push_back(
            {"level \"" + use.name + "\" not found: no file " + kLevelFolder + use.name + ".xml",
             use.line});
      }
    }
    for (const auto& [uses, names, folder] :
         {std::tuple{&facts.sounds, &sounds, "sound"}, std::tuple{&facts.songs, &songs, "song"}}) {
      for (const NamedUse& use : *uses) {
        if (names->contains(use.name)) continue;
        unknown.push_back({std::string(folder) + " \"" + use.name + "\" not found in " +
                               (names == &sounds ? "Assets/Audio/Sounds" : "Assets/Audio/Music"),
                           use.line});
      }
    }
    std::stable_sort(unknown.begin(), unknown.end(),
                     [](const NamedUse& a, const NamedUse& b) { return a.line < b.line; });
    for (const NamedUse& problem : unknown) out.Add(path, problem.line, problem.name);
  }
}

}  // namespace

int CheckLevel(const std::string& level) {
  Findings out;
  std::map<std::string, ScriptFacts> scripts;
  ParsedFile archetypes;
  ReadForCheck(kArchetypesFile, archetypes);
  if (!archetypes.exists) {
    out.Add(kArchetypesFile, 1, "missing: the engine stops at start-up (\"Missing File\")");
  }
  ParsedFile file;
  ReadForCheck(kLevelFolder + level + ".xml", file);
  if (!file.exists) {
    out.Add(file.path, 1, "no such level file (the engine stops: \"Missing File\")");
  }
  for (const ParsedFile* parsed : {&archetypes, &file}) {
    out.lines.insert(out.lines.end(), parsed->warnings.begin(), parsed->warnings.end());
  }

  const Database* lists = Child(file.root, "ComponentLists");
  ObjectContext levelObjects{file, lists != nullptr && Child(*lists, "Meshes") != nullptr, scripts};
  CheckObjects(levelObjects, Child(file.root, "GameObjects"), out);
  // Archetypes become objects of whichever level creates them; that level's lists are not known.
  ObjectContext archetypeObjects{archetypes, true, scripts};
  CheckObjects(archetypeObjects, Child(archetypes.root, "GameObjectArchetypes"), out);

  std::vector<std::string> paths = ScriptsOf(file.root);
  CheckScripts(paths, archetypes.root, scripts, out);
  if (levelObjects.firstMeshLine != 0 && !ShadersInReach(level, scripts)) {
    out.Add(file.path, levelObjects.firstMeshLine,
            "objects with a Mesh need the scene shaders, but no script of this level or of a "
            "level leading to it sends \"LoadShaders\": the scene stays black");
  }

  for (const std::string& line : out.lines) std::printf("%s\n", line.c_str());
  std::printf("%s: %zu problem(s)\n", file.path.c_str(), out.lines.size());
  return out.lines.empty() ? 0 : 1;
}

}  // namespace grindle::levelcheck

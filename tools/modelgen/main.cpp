// grindle_modelgen GAME_DIR: writes the demo game's models (the static props and the skinned
// characters) under GAME_DIR/Assets/Models. Deterministic, so the committed files can be regenerated.
#include <cstdio>
#include <filesystem>
#include <string>

#include "Character.h"
#include "Graphics/Loader/ModelWriter.h"
#include "Props.h"
#include "ToolUsage.h"

int main(int argc, char** argv) {
  using namespace grindle;
  if (const auto stop = tools::CheckArguments(argc, argv, 1, "grindle_modelgen GAME_DIR")) {
    return *stop;
  }
  const std::filesystem::path models = std::filesystem::path(argv[1]) / "Assets" / "Models";
  std::error_code error;
  std::filesystem::create_directories(models / "Static", error);
  std::filesystem::create_directories(models / "Skinned", error);
  const struct {
    const char* name;
    models::StaticModelData (*make)();
  } props[] = {{"Crate", modelgen::MakeCrate},
               {"Barrel", modelgen::MakeBarrel},
               {"Pillar", modelgen::MakePillar},
               {"Potato", modelgen::MakePotato}};
  bool ok = true;
  for (const auto& prop : props) {
    const std::string path = (models / "Static" / (std::string(prop.name) + ".mdl")).string();
    ok = models::WriteStaticModel(path, prop.make()) && ok;
  }
  const struct {
    const char* name;
    modelgen::Head head;
  } characters[] = {{"Character", modelgen::Head::kVisor},
                    {"Robot", modelgen::Head::kRobot},
                    {"Bunny", modelgen::Head::kEars},
                    {"Wizard", modelgen::Head::kHat}};
  for (const auto& character : characters) {
    const std::string path =
        (models / "Skinned" / (std::string(character.name) + ".smdl")).string();
    ok = models::WriteSkinnedModel(path, modelgen::MakeCharacter(character.head)) && ok;
  }
  if (!ok) std::fprintf(stderr, "grindle_modelgen: could not write under %s\n", models.c_str());
  return ok ? 0 : 1;
}

// grindle_import INPUT OUTPUT: converts a glTF 2.0, FBX or OBJ scene into the engine's model files,
// .mdl without a skin and .smdl with one (OUTPUT's extension is set to match and the written path
// printed). Warnings go to standard error; the exit status is 0 on success.
#include <cstdio>
#include <filesystem>
#include <string>

#include "Graphics/Loader/ModelWriter.h"
#include "SceneImport.h"
#include "ToolUsage.h"

int main(int argc, char** argv) {
  // Reads .gltf, .glb, .fbx and .obj; writes .mdl, or .smdl when the scene has a skin.
  if (const auto stop = grindle::tools::CheckArguments(argc, argv, 2,
                                                       "grindle_import INPUT OUTPUT")) {
    return *stop;
  }
  const grindle::import::ImportResult result = grindle::import::ImportScene(argv[1]);
  for (const std::string& warning : result.warnings) {
    std::fprintf(stderr, "grindle_import: %s: %s\n", argv[1], warning.c_str());
  }
  if (!result.ok) {
    std::fprintf(stderr, "grindle_import: %s: %s\n", argv[1], result.error.c_str());
    return 1;
  }
  std::filesystem::path output(argv[2]);
  output.replace_extension(result.skinned ? ".smdl" : ".mdl");
  const bool written = result.skinned
                           ? grindle::models::WriteSkinnedModel(output.string(), result.skinnedModel)
                           : grindle::models::WriteStaticModel(output.string(), result.staticModel);
  if (!written) {
    std::fprintf(stderr, "grindle_import: cannot write %s\n", output.c_str());
    return 1;
  }
  std::printf("%s\n", output.c_str());
  return 0;
}

// Turns a scene that assimp reads (glTF 2.0, FBX, OBJ, ...) into a model: merged triangulated
// geometry with tangents, one subset per source mesh, materials with their colours and texture
// file names, and, when the scene has a skin, the skeleton (every ancestor of a bone is a bone,
// parents first) with the five strongest influences per vertex and every animation as a clip.
// Used by grindle_import only.
#pragma once

#include <string>

#include "Graphics/Loader/ModelData.h"

namespace grindle::import {

struct ImportResult {
  bool ok = false;
  bool skinned = false;
  models::StaticModelData staticModel;
  models::SkinnedModelData skinnedModel;
  std::string error;                  // when !ok
  std::vector<std::string> warnings;  // what was approximated or dropped
};

ImportResult ImportScene(const std::string& path);

}  // namespace grindle::import

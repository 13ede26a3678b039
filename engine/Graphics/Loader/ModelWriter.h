// Writes .mdl and .smdl files line for line in the order the loaders read them, numbering records
// from 0 and writing absent texture maps as the placeholder token. Used by the import tool and the
// demo-content generator. Returns false when the file cannot be written. Any thread.
#pragma once

#include <string>

#include "Graphics/Loader/ModelData.h"

namespace grindle::models {

bool WriteStaticModel(const std::string& path, const StaticModelData& model);
bool WriteSkinnedModel(const std::string& path, const SkinnedModelData& model);

}  // namespace grindle::models

// The mesh text loaders (.mdl and .smdl) on arbitrary text; the first byte picks the format.
#include "FuzzInput.h"
#include "Graphics/Loader/Loader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const bool isSkinned = (data[0] & 1) != 0;
  const std::string& path = grindle::fuzz::WriteInput(data + 1, size - 1, ".mdl");
  std::vector<uint16_t> indices;
  std::vector<grindle::models::Subset> subsets;
  std::vector<grindle::models::ModelMaterial> materials;
  grindle::models::ScanProblem problem;
  if (isSkinned) {
    std::vector<grindle::models::SkinnedVertex> vertices;
    grindle::models::Skeleton skeleton;
    grindle::models::LoadSkinnedMesh(path, vertices, indices, subsets, materials, skeleton,
                                     &problem);
  } else {
    std::vector<grindle::models::StaticVertex> vertices;
    grindle::models::LoadStaticMesh(path, vertices, indices, subsets, materials, &problem);
  }
  return 0;
}

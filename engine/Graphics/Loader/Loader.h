// The model file loaders: LoadStaticMesh reads a .mdl file, LoadSkinnedMesh a .smdl file, strictly
// in the format's line order (docs/models.md). A file that cannot be opened is an assertion ("File
// failed to open"); malformed content is not an error here: a line that does not match leaves its
// values as the sized containers had them and reading goes on. The optional report tells callers
// that want to warn where the first mismatch was. Any thread; touches nothing shared.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Graphics/Loader/FormatScanner.h"
#include "Graphics/Loader/ModelData.h"

namespace grindle::models {

void LoadStaticMesh(const std::string& path, std::vector<StaticVertex>& vertices,
                    std::vector<uint16_t>& indices, std::vector<Subset>& subsets,
                    std::vector<ModelMaterial>& materials, ScanProblem* report = nullptr);

void LoadSkinnedMesh(const std::string& path, std::vector<SkinnedVertex>& vertices,
                     std::vector<uint16_t>& indices, std::vector<Subset>& subsets,
                     std::vector<ModelMaterial>& materials, Skeleton& skinnedData,
                     ScanProblem* report = nullptr);

// "path:line: expected "format"" for a report with a problem, else empty.
std::string DescribeProblem(const std::string& path, const ScanProblem& problem);

}  // namespace grindle::models

// Decides what of a loaded model can be drawn without reading past its buffers: subsets whose
// faces lie outside the index list or whose indices reach beyond the vertices are dropped, a
// material index out of range falls back to a plain white material, bone influences that name no
// bone lose their weight, and a file that ended before its counts were met, or that exceeds the
// 16-bit vertex or shader bone limits, is not drawn at all. Every problem becomes one line of text
// naming the file. Pure functions; any thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Graphics/Loader/FormatScanner.h"
#include "Graphics/Loader/ModelData.h"

namespace grindle::models {

// The skinning shaders hold this many bone matrices.
inline constexpr size_t kMaxBones = 96;

struct DrawRange {
  uint32_t startIndex = 0;
  uint32_t indexCount = 0;
  uint32_t material = 0;  // index into CheckedModel::materials
};

struct CheckedModel {
  bool drawable = true;
  std::vector<DrawRange> ranges;
  std::vector<ModelMaterial> materials;  // the file's, plus the fallback when one was needed
  std::vector<std::string> problems;
};

CheckedModel CheckStaticModel(const std::string& path, const StaticModelData& model,
                              const ScanProblem& scan);
CheckedModel CheckSkinnedModel(const std::string& path, SkinnedModelData& model,
                               const ScanProblem& scan);

// All problems as one message: the first in full, then how many more there were.
std::string SummariseProblems(const CheckedModel& checked);

}  // namespace grindle::models

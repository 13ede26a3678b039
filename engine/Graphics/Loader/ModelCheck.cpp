#include "Graphics/Loader/ModelCheck.h"

#include "Graphics/Loader/Loader.h"

namespace grindle::models {
namespace {

constexpr int kStaticLinesPerVertex = 5;
constexpr int kSkinnedLinesPerVertex = 7;

ModelMaterial FallbackMaterial() {
  ModelMaterial m;
  m.ambient = glm::vec4(1.0f);
  m.diffuse = glm::vec4(1.0f);
  m.specular = glm::vec4(0.2f, 0.2f, 0.2f, 16.0f);
  m.diffuseMapName = m.specularMapName = m.normalMapName = kNoTexture;
  return m;
}

// The line that holds a face's indices in a file written one value group per line.
int FaceLine(size_t vertexCount, int linesPerVertex, size_t face) {
  return static_cast<int>(1 + vertexCount * static_cast<size_t>(linesPerVertex) + 1 + 2 * face + 2);
}

template <class Vertex>
CheckedModel CheckGeometry(const std::string& path, const ModelGeometry<Vertex>& model,
                           const ScanProblem& scan, int linesPerVertex) {
  CheckedModel checked;
  checked.materials = model.materials;
  if (scan.line != 0) {
    checked.problems.push_back(DescribeProblem(path, scan));
    // Zeroed records where the file ran out would draw as garbage at the origin.
    if (scan.truncated) checked.drawable = false;
  }
  const size_t vertexCount = model.vertices.size();
  if (vertexCount > kMaxVertices) {
    checked.problems.push_back(path + ": " + std::to_string(vertexCount) +
                               " vertices; 16-bit indices reach only 65536");
    checked.drawable = false;
  }
  const size_t faceCount = model.indices.size() / 3;
  std::vector<Subset> subsets = model.subsets;
  // A file without subsets draws all its faces with its first material.
  if (subsets.empty() && faceCount > 0) {
    Subset all;
    all.FaceCount = static_cast<int32_t>(faceCount);
    subsets.push_back(all);
  }
  int32_t fallback = -1;
  for (size_t s = 0; s < subsets.size() && checked.drawable; ++s) {
    const Subset& subset = subsets[s];
    const std::string where = path + ": subset " + std::to_string(s);
    if (subset.FaceStartIndex < 0 || subset.FaceCount < 0 ||
        static_cast<size_t>(subset.FaceStartIndex) + static_cast<size_t>(subset.FaceCount) >
            faceCount) {
      checked.problems.push_back(where + " names faces " + std::to_string(subset.FaceStartIndex) +
                                 " to " +
                                 std::to_string(subset.FaceStartIndex + subset.FaceCount - 1) +
                                 " of " + std::to_string(faceCount) + "; not drawn");
      continue;
    }
    const size_t first = static_cast<size_t>(subset.FaceStartIndex) * 3;
    const size_t last = first + static_cast<size_t>(subset.FaceCount) * 3;
    size_t bad = last;
    for (size_t i = first; i < last && bad == last; ++i) {
      if (model.indices[i] >= vertexCount) bad = i;
    }
    if (bad != last) {
      checked.problems.push_back(
          path + ":" + std::to_string(FaceLine(vertexCount, linesPerVertex, bad / 3)) + ": index " +
          std::to_string(model.indices[bad]) + " is beyond the " + std::to_string(vertexCount) +
          " vertices; subset " + std::to_string(s) + " not drawn");
      continue;
    }
    DrawRange range{static_cast<uint32_t>(first), static_cast<uint32_t>(last - first), 0};
    if (subset.MaterialIndex >= 0 &&
        static_cast<size_t>(subset.MaterialIndex) < model.materials.size()) {
      range.material = static_cast<uint32_t>(subset.MaterialIndex);
    } else {
      if (fallback < 0) {
        fallback = static_cast<int32_t>(checked.materials.size());
        checked.materials.push_back(FallbackMaterial());
      }
      range.material = static_cast<uint32_t>(fallback);
      // Only a file that has materials is wrong to point past them.
      if (!model.materials.empty()) {
        checked.problems.push_back(where + " names material " +
                                   std::to_string(subset.MaterialIndex) + " of " +
                                   std::to_string(model.materials.size()) + "; drawn plain white");
      }
    }
    if (range.indexCount > 0) checked.ranges.push_back(range);
  }
  if (!checked.drawable) checked.ranges.clear();
  return checked;
}

}  // namespace

CheckedModel CheckStaticModel(const std::string& path, const StaticModelData& model,
                              const ScanProblem& scan) {
  return CheckGeometry(path, model, scan, kStaticLinesPerVertex);
}

CheckedModel CheckSkinnedModel(const std::string& path, SkinnedModelData& model,
                               const ScanProblem& scan) {
  CheckedModel checked = CheckGeometry(path, model, scan, kSkinnedLinesPerVertex);
  const size_t bones = model.skeleton.boneNames.size();
  if (bones > kMaxBones) {
    checked.problems.push_back(path + ": " + std::to_string(bones) + " bones; the shaders hold " +
                               std::to_string(kMaxBones));
    checked.drawable = false;
    checked.ranges.clear();
  }
  size_t cleared = 0;
  size_t firstVertex = 0;
  for (size_t v = 0; v < model.vertices.size(); ++v) {
    SkinnedVertex& vertex = model.vertices[v];
    for (int k = 0; k < kInfluences; ++k) {
      const int32_t bone = vertex.boneIndices[k];
      if (bone >= 0 && static_cast<size_t>(bone) < std::max<size_t>(bones, 1)) continue;
      if (vertex.weights[k] != 0.0f && cleared++ == 0) firstVertex = v;
      // The shader reads every index, weighted or not: keep it inside the palette.
      vertex.weights[k] = 0.0f;
      vertex.boneIndices[k] = 0;
    }
  }
  if (cleared > 0) {
    checked.problems.push_back(
        path + ":" + std::to_string(1 + firstVertex * kSkinnedLinesPerVertex + 6) + ": vertex " +
        std::to_string(firstVertex) + " names a bone the skeleton lacks (" +
        std::to_string(cleared) + " influences dropped)");
  }
  return checked;
}

std::string SummariseProblems(const CheckedModel& checked) {
  if (checked.problems.empty()) return {};
  std::string text = checked.problems.front();
  if (checked.problems.size() > 1) {
    text += " (and " + std::to_string(checked.problems.size() - 1) + " more problems)";
  }
  return text;
}

}  // namespace grindle::models

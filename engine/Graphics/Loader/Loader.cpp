#include "Graphics/Loader/Loader.h"

#include <cstdio>

#include "Core/Assert.h"

namespace grindle::models {
namespace {

std::string ReadWholeFile(const std::string& path) {
  FILE* pFile = std::fopen(path.c_str(), "r");
  GRINDLE_ASSERT(!pFile, "File failed to open");
  std::string text;
  char buffer[65536];
  size_t read = 0;
  while ((read = std::fread(buffer, 1, sizeof(buffer), pFile)) > 0) text.append(buffer, read);
  std::fclose(pFile);
  return text;
}

// A count line; a count the rest of the file cannot possibly hold (each record takes more than one
// byte) is cut down to what it could, so a broken count cannot ask for gigabytes.
size_t ReadCount(FormatScanner& in, const char* format) {
  int32_t count = 0;
  in.Scan(format, {&count});
  if (count < 0) count = 0;
  const size_t possible = in.Remaining();
  if (static_cast<size_t>(count) > possible) {
    in.Report(std::string(format) + " (more records than the file holds)", true);
    return possible;
  }
  return static_cast<size_t>(count);
}

template <class Vertex>
void ReadVertexCore(FormatScanner& in, Vertex& v) {
  int32_t number = 0;
  in.Scan("Vertex%i\n", {&number});
  in.Scan("Position: %f %f %f\n", {&v.position.x, &v.position.y, &v.position.z});
  in.Scan("Normal: %f %f %f\n", {&v.normal.x, &v.normal.y, &v.normal.z});
  in.Scan("Texture Coordinates: %f %f\n", {&v.texC.x, &v.texC.y});
  in.Scan("Tangent: %f %f %f\n", {&v.tangent.x, &v.tangent.y, &v.tangent.z});
}

void ReadVertexExtra(FormatScanner&, StaticVertex&) {}

void ReadVertexExtra(FormatScanner& in, SkinnedVertex& v) {
  int32_t* b = v.boneIndices;
  float* w = v.weights;
  in.Scan("Bone Indices: %i %i %i %i %i\n", {&b[0], &b[1], &b[2], &b[3], &b[4]});
  in.Scan("Bone Weights: %f %f %f %f %f\n", {&w[0], &w[1], &w[2], &w[3], &w[4]});
}

void ReadColour(FormatScanner& in, const char* format, glm::vec4& c) {
  in.Scan(format, {&c.r, &c.g, &c.b, &c.a});
}

template <class Vertex>
void ReadGeometry(FormatScanner& in, std::vector<Vertex>& vertices, std::vector<uint16_t>& indices,
                  std::vector<Subset>& subsets, std::vector<ModelMaterial>& materials) {
  int32_t number = 0;
  vertices.assign(ReadCount(in, "Vertices: %i\n"), Vertex{});
  for (Vertex& v : vertices) {
    ReadVertexCore(in, v);
    ReadVertexExtra(in, v);
  }
  indices.assign(3 * ReadCount(in, "Faces: %i\n"), 0);
  for (size_t face = 0; face < indices.size(); face += 3) {
    in.Scan("Face%i\n", {&number});
    in.Scan("Indices: %i %i %i\n", {&indices[face], &indices[face + 1], &indices[face + 2]});
  }
  subsets.assign(ReadCount(in, "Subsets: %i\n"), Subset{});
  for (Subset& s : subsets) {
    in.Scan("Subset%i\n", {&number});
    in.Scan("Index: %i\n", {&s.Index});
    in.Scan("MaterialIndex: %i\n", {&s.MaterialIndex});
    in.Scan("FaceCount: %i\n", {&s.FaceCount});
    in.Scan("FaceStartIndex: %i\n", {&s.FaceStartIndex});
    in.Scan("VertexCount: %i\n", {&s.VertexCount});
    in.Scan("VertexStartIndex: %i\n", {&s.VertexStartIndex});
  }
  materials.assign(ReadCount(in, "Materials: %i\n"), ModelMaterial{});
  for (ModelMaterial& m : materials) {
    in.Scan("Material%i\n", {&number});
    in.Scan("DiffuseName: %s\n", {&m.diffuseMapName});
    in.Scan("SpecularMapName: %s\n", {&m.specularMapName});
    in.Scan("NormalMapName: %s\n", {&m.normalMapName});
    ReadColour(in, "Ambient: %f %f %f %f\n", m.ambient);
    ReadColour(in, "Diffuse: %f %f %f %f\n", m.diffuse);
    ReadColour(in, "Specular: %f %f %f %f\n", m.specular);
  }
}

template <class Key, class Read>
void ReadKeys(FormatScanner& in, const char* countFormat, std::vector<Key>& keys, Read read) {
  int32_t number = 0;
  keys.assign(ReadCount(in, countFormat), Key{});
  for (Key& key : keys) {
    in.Scan("Keyframe%i\n", {&number});
    in.Scan("Time Marker: %f\n", {&key.time});
    read(key);
  }
}

void ReadSkeleton(FormatScanner& in, Skeleton& skeleton) {
  const size_t bones = ReadCount(in, "Bones: %i\n");
  skeleton.boneNames.assign(bones, std::string());
  skeleton.parents.assign(bones, 0);
  skeleton.offsets.assign(bones, glm::mat4(0.0f));
  for (size_t i = 0; i < bones; ++i) {
    in.Scan("Bone: %s\n", {&skeleton.boneNames[i]});
    in.Scan("Parent Bone Index: %i\n", {&skeleton.parents[i]});
    float* m = &skeleton.offsets[i][0][0];
    in.Scan("Bone Offset Matrix: %f %f %f %f %f %f %f %f %f %f %f %f %f %f %f %f\n",
            {m, m + 1, m + 2, m + 3, m + 4, m + 5, m + 6, m + 7, m + 8, m + 9, m + 10, m + 11,
             m + 12, m + 13, m + 14, m + 15});
  }
  const size_t clipCount = ReadCount(in, "Animation Clips: %i\n");
  skeleton.clips.clear();
  for (size_t c = 0; c < clipCount; ++c) {
    int32_t number = 0;
    std::string name;
    AnimationClip clip;
    in.Scan("AnimationClip%i\n", {&number});
    in.Scan("Name: %s\n", {&name});
    in.Scan("Start Time: %f\n", {&clip.startTime});
    in.Scan("End Time: %f\n", {&clip.endTime});
    clip.boneAnimations.assign(ReadCount(in, "Bone Animations: %i\n"), BoneAnimation{});
    for (BoneAnimation& bone : clip.boneAnimations) {
      in.Scan("BoneAnimation%i\n", {&number});
      ReadKeys(in, "Position Keyframes: %i\n", bone.positions, [&](PositionKey& k) {
        in.Scan("Position: %f %f %f\n", {&k.value.x, &k.value.y, &k.value.z});
      });
      ReadKeys(in, "Rotation Keyframes: %i\n", bone.rotations, [&](RotationKey& k) {
        in.Scan("Rotation Quaternion: %f %f %f %f\n",
                {&k.value.x, &k.value.y, &k.value.z, &k.value.w});
      });
      ReadKeys(in, "Scale Keyframes: %i\n", bone.scales, [&](ScaleKey& k) {
        in.Scan("Scale: %f %f %f\n", {&k.value.x, &k.value.y, &k.value.z});
      });
    }
    skeleton.clips[name] = std::move(clip);
  }
}

}  // namespace

void LoadStaticMesh(const std::string& path, std::vector<StaticVertex>& vertices,
                    std::vector<uint16_t>& indices, std::vector<Subset>& subsets,
                    std::vector<ModelMaterial>& materials, ScanProblem* report) {
  FormatScanner in(ReadWholeFile(path));
  ReadGeometry(in, vertices, indices, subsets, materials);
  if (report != nullptr) *report = in.FirstProblem();
}

void LoadSkinnedMesh(const std::string& path, std::vector<SkinnedVertex>& vertices,
                     std::vector<uint16_t>& indices, std::vector<Subset>& subsets,
                     std::vector<ModelMaterial>& materials, Skeleton& skinnedData,
                     ScanProblem* report) {
  FormatScanner in(ReadWholeFile(path));
  ReadGeometry(in, vertices, indices, subsets, materials);
  ReadSkeleton(in, skinnedData);
  if (report != nullptr) *report = in.FirstProblem();
}

std::string DescribeProblem(const std::string& path, const ScanProblem& problem) {
  if (problem.line == 0) return {};
  return path + ":" + std::to_string(problem.line) + ": " +
         (problem.endedEarly ? "the file ends where it should hold \"" : "expected \"") +
         problem.expected + "\"";
}

}  // namespace grindle::models

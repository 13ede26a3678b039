#include "Graphics/Loader/ModelWriter.h"

#include <cstdio>
#include <memory>

namespace grindle::models {
namespace {

using File = std::unique_ptr<FILE, int (*)(FILE*)>;

const char* TextureToken(const std::string& name) {
  return name.empty() ? kNoTexture : name.c_str();
}

void WriteVertexExtra(FILE*, const StaticVertex&) {}

void WriteVertexExtra(FILE* f, const SkinnedVertex& v) {
  const int32_t* b = v.boneIndices;
  const float* w = v.weights;
  std::fprintf(f, "Bone Indices: %i %i %i %i %i\n", b[0], b[1], b[2], b[3], b[4]);
  std::fprintf(f, "Bone Weights: %f %f %f %f %f\n", w[0], w[1], w[2], w[3], w[4]);
}

void WriteColour(FILE* f, const char* key, const glm::vec4& c) {
  std::fprintf(f, "%s: %f %f %f %f\n", key, c.r, c.g, c.b, c.a);
}

template <class Vertex>
void WriteGeometry(FILE* f, const ModelGeometry<Vertex>& model) {
  std::fprintf(f, "Vertices: %zu\n", model.vertices.size());
  for (size_t i = 0; i < model.vertices.size(); ++i) {
    const Vertex& v = model.vertices[i];
    std::fprintf(f, "Vertex%zu\n", i);
    std::fprintf(f, "Position: %f %f %f\n", v.position.x, v.position.y, v.position.z);
    std::fprintf(f, "Normal: %f %f %f\n", v.normal.x, v.normal.y, v.normal.z);
    std::fprintf(f, "Texture Coordinates: %f %f\n", v.texC.x, v.texC.y);
    std::fprintf(f, "Tangent: %f %f %f\n", v.tangent.x, v.tangent.y, v.tangent.z);
    WriteVertexExtra(f, v);
  }
  std::fprintf(f, "Faces: %zu\n", model.indices.size() / 3);
  for (size_t face = 0; face + 2 < model.indices.size(); face += 3) {
    std::fprintf(f, "Face%zu\n", face / 3);
    std::fprintf(f, "Indices: %u %u %u\n", model.indices[face], model.indices[face + 1],
                 model.indices[face + 2]);
  }
  std::fprintf(f, "Subsets: %zu\n", model.subsets.size());
  for (size_t i = 0; i < model.subsets.size(); ++i) {
    const Subset& s = model.subsets[i];
    std::fprintf(f,
                 "Subset%zu\nIndex: %i\nMaterialIndex: %i\nFaceCount: %i\nFaceStartIndex: %i\n"
                 "VertexCount: %i\nVertexStartIndex: %i\n",
                 i, s.Index, s.MaterialIndex, s.FaceCount, s.FaceStartIndex, s.VertexCount,
                 s.VertexStartIndex);
  }
  std::fprintf(f, "Materials: %zu\n", model.materials.size());
  for (size_t i = 0; i < model.materials.size(); ++i) {
    const ModelMaterial& m = model.materials[i];
    std::fprintf(f, "Material%zu\nDiffuseName: %s\nSpecularMapName: %s\nNormalMapName: %s\n", i,
                 TextureToken(m.diffuseMapName), TextureToken(m.specularMapName),
                 TextureToken(m.normalMapName));
    WriteColour(f, "Ambient", m.ambient);
    WriteColour(f, "Diffuse", m.diffuse);
    WriteColour(f, "Specular", m.specular);
  }
}

template <class Key, class Write>
void WriteKeys(FILE* f, const char* title, const std::vector<Key>& keys, Write write) {
  std::fprintf(f, "%s Keyframes: %zu\n", title, keys.size());
  for (size_t i = 0; i < keys.size(); ++i) {
    std::fprintf(f, "Keyframe%zu\nTime Marker: %f\n", i, keys[i].time);
    write(keys[i]);
  }
}

void WriteSkeleton(FILE* f, const Skeleton& s) {
  std::fprintf(f, "Bones: %zu\n", s.boneNames.size());
  for (size_t i = 0; i < s.boneNames.size(); ++i) {
    std::fprintf(f, "Bone: %s\nParent Bone Index: %i\nBone Offset Matrix: ", s.boneNames[i].c_str(),
                 s.parents[i]);
    const float* m = &s.offsets[i][0][0];
    for (int k = 0; k < 16; ++k) std::fprintf(f, k < 15 ? "%f " : "%f\n", m[k]);
  }
  std::fprintf(f, "Animation Clips: %zu\n", s.clips.size());
  size_t clipNumber = 0;
  for (const auto& [name, clip] : s.clips) {
    std::fprintf(f, "AnimationClip%zu\nName: %s\nStart Time: %f\nEnd Time: %f\n", clipNumber++,
                 name.c_str(), clip.startTime, clip.endTime);
    std::fprintf(f, "Bone Animations: %zu\n", clip.boneAnimations.size());
    for (size_t b = 0; b < clip.boneAnimations.size(); ++b) {
      const BoneAnimation& bone = clip.boneAnimations[b];
      std::fprintf(f, "BoneAnimation%zu\n", b);
      WriteKeys(f, "Position", bone.positions, [&](const PositionKey& k) {
        std::fprintf(f, "Position: %f %f %f\n", k.value.x, k.value.y, k.value.z);
      });
      WriteKeys(f, "Rotation", bone.rotations, [&](const RotationKey& k) {
        std::fprintf(f, "Rotation Quaternion: %f %f %f %f\n", k.value.x, k.value.y, k.value.z,
                     k.value.w);
      });
      WriteKeys(f, "Scale", bone.scales, [&](const ScaleKey& k) {
        std::fprintf(f, "Scale: %f %f %f\n", k.value.x, k.value.y, k.value.z);
      });
    }
  }
}

bool Finish(File file) { return std::ferror(file.get()) == 0 && std::fclose(file.release()) == 0; }

}  // namespace

bool WriteStaticModel(const std::string& path, const StaticModelData& model) {
  File file(std::fopen(path.c_str(), "w"), &std::fclose);
  if (!file) return false;
  WriteGeometry(file.get(), model);
  return Finish(std::move(file));
}

bool WriteSkinnedModel(const std::string& path, const SkinnedModelData& model) {
  File file(std::fopen(path.c_str(), "w"), &std::fclose);
  if (!file) return false;
  WriteGeometry(file.get(), model);
  WriteSkeleton(file.get(), model.skeleton);
  return Finish(std::move(file));
}

}  // namespace grindle::models

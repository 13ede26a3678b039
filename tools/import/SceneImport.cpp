#include "SceneImport.h"

#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <algorithm>
#include <assimp/Importer.hpp>
#include <filesystem>
#include <glm/gtc/matrix_inverse.hpp>
#include <map>
#include <set>

#include "Graphics/Loader/ModelCheck.h"

namespace grindle::import {
namespace {

// assimp's matrices are row-major for column vectors; GLM stores columns, so element (r, c)
// goes to m[c][r]. The model writer then emits the row-vector form the files hold.
glm::mat4 ToGlm(const aiMatrix4x4& a) {
  glm::mat4 m;
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) m[c][r] = a[r][c];
  }
  return m;
}

glm::vec3 ToGlm(const aiVector3D& v) { return {v.x, v.y, v.z}; }

glm::mat4 GlobalTransform(const aiNode* node) {
  glm::mat4 m(1.0f);
  for (; node != nullptr; node = node->mParent) m = ToGlm(node->mTransformation) * m;
  return m;
}

std::string TextureName(const aiMaterial& material, aiTextureType type,
                        std::vector<std::string>& warnings) {
  aiString path;
  if (material.GetTexture(type, 0, &path) != AI_SUCCESS || path.length == 0) {
    return models::kNoTexture;
  }
  const std::string text = path.C_Str();
  if (text[0] == '*') {
    warnings.push_back("an embedded texture (" + text + ") is not copied; the map is left out");
    return models::kNoTexture;
  }
  std::string name = std::filesystem::path(text).filename().string();
  // A name is one word in the model file.
  std::replace(name.begin(), name.end(), ' ', '_');
  return name;
}

models::ModelMaterial ConvertMaterial(const aiMaterial& source,
                                      std::vector<std::string>& warnings) {
  models::ModelMaterial m;
  aiColor4D diffuse(1, 1, 1, 1), ambient, specular(0.3f, 0.3f, 0.3f, 1);
  source.Get(AI_MATKEY_COLOR_DIFFUSE, diffuse);
  if (source.Get(AI_MATKEY_COLOR_AMBIENT, ambient) != AI_SUCCESS || ambient.IsBlack()) {
    ambient = aiColor4D(diffuse.r * 0.4f, diffuse.g * 0.4f, diffuse.b * 0.4f, 1);
  }
  source.Get(AI_MATKEY_COLOR_SPECULAR, specular);
  float shininess = 16.0f;
  source.Get(AI_MATKEY_SHININESS, shininess);
  m.ambient = {ambient.r, ambient.g, ambient.b, ambient.a};
  m.diffuse = {diffuse.r, diffuse.g, diffuse.b, diffuse.a};
  m.specular = {specular.r, specular.g, specular.b, std::max(shininess, 1.0f)};
  m.diffuseMapName = TextureName(source, aiTextureType_DIFFUSE, warnings);
  if (m.diffuseMapName == models::kNoTexture) {
    m.diffuseMapName = TextureName(source, aiTextureType_BASE_COLOR, warnings);
  }
  m.specularMapName = TextureName(source, aiTextureType_SPECULAR, warnings);
  m.normalMapName = TextureName(source, aiTextureType_NORMALS, warnings);
  return m;
}

void CollectMeshNodes(const aiNode* node, std::vector<const aiNode*>& out) {
  if (node->mNumMeshes > 0) out.push_back(node);
  for (unsigned i = 0; i < node->mNumChildren; ++i) CollectMeshNodes(node->mChildren[i], out);
}

// Bones in depth-first order so that parents come first; every ancestor of a bone is one too.
class Skeleton {
 public:
  Skeleton(const aiScene& scene, const std::vector<const aiNode*>& meshNodes) {
    std::set<std::string> named;
    for (const aiNode* node : meshNodes) {
      for (unsigned m = 0; m < node->mNumMeshes; ++m) {
        const aiMesh& mesh = *scene.mMeshes[node->mMeshes[m]];
        for (unsigned b = 0; b < mesh.mNumBones; ++b) {
          named.insert(mesh.mBones[b]->mName.C_Str());
          offsets_[mesh.mBones[b]->mName.C_Str()] = ToGlm(mesh.mBones[b]->mOffsetMatrix);
        }
        // Vertices of an unskinned mesh follow the node that holds the mesh.
        if (mesh.mNumBones == 0) named.insert(node->mName.C_Str());
      }
    }
    std::set<const aiNode*> wanted;
    for (const std::string& name : named) {
      for (const aiNode* n = scene.mRootNode->FindNode(name.c_str()); n != nullptr; n = n->mParent) {
        wanted.insert(n);
      }
    }
    Walk(scene.mRootNode, -1, wanted);
  }

  int IndexOf(const std::string& name) const {
    const auto found = index_.find(name);
    return found == index_.end() ? -1 : found->second;
  }
  const std::vector<const aiNode*>& Nodes() const { return nodes_; }

  void Fill(models::Skeleton& out) const {
    for (size_t i = 0; i < nodes_.size(); ++i) {
      const std::string name = nodes_[i]->mName.C_Str();
      out.boneNames.push_back(name.empty() ? "Bone" + std::to_string(i) : name);
      out.parents.push_back(parents_[i]);
      const auto offset = offsets_.find(name);
      out.offsets.push_back(offset != offsets_.end() ? offset->second
                                                     : glm::inverse(GlobalTransform(nodes_[i])));
    }
  }

 private:
  void Walk(const aiNode* node, int parent, const std::set<const aiNode*>& wanted) {
    int self = parent;
    if (wanted.count(node) != 0) {
      self = static_cast<int>(nodes_.size());
      index_[node->mName.C_Str()] = self;
      nodes_.push_back(node);
      parents_.push_back(parent);
    }
    for (unsigned i = 0; i < node->mNumChildren; ++i) Walk(node->mChildren[i], self, wanted);
  }

  std::vector<const aiNode*> nodes_;
  std::vector<int> parents_;
  std::map<std::string, int> index_;
  std::map<std::string, glm::mat4> offsets_;
};

template <class Vertex>
void AppendMesh(const aiMesh& mesh, const glm::mat4& place, models::ModelGeometry<Vertex>& out,
                std::vector<Vertex>& added) {
  const glm::mat3 normalPlace = glm::inverseTranspose(glm::mat3(place));
  models::Subset subset;
  subset.Index = static_cast<int32_t>(out.subsets.size());
  subset.MaterialIndex = static_cast<int32_t>(mesh.mMaterialIndex);
  subset.VertexStartIndex = static_cast<int32_t>(out.vertices.size());
  subset.VertexCount = static_cast<int32_t>(mesh.mNumVertices);
  subset.FaceStartIndex = static_cast<int32_t>(out.indices.size() / 3);
  added.clear();
  for (unsigned v = 0; v < mesh.mNumVertices; ++v) {
    Vertex vertex;
    vertex.position = glm::vec3(place * glm::vec4(ToGlm(mesh.mVertices[v]), 1.0f));
    if (mesh.HasNormals()) vertex.normal = glm::normalize(normalPlace * ToGlm(mesh.mNormals[v]));
    if (mesh.HasTangentsAndBitangents()) {
      vertex.tangent = glm::normalize(glm::mat3(place) * ToGlm(mesh.mTangents[v]));
    }
    if (mesh.HasTextureCoords(0)) {
      vertex.texC = {mesh.mTextureCoords[0][v].x, mesh.mTextureCoords[0][v].y};
    }
    added.push_back(vertex);
  }
  const uint32_t base = static_cast<uint32_t>(subset.VertexStartIndex);
  for (unsigned f = 0; f < mesh.mNumFaces; ++f) {
    const aiFace& face = mesh.mFaces[f];
    if (face.mNumIndices != 3) continue;  // points and lines
    for (int k = 0; k < 3; ++k) out.indices.push_back(static_cast<uint16_t>(base + face.mIndices[k]));
  }
  subset.FaceCount = static_cast<int32_t>(out.indices.size() / 3) - subset.FaceStartIndex;
  out.subsets.push_back(subset);
}

// The five strongest influences, renormalised to sum 1.
void SetInfluences(models::SkinnedVertex& vertex, std::vector<std::pair<float, int>> influences,
                   size_t& dropped) {
  std::sort(influences.begin(), influences.end(), std::greater<>());
  if (influences.size() > models::kInfluences) {
    ++dropped;
    influences.resize(models::kInfluences);
  }
  float total = 0.0f;
  for (const auto& [weight, bone] : influences) total += weight;
  for (size_t k = 0; k < influences.size(); ++k) {
    vertex.weights[k] = total > 0.0f ? influences[k].first / total : 0.0f;
    vertex.boneIndices[k] = influences[k].second;
  }
}

models::BoneAnimation StillBone(const aiNode& node) {
  aiVector3D scale, position;
  aiQuaternion rotation;
  node.mTransformation.Decompose(scale, rotation, position);
  models::BoneAnimation bone;
  bone.positions.push_back({0.0f, ToGlm(position)});
  bone.rotations.push_back({0.0f, {rotation.x, rotation.y, rotation.z, rotation.w}});
  bone.scales.push_back({0.0f, ToGlm(scale)});
  return bone;
}

models::AnimationClip ConvertAnimation(const aiAnimation& animation, const Skeleton& skeleton) {
  const double ticks = animation.mTicksPerSecond > 0.0 ? animation.mTicksPerSecond : 25.0;
  models::AnimationClip clip;
  clip.startTime = 0.0f;
  clip.endTime = static_cast<float>(animation.mDuration / ticks);
  for (const aiNode* node : skeleton.Nodes()) clip.boneAnimations.push_back(StillBone(*node));
  const auto seconds = [&](double time) { return static_cast<float>(time / ticks); };
  for (unsigned c = 0; c < animation.mNumChannels; ++c) {
    const aiNodeAnim& channel = *animation.mChannels[c];
    const int bone = skeleton.IndexOf(channel.mNodeName.C_Str());
    if (bone < 0) continue;
    models::BoneAnimation& out = clip.boneAnimations[static_cast<size_t>(bone)];
    if (channel.mNumPositionKeys > 0) out.positions.clear();
    for (unsigned k = 0; k < channel.mNumPositionKeys; ++k) {
      const aiVectorKey& key = channel.mPositionKeys[k];
      out.positions.push_back({seconds(key.mTime), ToGlm(key.mValue)});
    }
    if (channel.mNumRotationKeys > 0) out.rotations.clear();
    for (unsigned k = 0; k < channel.mNumRotationKeys; ++k) {
      const aiQuatKey& key = channel.mRotationKeys[k];
      out.rotations.push_back(
          {seconds(key.mTime), {key.mValue.x, key.mValue.y, key.mValue.z, key.mValue.w}});
    }
    if (channel.mNumScalingKeys > 0) out.scales.clear();
    for (unsigned k = 0; k < channel.mNumScalingKeys; ++k) {
      const aiVectorKey& key = channel.mScalingKeys[k];
      out.scales.push_back({seconds(key.mTime), ToGlm(key.mValue)});
    }
  }
  return clip;
}

void ImportSkinned(const aiScene& scene, const std::vector<const aiNode*>& meshNodes,
                   ImportResult& result) {
  models::SkinnedModelData& model = result.skinnedModel;
  const Skeleton skeleton(scene, meshNodes);
  skeleton.Fill(model.skeleton);
  std::vector<models::SkinnedVertex> added;
  size_t dropped = 0;
  for (const aiNode* node : meshNodes) {
    for (unsigned m = 0; m < node->mNumMeshes; ++m) {
      const aiMesh& mesh = *scene.mMeshes[node->mMeshes[m]];
      // Skinned vertices stay in mesh space (the bone offsets start there); an unskinned mesh is
      // placed in the model and rides its node's bone.
      const glm::mat4 place = mesh.mNumBones > 0 ? glm::mat4(1.0f) : GlobalTransform(node);
      AppendMesh(mesh, place, model, added);
      std::vector<std::vector<std::pair<float, int>>> influences(mesh.mNumVertices);
      for (unsigned b = 0; b < mesh.mNumBones; ++b) {
        const aiBone& bone = *mesh.mBones[b];
        const int index = skeleton.IndexOf(bone.mName.C_Str());
        for (unsigned w = 0; w < bone.mNumWeights; ++w) {
          const aiVertexWeight& weight = bone.mWeights[w];
          if (weight.mWeight > 0.0f) influences[weight.mVertexId].emplace_back(weight.mWeight, index);
        }
      }
      const int own = skeleton.IndexOf(node->mName.C_Str());
      for (unsigned v = 0; v < mesh.mNumVertices; ++v) {
        if (influences[v].empty()) influences[v].emplace_back(1.0f, std::max(own, 0));
        SetInfluences(added[v], influences[v], dropped);
      }
      model.vertices.insert(model.vertices.end(), added.begin(), added.end());
    }
  }
  if (dropped > 0) {
    result.warnings.push_back(std::to_string(dropped) +
                              " vertices had more than five influences; the weakest were dropped");
  }
  for (unsigned a = 0; a < scene.mNumAnimations; ++a) {
    const aiAnimation& animation = *scene.mAnimations[a];
    std::string name = animation.mName.length > 0 ? animation.mName.C_Str()
                                                  : "Clip" + std::to_string(a);
    std::replace(name.begin(), name.end(), ' ', '_');
    model.skeleton.clips[name] = ConvertAnimation(animation, skeleton);
  }
  if (model.skeleton.boneNames.size() > models::kMaxBones) {
    result.warnings.push_back(std::to_string(model.skeleton.boneNames.size()) +
                              " bones; the engine draws models of at most 96");
  }
}

}  // namespace

ImportResult ImportScene(const std::string& path) {
  ImportResult result;
  Assimp::Importer importer;
  // Points and lines are dropped; v = 0 is the top of an image, as the engine's textures expect.
  importer.SetPropertyInteger(AI_CONFIG_PP_SBP_REMOVE, aiPrimitiveType_POINT | aiPrimitiveType_LINE);
  const aiScene* scene = importer.ReadFile(
      path, aiProcess_Triangulate | aiProcess_GenSmoothNormals | aiProcess_CalcTangentSpace |
                aiProcess_JoinIdenticalVertices | aiProcess_SortByPType | aiProcess_FlipUVs |
                aiProcess_ValidateDataStructure);
  if (scene == nullptr || scene->mRootNode == nullptr) {
    result.error = importer.GetErrorString();
    return result;
  }
  std::vector<const aiNode*> meshNodes;
  CollectMeshNodes(scene->mRootNode, meshNodes);
  for (unsigned i = 0; i < scene->mNumMeshes; ++i) result.skinned |= scene->mMeshes[i]->HasBones();
  std::vector<models::ModelMaterial> materials;
  for (unsigned i = 0; i < scene->mNumMaterials; ++i) {
    materials.push_back(ConvertMaterial(*scene->mMaterials[i], result.warnings));
  }
  size_t vertexCount = 0;
  if (result.skinned) {
    ImportSkinned(*scene, meshNodes, result);
    result.skinnedModel.materials = materials;
    vertexCount = result.skinnedModel.vertices.size();
  } else {
    std::vector<models::StaticVertex> added;
    for (const aiNode* node : meshNodes) {
      for (unsigned m = 0; m < node->mNumMeshes; ++m) {
        AppendMesh(*scene->mMeshes[node->mMeshes[m]], GlobalTransform(node), result.staticModel,
                   added);
        result.staticModel.vertices.insert(result.staticModel.vertices.end(), added.begin(),
                                           added.end());
      }
    }
    result.staticModel.materials = materials;
    vertexCount = result.staticModel.vertices.size();
  }
  if (vertexCount > models::kMaxVertices) {
    result.error = std::to_string(vertexCount) +
                   " vertices; a model holds at most 65536 (16-bit indices)";
    return result;
  }
  if (vertexCount == 0) {
    result.error = "the scene has no triangles";
    return result;
  }
  result.ok = true;
  return result;
}

}  // namespace grindle::import

// grindle_import end to end: an OBJ cube (also converted to FBX by assimp's own exporter) and a
// glTF bar with a two-bone skin and two animations, both written here by our own code, go through
// the tool and come back through the engine's loaders and checks with their counts, colours,
// texture names, skeleton, clips and pose intact.
#include <assimp/scene.h>
#include <gtest/gtest.h>

#include <assimp/Exporter.hpp>
#include <assimp/Importer.hpp>

#include <cstring>
#include <filesystem>
#include <glm/gtc/epsilon.hpp>
#include <string>
#include <vector>

#include "Graphics/Loader/Loader.h"
#include "Graphics/Loader/ModelCheck.h"
#include "Graphics/Loader/SkeletonPose.h"
#include "ImportScenes.h"
#include "ProcessRun.h"
#include "TempWorkDir.h"

namespace grindle {
namespace {

ProcessResult Import(const std::string& arguments) {
  return RunProcess(std::string("'") + GRINDLE_IMPORT + "' " + arguments + " 2>&1");
}

void ExpectCube(const std::string& path) {
  models::StaticModelData m;
  models::ScanProblem problem;
  models::LoadStaticMesh(path, m.vertices, m.indices, m.subsets, m.materials, &problem);
  EXPECT_EQ(problem.line, 0) << problem.expected;
  EXPECT_EQ(m.vertices.size(), 24u);  // four corners per face: each face has its own normal
  EXPECT_EQ(m.indices.size(), 36u);
  ASSERT_EQ(m.subsets.size(), 1u);
  EXPECT_EQ(m.subsets[0].FaceCount, 12);
  ASSERT_FALSE(m.materials.empty());
  const models::ModelMaterial& material = m.materials[static_cast<size_t>(m.subsets[0].MaterialIndex)];
  EXPECT_TRUE(glm::all(glm::epsilonEqual(material.diffuse, glm::vec4(0.8f, 0.25f, 0.1f, 1), 1e-5f)));
  EXPECT_EQ(material.specular.w, 32.0f);
  EXPECT_EQ(material.diffuseMapName, "Crate.png");
  EXPECT_EQ(material.normalMapName, models::kNoTexture);
  for (const models::StaticVertex& v : m.vertices) {
    EXPECT_NEAR(std::abs(v.position.x), 0.5f, 1e-6f);
    EXPECT_NEAR(glm::length(v.normal), 1.0f, 1e-4f);
    EXPECT_NEAR(glm::length(v.tangent), 1.0f, 1e-4f);
    // Every vertex sits on the face its normal points out of.
    EXPECT_NEAR(glm::dot(v.position, v.normal), 0.5f, 1e-5f);
  }
  const models::CheckedModel checked = models::CheckStaticModel(path, m, problem);
  EXPECT_TRUE(checked.drawable);
  EXPECT_TRUE(checked.problems.empty()) << models::SummariseProblems(checked);
}

// The cube through OBJ, and through FBX written by assimp's own exporter from the OBJ (as ASCII
// FBX: assimp 5.2 cannot read back the binary FBX it writes).
TEST(ImportRoundTrip, ObjAndFbxCubesBecomeStaticModels) {
  TempWorkDir dir;
  dir.Write("cube.obj", kCubeObj);
  dir.Write("cube.mtl", kCubeMtl);
  {
    Assimp::Importer importer;
    const aiScene* scene = importer.ReadFile("cube.obj", 0);
    ASSERT_NE(scene, nullptr) << importer.GetErrorString();
    Assimp::Exporter exporter;
    ASSERT_EQ(exporter.Export(scene, "fbxa", "cube.fbx"), AI_SUCCESS) << exporter.GetErrorString();
  }
  for (const char* source : {"cube.obj", "cube.fbx"}) {
    SCOPED_TRACE(source);
    const ProcessResult run = Import(std::string(source) + " out.smdl");
    ASSERT_EQ(run.status, 0) << run.output;
    EXPECT_EQ(run.output, "out.mdl\n");
    ExpectCube("out.mdl");
  }
}

TEST(ImportRoundTrip, GltfSkinAndAnimationsBecomeASkinnedModel) {
  TempWorkDir dir;
  dir.Write("bar.gltf", BarGltf());
  const ProcessResult run = Import("bar.gltf Bar.mdl");
  ASSERT_EQ(run.status, 0) << run.output;
  EXPECT_EQ(run.output, "Bar.smdl\n");
  models::SkinnedModelData m;
  models::ScanProblem problem;
  models::LoadSkinnedMesh("Bar.smdl", m.vertices, m.indices, m.subsets, m.materials, m.skeleton,
                          &problem);
  EXPECT_EQ(problem.line, 0) << problem.expected;
  EXPECT_EQ(m.vertices.size(), 12u);
  EXPECT_EQ(m.indices.size(), 60u);
  const models::Skeleton& s = m.skeleton;
  const auto bone = [&](const char* name) {
    const auto found = std::find(s.boneNames.begin(), s.boneNames.end(), name);
    return found == s.boneNames.end() ? -1 : static_cast<int>(found - s.boneNames.begin());
  };
  const int root = bone("Root"), upper = bone("Upper");
  ASSERT_GE(root, 0);
  ASSERT_GE(upper, 0);
  EXPECT_EQ(s.parents[static_cast<size_t>(upper)], root);
  ASSERT_EQ(s.clips.size(), 2u);
  ASSERT_EQ(s.clips.count("Bend"), 1u);
  ASSERT_EQ(s.clips.count("Wave"), 1u);
  EXPECT_FLOAT_EQ(s.clips.at("Bend").endTime, 1.0f);
  // The middle ring's 0.3 + 0.3 came back as a half each.
  for (const models::SkinnedVertex& v : m.vertices) {
    float total = 0.0f;
    for (float w : v.weights) total += w;
    EXPECT_NEAR(total, 1.0f, 1e-5f);
    if (v.position.y == 1.0f) {
      EXPECT_NEAR(v.weights[0], 0.5f, 1e-5f);
    }
  }
  // Posed at the end of "Bend", the top of the bar lies along -x from the pivot.
  std::vector<glm::mat4> finals;
  models::ComputeFinalTransforms(s, s.clips.at("Bend"), 1.0f, finals);
  for (const models::SkinnedVertex& v : m.vertices) {
    if (v.position.y != 2.0f) continue;
    glm::vec4 posed(0.0f);
    for (int k = 0; k < models::kInfluences; ++k) {
      posed += v.weights[k] * (finals[static_cast<size_t>(v.boneIndices[k])] *
                               glm::vec4(v.position, 1.0f));
    }
    EXPECT_NEAR(posed.x, -1.0f, 1e-4f);
    EXPECT_NEAR(posed.y, 1.0f + v.position.x, 1e-4f);
  }
  const models::CheckedModel checked = models::CheckSkinnedModel("Bar.smdl", m, problem);
  EXPECT_TRUE(checked.drawable);
  EXPECT_TRUE(checked.problems.empty()) << models::SummariseProblems(checked);
}

TEST(ImportRoundTrip, HelpAndUnreadableInputsWriteNothing) {
  TempWorkDir dir;
  ProcessResult run = Import("--help");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.output.rfind("usage: grindle_import INPUT OUTPUT", 0), 0u) << run.output;
  run = Import("missing.obj out.mdl");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.output.rfind("grindle_import: missing.obj: ", 0), 0u) << run.output;
  EXPECT_TRUE(std::filesystem::is_empty(dir.path));
}

}  // namespace
}  // namespace grindle

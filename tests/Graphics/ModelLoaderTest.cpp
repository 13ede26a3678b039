// The model file loaders on hand-written files: exact values (including the subset fields the file
// lists in reverse memory order and indices that wrap at 16 bits), the quirks of formatted input,
// what the checks make of broken files, and the poses of the skinned bar.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <glm/gtc/epsilon.hpp>
#include <string>
#include <tuple>

#include "Graphics/Loader/Loader.h"
#include "Graphics/Loader/ModelCheck.h"
#include "Graphics/Loader/SkeletonPose.h"

namespace grindle::models {
namespace {

const std::string kModels = GRINDLE_TEST_MODELS;

std::string WriteTemp(const std::string& name, const std::string& text) {
  const std::string path = testing::TempDir() + name;
  std::ofstream(path) << text;
  return path;
}

TEST(ModelLoaderTest, StaticFileLoadsExactValues) {
  StaticModelData m;
  ScanProblem problem;
  LoadStaticMesh(kModels + "/Static/Pyramid.mdl", m.vertices, m.indices, m.subsets, m.materials,
                 &problem);
  EXPECT_EQ(problem.line, 0) << problem.expected;
  ASSERT_EQ(m.vertices.size(), 5u);
  const StaticVertex& v = m.vertices[3];
  EXPECT_EQ(v.position, glm::vec3(-1, 0, 1));
  EXPECT_FLOAT_EQ(v.normal.x, -0.633724f);
  EXPECT_FLOAT_EQ(v.normal.y, -0.443607f);
  EXPECT_EQ(v.texC, glm::vec2(0, 0));
  EXPECT_EQ(v.tangent, glm::vec3(1, 0, 0));
  ASSERT_EQ(m.indices.size(), 18u);
  // Face 3 is written "65539 4 0": the first index wraps to 3.
  EXPECT_EQ(m.indices[9], 3);
  EXPECT_EQ(m.indices[10], 4);
  ASSERT_EQ(m.subsets.size(), 2u);
  const Subset& s = m.subsets[1];
  EXPECT_EQ(std::tuple(s.Index, s.MaterialIndex, s.FaceCount, s.FaceStartIndex, s.VertexCount,
                       s.VertexStartIndex),
            std::tuple(1, 1, 2, 4, 4, 1));
  ASSERT_EQ(m.materials.size(), 2u);
  EXPECT_EQ(m.materials[0].diffuseMapName, "Crate.png");
  EXPECT_EQ(m.materials[0].normalMapName, kNoTexture);
  EXPECT_EQ(m.materials[0].specular, glm::vec4(0.25f, 0.25f, 0.25f, 8));
  EXPECT_EQ(m.materials[1].ambient, glm::vec4(0.1f, 0.2f, 0.6f, 1));
}

TEST(ModelLoaderTest, SkinnedFileLoadsSkeletonAndClips) {
  SkinnedModelData m;
  ScanProblem problem;
  LoadSkinnedMesh(kModels + "/Skinned/Bar.smdl", m.vertices, m.indices, m.subsets, m.materials,
                  m.skeleton, &problem);
  EXPECT_EQ(problem.line, 0) << problem.expected;
  ASSERT_EQ(m.vertices.size(), 12u);
  EXPECT_EQ(m.vertices[5].boneIndices[1], 1);
  EXPECT_FLOAT_EQ(m.vertices[5].weights[0], 0.5f);
  EXPECT_EQ(m.vertices[9].boneIndices[0], 1);
  EXPECT_EQ(m.indices.size(), 60u);
  const Skeleton& s = m.skeleton;
  ASSERT_EQ(s.boneNames.size(), 2u);
  // "Upper Arm" is cut at the blank; the rest of its line does not disturb the next.
  EXPECT_EQ(s.boneNames[1], "Upper");
  EXPECT_EQ(s.parents[0], -1);
  EXPECT_EQ(s.parents[1], 0);
  // Written row by row: the 14th value (row 3, column 1) is the y translation.
  EXPECT_EQ(s.offsets[1][3][1], -1.0f);
  EXPECT_EQ(s.offsets[1][1][1], 1.0f);
  ASSERT_EQ(s.clips.size(), 2u);
  const AnimationClip& bend = s.clips.at("Bend");
  EXPECT_EQ(bend.endTime, 2.0f);
  ASSERT_EQ(bend.boneAnimations.size(), 2u);
  const BoneAnimation& upper = bend.boneAnimations[1];
  ASSERT_EQ(upper.rotations.size(), 2u);
  EXPECT_EQ(upper.rotations[1].time, 2.0f);
  EXPECT_FLOAT_EQ(upper.rotations[1].value.z, 0.707107f);
  EXPECT_EQ(upper.positions[0].value, glm::vec3(0, 1, 0));
  EXPECT_EQ(s.clips.at("Rest").startTime, 0.5f);
}

// A small file with one of its lines replaced, loaded as a static model.
struct Variant {
  const char* name;
  std::string text;
};

const std::string kTwoVertexHead =
    "Vertices: 2\nVertex0\nPosition: 1 2 3\nNormal: 0 1 0\nTexture Coordinates: 0 0\n"
    "Tangent: 1 0 0\nVertex1\nPosition: 4 5 6\nNormal: 0 1 0\nTexture Coordinates: 1 1\n"
    "Tangent: 1 0 0\n";

TEST(ModelLoaderTest, FormattedInputQuirks) {
  StaticModelData m;
  ScanProblem problem;
  // A malformed position keeps its zeroes, the next vertex still reads, the problem names line 3.
  std::string text = kTwoVertexHead;
  text.replace(text.find("Position: 1 2 3"), 15, "Position: 1 x 3");
  text += "Faces: 0\nSubsets: 0\nMaterials: 0\n";
  LoadStaticMesh(WriteTemp("bad_position.mdl", text), m.vertices, m.indices, m.subsets, m.materials,
                 &problem);
  ASSERT_EQ(m.vertices.size(), 2u);
  EXPECT_EQ(m.vertices[0].position, glm::vec3(0));
  EXPECT_EQ(m.vertices[1].position, glm::vec3(4, 5, 6));
  EXPECT_EQ(problem.line, 3);
  EXPECT_EQ(problem.expected, "Position: %f %f %f");
  EXPECT_FALSE(problem.endedEarly);

  // An empty texture name swallows the next line's key, and every later line then misses its
  // format; a vertex count of 0 goes on with faces.
  text =
      "Vertices: 0\nFaces: 1\nFace0\nIndices: 0 1 -1\nSubsets: 0\nMaterials: 1\nMaterial0\n"
      "DiffuseName: \nSpecularMapName: none\nNormalMapName: n.png\nAmbient: 1 1 1 1\n"
      "Diffuse: 1 1 1 1\nSpecular: 1 1 1 1\n";
  LoadStaticMesh(WriteTemp("empty_name.mdl", text), m.vertices, m.indices, m.subsets, m.materials,
                 &problem);
  EXPECT_TRUE(m.vertices.empty());
  EXPECT_EQ(m.indices[2], 65535);
  ASSERT_EQ(m.materials.size(), 1u);
  EXPECT_EQ(m.materials[0].diffuseMapName, "SpecularMapName:");
  EXPECT_EQ(m.materials[0].specularMapName, "");
  EXPECT_EQ(m.materials[0].normalMapName, "");
  EXPECT_EQ(m.materials[0].ambient, glm::vec4(0));
  EXPECT_EQ(problem.line, 10);
}

TEST(ModelLoaderTest, ChecksKeepOnlyWhatCanBeDrawn) {
  const auto check = [](const std::string& name, const std::string& text) {
    StaticModelData m;
    ScanProblem problem;
    const std::string path = WriteTemp(name, text);
    LoadStaticMesh(path, m.vertices, m.indices, m.subsets, m.materials, &problem);
    return CheckStaticModel(path, m, problem);
  };
  const std::string faces = "Faces: 2\nFace0\nIndices: 0 1 1\nFace1\nIndices: 1 0 7\n";
  const std::string subsets =
      "Subsets: 2\nSubset0\nIndex: 0\nMaterialIndex: 0\nFaceCount: 1\nFaceStartIndex: 0\n"
      "VertexCount: 2\nVertexStartIndex: 0\nSubset1\nIndex: 1\nMaterialIndex: 5\nFaceCount: 1\n"
      "FaceStartIndex: 1\nVertexCount: 2\nVertexStartIndex: 0\n";
  const std::string material =
      "Materials: 1\nMaterial0\nDiffuseName: none\nSpecularMapName: none\nNormalMapName: none\n"
      "Ambient: 1 1 1 1\nDiffuse: 1 1 1 1\nSpecular: 1 1 1 1\n";

  // Index 7 of two vertices (face 1, line 16) drops that subset only.
  CheckedModel checked = check("bad_index.mdl", kTwoVertexHead + faces + subsets + material);
  EXPECT_TRUE(checked.drawable);
  ASSERT_EQ(checked.ranges.size(), 1u);
  EXPECT_EQ(checked.ranges[0].indexCount, 3u);
  ASSERT_EQ(checked.problems.size(), 1u);
  EXPECT_NE(checked.problems[0].find("bad_index.mdl:16: index 7 is beyond the 2 vertices"),
            std::string::npos)
      << checked.problems[0];

  // Material 5 of one falls back to plain white.
  std::string fixed = faces;
  fixed.replace(fixed.find("1 0 7"), 5, "1 0 0");
  checked = check("bad_material.mdl", kTwoVertexHead + fixed + subsets + material);
  ASSERT_EQ(checked.ranges.size(), 2u);
  EXPECT_EQ(checked.materials[checked.ranges[1].material].diffuse, glm::vec4(1));
  EXPECT_NE(SummariseProblems(checked).find("names material 5 of 1"), std::string::npos);

  // Fewer lines than the counts promise: reported where the file ends, nothing drawn.
  checked = check("short.mdl", kTwoVertexHead + "Faces: 4\nFace0\nIndices: 0 1 1\n");
  EXPECT_FALSE(checked.drawable);
  EXPECT_TRUE(checked.ranges.empty());
  EXPECT_NE(SummariseProblems(checked).find("short.mdl:15: the file ends where it should hold"),
            std::string::npos)
      << SummariseProblems(checked);
}

TEST(ModelLoaderTest, SkinnedInfluencesNamingMissingBonesAreDropped) {
  SkinnedModelData m;
  ScanProblem problem;
  const std::string path = kModels + "/Skinned/Bar.smdl";
  LoadSkinnedMesh(path, m.vertices, m.indices, m.subsets, m.materials, m.skeleton, &problem);
  m.vertices[4].boneIndices[1] = 9;
  const CheckedModel checked = CheckSkinnedModel(path, m, problem);
  EXPECT_TRUE(checked.drawable);
  EXPECT_EQ(m.vertices[4].weights[1], 0.0f);
  EXPECT_EQ(m.vertices[4].boneIndices[1], 0);
  EXPECT_NE(SummariseProblems(checked).find("Bar.smdl:35: vertex 4 names a bone"),
            std::string::npos)
      << SummariseProblems(checked);
}

// Posing the hand-written bar: keys interpolated and held, bones composed through their parents,
// clip time looped or clamped, and skeletons that animate nothing or point in a circle.
SkinnedModelData LoadBar() {
  SkinnedModelData m;
  LoadSkinnedMesh(std::string(GRINDLE_TEST_MODELS) + "/Skinned/Bar.smdl", m.vertices, m.indices,
                  m.subsets, m.materials, m.skeleton);
  return m;
}

glm::vec3 Apply(const glm::mat4& m, const glm::vec3& p) { return glm::vec3(m * glm::vec4(p, 1)); }

void ExpectNear(const glm::vec3& actual, const glm::vec3& expected) {
  EXPECT_TRUE(glm::all(glm::epsilonEqual(actual, expected, 1e-4f)))
      << actual.x << " " << actual.y << " " << actual.z;
}

TEST(ModelPoseTest, UpperBoneTurnsAboutItsPivot) {
  const SkinnedModelData bar = LoadBar();
  const AnimationClip& bend = bar.skeleton.clips.at("Bend");
  std::vector<glm::mat4> finals;
  const glm::vec3 top(0, 2, 0);
  const struct {
    float time;
    glm::vec3 top;
  } cases[] = {
      {-1.0f, {0, 2, 0}},                  // before the first key: held there
      {0.0f, {0, 2, 0}},                   // bind pose
      {1.0f, {-0.707107f, 1.707107f, 0}},  // slerp half way: 45 degrees
      {2.0f, {-1, 1, 0}},                  // 90 degrees about z
      {5.0f, {-1, 1, 0}},                  // after the last key: held there
  };
  for (const auto& c : cases) {
    ComputeFinalTransforms(bar.skeleton, bend, c.time, finals);
    ASSERT_EQ(finals.size(), 2u);
    SCOPED_TRACE(c.time);
    ExpectNear(Apply(finals[1], top), c.top);
    // The root does not move, and the pivot stays where it is.
    ExpectNear(Apply(finals[0], top), top);
    ExpectNear(Apply(finals[1], {0, 1, 0}), {0, 1, 0});
  }
}

TEST(ModelPoseTest, ClipTimeLoopsOrHolds) {
  AnimationClip clip;
  clip.startTime = 0.5f;
  clip.endTime = 1.5f;
  EXPECT_FLOAT_EQ(AdvanceClipTime(clip, 1.4f, 0.3f, true), 0.7f);
  EXPECT_FLOAT_EQ(AdvanceClipTime(clip, 1.4f, 2.3f, true), 0.7f);
  EXPECT_FLOAT_EQ(AdvanceClipTime(clip, 1.4f, 0.3f, false), 1.5f);
  EXPECT_FLOAT_EQ(AdvanceClipTime(clip, 0.0f, 0.1f, true), 0.5f);
  clip.endTime = clip.startTime;
  EXPECT_FLOAT_EQ(AdvanceClipTime(clip, 3.0f, 0.1f, true), 0.5f);
}

TEST(ModelPoseTest, UnanimatedAndCircularSkeletonsKeepTheBindPose) {
  SkinnedModelData bar = LoadBar();
  std::vector<glm::mat4> finals;
  // A clip without bone animations leaves every bone where the offsets put it.
  ComputeFinalTransforms(bar.skeleton, AnimationClip{}, 1.0f, finals);
  for (const glm::mat4& m : finals) ExpectNear(Apply(m, {0.3f, 2, 0.3f}), {0.3f, 2, 0.3f});
  // Bones that are each other's parent, or name a bone that does not exist, end as roots.
  bar.skeleton.parents = {1, 0};
  ComputeFinalTransforms(bar.skeleton, bar.skeleton.clips.at("Bend"), 2.0f, finals);
  ASSERT_EQ(finals.size(), 2u);
  bar.skeleton.parents = {7, -3};
  ComputeFinalTransforms(bar.skeleton, bar.skeleton.clips.at("Bend"), 2.0f, finals);
  ExpectNear(Apply(finals[1], {0, 2, 0}), {-1, 1, 0});
}

TEST(ModelLoaderDeathTest, UnopenableFileIsTheLoadersAssertion) {
  StaticModelData m;
  EXPECT_DEATH(
      LoadStaticMesh("/nonexistent/Missing.mdl", m.vertices, m.indices, m.subsets, m.materials),
      "File failed to open");
}

}  // namespace
}  // namespace grindle::models

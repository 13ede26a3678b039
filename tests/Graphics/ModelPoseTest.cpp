// Posing the hand-written bar: keys interpolated and held, bones composed through their parents,
// clip time looped or clamped, and skeletons that animate nothing or point in a circle.
#include <gtest/gtest.h>

#include <glm/gtc/epsilon.hpp>

#include "Graphics/Loader/Loader.h"
#include "Graphics/Loader/SkeletonPose.h"

namespace grindle::models {
namespace {

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

}  // namespace
}  // namespace grindle::models

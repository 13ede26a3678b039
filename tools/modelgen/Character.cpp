#include "Character.h"

#include <cmath>
#include <glm/gtc/matrix_transform.hpp>

#include "MeshBuilder.h"

namespace grindle::modelgen {
namespace {

constexpr float kPi = 3.14159265f;

enum Bone { kHips, kSpine, kHead, kArmLeft, kArmRight, kLegLeft, kLegRight, kBoneCount };

struct BoneSpec {
  const char* name;
  int parent;
  glm::vec3 pivot;  // in model space, bind pose
};

const BoneSpec kBones[kBoneCount] = {
    {"Hips", -1, {0.0f, -0.1f, 0.0f}},     {"Spine", kHips, {0.0f, 0.05f, 0.0f}},
    {"Head", kSpine, {0.0f, 0.55f, 0.0f}}, {"ArmLeft", kSpine, {0.42f, 0.48f, 0.0f}},
    {"ArmRight", kSpine, {-0.42f, 0.48f, 0.0f}}, {"LegLeft", kHips, {0.17f, -0.1f, 0.0f}},
    {"LegRight", kHips, {-0.17f, -0.1f, 0.0f}},
};

// Degrees about an axis as the file's x, y, z, w quaternion.
glm::vec4 Turn(const glm::vec3& axis, float degrees) {
  const float half = degrees * kPi / 360.0f;
  return glm::vec4(axis * std::sin(half), std::cos(half));
}

// One clip from per-bone rotations sampled at evenly spaced times (the last equals the first, so
// the loop is seamless) and a vertical hip offset per sample.
models::AnimationClip MakeClip(float length, int samples,
                               const std::function<glm::vec4(int bone, float phase)>& rotation,
                               const std::function<float(float phase)>& bob) {
  models::AnimationClip clip;
  clip.startTime = 0.0f;
  clip.endTime = length;
  clip.boneAnimations.resize(kBoneCount);
  for (int b = 0; b < kBoneCount; ++b) {
    models::BoneAnimation& anim = clip.boneAnimations[static_cast<size_t>(b)];
    const glm::vec3 local =
        kBones[b].parent < 0 ? kBones[b].pivot : kBones[b].pivot - kBones[kBones[b].parent].pivot;
    for (int s = 0; s <= samples; ++s) {
      const float phase = static_cast<float>(s % samples) / static_cast<float>(samples);
      const float time = length * static_cast<float>(s) / static_cast<float>(samples);
      const glm::vec3 lift = b == kHips ? glm::vec3(0.0f, bob(phase), 0.0f) : glm::vec3(0.0f);
      anim.positions.push_back({time, local + lift});
      anim.rotations.push_back({time, rotation(b, phase)});
    }
    anim.scales.push_back({0.0f, glm::vec3(1.0f)});
  }
  return clip;
}

models::AnimationClip Idle() {
  return MakeClip(
      2.0f, 8,
      [](int bone, float phase) {
        const float wave = std::sin(2.0f * kPi * phase);
        switch (bone) {
          case kSpine: return Turn({1, 0, 0}, 3.0f * wave);
          case kHead: return Turn({0, 1, 0}, 12.0f * std::sin(2.0f * kPi * phase + 1.0f));
          case kArmLeft: return Turn({0, 0, 1}, 4.0f + 3.0f * wave);
          case kArmRight: return Turn({0, 0, 1}, -4.0f - 3.0f * wave);
          default: return Turn({1, 0, 0}, 0.0f);
        }
      },
      [](float phase) { return 0.015f * std::sin(2.0f * kPi * phase); });
}

models::AnimationClip Run() {
  return MakeClip(
      0.6f, 8,
      [](int bone, float phase) {
        const float swing = std::sin(2.0f * kPi * phase);
        switch (bone) {
          case kSpine: return Turn({1, 0, 0}, 12.0f);
          case kHead: return Turn({1, 0, 0}, -8.0f);
          case kLegLeft: return Turn({1, 0, 0}, 40.0f * swing);
          case kLegRight: return Turn({1, 0, 0}, -40.0f * swing);
          case kArmLeft: return Turn({1, 0, 0}, -35.0f * swing);
          case kArmRight: return Turn({1, 0, 0}, 35.0f * swing);
          default: return Turn({1, 0, 0}, 0.0f);
        }
      },
      [](float phase) { return 0.06f * std::abs(std::sin(2.0f * kPi * phase)); });
}

// The head's parts in the suit's material (0: white, so the object's colour shows).
void AddSuitHead(MeshBuilder& mesh, Head head) {
  mesh.SetBone(kHead);
  if (head == Head::kRobot) {
    mesh.Box({0.0f, 0.8f, 0.0f}, {0.27f, 0.24f, 0.25f});
    mesh.Box({0.0f, 1.12f, 0.0f}, {0.025f, 0.1f, 0.025f});  // antenna
  } else if (head == Head::kHat) {
    mesh.Lathe({0.0f, 0.94f, 0.0f}, 0.62f, [](float t) { return 0.4f * (1.0f - t) + 0.02f; }, 16,
               4);
  }
}

// The head's parts in skin (material 1).
void AddSkinHead(MeshBuilder& mesh, Head head) {
  const auto flat = [](const glm::vec3&) { return 1.0f; };
  mesh.SetBone(kHead);
  switch (head) {
    case Head::kVisor:
      mesh.Ellipsoid({0.0f, 0.8f, 0.0f}, {0.3f, 0.28f, 0.3f}, flat, 16, 10);
      break;
    case Head::kRobot:
      mesh.Ellipsoid({0.0f, 1.25f, 0.0f}, {0.06f, 0.06f, 0.06f}, flat, 8, 5);  // antenna tip
      break;
    case Head::kEars:
      mesh.Ellipsoid({0.0f, 0.8f, 0.0f}, {0.29f, 0.27f, 0.29f}, flat, 16, 10);
      for (const float x : {0.13f, -0.13f}) {
        mesh.Ellipsoid({x, 1.2f, -0.03f}, {0.07f, 0.26f, 0.045f}, flat, 10, 8);
      }
      break;
    case Head::kHat:
      mesh.Ellipsoid({0.0f, 0.78f, 0.0f}, {0.28f, 0.26f, 0.28f}, flat, 16, 10);
      break;
  }
}

// The face (+z) in the dark material (2): a visor, a robot's eye slit, or two eyes.
void AddFace(MeshBuilder& mesh, Head head) {
  mesh.SetBone(kHead);
  if (head == Head::kEars) {
    for (const float x : {0.09f, -0.09f}) mesh.Box({x, 0.86f, 0.26f}, {0.04f, 0.05f, 0.04f});
  } else {
    mesh.Box({0.0f, head == Head::kHat ? 0.8f : 0.84f, 0.24f}, {0.2f, 0.07f, 0.08f});
  }
}

}  // namespace

models::SkinnedModelData MakeCharacter(Head head) {
  // Materials: 0 the suit (white, so the object's colour shows), 1 skin, 2 visor and boots.
  MeshBuilder mesh;
  mesh.BeginSubset(0);
  mesh.SetBone(kSpine);
  mesh.Box({0.0f, 0.22f, 0.0f}, {0.32f, 0.34f, 0.2f});   // chest
  mesh.SetBone(kHips);
  mesh.Box({0.0f, -0.16f, 0.0f}, {0.28f, 0.1f, 0.18f});  // hips
  for (const auto& [bone, x] : {std::pair{kArmLeft, 0.42f}, std::pair{kArmRight, -0.42f}}) {
    mesh.SetBone(bone);
    mesh.Box({x, 0.18f, 0.0f}, {0.09f, 0.32f, 0.1f});
  }
  for (const auto& [bone, x] : {std::pair{kLegLeft, 0.17f}, std::pair{kLegRight, -0.17f}}) {
    mesh.SetBone(bone);
    mesh.Box({x, -0.5f, 0.0f}, {0.12f, 0.38f, 0.13f});
  }
  AddSuitHead(mesh, head);
  mesh.BeginSubset(1);
  AddSkinHead(mesh, head);
  for (const auto& [bone, x] : {std::pair{kArmLeft, 0.42f}, std::pair{kArmRight, -0.42f}}) {
    mesh.SetBone(bone);
    mesh.Box({x, -0.2f, 0.02f}, {0.08f, 0.07f, 0.08f});  // hands
  }
  mesh.BeginSubset(2);
  AddFace(mesh, head);
  for (const auto& [bone, x] : {std::pair{kLegLeft, 0.17f}, std::pair{kLegRight, -0.17f}}) {
    mesh.SetBone(bone);
    mesh.Box({x, -0.92f, 0.06f}, {0.13f, 0.08f, 0.2f});  // boots point forward
  }
  models::SkinnedModelData model = mesh.Skinned({Colour({1.0f, 1.0f, 1.0f}, 24.0f),
                                                 Colour({0.95f, 0.8f, 0.65f}, 8.0f),
                                                 Colour({0.08f, 0.08f, 0.1f}, 64.0f)});
  models::Skeleton& skeleton = model.skeleton;
  for (const BoneSpec& bone : kBones) {
    skeleton.boneNames.push_back(bone.name);
    skeleton.parents.push_back(bone.parent);
    skeleton.offsets.push_back(glm::translate(glm::mat4(1.0f), -bone.pivot));
  }
  skeleton.clips["Idle"] = Idle();
  skeleton.clips["Run"] = Run();
  return model;
}

}  // namespace grindle::modelgen

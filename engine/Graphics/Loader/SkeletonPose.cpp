#include "Graphics/Loader/SkeletonPose.h"

#include <algorithm>
#include <cmath>
#include <glm/gtc/matrix_inverse.hpp>
#include <glm/gtc/quaternion.hpp>
#include <glm/gtx/quaternion.hpp>

namespace grindle::models {
namespace {

template <class Key>
float Blend(const std::vector<Key>& keys, float time, size_t& first) {
  // Keys are few per bone; a linear walk beats a search at these sizes.
  first = 0;
  while (first + 2 < keys.size() && time >= keys[first + 1].time) ++first;
  const float span = keys[first + 1].time - keys[first].time;
  return span > 0.0f ? std::clamp((time - keys[first].time) / span, 0.0f, 1.0f) : 0.0f;
}

template <class Key, class Mix>
auto Sample(const std::vector<Key>& keys, float time, decltype(Key::value) none, Mix mix) {
  if (keys.empty()) return none;
  if (keys.size() == 1 || time <= keys.front().time) return keys.front().value;
  if (time >= keys.back().time) return keys.back().value;
  size_t first = 0;
  const float s = Blend(keys, time, first);
  return mix(keys[first].value, keys[first + 1].value, s);
}

glm::quat ToQuat(const glm::vec4& q) { return glm::quat(q.w, q.x, q.y, q.z); }

}  // namespace

glm::mat4 InterpolateBone(const BoneAnimation& bone, float time) {
  const auto lerp3 = [](const glm::vec3& a, const glm::vec3& b, float s) {
    return a + (b - a) * s;
  };
  const glm::vec3 position = Sample(bone.positions, time, glm::vec3(0.0f), lerp3);
  const glm::vec3 scale = Sample(bone.scales, time, glm::vec3(1.0f), lerp3);
  const glm::vec4 rotation = Sample(bone.rotations, time, glm::vec4(0, 0, 0, 1),
                                    [](const glm::vec4& a, const glm::vec4& b, float s) {
                                      const glm::quat q = glm::slerp(ToQuat(a), ToQuat(b), s);
                                      return glm::vec4(q.x, q.y, q.z, q.w);
                                    });
  const glm::quat q = glm::normalize(ToQuat(rotation));
  glm::mat4 local = glm::toMat4(q);
  local[0] *= scale.x;
  local[1] *= scale.y;
  local[2] *= scale.z;
  local[3] = glm::vec4(position, 1.0f);
  return local;
}

void ComputeFinalTransforms(const Skeleton& skeleton, const AnimationClip& clip, float time,
                            std::vector<glm::mat4>& finalTransforms) {
  const size_t count = skeleton.boneNames.size();
  std::vector<glm::mat4> toRoot(count, glm::mat4(1.0f));
  // 0 not done, 1 in progress (a circle), 2 done.
  std::vector<char> state(count, 0);
  const auto parentOf = [&](size_t bone) -> int32_t {
    const int32_t parent = skeleton.parents[bone];
    return parent >= 0 && static_cast<size_t>(parent) < count && static_cast<size_t>(parent) != bone
               ? parent
               : -1;
  };
  const auto local = [&](size_t bone) -> glm::mat4 {
    if (bone < clip.boneAnimations.size()) {
      const BoneAnimation& animation = clip.boneAnimations[bone];
      if (!animation.positions.empty() || !animation.rotations.empty() ||
          !animation.scales.empty()) {
        return InterpolateBone(animation, time);
      }
    }
    // Bind pose: the offset takes model space into the bone's space, its inverse back out.
    const int32_t parent = parentOf(bone);
    const glm::mat4 bindToRoot = glm::inverse(skeleton.offsets[bone]);
    return parent < 0 ? bindToRoot : skeleton.offsets[static_cast<size_t>(parent)] * bindToRoot;
  };
  const auto resolve = [&](auto& self, size_t bone) -> const glm::mat4& {
    if (state[bone] == 2) return toRoot[bone];
    const int32_t parent = parentOf(bone);
    state[bone] = 1;
    if (parent >= 0 && state[static_cast<size_t>(parent)] != 1) {
      toRoot[bone] = self(self, static_cast<size_t>(parent)) * local(bone);
    } else {
      toRoot[bone] = local(bone);
    }
    state[bone] = 2;
    return toRoot[bone];
  };
  finalTransforms.resize(count);
  for (size_t bone = 0; bone < count; ++bone) {
    finalTransforms[bone] = resolve(resolve, bone) * skeleton.offsets[bone];
  }
}

float AdvanceClipTime(const AnimationClip& clip, float time, float dt, bool loop) {
  const float length = clip.endTime - clip.startTime;
  if (!(length > 0.0f)) return clip.startTime;
  float next = time + dt;
  if (next < clip.startTime) next = clip.startTime;
  if (next < clip.endTime) return next;
  if (!loop) return clip.endTime;
  return clip.startTime + std::fmod(next - clip.startTime, length);
}

}  // namespace grindle::models

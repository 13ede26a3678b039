// Poses a skeleton from an animation clip: each bone's keys interpolated at a clip time (position
// and scale linearly, rotation by slerp, held at the first and last key), composed from the root
// down through the parent indices, and multiplied by the bone offsets into the final matrices the
// skinning shaders take (bind-pose model space to animated model space, column-vector form).
// Pure functions; any thread.
#pragma once

#include <glm/mat4x4.hpp>
#include <vector>

#include "Graphics/Loader/ModelData.h"

namespace grindle::models {

// The bone's local transform (translation x rotation x scale) at `time`.
glm::mat4 InterpolateBone(const BoneAnimation& bone, float time);

// Final matrices, one per bone. A bone the clip does not animate keeps its bind pose; a parent
// index that is out of range, or that leads round in a circle, makes the bone a root.
void ComputeFinalTransforms(const Skeleton& skeleton, const AnimationClip& clip, float time,
                            std::vector<glm::mat4>& finalTransforms);

// The clip time `dt` seconds after `time`: wrapped into [start, end) when looping, else held at
// the end. A clip of no length stays at its start.
float AdvanceClipTime(const AnimationClip& clip, float time, float dt, bool loop);

}  // namespace grindle::models

// The demo characters: chunky figures two units tall, centred on their origin and facing +z, whose
// parts hang rigidly from seven bones (hips, spine, head, two arms, two legs), with the clips
// "Idle" (breathing, looking about) and "Run" (legs and arms swinging). They share body, skeleton
// and clips and differ in the head, which is what tells them apart from above at arena distance:
// a visor, a robot's box head with an antenna, long ears, a pointed hat.
#pragma once

#include "Graphics/Loader/ModelData.h"

namespace grindle::modelgen {

enum class Head { kVisor, kRobot, kEars, kHat };

models::SkinnedModelData MakeCharacter(Head head);

}  // namespace grindle::modelgen

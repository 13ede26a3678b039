// The demo character: a chunky figure two units tall, centred on its origin and facing +z, whose
// parts hang rigidly from seven bones (hips, spine, head, two arms, two legs), with the clips
// "Idle" (breathing, looking about) and "Run" (legs and arms swinging). Big head and shoulders and a
// dark visor keep it readable from above at arena distance.
#pragma once

#include "Graphics/Loader/ModelData.h"

namespace grindle::modelgen {

models::SkinnedModelData MakeCharacter();

}  // namespace grindle::modelgen

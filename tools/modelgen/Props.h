// The demo game's static props, each centred on its origin: Crate (a 1-unit box with the crate
// texture), Barrel (1.2 high, bulging, with iron hoops), Pillar (4 high, with base and capital) and
// Potato (a lumpy potato-shaped bomb about 1 unit long with a fuse).
#pragma once

#include "Graphics/Loader/ModelData.h"

namespace grindle::modelgen {

models::StaticModelData MakeCrate();
models::StaticModelData MakeBarrel();
models::StaticModelData MakePillar();
models::StaticModelData MakePotato();

}  // namespace grindle::modelgen

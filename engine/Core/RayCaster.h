// The physics world's ray cast as other systems reach it: the physics system publishes one under
// the root key `Systems.RayCaster` (a `RayCaster*` entry) and scripts cast through it. Main thread.
#pragma once

#include <string>

namespace grindle {

struct RayHit {
  double distance = -1.0;               // -1.0 on a miss
  std::string name = "BODY_NOT_FOUND";  // the object hit
};

class RayCaster {
 public:
  // The direction need not be normalised; the physics system decides the reach.
  virtual RayHit Cast(double x, double y, double z, double dirX, double dirY, double dirZ) = 0;

 protected:
  ~RayCaster() = default;
};

}  // namespace grindle

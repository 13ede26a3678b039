// The physics system: gives game objects with a "Body" rigid bodies in one Bullet world, keeps them
// and the database in step each frame, and answers ray casts (published as `Systems.RayCaster`
// from Load to Unload). One per process: constructing a second stops the program. Main thread
// only; the root database must outlive Unload.
#pragma once

#include <memory>

#include "Core/RayCaster.h"
#include "Core/SystemBase.h"

namespace grindle {

class Physics;

class PhysicsInterface final : public SystemBase, public RayCaster {
 public:
  PhysicsInterface();
  ~PhysicsInterface() override;

  void Update(float dt) override;
  // From (x, y, z) along the direction, normalised, for 200 units; the nearest solid body.
  RayHit Cast(double x, double y, double z, double dirX, double dirY, double dirZ) override;

  // The simulation behind the system, for tools and tests; null after Unload.
  Physics* Simulation() const { return pPhysics_.get(); }

 private:
  void OnLoad() override;
  void OnStart() override;
  void OnExit() override;
  void OnUnload() override;

  std::unique_ptr<Physics> pPhysics_;
  bool isListening_ = false;
};

}  // namespace grindle

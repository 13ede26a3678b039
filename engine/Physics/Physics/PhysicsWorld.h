// The Bullet world the physics system simulates in: broad phase (a 200-unit cube centred on the
// origin), dispatcher, solver and gravity (0, -15, 0). Owned by the Physics object, created when
// the system starts. Main thread only. Bodies added to it stay owned by their body records and
// must be removed from the world before they are destroyed.
#pragma once

#include <btBulletDynamicsCommon.h>

#include <memory>
#include <string>

namespace grindle {

inline constexpr float kWorldSize = 200.0f;
inline constexpr float kGravityY = -15.0f;
inline constexpr float kStepSeconds = 0.016666668f;
inline constexpr int kStepsPerFrame = 4;

class PhysicsWorld {
 public:
  PhysicsWorld();
  ~PhysicsWorld();
  PhysicsWorld(const PhysicsWorld&) = delete;
  PhysicsWorld& operator=(const PhysicsWorld&) = delete;

  btDiscreteDynamicsWorld& Dynamics() { return *pWorld_; }
  const btDiscreteDynamicsWorld& Dynamics() const { return *pWorld_; }
  btVector3 Gravity() const { return pWorld_->getGravity(); }

  // Puts a body somewhere without waking it. Each step refreshes the broad-phase boxes of awake
  // bodies only, so that a level at rest costs little; a sleeping body moved here gets its box now.
  void Teleport(btCollisionObject& object, const btTransform& placed);

  // One fixed step of 1/60 s, whatever the frame time.
  void StepOnce() { pWorld_->stepSimulation(kStepSeconds, 0); }

 private:
  std::unique_ptr<btDefaultCollisionConfiguration> pConfiguration_;
  std::unique_ptr<btCollisionDispatcher> pDispatcher_;
  std::unique_ptr<btAxisSweep3> pBroadphase_;
  std::unique_ptr<btSequentialImpulseConstraintSolver> pSolver_;
  std::unique_ptr<btDiscreteDynamicsWorld> pWorld_;
  CalculateCombinedCallback previousRestitution_;
  CalculateCombinedCallback previousFriction_;
};

// Prints a report on standard output: bodies the library cannot simulate as described, and bad
// body descriptions. Reports never stop the program.
void PrintReport(const std::string& text);

}  // namespace grindle

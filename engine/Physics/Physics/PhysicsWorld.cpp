#include "Physics/Physics/PhysicsWorld.h"

#include <BulletCollision/CollisionDispatch/btManifoldResult.h>

#include <cmath>
#include <cstdio>

#if defined(__SSE__)
#include <xmmintrin.h>
#endif

namespace grindle {
namespace {

constexpr int kSolverIterations = 8;
constexpr unsigned int kFlushToZeroBit = 0x8000;

// Materials combine as the geometric mean, so a bouncy body keeps its bounciness against a floor of
// the same restitution instead of losing it to a product.
btScalar CombinedRestitution(const btCollisionObject* a, const btCollisionObject* b) {
  return std::sqrt(a->getRestitution() * b->getRestitution());
}

btScalar CombinedFriction(const btCollisionObject* a, const btCollisionObject* b) {
  return std::sqrt(a->getFriction() * b->getFriction());
}

void SetFlushToZero() {
#if defined(__SSE__)
  _mm_setcsr(_mm_getcsr() | kFlushToZeroBit);
#endif
}

}  // namespace

void PrintReport(const std::string& text) { std::printf("%s", text.c_str()); }

PhysicsWorld::PhysicsWorld() {
  SetFlushToZero();
  pConfiguration_ = std::make_unique<btDefaultCollisionConfiguration>();
  pDispatcher_ = std::make_unique<btCollisionDispatcher>(pConfiguration_.get());
  const btVector3 half(kWorldSize / 2, kWorldSize / 2, kWorldSize / 2);
  pBroadphase_ = std::make_unique<btAxisSweep3>(-half, half);
  pSolver_ = std::make_unique<btSequentialImpulseConstraintSolver>();
  pWorld_ = std::make_unique<btDiscreteDynamicsWorld>(pDispatcher_.get(), pBroadphase_.get(),
                                                      pSolver_.get(), pConfiguration_.get());
  pWorld_->setGravity(btVector3(0, kGravityY, 0));
  pWorld_->getSolverInfo().m_numIterations = kSolverIterations;
  pWorld_->setForceUpdateAllAabbs(false);  // see Teleport

  previousRestitution_ = gCalculateCombinedRestitutionCallback;
  previousFriction_ = gCalculateCombinedFrictionCallback;
  gCalculateCombinedRestitutionCallback = &CombinedRestitution;
  gCalculateCombinedFrictionCallback = &CombinedFriction;
}

PhysicsWorld::~PhysicsWorld() {
  gCalculateCombinedRestitutionCallback = previousRestitution_;
  gCalculateCombinedFrictionCallback = previousFriction_;
  pWorld_.reset();
  pSolver_.reset();
  pBroadphase_.reset();
  pDispatcher_.reset();
  pConfiguration_.reset();
}

void PhysicsWorld::Teleport(btCollisionObject& object, const btTransform& placed) {
  object.setWorldTransform(placed);
  if (!object.isActive()) pWorld_->updateSingleAabb(&object);
}

}  // namespace grindle

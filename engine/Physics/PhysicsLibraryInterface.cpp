#include "Physics/PhysicsLibraryInterface.h"

#include "Core/Database.h"
#include "Core/WellKnownKeys.h"
#include "Physics/Physics/DatabaseValues.h"
#include "Physics/Physics/Physics.h"
#include "Physics/PhysicsMessages.h"

namespace grindle {

PhysicsInterface::PhysicsInterface()
    : SystemBase("Physics"), pPhysics_(std::make_unique<Physics>()) {}

PhysicsInterface::~PhysicsInterface() {
  if (isListening_) StopListeningToPhysicsMessages(Messages());
}

void PhysicsInterface::OnLoad() {
  if (Database* systems = FindDatabase(Root(), KeyOf(WellKnown::Systems))) {
    systems->Add<RayCaster*>("RayCaster", this);
  }
}

void PhysicsInterface::OnStart() {
  pPhysics_->Start(Root(), Messages());
  ListenToPhysicsMessages(Messages(), *pPhysics_, Root());
  isListening_ = true;
}

void PhysicsInterface::OnExit() {
  StopListeningToPhysicsMessages(Messages());
  isListening_ = false;
}

void PhysicsInterface::OnUnload() {
  if (Database* systems = FindDatabase(Root(), KeyOf(WellKnown::Systems))) {
    const DataHandle<RayCaster*> published = systems->Find<RayCaster*>("RayCaster");
    if (published && *published == this) systems->Remove("RayCaster");
  }
  pPhysics_.reset();
}

void PhysicsInterface::Update(float) {
  if (pPhysics_) pPhysics_->Update();
}

RayHit PhysicsInterface::Cast(double x, double y, double z, double dirX, double dirY, double dirZ) {
  if (!pPhysics_) return {};
  const auto f = [](double value) { return static_cast<float>(value); };
  return pPhysics_->CastRay(btVector3(f(x), f(y), f(z)), btVector3(f(dirX), f(dirY), f(dirZ)));
}

}  // namespace grindle

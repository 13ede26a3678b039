#include "Physics/Physics/Physics.h"

#include <algorithm>

#include "Core/Assert.h"
#include "Core/MessageHandler.h"
#include "Core/Messages/Catalogue.h"
#include "Core/WellKnownKeys.h"
#include "Physics/Physics/BodyBuilder.h"
#include "Physics/Physics/DatabaseValues.h"
#include "Physics/Physics/TransformSync.h"

namespace grindle {
namespace {

Physics* PHYSICS = nullptr;

}  // namespace

Physics::Physics() {
  GRINDLE_ASSERT_TEXT(PHYSICS != nullptr, "PHYSICS != mNULL", "to much physics");
  PHYSICS = this;
}

Physics::~Physics() {
  RemoveAllBodies();
  contacts_.Detach();
  pWorld_.reset();
  PHYSICS = nullptr;
}

void Physics::Start(Database& root, MessageHandler& messages) {
  pRoot_ = &root;
  pMessages_ = &messages;
  if (!pWorld_) pWorld_ = std::make_unique<PhysicsWorld>();
  contacts_.Attach();
}

BodyRecord* Physics::AddBody(Database& object, std::string_view name, std::string_view level) {
  GRINDLE_ASSERT(!pWorld_, "bodies can only be added once the physics system has started");
  std::unique_ptr<BodyRecord> record = BuildBody(object, name, level, pWorld_->Gravity());
  if (!record) return nullptr;
  const auto same = std::find_if(records_.begin(), records_.end(), [&](const auto& other) {
    return other->uLevelKey_ == record->uLevelKey_ && other->uObjectKey_ == record->uObjectKey_;
  });
  if (same != records_.end()) RemoveBody(same->get(), false);

  BodyRecord* added = record.get();
  added->pObjectDb_ = &object;
  Database& bodyGroup = *FindDatabase(object, KeyOf(WellKnown::Body));
  added->dhBack_ = bodyGroup.Add<BodyRecord*>("BodyGetBack", added);
  added->dhBack_.TrackEntry();
  btDiscreteDynamicsWorld& world = pWorld_->Dynamics();
  if (btRigidBody* body = added->Rigid()) {
    world.addRigidBody(body);
    // A fixed body stays asleep as the world left it, or every body resting on it is checked
    // against it each step.
    if (!added->isStatic_) body->activate(true);
  } else {
    // A static power-up, like a static body, ignores other static bodies.
    const int group =
        added->isStatic_ ? btBroadphaseProxy::StaticFilter : btBroadphaseProxy::DefaultFilter;
    const int mask = added->isStatic_
                         ? btBroadphaseProxy::AllFilter ^ btBroadphaseProxy::StaticFilter
                         : btBroadphaseProxy::AllFilter;
    world.addCollisionObject(added->pObject_.get(), group, mask);
  }
  records_.push_back(std::move(record));
  live_.insert(added);
  byObject_[&object] = added;
  return added;
}

void Physics::RemoveBody(BodyRecord* record, bool reportEnds) {
  const auto last = std::find_if(records_.rbegin(), records_.rend(),
                                 [record](const auto& r) { return r.get() == record; });
  if (last == records_.rend()) return;
  const auto found = std::next(last).base();
  contacts_.Forget(record->pObject_.get(), reportEnds ? &events_ : nullptr);
  if (reportEnds) SendContacts();

  std::unique_ptr<BodyRecord> owned = std::move(*found);
  records_.erase(found);
  live_.erase(record);
  if (const auto bound = byObject_.find(record->pObjectDb_);
      bound != byObject_.end() && bound->second == record) {
    byObject_.erase(bound);
  }
  if (Database* object = ObjectOf(*owned)) {
    if (Database* body = FindDatabase(*object, KeyOf(WellKnown::Body))) {
      body->Remove(KeyOf(WellKnown::BodyGetBack));
    }
  }
  pWorld_->Dynamics().removeCollisionObject(owned->pObject_.get());
}

void Physics::RemoveAllBodies() {
  // Nothing is reported, so the contacts go at once rather than pair by pair for each body, and
  // the records from the back, where each is found first: a level of thousands of bodies unloads
  // in linear time.
  contacts_.Clear();
  while (!records_.empty()) RemoveBody(records_.back().get(), false);
}

Database* Physics::ObjectOf(const BodyRecord& record) const {
  return pRoot_ != nullptr ? FindObject(*pRoot_, record.uLevelKey_, record.uObjectKey_) : nullptr;
}

BodyRecord* Physics::RecordOf(const Database& object) const {
  // Velocity requests name their object every frame: the object the record was made for is found
  // in one probe, without walking its "Body" group, as long as its back-pointer entry stands.
  if (const auto bound = byObject_.find(&object); bound != byObject_.end()) {
    BodyRecord* record = bound->second;
    if (record->dhBack_ && record->sName_ == object.Name()) return record;
  }
  const Database* body = FindDatabase(object, KeyOf(WellKnown::Body));
  if (body == nullptr) return nullptr;
  const DataHandle<BodyRecord*> back = body->Find<BodyRecord*>(KeyOf(WellKnown::BodyGetBack));
  if (!back) return nullptr;
  // The entry may have been copied along with its object, or outlived its record: only a record
  // still in the list, and for an object of this name, counts.
  BodyRecord* record = *back;
  if (!live_.contains(record) || record->sName_ != object.Name()) return nullptr;
  return record;
}

BodyRecord* Physics::RecordInCurrentLevel(std::string_view name) const {
  if (pRoot_ == nullptr) return nullptr;
  const Database* object =
      FindObject(*pRoot_, HashValue(CurrentLevelName(*pRoot_)), HashValue(name));
  return object != nullptr ? RecordOf(*object) : nullptr;
}

const std::string& Physics::NameOf(const btCollisionObject* object) const {
  static const std::string notFound = kBodyNotFound;
  for (const auto& record : records_) {
    if (record->pObject_.get() == object) return record->sName_;
  }
  return notFound;
}

bool Physics::IsPaused() const { return ReadFlag(*pRoot_, KeyOf(WellKnown::isGamePaused)); }

void Physics::Update() {
  if (!pWorld_ || IsPaused()) return;
  LevelObjects objects(*pRoot_);
  for (const std::unique_ptr<BodyRecord>& owned : records_) {
    BodyRecord& record = *owned;
    if (record.isStatic_) continue;
    if (!record.binding_.IsBound()) {
      Database* object = objects.Find(record.uLevelKey_, record.uObjectKey_);
      Database* transform =
          object != nullptr ? FindDatabase(*object, KeyOf(WellKnown::Transform)) : nullptr;
      if (transform == nullptr) continue;
      BindTransform(*transform, record);
    }
    PushToBody(record, *pWorld_);
  }
  for (int step = 0; step < kStepsPerFrame; ++step) {
    pWorld_->StepOnce();
    contacts_.Collect(events_);
    SendContacts();
  }
  // Collision messages are only queued during the steps, so the entries bound before are intact.
  for (const std::unique_ptr<BodyRecord>& record : records_) {
    if (record->binding_.IsBound()) PullFromBody(*record);
  }
}

void Physics::SendContacts() {
  for (const ContactEvent& event : events_) {
    msg::Post(*pMessages_, event.begins ? msg::kCollisionBegin : msg::kCollisionEnd,
              NameOf(event.first), NameOf(event.second));
  }
  events_.clear();
}

}  // namespace grindle

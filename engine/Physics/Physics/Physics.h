// The one physics object of the process: the world, the list of body records in creation order and
// the contact tracker. Constructing a second one while one exists stops the program. The world
// exists from Start until destruction. Main thread only; collision messages are queued on the
// message handler during Update.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/RayCaster.h"
#include "Physics/Physics/BodyRecord.h"
#include "Physics/Physics/ContactTracker.h"
#include "Physics/Physics/PhysicsWorld.h"
#include "Physics/Physics/TransformSync.h"

namespace grindle {

inline constexpr const char* kBodyNotFound = "BODY_NOT_FOUND";

class Physics {
 public:
  Physics();
  ~Physics();
  Physics(const Physics&) = delete;
  Physics& operator=(const Physics&) = delete;

  // Creates the world; bodies can be added from then on.
  void Start(Database& root, MessageHandler& messages);
  bool IsStarted() const { return pWorld_ != nullptr; }

  // Builds and adds the body of `object` (Levels.<level>.GameObjects.<name>) when it has a "Body";
  // a body the same object already had is replaced.
  BodyRecord* AddBody(Database& object, std::string_view name, std::string_view level);
  // Takes the record out of the list and its body out of the world; "BodyGetBack" is deleted when
  // the object still exists. Contacts it had are reported as ended when `reportEnds` is set.
  void RemoveBody(BodyRecord* record, bool reportEnds);
  void RemoveAllBodies();

  // The live record of an object, through its "BodyGetBack" entry; null when it has none.
  BodyRecord* RecordOf(const Database& object) const;
  // The record of a named object in the current level, or null.
  BodyRecord* RecordInCurrentLevel(std::string_view name) const;
  // The name of the object whose body this is, or "BODY_NOT_FOUND".
  const std::string& NameOf(const btCollisionObject* object) const;

  // One frame: unless the game is paused, bodies follow the database, the world takes its four
  // fixed steps (collision messages queued), and the database follows the bodies.
  void Update();
  RayHit CastRay(const btVector3& origin, const btVector3& direction) const;

  // Turns or moves a body as a request asks, without waking it.
  void Teleport(BodyRecord& record, const btTransform& placed) {
    pWorld_->Teleport(*record.pObject_, placed);
  }

  const std::vector<std::unique_ptr<BodyRecord>>& Records() const { return records_; }
  Database* ObjectOf(const BodyRecord& record) const;

 private:
  bool IsPaused() const;
  void SendContacts();

  Database* pRoot_ = nullptr;
  MessageHandler* pMessages_ = nullptr;
  std::unique_ptr<PhysicsWorld> pWorld_;
  std::vector<std::unique_ptr<BodyRecord>> records_;
  // The same records, for telling a live "BodyGetBack" from a stale one without a scan.
  std::unordered_set<const BodyRecord*> live_;
  // Each object a body was added for, to its record (the latest when announced twice).
  std::unordered_map<const Database*, BodyRecord*> byObject_;
  ContactTracker contacts_;
  std::vector<ContactEvent> events_;
};

}  // namespace grindle

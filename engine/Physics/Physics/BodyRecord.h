// One game object's body: which object it belongs to (by level and object key, how its transform
// is found again whenever the bound entries have gone, since levels can be replaced under the
// physics system), the shape offset read at creation, the bound transform entries and the library
// objects. Owned by the Physics object's list; the collision object is in the world
// for exactly as long as the record is in the list. Main thread only.
#pragma once

#include <btBulletDynamicsCommon.h>

#include <cstdint>
#include <memory>
#include <string>

#include "Physics/Physics/SyncMemo.h"
#include "Physics/Physics/TransformBinding.h"

namespace grindle {

struct BodyRecord {
  BodyRecord() = default;
  ~BodyRecord() { dhBack_.UntrackEntry(); }
  BodyRecord(const BodyRecord&) = delete;
  BodyRecord& operator=(const BodyRecord&) = delete;

  // Declared before the object so that the object, which points at them, goes first. The object,
  // the offset, the bound entries and the memo come first because every frame reads them for
  // every body: together they fill four cache lines.
  std::unique_ptr<btBoxShape> pBox_;
  std::unique_ptr<btCompoundShape> pPhantomShape_;
  std::unique_ptr<btCollisionObject> pObject_;
  bool isStatic_ = false;
  btVector3 vOffset_{0, 0, 0};
  TransformBinding binding_;  // unbound for static bodies, which are never synchronised
  SyncMemo memo_;

  std::string sName_;
  uint32_t uLevelKey_ = 0;
  uint32_t uObjectKey_ = 0;
  // The object the body was added for and its "BodyGetBack" entry, tracked: while the handle is
  // set, that object still exists and still points at this record.
  const Database* pObjectDb_ = nullptr;
  DataHandle<BodyRecord*> dhBack_;

  // Null for a phantom, which is not simulated.
  btRigidBody* Rigid() const { return btRigidBody::upcast(pObject_.get()); }
};

}  // namespace grindle

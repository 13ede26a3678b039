#include "Physics/Physics/ContactTracker.h"

#include <algorithm>

namespace grindle {
namespace {

ContactTracker* gAttached = nullptr;

bool IsPhantom(const btCollisionObject* object) {
  return object->getInternalType() == btCollisionObject::CO_GHOST_OBJECT;
}

}  // namespace

void ContactTracker::Attach() {
  if (attached_) return;
  gAttached = this;
  attached_ = true;
  gContactStartedCallback = &ContactTracker::Started;
  gContactEndedCallback = &ContactTracker::Ended;
}

void ContactTracker::Detach() {
  if (!attached_) return;
  gContactStartedCallback = nullptr;
  gContactEndedCallback = nullptr;
  gAttached = nullptr;
  attached_ = false;
}

void ContactTracker::Started(btPersistentManifold* const& manifold) {
  if (gAttached != nullptr) gAttached->Change(*manifold, +1);
}

void ContactTracker::Ended(btPersistentManifold* const& manifold) {
  if (gAttached != nullptr) gAttached->Change(*manifold, -1);
}

void ContactTracker::Change(const btPersistentManifold& manifold, int delta) {
  const btCollisionObject* a = manifold.getBody0();
  const btCollisionObject* b = manifold.getBody1();
  if (IsPhantom(b) && !IsPhantom(a)) std::swap(a, b);
  const auto pa = reinterpret_cast<uintptr_t>(a);
  const auto pb = reinterpret_cast<uintptr_t>(b);
  const Key key{std::min(pa, pb), std::max(pa, pb)};
  auto found = pairs_.find(key);
  if (found == pairs_.end()) {
    // The last contact of a pair already forgotten (its object is leaving the world).
    if (delta < 0) return;
    found = pairs_.emplace(key, Pair{a, b}).first;
  }
  Pair& pair = found->second;
  pair.manifolds += delta;
  if (!pair.dirty) {
    pair.dirty = true;
    changed_.push_back(key);
  }
}

void ContactTracker::Collect(std::vector<ContactEvent>& events) {
  // Only the changes are sorted, which keeps one step's events in a stable order.
  std::sort(changed_.begin(), changed_.end());
  for (const Key& key : changed_) {
    const auto found = pairs_.find(key);
    if (found == pairs_.end()) continue;
    Pair& pair = found->second;
    pair.dirty = false;
    const bool touching = pair.manifolds > 0;
    if (touching != pair.reported) events.push_back({touching, pair.first, pair.second});
    pair.reported = touching;
    if (!touching) pairs_.erase(found);
  }
  changed_.clear();
}

void ContactTracker::Forget(const btCollisionObject* object, std::vector<ContactEvent>* ends) {
  std::vector<Key> gone;
  for (const auto& [key, pair] : pairs_) {
    if (pair.first != object && pair.second != object) continue;
    gone.push_back(key);
  }
  std::sort(gone.begin(), gone.end());
  for (const Key& key : gone) {
    const auto found = pairs_.find(key);
    if (ends != nullptr && found->second.reported) {
      ends->push_back({false, found->second.first, found->second.second});
    }
    pairs_.erase(found);
  }
}

void ContactTracker::Clear() {
  pairs_.clear();
  changed_.clear();
}

}  // namespace grindle

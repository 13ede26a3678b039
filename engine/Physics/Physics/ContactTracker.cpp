#include "Physics/Physics/ContactTracker.h"

#include <algorithm>

namespace grindle {
namespace {

bool IsPhantom(const btCollisionObject* object) {
  return object->getInternalType() == btCollisionObject::CO_GHOST_OBJECT;
}

}  // namespace

ContactTracker::Pair ContactTracker::MakePair(const btCollisionObject* a,
                                              const btCollisionObject* b) {
  if (IsPhantom(b) && !IsPhantom(a)) std::swap(a, b);
  const auto pa = reinterpret_cast<uintptr_t>(a);
  const auto pb = reinterpret_cast<uintptr_t>(b);
  return {a, b, std::min(pa, pb), std::max(pa, pb)};
}

void ContactTracker::Collect(btDispatcher& dispatcher, std::vector<ContactEvent>& events) {
  current_.clear();
  const int count = dispatcher.getNumManifolds();
  for (int i = 0; i < count; ++i) {
    const btPersistentManifold* manifold = dispatcher.getManifoldByIndexInternal(i);
    if (manifold->getNumContacts() == 0) continue;
    current_.push_back(MakePair(manifold->getBody0(), manifold->getBody1()));
  }
  // A compound shape may give one pair several manifolds.
  std::sort(current_.begin(), current_.end());
  current_.erase(std::unique(current_.begin(), current_.end()), current_.end());

  auto now = current_.begin();
  auto before = touching_.begin();
  while (now != current_.end() || before != touching_.end()) {
    if (before == touching_.end() || (now != current_.end() && *now < *before)) {
      events.push_back({true, now->first, now->second});
      ++now;
    } else if (now == current_.end() || *before < *now) {
      events.push_back({false, before->first, before->second});
      ++before;
    } else {
      ++now;
      ++before;
    }
  }
  touching_.swap(current_);
}

void ContactTracker::Forget(const btCollisionObject* object, std::vector<ContactEvent>* ends) {
  const auto involves = [object](const Pair& pair) {
    return pair.first == object || pair.second == object;
  };
  if (ends != nullptr) {
    for (const Pair& pair : touching_) {
      if (involves(pair)) ends->push_back({false, pair.first, pair.second});
    }
  }
  touching_.erase(std::remove_if(touching_.begin(), touching_.end(), involves), touching_.end());
}

}  // namespace grindle

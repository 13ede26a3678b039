// Turns the library's contact manifolds into collision begin and end events. While attached, the
// library tells the tracker whenever a manifold gains its first contact point or loses its last;
// after a step only the pairs so touched are looked at, and a pair whose touching state differs
// from the one last reported yields one begin or one end. A pair counts as touching while any of
// its manifolds has a contact (a compound shape gives one pair several). A phantom is always named
// first; events of one step come in the order of the pair's addresses. Main thread only; at most
// one tracker is attached at a time, and an object must be forgotten before it leaves the world.
#pragma once

#include <btBulletDynamicsCommon.h>

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace grindle {

struct ContactEvent {
  bool begins;
  const btCollisionObject* first;
  const btCollisionObject* second;
};

class ContactTracker {
 public:
  ContactTracker() = default;
  ~ContactTracker() { Detach(); }
  ContactTracker(const ContactTracker&) = delete;
  ContactTracker& operator=(const ContactTracker&) = delete;

  // Starts and stops listening to the library's manifolds (of every world in the process).
  void Attach();
  void Detach();

  // Appends the changes since the last call.
  void Collect(std::vector<ContactEvent>& events);
  // Drops the pairs that involve `object`, appending their end events to `ends` when given.
  void Forget(const btCollisionObject* object, std::vector<ContactEvent>* ends);
  void Clear();

 private:
  struct Key {
    uintptr_t low;
    uintptr_t high;
    bool operator==(const Key&) const = default;
    bool operator<(const Key& other) const {
      return low != other.low ? low < other.low : high < other.high;
    }
  };
  struct KeyHash {
    size_t operator()(const Key& key) const { return key.low * 0x9E3779B97F4A7C15ull ^ key.high; }
  };
  struct Pair {
    const btCollisionObject* first;
    const btCollisionObject* second;
    int manifolds = 0;       // of this pair's manifolds, those with a contact now
    bool reported = false;   // touching, as last reported
    bool dirty = false;      // on the changed list
  };

  static void Started(btPersistentManifold* const& manifold);
  static void Ended(btPersistentManifold* const& manifold);
  void Change(const btPersistentManifold& manifold, int delta);

  std::unordered_map<Key, Pair, KeyHash> pairs_;  // touching, or changed since the last Collect
  std::vector<Key> changed_;
  bool attached_ = false;
};

}  // namespace grindle

// Turns the library's contact manifolds into collision begin and end events: after every step the
// pairs of objects that touch are compared with those of the step before, so each pair is reported
// once when it starts touching and once when it stops. A phantom is always named first. Main thread
// only; an object must be forgotten before it leaves the world.
#pragma once

#include <btBulletDynamicsCommon.h>

#include <cstdint>
#include <vector>

namespace grindle {

struct ContactEvent {
  bool begins;
  const btCollisionObject* first;
  const btCollisionObject* second;
};

class ContactTracker {
 public:
  // Appends the changes since the last call.
  void Collect(btDispatcher& dispatcher, std::vector<ContactEvent>& events);
  // Drops the pairs that involve `object`, appending their end events to `ends` when given.
  void Forget(const btCollisionObject* object, std::vector<ContactEvent>* ends);
  void Clear() { touching_.clear(); }
  size_t TouchingCount() const { return touching_.size(); }

 private:
  struct Pair {
    const btCollisionObject* first;
    const btCollisionObject* second;
    uintptr_t low;
    uintptr_t high;
    bool operator<(const Pair& other) const {
      return low != other.low ? low < other.low : high < other.high;
    }
    bool operator==(const Pair& other) const { return low == other.low && high == other.high; }
  };
  static Pair MakePair(const btCollisionObject* a, const btCollisionObject* b);

  std::vector<Pair> touching_;  // sorted, unique
  std::vector<Pair> current_;   // scratch, kept to reuse its memory
};

}  // namespace grindle

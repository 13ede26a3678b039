// A small value pointing at an entry's data. Copying a handle copies the two pointers; a null
// handle has both null. Dereferencing a null handle (or one an entry cleared when it went away)
// stops the program. Handles are invalid once their entry is replaced or removed.
#pragma once

#include "Core/Assert.h"

namespace grindle {

class MetaDatabaseEntry;
void ReportLastMissedLookup();

template <class T>
class DataHandle {
 public:
  DataHandle() = default;
  DataHandle(T* data, MetaDatabaseEntry* entry) : pData_(data), pEntry_(entry) {}

  bool IsValid() const { return pData_ != nullptr; }
  explicit operator bool() const { return IsValid(); }

  T& operator*() const { return Deref(); }
  T* operator->() const { return &Deref(); }
  T* Get() const { return pData_; }
  MetaDatabaseEntry* Entry() const { return pEntry_; }

  // The entry writes null into this handle when it goes away. The handle must then stay at this
  // address for as long as the entry lives (members of long-lived objects, not temporaries).
  void TrackEntry();
  // Takes a tracked handle off its entry's list before the handle itself goes away; a handle the
  // entry already cleared is left alone, its entry being gone.
  void UntrackEntry();

 private:
  T& Deref() const {
    if (pData_ == nullptr) {
      ReportLastMissedLookup();
      // Unit and line are part of the engine's documented output for this check.
      AssertionFailed("pData_ == NULL", "Core/Database.h", 157,
                      "Attempt to dereference null data pointer");
    }
    return *pData_;
  }

  T* pData_ = nullptr;
  MetaDatabaseEntry* pEntry_ = nullptr;
};

}  // namespace grindle

// The four game-pad user slots over SDL's game controllers, read like XInput: one XInputState per
// slot, vibration per slot. A pad that appears takes the lowest free slot; a slot frees when its
// pad goes. Hot-plug is found by comparing SDL's attached joysticks at each Refresh, so no event
// hook is needed (pad events are switched off). Main thread only. Joins SDL's game-controller
// subsystem for its own lifetime.
#pragma once

#include <cstdint>

#include "Platform/PadState.h"

struct _SDL_GameController;

namespace grindle::platform {

inline constexpr uint32_t kPadSlotCount = 4;

class GamePads {
 public:
  GamePads();
  ~GamePads();
  GamePads(const GamePads&) = delete;
  GamePads& operator=(const GamePads&) = delete;

  // Adds the mappings of a gamecontrollerdb.txt when the file exists; returns how many it added
  // (0 when there is no such file). A file SDL cannot read is reported on standard error.
  int LoadMappings(const char* path);

  // Brings SDL's pad states up to date, frees the slots of pads that went and seats new pads.
  void Refresh();

  // kPadSuccess with the slot's state (the packet number moves when anything changed), or
  // kPadNotConnected leaving `state` untouched.
  uint32_t GetState(uint32_t userIndex, XInputState& state);
  // Motor speeds last until changed, as XInput's do (SDL's rumble is renewed at each Refresh).
  uint32_t SetState(uint32_t userIndex, uint16_t leftMotor, uint16_t rightMotor);

  bool IsConnected(uint32_t userIndex) const;

 private:
  struct Slot {
    _SDL_GameController* pController = nullptr;
    int32_t instanceId = -1;
    XInputState state;
    uint16_t leftMotor = 0;
    uint16_t rightMotor = 0;
  };

  void ReleaseDetached();
  void SeatNewPads();
  bool IsSeated(int32_t instanceId) const;
  void Rumble(Slot& slot);
  static XInputGamepad ReadGamepad(_SDL_GameController* controller);

  Slot slots_[kPadSlotCount];
  bool isAvailable_ = false;
};

}  // namespace grindle::platform

#include "Platform/GamePads.h"

#include <SDL.h>

#include <cstdio>
#include <utility>

namespace grindle::platform {
namespace {

// SDL caps a rumble's length; Refresh renews it long before it runs out.
constexpr Uint32 kRumbleMilliseconds = 1000;

constexpr std::pair<SDL_GameControllerButton, uint16_t> kButtonMasks[] = {
    {SDL_CONTROLLER_BUTTON_DPAD_UP, kPadUp},
    {SDL_CONTROLLER_BUTTON_DPAD_DOWN, kPadDown},
    {SDL_CONTROLLER_BUTTON_DPAD_LEFT, kPadLeft},
    {SDL_CONTROLLER_BUTTON_DPAD_RIGHT, kPadRight},
    {SDL_CONTROLLER_BUTTON_START, kPadStart},
    {SDL_CONTROLLER_BUTTON_BACK, kPadBack},
    {SDL_CONTROLLER_BUTTON_LEFTSTICK, kPadLeftThumb},
    {SDL_CONTROLLER_BUTTON_RIGHTSTICK, kPadRightThumb},
    {SDL_CONTROLLER_BUTTON_LEFTSHOULDER, kPadLeftBumper},
    {SDL_CONTROLLER_BUTTON_RIGHTSHOULDER, kPadRightBumper},
    {SDL_CONTROLLER_BUTTON_A, kPadA},
    {SDL_CONTROLLER_BUTTON_B, kPadB},
    {SDL_CONTROLLER_BUTTON_X, kPadX},
    {SDL_CONTROLLER_BUTTON_Y, kPadY},
};

// SDL triggers run 0..32767; XInput's bytes 0..255 reach 255 only at the very end of the travel.
uint8_t TriggerByte(Sint16 axis) { return static_cast<uint8_t>(axis < 0 ? 0 : axis >> 7); }

// SDL's Y axes grow downwards, XInput's upwards; full up (-32768) has no positive twin.
int16_t UpPositive(Sint16 axis) { return static_cast<int16_t>(axis == -32768 ? 32767 : -axis); }

}  // namespace

GamePads::GamePads() {
  isAvailable_ = SDL_InitSubSystem(SDL_INIT_GAMECONTROLLER) == 0;
  if (!isAvailable_) {
    std::fprintf(stderr, "Game pads unavailable: %s\n", SDL_GetError());
    return;
  }
  // Pads are polled, never evented. Their events would crowd the window's queue, which the frame
  // loop drains one event per pass instead of running a frame.
  SDL_JoystickEventState(SDL_IGNORE);
  SDL_GameControllerEventState(SDL_IGNORE);
}

GamePads::~GamePads() {
  if (!isAvailable_) return;
  for (Slot& slot : slots_) {
    if (slot.pController != nullptr) SDL_GameControllerClose(slot.pController);
  }
  SDL_QuitSubSystem(SDL_INIT_GAMECONTROLLER);
}

int GamePads::LoadMappings(const char* path) {
  if (!isAvailable_) return 0;
  std::FILE* file = std::fopen(path, "rb");
  if (file == nullptr) return 0;
  std::fclose(file);
  const int added = SDL_GameControllerAddMappingsFromFile(path);
  if (added < 0) {
    std::fprintf(stderr, "%s: expected game-controller mappings, one a line: %s\n", path,
                 SDL_GetError());
    return 0;
  }
  return added;
}

void GamePads::Refresh() {
  if (!isAvailable_) return;
  SDL_GameControllerUpdate();
  ReleaseDetached();
  SeatNewPads();
  for (Slot& slot : slots_) {
    if (slot.pController != nullptr && (slot.leftMotor != 0 || slot.rightMotor != 0)) Rumble(slot);
  }
}

void GamePads::ReleaseDetached() {
  for (Slot& slot : slots_) {
    if (slot.pController == nullptr || SDL_GameControllerGetAttached(slot.pController)) continue;
    SDL_GameControllerClose(slot.pController);
    slot.pController = nullptr;
    slot.instanceId = -1;
    slot.leftMotor = slot.rightMotor = 0;
  }
}

bool GamePads::IsSeated(int32_t instanceId) const {
  for (const Slot& slot : slots_) {
    if (slot.pController != nullptr && slot.instanceId == instanceId) return true;
  }
  return false;
}

void GamePads::SeatNewPads() {
  const int count = SDL_NumJoysticks();
  for (int device = 0; device < count; ++device) {
    const int32_t instanceId = SDL_JoystickGetDeviceInstanceID(device);
    if (instanceId < 0 || IsSeated(instanceId) || !SDL_IsGameController(device)) continue;
    Slot* free = nullptr;
    for (Slot& slot : slots_) {
      if (slot.pController == nullptr) {
        free = &slot;
        break;
      }
    }
    if (free == nullptr) return;
    free->pController = SDL_GameControllerOpen(device);
    if (free->pController == nullptr) continue;
    free->instanceId = instanceId;
    // A new pad is news in itself, whatever it reports.
    free->state.Gamepad = XInputGamepad{};
    ++free->state.dwPacketNumber;
  }
}

XInputGamepad GamePads::ReadGamepad(_SDL_GameController* controller) {
  XInputGamepad pad;
  for (const auto& [button, mask] : kButtonMasks) {
    if (SDL_GameControllerGetButton(controller, button) != 0) pad.wButtons |= mask;
  }
  pad.bLeftTrigger = TriggerByte(SDL_GameControllerGetAxis(controller, SDL_CONTROLLER_AXIS_TRIGGERLEFT));
  pad.bRightTrigger =
      TriggerByte(SDL_GameControllerGetAxis(controller, SDL_CONTROLLER_AXIS_TRIGGERRIGHT));
  pad.sThumbLX = SDL_GameControllerGetAxis(controller, SDL_CONTROLLER_AXIS_LEFTX);
  pad.sThumbLY = UpPositive(SDL_GameControllerGetAxis(controller, SDL_CONTROLLER_AXIS_LEFTY));
  pad.sThumbRX = SDL_GameControllerGetAxis(controller, SDL_CONTROLLER_AXIS_RIGHTX);
  pad.sThumbRY = UpPositive(SDL_GameControllerGetAxis(controller, SDL_CONTROLLER_AXIS_RIGHTY));
  return pad;
}

uint32_t GamePads::GetState(uint32_t userIndex, XInputState& state) {
  if (userIndex >= kPadSlotCount) return kPadBadArguments;
  Slot& slot = slots_[userIndex];
  if (slot.pController == nullptr) return kPadNotConnected;
  const XInputGamepad now = ReadGamepad(slot.pController);
  if (!(now == slot.state.Gamepad)) {
    slot.state.Gamepad = now;
    ++slot.state.dwPacketNumber;
  }
  state = slot.state;
  return kPadSuccess;
}

uint32_t GamePads::SetState(uint32_t userIndex, uint16_t leftMotor, uint16_t rightMotor) {
  if (userIndex >= kPadSlotCount) return kPadBadArguments;
  Slot& slot = slots_[userIndex];
  if (slot.pController == nullptr) return kPadNotConnected;
  slot.leftMotor = leftMotor;
  slot.rightMotor = rightMotor;
  Rumble(slot);
  return kPadSuccess;
}

void GamePads::Rumble(Slot& slot) {
  // Pads without motors refuse; XInput reports success for them too, so the refusal is dropped.
  SDL_GameControllerRumble(slot.pController, slot.leftMotor, slot.rightMotor, kRumbleMilliseconds);
}

bool GamePads::IsConnected(uint32_t userIndex) const {
  return userIndex < kPadSlotCount && slots_[userIndex].pController != nullptr;
}

}  // namespace grindle::platform

// The input system's share of a frame: sampling, the three payload copies and their delivery.
#include <benchmark/benchmark.h>

#include <SDL.h>

#include "Core/Database.h"
#include "Core/MemoryManager.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"
#include "Input/InputLibraryInterface.h"

namespace grindle {
namespace {

void BM_InputFrameWithKeyHeld(benchmark::State& state) {
  InternWellKnownKeys();
  Database root;
  MessageHandler handler;
  root.Add<Database>("Systems")->Add<MessageHandler*>("MessageHandler", &handler);
  int received = 0;
  for (const char* message : {"Keyboard", "Mouse", "XboxController"}) {
    handler.Listen(message, "Bench", [&received](MessageArgs) { ++received; });
  }
  InputInterface input;
  void* args[kSynchronizeArgCount] = {&root, &CurrentMemoryRegistry(), nullptr, nullptr};
  input.synchronize(args, kSynchronizeArgCount);
  input.Load();
  input.Start();
  handler.SendArgs("WindowActivated");
  handler.Deliver(MessageHandler::kDeliverAll);
  // A held key makes the keyboard payload go out every frame, the costlier case.
  const_cast<Uint8*>(SDL_GetKeyboardState(nullptr))[SDL_SCANCODE_SPACE] = 1;

  for (auto _ : state) {
    input.Update(1.0f / 60.0f);
    handler.Deliver(MessageHandler::kDeliverAll);
  }
  benchmark::DoNotOptimize(received);
  const_cast<Uint8*>(SDL_GetKeyboardState(nullptr))[SDL_SCANCODE_SPACE] = 0;
  input.Exit();
  input.Unload();
}
BENCHMARK(BM_InputFrameWithKeyHeld);

}  // namespace
}  // namespace grindle

// How the tests bring one system up and down the way start-up and shut-down do: the message
// handler published where systems look for it, synchronize with the root and the memory registry
// (no thread manager, no window), then Load and Start; Exit and Unload on the way down. StartSystem
// and StopSystem return the steps' printed life-cycle lines rather than show them; BringUp and
// BringDown leave standard output alone, for tests that read it themselves (death tests, mixes).
#pragma once

#include <string>

#include "Core/Database.h"
#include "Core/ISystem.h"
#include "Core/MemoryManager.h"
#include "Core/MessageHandler.h"
#include "TestOutput.h"

namespace grindle::test {

// Systems.MessageHandler, joining a Systems group the root may already hold.
inline void PublishHandler(Database& root, MessageHandler& handler) {
  DataHandle<Database> systems = root.Find<Database>("Systems");
  if (!systems) systems = root.Add<Database>("Systems");
  systems->Add<MessageHandler*>("MessageHandler", &handler);
}

// The argument array start-up hands every system, `count` entries of it: fewer than the full
// array is how the tests reach synchronize's argument-count check.
inline void Synchronize(ISystem& system, Database& root, int count = kSynchronizeArgCount) {
  void* args[kSynchronizeArgCount] = {&root, &CurrentMemoryRegistry(), nullptr, nullptr};
  system.synchronize(args, count);
}

inline void BringUp(ISystem& system, Database& root) {
  Synchronize(system, root);
  system.Load();
  system.Start();
}

inline void BringDown(ISystem& system) {
  system.Exit();
  system.Unload();
}

inline std::string StartSystem(ISystem& system, Database& root) {
  return CaptureStdout([&] { BringUp(system, root); });
}

inline std::string StopSystem(ISystem& system) {
  return CaptureStdout([&] { BringDown(system); });
}

}  // namespace grindle::test

#include <gtest/gtest.h>

#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"
#include "Networking/NetworkingLibraryInterface.h"
#include "TestOutput.h"

namespace grindle {
namespace {

TEST(System, NetworkingPrintsItsFourLifeCycleLinesAndNothingPerFrame) {
  Database root;
  MessageHandler handler;
  root.Add<Database>("Systems")->Add<MessageHandler*>("MessageHandler", &handler);
  void* args[4] = {&root, &CurrentMemoryRegistry(), nullptr, nullptr};
  NetworkingInterface networking;
  ISystem& system = networking;
  const std::string out = CaptureStdout([&] {
    system.synchronize(args, 4);
    system.Load();
    system.Start();
    for (int i = 0; i < 3; ++i) system.Update(0.016f);
    system.Exit();
    system.Unload();
  });
  EXPECT_EQ(out, "LoadNetworking\nStartNetworking\nExitNetworking\nUnloadNetworking\n");
}

TEST(SystemDeathTest, SynchronizeWithThreeArgumentsStops) {
  auto synchronizeWithThree = [] {
    Database root;
    void* args[3] = {&root, &CurrentMemoryRegistry(), nullptr};
    NetworkingInterface networking;
    static_cast<ISystem&>(networking).synchronize(args, 3);
  };
  EXPECT_DEATH(synchronizeWithThree(), "DETAILS: wrong arg count passed to synchronize");
}

}  // namespace
}  // namespace grindle

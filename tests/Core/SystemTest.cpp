#include <gtest/gtest.h>

#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"
#include "Networking/NetworkingLibraryInterface.h"
#include "SystemRig.h"

namespace grindle {
namespace {

TEST(System, NetworkingPrintsItsFourLifeCycleLinesAndNothingPerFrame) {
  Database root;
  MessageHandler handler;
  test::PublishHandler(root, handler);
  NetworkingInterface networking;
  ISystem& system = networking;
  std::string out = test::StartSystem(system, root);
  out += CaptureStdout([&] {
    for (int i = 0; i < 3; ++i) system.Update(0.016f);
  });
  out += test::StopSystem(system);
  EXPECT_EQ(out, "LoadNetworking\nStartNetworking\nExitNetworking\nUnloadNetworking\n");
}

TEST(SystemDeathTest, SynchronizeWithThreeArgumentsStops) {
  auto synchronizeWithThree = [] {
    Database root;
    NetworkingInterface networking;
    test::Synchronize(networking, root, 3);
  };
  EXPECT_DEATH(synchronizeWithThree(), "DETAILS: wrong arg count passed to synchronize");
}

}  // namespace
}  // namespace grindle

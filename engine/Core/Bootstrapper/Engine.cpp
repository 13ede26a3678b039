#include "Core/Bootstrapper/Engine.h"

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "Core/Bootstrapper/FrameLoop.h"
#include "Core/Bootstrapper/GameTimer.h"
#include "Core/Bootstrapper/LevelManager.h"
#include "Core/Bootstrapper/MainWindow.h"
#include "Core/Bootstrapper/RootEntries.h"
#include "Core/Bootstrapper/StartupTests.h"
#include "Core/Bootstrapper/SystemList.h"
#include "Core/Database.h"
#include "Core/MemoryManager.h"
#include "Core/MessageHandler.h"
#include "Core/Messages/Catalogue.h"
#include "Core/ResourceManager.h"
#include "Core/ThreadManager.h"
#include "Core/WellKnownKeys.h"
#include "Platform/Clock.h"
#include "Platform/Window.h"

namespace grindle {

namespace {

constexpr int kWorkerThreads = 5;
constexpr int kJobLimit = 10;

// Extra steps for automation, run while the levels are still loaded and the systems still live.
void AfterFrameLoop(const EngineOptions& options, Database& root, MessageHandler& messages) {
  if (!options.screenshotFile.empty()) {
    msg::Post(messages, msg::kScreenshot, options.screenshotFile);
    messages.Deliver(MessageHandler::kDeliverAll);
  }
  if (options.printDatabase) {
    root.Print(0);
    std::fflush(stdout);
  }
}

// Written before the systems load, so the game's first level already sees it; the AI system keeps
// values that are already there.
void ApplyAutoPlay(Database& root) {
  DataHandle<Database> globals = root.Find<Database>(KeyOf(WellKnown::GlobalVariables));
  if (!globals) globals = root.Add<Database>("GlobalVariables");
  WriteEntry<double>(*globals, WellKnown::AutoPlay, 1.0);
}

}  // namespace

int RunEngine(const EngineOptions& options, const LoopSystemsArrangement& arrange) {
  std::srand(options.seed ? *options.seed
                         : static_cast<unsigned>(platform::MillisecondsSinceEpoch()));
  auto registry = std::make_unique<MemoryManagerRegistry>();
  InstallMemoryRegistry(registry.get());
  auto threads = std::make_unique<ThreadManager>(kWorkerThreads, kJobLimit);
  auto systems = std::make_unique<SystemList>();
  auto root = std::make_unique<Database>();
  InternWellKnownKeys();
  Database& services = *root->Add<Database>("Systems");
  auto window = std::make_unique<MainWindow>(*root);
  // The handler exists before the level manager only because the manager keeps a reference to it;
  // neither constructor does anything the other could observe.
  auto messages = std::make_unique<MessageHandler>();
  auto levels = std::make_unique<LevelManager>(*root, *messages);
  auto resources = std::make_unique<ResourceManager>(*threads, *messages);

  services.Add<MessageHandler*>("MessageHandler", messages.get());
  services.Add<ResourceManager*>("ResourceManager", resources.get());
  // There is no instance handle on this platform; the entry exists for whoever looks for it.
  root->Add<void*>("hAppInstance", nullptr);
  root->Add<GameTimer>("GameTimer");
  root->Add<double>("DT", 0.0);
  root->Add<bool>("isGamePaused", false);

  window->Create(*messages);
  levels->LoadArchetypes();
  if (options.autoPlay) ApplyAutoPlay(*root);
  levels->Initialize(options.firstLevel);
  systems->CreateSystems();
  RunStartupUnitTests(options.runUnitTests);

  void* synchronizeArgs[kSynchronizeArgCount] = {root.get(), registry.get(), threads.get(),
                                                 nullptr};
  systems->SynchronizeAll(synchronizeArgs, kSynchronizeArgCount);
  systems->LoadAll();
  systems->StartAll();

  const std::vector<ISystem*> loopSystems =
      arrange ? arrange(systems->Systems(), *root) : systems->Systems();
  FrameLoop loop({*root, *messages, *resources, *levels, *window, loopSystems},
                 options.fixedFrameSeconds);
  loop.Run(options.frameLimit);
  AfterFrameLoop(options, *root, *messages);

  systems->ExitAll();
  systems->UnloadAll();
  levels->UnloadAllLevels();
  std::fflush(stdout);

  levels.reset();
  window.reset();
  root.reset();
  systems.reset();
  resources.reset();
  threads.reset();
  messages.reset();
  InstallMemoryRegistry(nullptr);
  registry.reset();
  platform::QuitVideo();
  return 0;
}

}  // namespace grindle

#include "Core/Bootstrapper/FrameLoop.h"

#include <cstdio>
#include <ctime>
#include <string>

#include "Core/Bootstrapper/GameTimer.h"
#include "Core/Bootstrapper/LevelManager.h"
#include "Core/Bootstrapper/MainWindow.h"
#include "Core/Bootstrapper/RootEntries.h"
#include "Core/ISystem.h"
#include "Core/MessageHandler.h"
#include "Core/Messages/Catalogue.h"
#include "Core/ResourceManager.h"
#include "Input/DebugKeys.h"
#include "Platform/Clock.h"

namespace grindle {

namespace {

// Named by the local time, so that screenshots sort in the order they were taken and a session's
// earlier ones are kept.
std::string ScreenshotFileName() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  char name[64];
  std::strftime(name, sizeof name, "Screenshot-%Y%m%d-%H%M%S.png", &local);
  return name;
}
}  // namespace

uint32_t FrameSleepMilliseconds(double elapsedSeconds) {
  const float remaining = kFrameSeconds - static_cast<float>(elapsedSeconds);
  if (remaining <= 0.0f) return 0;
  return static_cast<uint32_t>(remaining * 1000.0f);
}

void FrameLoop::Run(int64_t frameLimit) {
  GameTimer& timer = *services_.root.Find<GameTimer>(KeyOf(WellKnown::GameTimer));
  timer.Reset();
  int64_t frames = 0;
  bool quit = false;
  while (!quit) {
    if (TakeWindowMessage(quit)) continue;
    if (frameLimit >= 0 && frames >= frameLimit) break;
    RunFrame(timer);
    ++frames;
  }
}

bool FrameLoop::TakeWindowMessage(bool& quit) {
  platform::WindowEvent event;
  if (!platform::PollWindowEvent(event)) return false;
  quit = services_.window.Procedure(event);
  // Debug keys act once per press: a held key's auto-repeat is not a new press.
  if (event.kind == platform::WindowEventKind::kKeyDown && event.functionKey != 0 &&
      !event.isRepeat) {
    OnDebugKey(vk::kF1 + event.functionKey - 1);
  }
  return true;
}

void FrameLoop::RunFrame(GameTimer& timer) {
  timer.Tick();
  services_.resources.Update();
  if (statistics_.FrameDone(timer.TotalTime(), services_.messages.TakeHandledCount())) {
    services_.window.Native().SetTitle(statistics_.Title("Grindle"));
  }
  services_.levels.ProcessLevelChange(services_.systems);
  services_.messages.Deliver(MessageHandler::kDeliverAll);
  const double frameTime = fixedFrameSeconds_ > 0.0 ? fixedFrameSeconds_ : timer.DeltaTime();
  WriteEntry<double>(services_.root, WellKnown::DT, frameTime);
  for (ISystem* system : services_.systems) system->Update(static_cast<float>(frameTime));
  const uint32_t sleep = FrameSleepMilliseconds(timer.SinceLastTick());
  if (sleep > 0) platform::SleepMilliseconds(sleep);
}

void FrameLoop::OnDebugKey(int key) {
  if (key == debugkeys::kStatistics) {
    statistics_.Print();
  } else if (key == debugkeys::kDatabaseDump) {
    services_.root.Print(0);
    std::fflush(stdout);
  } else if (key == debugkeys::kScreenshot) {
    msg::Post(services_.messages, msg::kScreenshot, ScreenshotFileName());
  }
}

}  // namespace grindle

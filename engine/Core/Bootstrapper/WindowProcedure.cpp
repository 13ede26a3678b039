// The window procedure: window events become engine messages and database writes.
#include <string>

#include "Core/Bootstrapper/MainWindow.h"
#include "Core/Bootstrapper/RootEntries.h"
#include "Core/MessageFunction.h"
#include "Core/MessageHandler.h"
#include "Core/Messages/Catalogue.h"

namespace grindle {

namespace {

// The audio system's handler reads this as its loop flag: the menu theme loops.
constexpr double kMenuThemeLoop = 1.0;

bool IsMenuMusicLevel(const Database& root) {
  const DataHandle<std::string> current = root.Find<std::string>(KeyOf(WellKnown::CurrentLevel));
  if (!current) return false;
  return !current->empty() && *current != "LoadingScreen" && *current != "SplashScreens";
}

}  // namespace

bool MainWindow::Procedure(const platform::WindowEvent& event) {
  using platform::WindowEventKind;
  switch (event.kind) {
    case WindowEventKind::kQuit:
      return true;
    case WindowEventKind::kClose:
      Destroy();
      break;
    case WindowEventKind::kSize:
      OnSize(event);
      break;
    case WindowEventKind::kActivate:
      OnActivate(event);
      break;
    case WindowEventKind::kMouse:
      OnMouse(event);
      break;
    // Keys are swallowed: the input system samples the keyboard state itself.
    case WindowEventKind::kKeyDown:
      break;
    case WindowEventKind::kOther:
      break;
  }
  return false;
}

void MainWindow::OnSize(const platform::WindowEvent& event) {
  iWidth_ = event.width;
  iHeight_ = event.height;
  WriteEntry<int>(root_, WellKnown::WindowWidth, iWidth_);
  WriteEntry<int>(root_, WellKnown::WindowHeight, iHeight_);
  if (pMessages_ == nullptr) return;
  msg::Post(*pMessages_, msg::kSetClientWindow, iWidth_, iHeight_);
  if (isActive_) msg::Post(*pMessages_, msg::kOnResize);
  switch (event.sizeKind) {
    case platform::SizeKind::kMinimized:
      msg::Post(*pMessages_, msg::kPauseAudio);
      break;
    case platform::SizeKind::kMaximized:
      break;
    case platform::SizeKind::kRestored:
      msg::PostNow(*pMessages_, msg::kUnpauseMusic);
      break;
  }
}

void MainWindow::OnActivate(const platform::WindowEvent& event) {
  if (pMessages_ == nullptr) return;
  if (!event.isActivation) {
    if (!isActive_) return;
    // Forced to false first so that the toggle always lands on paused.
    WriteEntry<bool>(root_, WellKnown::isGamePaused, false);
    msg::Post(*pMessages_, msg::kTogglePause);
    msg::Post(*pMessages_, msg::kWindowDeactivated);
    isActive_ = false;
    msg::Post(*pMessages_, msg::kPauseAudio);
    return;
  }
  if (isActive_) msg::PostNow(*pMessages_, msg::kUnpauseMusic);
  if (!event.isMinimized && !isActive_) {
    window_.Restore();
    msg::Post(*pMessages_, msg::kWindowActivated);
    isActive_ = true;
  }
  if (event.isMinimized) {
    isActive_ = false;
    if (IsMenuMusicLevel(root_))
      msg::Post(*pMessages_, msg::kPlaySong, kMenuThemeLoop, "MenuTheme");
  }
}

void MainWindow::OnMouse(const platform::WindowEvent& event) {
  const DataHandle<BaseWindowMessageFunction*> mouse =
      root_.Find<BaseWindowMessageFunction*>(KeyOf(WellKnown::MouseInputFunction));
  if (!mouse || *mouse == nullptr || !(*mouse)->IsEnabled()) return;
  (*mouse)->Handle(event.code, event.wParam, event.lParam);
}

}  // namespace grindle

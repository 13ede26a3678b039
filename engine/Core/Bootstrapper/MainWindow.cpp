#include "Core/Bootstrapper/MainWindow.h"

#include "Core/Bootstrapper/RootEntries.h"
#include "Core/MessageHandler.h"
#include "Platform/Dialogs.h"

namespace grindle {

namespace {
// The window's own listeners are registered without an owner name.
constexpr const char* kWindowOwner = "";
}  // namespace

MainWindow::MainWindow(Database& root) : root_(root) {
  WriteEntry<int>(root_, WellKnown::WindowWidth, iWidth_);
  WriteEntry<int>(root_, WellKnown::WindowHeight, iHeight_);
}

MainWindow::~MainWindow() {
  if (pMessages_ == nullptr) return;
  pMessages_->UnListen("MinimizeWindow", kWindowOwner);
  pMessages_->UnListen("ExitGameMSG", kWindowOwner);
  pMessages_->UnListen("ShowWindow", kWindowOwner);
}

void MainWindow::Create(MessageHandler& messages) {
  pMessages_ = &messages;
  if (!platform::InitVideo() || !window_.Create(sCaption_, iWidth_, iHeight_)) {
    platform::ShowMessageBox("", "CreateWindow Failed.");
    return;
  }
  WriteEntry<SDL_Window*>(root_, WellKnown::MainWindowHandle, window_.Handle());
  messages.Listen("MinimizeWindow", kWindowOwner, [this](MessageArgs) { window_.ShowMinimized(); });
  messages.Listen("ExitGameMSG", kWindowOwner, [this](MessageArgs) { Destroy(); });
  messages.Listen("ShowWindow", kWindowOwner, [this](MessageArgs) { window_.ShowNormal(); });
}

// Hidden rather than destroyed: the renderer's context stays bound to the window until the
// systems have unloaded, and the window goes away with this object.
void MainWindow::Destroy() {
  window_.Hide();
  platform::PostQuit();
}

}  // namespace grindle

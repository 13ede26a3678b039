#include "Core/Bootstrapper/MainWindow.h"

#include "Core/Bootstrapper/RootEntries.h"
#include "Core/MessageHandler.h"
#include "Core/Messages/Catalogue.h"
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
  Routes().UnListen(*pMessages_);
}

void MainWindow::Create(MessageHandler& messages) {
  pMessages_ = &messages;
  if (!platform::InitVideo() || !window_.Create(sCaption_, iWidth_, iHeight_)) {
    platform::ShowMessageBox("", "CreateWindow Failed.");
    return;
  }
  WriteEntry<SDL_Window*>(root_, WellKnown::MainWindowHandle, window_.Handle());
  Routes().Listen(messages, *this);
}

const msg::RouteTable<MainWindow>& MainWindow::Routes() {
  using W = MainWindow;
  static constexpr msg::Route<W> kRoutes[] = {
      {msg::kMinimizeWindow, [](W& w, MessageArgs) { w.window_.ShowMinimized(); }},
      {msg::kExitGame, [](W& w, MessageArgs) { w.Destroy(); }},
      {msg::kShowWindow, [](W& w, MessageArgs) { w.window_.ShowNormal(); }},
  };
  static constexpr msg::RouteTable<W> kTable{kWindowOwner, kRoutes};
  return kTable;
}

// Hidden rather than destroyed: the renderer's context stays bound to the window until the
// systems have unloaded, and the window goes away with this object.
void MainWindow::Destroy() {
  window_.Hide();
  platform::PostQuit();
}

}  // namespace grindle

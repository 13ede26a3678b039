// The engine's main window object: its size and flags, the window's creation with its three
// message listeners, and the window procedure that turns window events into engine messages and
// database writes. Main thread only. `WindowWidth`/`WindowHeight` are written before any message
// about a new size is sent, so a listener always reads the size the message announces.
#pragma once

#include <string>

#include "Core/Messages/RouteTable.h"
#include "Platform/Window.h"
#include "Platform/WindowEvents.h"

namespace grindle {

class Database;
class MessageHandler;

class MainWindow {
 public:
  // Writes `WindowWidth` and `WindowHeight` (1280 x 720) into the root.
  explicit MainWindow(Database& root);
  ~MainWindow();
  MainWindow(const MainWindow&) = delete;
  MainWindow& operator=(const MainWindow&) = delete;

  // Opens the window, stores `MainWindowHandle` and listens to "MinimizeWindow", "ExitGameMSG" and
  // "ShowWindow". On failure shows "CreateWindow Failed." and leaves the engine windowless.
  void Create(MessageHandler& messages);

  // The window procedure for one event. Returns true when the event is the quit message.
  bool Procedure(const platform::WindowEvent& event);

  platform::NativeWindow& Native() { return window_; }
  int Width() const { return iWidth_; }
  bool IsActive() const { return isActive_; }

 private:
  void OnSize(const platform::WindowEvent& event);
  void OnActivate(const platform::WindowEvent& event);
  void OnMouse(const platform::WindowEvent& event);
  void Destroy();
  // The window's own messages, listened to under the empty owner.
  static const msg::RouteTable<MainWindow>& Routes();

  platform::NativeWindow window_;
  int iWidth_ = 1280;
  int iHeight_ = 720;
  std::string sCaption_ = "Grindle";
  bool isActive_ = true;

  Database& root_;
  MessageHandler* pMessages_ = nullptr;
};

}  // namespace grindle

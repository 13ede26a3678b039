#include <SDL.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "Core/Bootstrapper/MainWindow.h"
#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"

namespace grindle {
namespace {

using platform::WindowEvent;
using platform::WindowEventKind;
using Log = std::vector<std::string>;

const char* const kWindowMessages[] = {"SetClientWindow", "OnResize",        "PauseAudio",
                                       "UnpauseMusic",    "TogglePauseMsg",  "WindowDeactivated",
                                       "WindowActivated", "PlaySong"};

std::string Describe(const char* name, MessageArgs args) {
  std::string text = std::string(name) + "(";
  for (uint32_t i = 0; i < args.count; ++i) {
    if (i > 0) text += ",";
    if (const unsigned* u = args.Get<unsigned int>(i)) text += std::to_string(*u);
    if (const double* d = args.Get<double>(i)) text += std::to_string(*d);
    if (const std::string* s = args.Get<std::string>(i)) text += *s;
  }
  return text + ")";
}

// Receives the mouse messages the way the input system's callback does.
class MouseRecorder {
 public:
  void OnMessage(uint32_t code, uint64_t wParam, int64_t lParam) {
    calls.push_back({code, wParam, lParam});
  }
  bool Enabled() const { return isEnabled; }

  struct Call {
    uint32_t code;
    uint64_t wParam;
    int64_t lParam;
  };
  std::vector<Call> calls;
  bool isEnabled = true;
};

class WindowProcedureTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { setenv("SDL_VIDEODRIVER", "offscreen", 1); }

  WindowProcedureTest() {
    InternWellKnownKeys();
    for (const char* name : kWindowMessages) {
      messages.Listen(name, "Test", [this, name](MessageArgs args) {
        log.push_back(Describe(name, args));
        // Whoever hears about a new size must already find it in the database.
        if (std::string(name) != "PlaySong") seenWidths.push_back(*root.Find<int>("WindowWidth"));
      });
    }
    window.Create(messages);
    // Whatever the driver queued while the window appeared is not part of any test.
    SDL_PumpEvents();
    SDL_FlushEvents(SDL_FIRSTEVENT, SDL_LASTEVENT);
  }
  ~WindowProcedureTest() override { platform::QuitVideo(); }

  // Pushes an SDL event and runs the window procedure on what the platform layer makes of it.
  bool Dispatch(SDL_Event event) {
    EXPECT_EQ(SDL_PushEvent(&event), 1);
    return window.Procedure(NextMeaningful());
  }
  SDL_Event WindowSdlEvent(SDL_WindowEventID id, int data1 = 0, int data2 = 0) {
    SDL_Event event{};
    event.type = SDL_WINDOWEVENT;
    event.window.windowID = SDL_GetWindowID(window.Native().Handle());
    event.window.event = id;
    event.window.data1 = data1;
    event.window.data2 = data2;
    return event;
  }
  // The next event the window procedure acts on, skipping what the driver adds (shown, hidden...).
  WindowEvent NextMeaningful() {
    WindowEvent event;
    while (platform::PollWindowEvent(event)) {
      if (event.kind != WindowEventKind::kOther) return event;
    }
    ADD_FAILURE() << "no window event arrived";
    return {};
  }
  Log Take() {
    messages.Deliver(MessageHandler::kDeliverAll);
    return std::exchange(log, {});
  }

  Database root;
  MessageHandler messages;
  MainWindow window{root};
  Log log;
  std::vector<int> seenWidths;
};

TEST_F(WindowProcedureTest, CreationPublishesTheWindowAndItsInitialSize) {
  ASSERT_NE(window.Native().Handle(), nullptr);
  EXPECT_EQ(*root.Find<SDL_Window*>("MainWindowHandle"), window.Native().Handle());
  EXPECT_EQ(*root.Find<int>("WindowWidth"), 1280);
  EXPECT_EQ(*root.Find<int>("WindowHeight"), 720);
  EXPECT_STREQ(SDL_GetWindowTitle(window.Native().Handle()), "Grindle");
  EXPECT_NE(SDL_GetWindowFlags(window.Native().Handle()) & SDL_WINDOW_RESIZABLE, 0u);
}

TEST_F(WindowProcedureTest, ResizeWritesTheSizeBeforeAnyMessageAboutIt) {
  EXPECT_FALSE(Dispatch(WindowSdlEvent(SDL_WINDOWEVENT_SIZE_CHANGED, 800, 600)));
  // The restored kind unpauses the music at once, before the queued messages go out.
  EXPECT_EQ(log, Log{"UnpauseMusic()"});
  EXPECT_EQ(*root.Find<int>("WindowWidth"), 800);
  EXPECT_EQ(*root.Find<int>("WindowHeight"), 600);
  EXPECT_EQ(Take(), (Log{"UnpauseMusic()", "SetClientWindow(800,600)", "OnResize()"}));
  EXPECT_EQ(seenWidths, (std::vector<int>{800, 800, 800}));
  EXPECT_EQ(window.Width(), 800);
}

TEST_F(WindowProcedureTest, DeactivationForcesThePauseOnceAndActivationComesBack) {
  root.Add<bool>("isGamePaused", true);
  Dispatch(WindowSdlEvent(SDL_WINDOWEVENT_FOCUS_LOST));
  // Forced to false so that the toggle the listeners receive lands on paused.
  EXPECT_FALSE(*root.Find<bool>("isGamePaused"));
  EXPECT_EQ(Take(), (Log{"TogglePauseMsg()", "WindowDeactivated()", "PauseAudio()"}));
  EXPECT_FALSE(window.IsActive());

  Dispatch(WindowSdlEvent(SDL_WINDOWEVENT_FOCUS_LOST));
  EXPECT_TRUE(Take().empty());

  // An inactive window does not resize the renderer's targets.
  Dispatch(WindowSdlEvent(SDL_WINDOWEVENT_SIZE_CHANGED, 640, 480));
  EXPECT_EQ(Take(), (Log{"UnpauseMusic()", "SetClientWindow(640,480)"}));

  Dispatch(WindowSdlEvent(SDL_WINDOWEVENT_FOCUS_GAINED));
  EXPECT_EQ(Take(), Log{"WindowActivated()"});
  EXPECT_TRUE(window.IsActive());
  Dispatch(WindowSdlEvent(SDL_WINDOWEVENT_FOCUS_GAINED));
  EXPECT_EQ(Take(), Log{"UnpauseMusic()"});
}

TEST_F(WindowProcedureTest, ActivationWhileMinimizedPlaysTheMenuThemeOutsideTheIntroLevels) {
  WindowEvent minimizedActivation;
  minimizedActivation.kind = WindowEventKind::kActivate;
  minimizedActivation.isActivation = true;
  minimizedActivation.isMinimized = true;

  root.Add<std::string>("CurrentLevel", "SplashScreens");
  window.Procedure(minimizedActivation);
  EXPECT_EQ(Take(), Log{"UnpauseMusic()"});
  EXPECT_FALSE(window.IsActive());

  *root.Find<std::string>("CurrentLevel") = "Arena";
  window.Procedure(minimizedActivation);
  EXPECT_EQ(Take(), Log{"PlaySong(1.000000,MenuTheme)"});

  WindowEvent minimized;
  minimized.kind = WindowEventKind::kSize;
  minimized.sizeKind = platform::SizeKind::kMinimized;
  window.Procedure(minimized);
  EXPECT_EQ(Take(), (Log{"SetClientWindow(0,0)", "PauseAudio()"}));
}

TEST_F(WindowProcedureTest, MouseEventsReachTheEnabledCallbackAsWindowMessages) {
  MouseRecorder mouse;
  WindowMessageFunction<MouseRecorder> function(&mouse, &MouseRecorder::OnMessage,
                                                &MouseRecorder::Enabled);
  root.Add<BaseWindowMessageFunction*>("MouseInputFunction", &function);

  SDL_Event press{};
  press.type = SDL_MOUSEBUTTONDOWN;
  press.button.button = SDL_BUTTON_RIGHT;
  press.button.x = 10;
  press.button.y = 20;
  Dispatch(press);
  SDL_Event move{};
  move.type = SDL_MOUSEMOTION;
  move.motion.x = 300;
  move.motion.y = 2;
  move.motion.state = SDL_BUTTON_LMASK;
  Dispatch(move);
  SDL_Event wheel{};
  wheel.type = SDL_MOUSEWHEEL;
  wheel.wheel.y = -2;
  Dispatch(wheel);

  ASSERT_EQ(mouse.calls.size(), 3u);
  EXPECT_EQ(mouse.calls[0].code, 0x204u);
  EXPECT_EQ(mouse.calls[0].lParam, 10 | (20 << 16));
  EXPECT_EQ(mouse.calls[1].code, 0x200u);
  EXPECT_EQ(mouse.calls[1].lParam, 300 | (2 << 16));
  EXPECT_EQ(mouse.calls[1].wParam & platform::MK_LBUTTON, platform::MK_LBUTTON);
  EXPECT_EQ(mouse.calls[2].code, 0x20Au);
  EXPECT_EQ(static_cast<int16_t>(mouse.calls[2].wParam >> 16), -240);

  mouse.isEnabled = false;
  Dispatch(press);
  EXPECT_EQ(mouse.calls.size(), 3u);
  EXPECT_TRUE(Take().empty());
}

TEST_F(WindowProcedureTest, CloseAndExitGameBothEndInTheQuitMessage) {
  EXPECT_FALSE(Dispatch(WindowSdlEvent(SDL_WINDOWEVENT_CLOSE)));
  EXPECT_TRUE(window.Procedure(NextMeaningful()));

  messages.Send("ExitGameMSG");
  Take();
  EXPECT_EQ(NextMeaningful().kind, WindowEventKind::kQuit);
  // Keys never become messages.
  SDL_Event key{};
  key.type = SDL_KEYDOWN;
  key.key.keysym.sym = SDLK_F12;
  EXPECT_FALSE(Dispatch(key));
  EXPECT_TRUE(Take().empty());
}

}  // namespace
}  // namespace grindle

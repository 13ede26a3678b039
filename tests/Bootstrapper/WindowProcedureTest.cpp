// The window procedure, fed real SDL events through the platform layer.
#include "BootstrapperKit.h"

namespace grindle {
namespace {

using platform::WindowEvent;
using platform::WindowEventKind;

// Receives the mouse messages the way the input system's callback does.
struct MouseRecorder {
  struct Call {
    uint32_t code;
    uint64_t wParam;
    int64_t lParam;
  };
  void OnMessage(uint32_t code, uint64_t wParam, int64_t lParam) {
    calls.push_back({code, wParam, lParam});
  }
  bool Enabled() const { return isEnabled; }

  std::vector<Call> calls;
  bool isEnabled = true;
};

class WindowProcedureTest : public WindowTest {
 protected:
  WindowProcedureTest() { OpenWindow(); }

  // Pushes an SDL event and runs the window procedure on what the platform layer makes of it.
  bool Dispatch(SDL_Event event) {
    EXPECT_EQ(SDL_PushEvent(&event), 1);
    return window.Procedure(NextMeaningful());
  }
  bool DispatchWindow(SDL_WindowEventID id, int width = 0, int height = 0) {
    return Dispatch({.window = {.type = SDL_WINDOWEVENT,
                                .windowID = SDL_GetWindowID(window.Native().Handle()),
                                .event = static_cast<Uint8>(id),
                                .data1 = width,
                                .data2 = height}});
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

  MessageLog log{messages,
                 {"SetClientWindow", "OnResize", "PauseAudio", "UnpauseMusic", "TogglePauseMsg",
                  "WindowDeactivated", "WindowActivated", "PlaySong"}};
};

TEST_F(WindowProcedureTest, CreationPublishesTheWindowAndAResizeWritesTheSizeBeforeAnyMessage) {
  ASSERT_NE(window.Native().Handle(), nullptr);
  EXPECT_EQ(*root.Find<SDL_Window*>("MainWindowHandle"), window.Native().Handle());
  EXPECT_EQ(*root.Find<int>("WindowWidth"), 1280);
  EXPECT_EQ(*root.Find<int>("WindowHeight"), 720);
  EXPECT_STREQ(SDL_GetWindowTitle(window.Native().Handle()), "Grindle");
  EXPECT_NE(SDL_GetWindowFlags(window.Native().Handle()) & SDL_WINDOW_RESIZABLE, 0u);

  // Whoever hears about a new size must already find it in the database.
  std::vector<int> seenWidths;
  for (const char* name : {"SetClientWindow", "OnResize", "UnpauseMusic"}) {
    messages.Listen(name, "Width",
                    [&](MessageArgs) { seenWidths.push_back(*root.Find<int>("WindowWidth")); });
  }
  EXPECT_FALSE(DispatchWindow(SDL_WINDOWEVENT_SIZE_CHANGED, 800, 600));
  // The restored kind unpauses the music at once, before the queued messages go out.
  EXPECT_EQ(log.lines, Log{"UnpauseMusic()"});
  EXPECT_EQ(*root.Find<int>("WindowWidth"), 800);
  EXPECT_EQ(*root.Find<int>("WindowHeight"), 600);
  EXPECT_EQ(log.Take(), (Log{"UnpauseMusic()", "SetClientWindow(800,600)", "OnResize()"}));
  EXPECT_EQ(seenWidths, (std::vector<int>{800, 800, 800}));
}

TEST_F(WindowProcedureTest, DeactivationForcesThePauseOnceAndActivationComesBack) {
  root.Add<bool>("isGamePaused", true);
  DispatchWindow(SDL_WINDOWEVENT_FOCUS_LOST);
  // Forced to false so that the toggle the listeners receive lands on paused.
  EXPECT_FALSE(*root.Find<bool>("isGamePaused"));
  EXPECT_EQ(log.Take(), (Log{"TogglePauseMsg()", "WindowDeactivated()", "PauseAudio()"}));
  EXPECT_FALSE(window.IsActive());

  DispatchWindow(SDL_WINDOWEVENT_FOCUS_LOST);
  EXPECT_TRUE(log.Take().empty());

  // An inactive window does not resize the renderer's targets.
  DispatchWindow(SDL_WINDOWEVENT_SIZE_CHANGED, 640, 480);
  EXPECT_EQ(log.Take(), (Log{"UnpauseMusic()", "SetClientWindow(640,480)"}));

  DispatchWindow(SDL_WINDOWEVENT_FOCUS_GAINED);
  EXPECT_EQ(log.Take(), Log{"WindowActivated()"});
  EXPECT_TRUE(window.IsActive());
  DispatchWindow(SDL_WINDOWEVENT_FOCUS_GAINED);
  EXPECT_EQ(log.Take(), Log{"UnpauseMusic()"});
}

TEST_F(WindowProcedureTest, ActivationWhileMinimizedPlaysTheMenuThemeOutsideTheIntroLevels) {
  const WindowEvent minimizedActivation{
      .kind = WindowEventKind::kActivate, .isActivation = true, .isMinimized = true};
  root.Add<std::string>("CurrentLevel", "SplashScreens");
  window.Procedure(minimizedActivation);
  EXPECT_EQ(log.Take(), Log{"UnpauseMusic()"});
  EXPECT_FALSE(window.IsActive());

  *root.Find<std::string>("CurrentLevel") = "Arena";
  window.Procedure(minimizedActivation);
  EXPECT_EQ(log.Take(), Log{"PlaySong(1.000000,MenuTheme)"});

  window.Procedure({.kind = WindowEventKind::kSize, .sizeKind = platform::SizeKind::kMinimized});
  EXPECT_EQ(log.Take(), (Log{"SetClientWindow(0,0)", "PauseAudio()"}));
}

TEST_F(WindowProcedureTest, MouseEventsReachTheEnabledCallbackAsWindowMessages) {
  MouseRecorder mouse;
  WindowMessageFunction<MouseRecorder> function(&mouse, &MouseRecorder::OnMessage,
                                                &MouseRecorder::Enabled);
  root.Add<BaseWindowMessageFunction*>("MouseInputFunction", &function);

  const SDL_Event press{
      .button = {.type = SDL_MOUSEBUTTONDOWN, .button = SDL_BUTTON_RIGHT, .x = 10, .y = 20}};
  Dispatch(press);
  Dispatch({.motion = {.type = SDL_MOUSEMOTION, .state = SDL_BUTTON_LMASK, .x = 300, .y = 2}});
  Dispatch({.wheel = {.type = SDL_MOUSEWHEEL, .y = -2}});
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
  EXPECT_TRUE(log.Take().empty());
}

// ExitGameMSG takes the same way out; the frame loop's tests end the game with it.
TEST_F(WindowProcedureTest, CloseEndsInTheQuitMessageAndKeysNeverBecomeMessages) {
  EXPECT_FALSE(DispatchWindow(SDL_WINDOWEVENT_CLOSE));
  EXPECT_TRUE(window.Procedure(NextMeaningful()));
  EXPECT_FALSE(Dispatch({.key = {.type = SDL_KEYDOWN, .keysym = {.sym = SDLK_F12}}}));
  EXPECT_TRUE(log.Take().empty());
}

}  // namespace
}  // namespace grindle

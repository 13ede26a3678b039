// The game's screens driven the way a player drives them: key presses injected into SDL while the
// real engine runs the game in this process. From the splash through the main menu and the lobby
// into a round, a few steps to the right, then through the pause menu (compared with a golden
// image) back to the main menu.
#include "GameDriver.h"

namespace grindle::game {
namespace {

TEST(MenuFlow, SplashToARoundAndThroughThePauseMenuBackToTheMainMenu) {
  double startX = 0.0;
  bool sawPause = false, sawSceneOverMenu = false;
  std::map<std::string, gfx::Image> images;
  const std::string player0 = "Levels.Arena.GameObjects.Player0.Transform.PositionX";
  Steps steps = {
      {"splash", WaitForLevel("SplashScreens")},
      {"leave splash", Tap(SDL_SCANCODE_RETURN)},
      {"main menu", WaitForLevel("LevelTitleScreen")},
      {"play", Tap(SDL_SCANCODE_RETURN)},
      {"lobby", WaitForLevel("Lobby")},
      {"join on WASD", Tap(SDL_SCANCODE_SPACE)},
      {"joined", Check([](Database& root) {
         return Value<std::string>(root, "GlobalVariables.PlayerInput0", "") == "WASD";
       })},
      {"ready", Tap(SDL_SCANCODE_SPACE)},
      {"to start match", Tap(SDL_SCANCODE_DOWN)},
      {"to start match", Tap(SDL_SCANCODE_DOWN)},
      {"start", Tap(SDL_SCANCODE_RETURN)},
      {"round", WaitForLevel("Arena")},
      {"play begins", Check([](Database& root) {
         return Value<double>(root, "GlobalVariables.ExplosionTimeRemaining", 0.0) > 0.0;
       })},
      {"remember where player 1 is", Check([&](Database& root) {
         startX = Value<double>(root, player0, 0.0);
         return true;
       })},
      // Right on the screen: the camera looks along +z, so that is towards -x in the world.
      {"walk right", Hold(SDL_SCANCODE_D, 12)},
      {"moved right on the screen", Check([&](Database& root) {
         EXPECT_LT(Value<double>(root, player0, 0.0), startX - 0.5);
         return true;
       })},
      {"pause", Tap(SDL_SCANCODE_ESCAPE)},
      {"paused", Check([&](Database& root) {
         sawPause = Value<bool>(root, "isGamePaused", false);
         sawSceneOverMenu = Value<double>(root, "GlobalVariables.DrawSceneOverMenu", 0.0) == 1.0;
         return sawPause;
       })},
      {"pause menu captured", Capture(images, "pause")},
      {"to main menu", Tap(SDL_SCANCODE_DOWN)},
      {"choose main menu", Tap(SDL_SCANCODE_RETURN)},
      {"back at the main menu", WaitForLevel("LevelTitleScreen")},
      {"unpaused", Check([](Database& root) {
         EXPECT_EQ(Value<double>(root, "GlobalVariables.DrawSceneOverMenu", 1.0), 0.0);
         return !Value<bool>(root, "isGamePaused", true);
       })},
  };
  GameRun run;
  EXPECT_EQ(PlayGame(run, std::move(steps), 2500), "") << "the run stopped waiting for this step";
  EXPECT_TRUE(sawPause);
  EXPECT_TRUE(sawSceneOverMenu);
  // The pause menu on the left, its first line (Resume) chosen, beside the paused arena that the
  // renderer draws at half size over the middle and the bottom right.
  ASSERT_EQ(images.count("pause"), 1u);
  const gfx::Image& pause = images["pause"];
  ASSERT_EQ(pause.width, kSmallWindowWidth);
  const glm::vec4 resume = pause.At(44, 99), floor = pause.At(200, 110);
  EXPECT_TRUE(resume.r > 0.6f && resume.g > 0.5f && resume.b < 0.3f);
  EXPECT_GT(floor.g, floor.r + 0.1f);
  EXPECT_GT(floor.g, floor.b + 0.3f);
  gfx::ExpectMatchesGoldenFile(pause, GRINDLE_GAME_GOLDEN_DIR, "game_pause");
}

}  // namespace
}  // namespace grindle::game

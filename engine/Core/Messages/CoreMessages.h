// Catalogue: the messages of the core framework: the window, the level manager and the resource
// manager. Each entry is M(constant, "exact name", (argument kinds), "argument names", "meaning");
// the name is spelled nowhere else in the engine. See Catalogue.h for how the lists are used.
#pragma once

#define GRINDLE_WINDOW_MESSAGES(M)                                                                 \
  M(kMinimizeWindow, "MinimizeWindow", (), "", "Minimises the window.")                            \
  M(kExitGame, "ExitGameMSG", (), "", "Closes the window, which ends the frame loop.")             \
  M(kShowWindow, "ShowWindow", (), "", "Shows the window in its normal state.")                    \
  M(kSetClientWindow, "SetClientWindow", (Whole, Whole), "width, height",                          \
    "The client area changed size (sent by the window).")                                          \
  M(kOnResize, "OnResize", (), "",                                                                 \
    "The active window was resized; the renderer resizes its targets.")                            \
  M(kPauseAudio, "PauseAudio", (), "", "The window was minimised or lost focus: all audio holds.") \
  M(kUnpauseMusic, "UnpauseMusic", (), "",                                                         \
    "The window came back: the music resumes (sent immediately).")                                 \
  M(kTogglePause, "TogglePauseMsg", (), "",                                                        \
    "Flips isGamePaused; the window sends it when it loses focus.")                                \
  M(kWindowDeactivated, "WindowDeactivated", (), "", "The window lost focus.")                     \
  M(kWindowActivated, "WindowActivated", (), "", "The window gained focus.")

#define GRINDLE_LEVEL_MESSAGES(M)                                                              \
  M(kMsgUnloadLevel, "msgUnloadLevel", (Text), "level", "The level switch leaves this level.") \
  M(kMsgLoadLevel, "msgLoadLevel", (Text), "level", "The level switch enters this level.")     \
  M(kLevelSwitched, "LevelSwitched", (Text, Text), "old level, new level",                     \
    "A level switch finished; either name is empty when there was none.")                      \
  M(kLevelInitialize, "LevelInitialize", (Text), "level",                                      \
    "A level's objects are about to be announced.")                                            \
  M(kLevelInitializeComplete, "LevelInitializeComplete", (Text), "level",                      \
    "Every object of the level has been announced.")                                           \
  M(kLevelObjectCreated, "msgLevelObjectCreated", (Object, Text, Text), "object, name, level", \
    "An object read from a level file exists.")                                                \
  M(kUnloadLevel, "UnloadLevel", (Text), "level", "A level's data is about to go away.")       \
  M(kUnloadAllLevels, "UnloadAllLevels", (), "", "Every level goes away (shutdown).")          \
  M(kObjectCreated, "msgObjectCreated", (Object, Text, Text), "object, name, level",           \
    "An object was created while the level runs (a script's request).")                        \
  M(kObjectDestroyed, "msgObjectDestroyed", (Text), "name",                                    \
    "An object of the current level goes away (the renderer reads a level handle before the "  \
    "name).")

#define GRINDLE_RESOURCE_MESSAGES(M)                       \
  M(kResourceReloaded, "ResourceReloaded", (Text), "file", \
    "A watched file changed on disk (path relative to the data folder, '/' separators).")

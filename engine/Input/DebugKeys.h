// Every debug key in one table: the key, what it does, and who handles it. The handlers use the
// named keys below, and docs/debug-keys.md is checked against the table, so a key cannot move in
// the code without the reference following. All of them act once per press, never on key repeat:
// the input system's keys through Keyboard::IsTriggered, the frame loop's through the window's
// first key-down only.
#pragma once

#include <string_view>

#include "Input/Keyboard.h"

namespace grindle::debugkeys {

// F1..F5: the cheats, in this order, sent to scripts.
inline constexpr int kFirstCheat = vk::kF1;
inline constexpr std::string_view kCheats[] = {"EndRound", "StartEarly", "NextLevel",
                                               "PreviousLevel", "MainMenu"};
inline constexpr int kSoundsMute = vk::kF1 + 6;     // F7
inline constexpr int kMusicMute = vk::kF1 + 7;      // F8
inline constexpr int kFreeCamera = vk::kF1 + 8;     // F9
inline constexpr int kScreenshot = vk::kF1 + 9;     // F10
inline constexpr int kDatabaseDump = vk::kF1 + 10;  // F11
inline constexpr int kStatistics = vk::kF1 + 11;    // F12
// '0'..'3': the renderer's debug views.
inline constexpr int kFirstDebugView = vk::kDigit0;
inline constexpr int kDebugViewCount = 4;

struct DebugKey {
  int key;  // virtual-key code
  std::string_view action;
  std::string_view handler;
};

inline constexpr DebugKey kTable[] = {
    {kFirstCheat + 0, "sends \"SCR:Cheat\" with \"EndRound\" to the scripts", "AI"},
    {kFirstCheat + 1, "sends \"SCR:Cheat\" with \"StartEarly\" to the scripts", "AI"},
    {kFirstCheat + 2, "sends \"SCR:Cheat\" with \"NextLevel\" to the scripts", "AI"},
    {kFirstCheat + 3, "sends \"SCR:Cheat\" with \"PreviousLevel\" to the scripts", "AI"},
    {kFirstCheat + 4, "sends \"SCR:Cheat\" with \"MainMenu\" to the scripts", "AI"},
    {kSoundsMute, "mutes or unmutes sound effects and voice-over", "audio"},
    {kMusicMute, "mutes or unmutes the music", "audio"},
    {kFreeCamera, "turns the free debug camera on or off (W/S/A/D move, left drag turns)",
     "renderer's free camera"},
    {kScreenshot, "saves the last frame as Screenshot-<date>-<time>.png", "frame loop"},
    {kDatabaseDump, "prints the whole database", "frame loop"},
    {kStatistics, "prints the last second's statistics", "frame loop"},
    {kFirstDebugView + 0, "sets the renderer's debug view index to 0", "renderer"},
    {kFirstDebugView + 1, "sets the renderer's debug view index to 1", "renderer"},
    {kFirstDebugView + 2, "sets the renderer's debug view index to 2", "renderer"},
    {kFirstDebugView + 3, "sets the renderer's debug view index to 3", "renderer"},
};

}  // namespace grindle::debugkeys

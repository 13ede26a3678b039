// Every engine message, declared once: `msg::kName` constants (script requests and events in
// `msg::scr`) carrying the exact name and argument kinds, and a table of all of them for the
// reference page and for checks. Send with msg::Post, read with `kName.Read<I>(args)`; never spell
// a message name as a literal elsewhere. Adding a message means adding one line to its system's
// list (CoreMessages.h, ScriptMessages.h, SystemMessages.h).
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "Core/Messages/CoreMessages.h"
#include "Core/Messages/MessageType.h"
#include "Core/Messages/ScriptMessages.h"
#include "Core/Messages/SystemMessages.h"

namespace grindle {
class Keyboard;
class Mouse;
class XboxControllerHub;
}  // namespace grindle

#define GRINDLE_KINDS(...) __VA_ARGS__
#define GRINDLE_DECLARE_MESSAGE(id, text, kinds, names, meaning) \
  inline constexpr MessageType<GRINDLE_KINDS kinds> id{text};

namespace grindle::msg {

GRINDLE_WINDOW_MESSAGES(GRINDLE_DECLARE_MESSAGE)
GRINDLE_LEVEL_MESSAGES(GRINDLE_DECLARE_MESSAGE)
GRINDLE_RESOURCE_MESSAGES(GRINDLE_DECLARE_MESSAGE)
GRINDLE_AI_MESSAGES(GRINDLE_DECLARE_MESSAGE)
GRINDLE_PHYSICS_MESSAGES(GRINDLE_DECLARE_MESSAGE)
GRINDLE_GRAPHICS_MESSAGES(GRINDLE_DECLARE_MESSAGE)
GRINDLE_AUDIO_MESSAGES(GRINDLE_DECLARE_MESSAGE)
GRINDLE_INPUT_MESSAGES(GRINDLE_DECLARE_MESSAGE)

namespace scr {
// Every script request and event starts with this.
inline constexpr std::string_view kPrefix = "SCR:";
GRINDLE_SCRIPT_EVENTS(GRINDLE_DECLARE_MESSAGE)
GRINDLE_SCRIPT_REQUESTS(GRINDLE_DECLARE_MESSAGE)
}  // namespace scr

// One catalogue row, as the reference page shows it.
struct MessageInfo {
  std::string_view group;
  std::string_view name;
  std::string kinds;           // "text, number"
  size_t arity;
  std::string_view argumentNames;  // "object name, x"
  std::string_view meaning;
};

// Every message, grouped by owning system in declaration order.
std::span<const MessageInfo> AllMessages();
// The row for `name`, or null when the name is not catalogued.
const MessageInfo* FindMessage(std::string_view name);

}  // namespace grindle::msg

#undef GRINDLE_DECLARE_MESSAGE

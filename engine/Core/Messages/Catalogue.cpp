#include "Core/Messages/Catalogue.h"

#include <vector>

namespace grindle::msg {
namespace {

#define GRINDLE_ROW_IN(space, id, text, names, meaning)                                        \
  MessageInfo{group, text, decltype(space::id)::KindList(), decltype(space::id)::kArity, names, \
              meaning},
#define GRINDLE_MESSAGE_ROW(id, text, kinds, names, meaning) \
  GRINDLE_ROW_IN(msg, id, text, names, meaning)
#define GRINDLE_SCRIPT_ROW(id, text, kinds, names, meaning) \
  GRINDLE_ROW_IN(scr, id, text, names, meaning)

std::vector<MessageInfo> BuildTable() {
  std::vector<MessageInfo> rows;
  const auto add = [&rows](std::initializer_list<MessageInfo> group) {
    rows.insert(rows.end(), group.begin(), group.end());
  };
  std::string_view group = "Window";
  add({GRINDLE_WINDOW_MESSAGES(GRINDLE_MESSAGE_ROW)});
  group = "Levels and objects";
  add({GRINDLE_LEVEL_MESSAGES(GRINDLE_MESSAGE_ROW)});
  group = "Resources";
  add({GRINDLE_RESOURCE_MESSAGES(GRINDLE_MESSAGE_ROW)});
  group = "AI";
  add({GRINDLE_AI_MESSAGES(GRINDLE_MESSAGE_ROW)});
  group = "Script events (AI to scripts)";
  add({GRINDLE_SCRIPT_EVENTS(GRINDLE_SCRIPT_ROW)});
  group = "Script requests (scripts to AI)";
  add({GRINDLE_SCRIPT_REQUESTS(GRINDLE_SCRIPT_ROW)});
  group = "Physics";
  add({GRINDLE_PHYSICS_MESSAGES(GRINDLE_MESSAGE_ROW)});
  group = "Graphics";
  add({GRINDLE_GRAPHICS_MESSAGES(GRINDLE_MESSAGE_ROW)});
  group = "Audio";
  add({GRINDLE_AUDIO_MESSAGES(GRINDLE_MESSAGE_ROW)});
  group = "Input";
  add({GRINDLE_INPUT_MESSAGES(GRINDLE_MESSAGE_ROW)});
  return rows;
}

#undef GRINDLE_SCRIPT_ROW
#undef GRINDLE_MESSAGE_ROW
#undef GRINDLE_ROW_IN

}  // namespace

std::span<const MessageInfo> AllMessages() {
  static const std::vector<MessageInfo> table = BuildTable();
  return table;
}

const MessageInfo* FindMessage(std::string_view name) {
  for (const MessageInfo& row : AllMessages()) {
    if (row.name == name) return &row;
  }
  return nullptr;
}

}  // namespace grindle::msg

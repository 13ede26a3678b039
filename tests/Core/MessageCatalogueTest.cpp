// The message catalogue: its reference page cannot drift from it, its rows are well formed,
// arguments travel and read back by the declared kinds, and a route table listens and unlistens
// the same names.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/Messages/Catalogue.h"
#include "Core/Messages/RouteTable.h"
#include "GeneratedDocs.h"

namespace grindle {
namespace {

std::vector<std::string> Split(std::string_view list) {
  std::vector<std::string> parts;
  while (!list.empty()) {
    const size_t comma = list.find(", ");
    parts.emplace_back(list.substr(0, comma));
    list = comma == std::string_view::npos ? std::string_view() : list.substr(comma + 2);
  }
  return parts;
}

// The catalogue as the reference page lists it: one table per owning system.
std::string RenderReference() {
  std::string page;
  std::string_view group;
  for (const msg::MessageInfo& row : msg::AllMessages()) {
    if (row.group != group) {
      group = row.group;
      page +=
          "\n### " + std::string(group) + "\n\n| message | arguments | meaning |\n|---|---|---|\n";
    }
    std::string arguments;
    const std::vector<std::string> names = Split(row.argumentNames);
    const std::vector<std::string> kinds = Split(row.kinds);
    for (size_t i = 0; i < names.size() && i < kinds.size(); ++i) {
      arguments += (i > 0 ? ", " : "") + names[i] + " (" + kinds[i] + ")";
    }
    page += "| \"" + std::string(row.name) + "\" | " + (arguments.empty() ? "—" : arguments) +
            " | " + std::string(row.meaning) + " |\n";
  }
  return page;
}

TEST(MessageCatalogue, TheReferencePageListsExactlyTheCatalogue) {
  ExpectGeneratedSection(std::string(GRINDLE_DOCS_DIR) + "/messages.md", "catalogue",
                         RenderReference());
}

TEST(MessageCatalogue, NamesAreUniqueEveryArgumentIsNamedAndScriptNamesStayInScriptGroups) {
  std::set<std::string_view> seen;
  for (const msg::MessageInfo& row : msg::AllMessages()) {
    EXPECT_TRUE(seen.insert(row.name).second) << row.name << " is declared twice";
    EXPECT_EQ(Split(row.argumentNames).size(), row.arity) << row.name;
    EXPECT_EQ(row.name.starts_with(msg::scr::kPrefix), row.group.starts_with("Script"))
        << row.name << " in " << row.group;
    EXPECT_EQ(msg::FindMessage(row.name), &row);
  }
  EXPECT_GT(seen.size(), 100u);
  EXPECT_EQ(msg::FindMessage("msgNobodyDeclared"), nullptr);
}

// Listens to `message` and keeps a clone of every argument of the last delivery.
struct Capture {
  Capture(MessageHandler& handler, std::string_view message) {
    handler.Listen(message, "Test", [this](MessageArgs args) {
      for (AbstractPointerBase* held : kept) AbstractPointerBase::Release(held);
      kept.clear();
      for (uint32_t i = 0; i < args.count; ++i) kept.push_back(args[i]->Clone());
    });
  }
  ~Capture() {
    for (AbstractPointerBase* held : kept) AbstractPointerBase::Release(held);
  }
  MessageArgs Args() const { return {kept.data(), static_cast<uint32_t>(kept.size())}; }

  std::vector<AbstractPointerBase*> kept;
};

TEST(MessageCatalogue, SendersBuildEachArgumentAsItsDeclaredKind) {
  MessageHandler handler;
  Database objects;
  const DataHandle<Database> ball = objects.Add<Database>("Ball");
  Capture velocity(handler, msg::kSetBodyVelocity.name);
  Capture window(handler, msg::kSetClientWindow.name);
  Capture created(handler, msg::kObjectCreated.name);
  Capture vibration(handler, msg::kSetControllerVibration.name);

  // Whatever numeric type a sender has, numbers travel as doubles; sizes as unsigned.
  msg::Post(handler, msg::kSetBodyVelocity, ball, 1, 2.5f, 3u);
  msg::Post(handler, msg::kSetClientWindow, 800, 600.0);
  msg::Post(handler, msg::kSetControllerVibration, 2.9, 0.5, 1);
  const std::string_view level = "Arena";
  msg::PostNow(handler, msg::kObjectCreated, ball, "Ball", level);
  EXPECT_EQ(handler.QueuedCount(), 3u);
  handler.Deliver(MessageHandler::kDeliverAll);

  const MessageArgs v = velocity.Args();
  ASSERT_EQ(v.count, 4u);
  EXPECT_EQ(msg::kSetBodyVelocity.Read<0>(v).Get(), ball.Get());
  for (uint32_t i = 1; i < 4; ++i) EXPECT_EQ(v.TypeCode(i), kTypeDouble) << i;
  EXPECT_EQ(*v.Get<double>(2), 2.5);
  EXPECT_EQ(msg::kSetBodyVelocity.Read<3>(v), 3.0);

  const MessageArgs w = window.Args();
  ASSERT_NE(w.Get<unsigned>(1), nullptr);
  EXPECT_EQ(*w.Get<unsigned>(0), 800u);
  EXPECT_EQ(msg::kSetClientWindow.Read<1>(w), 600.0);

  // The pad index is a 32-bit integer, truncated as a cast truncates.
  const MessageArgs pad = vibration.Args();
  ASSERT_NE(pad.Get<int32_t>(0), nullptr);
  EXPECT_EQ(*pad.Get<int32_t>(0), 2);
  EXPECT_EQ(msg::kSetControllerVibration.Read<2>(pad), 1.0);

  const MessageArgs c = created.Args();
  ASSERT_EQ(c.count, 3u);
  EXPECT_EQ(c.TypeCode(1), kTypeString);
  EXPECT_EQ(*msg::kObjectCreated.Read<2>(c), "Arena");
}

TEST(MessageCatalogue, EachKindReadsByItsOneRule) {
  Database objects;
  const DataHandle<Database> ball = objects.Add<Database>("Ball");
  struct Row {
    const char* what;
    AbstractPointerBase* argument;
    std::optional<double> real;
    double scriptNumber;
    const char* text;
    bool isObject;
  };
  const Row rows[] = {
      {"double", MakeArgument(2.5), 2.5, 2.5, nullptr, false},
      {"float", MakeArgument(1.5f), 1.5, 1.5, nullptr, false},
      {"int", MakeArgument(-3), -3.0, -3.0, nullptr, false},
      {"unsigned", MakeArgument(7u), 7.0, 7.0, nullptr, false},
      {"bool", MakeArgument(true), 1.0, 1.0, nullptr, false},
      // Only the script rule reads numbers written as text.
      {"numeric text", MakeArgument("3.25"), std::nullopt, 3.25, "3.25", false},
      {"other text", MakeArgument("left"), std::nullopt, 0.0, "left", false},
      {"object", MakeArgument(ball), std::nullopt, 0.0, nullptr, true},
      {"absent", nullptr, std::nullopt, 0.0, nullptr, false},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(msg::Real::Read(row.argument), row.real) << row.what;
    EXPECT_EQ(msg::ScriptNumber::Read(row.argument), row.scriptNumber) << row.what;
    EXPECT_EQ(msg::Text::Read(row.argument) != nullptr, row.text != nullptr) << row.what;
    EXPECT_EQ(msg::Object::Read(row.argument).IsValid(), row.isObject) << row.what;
    EXPECT_EQ(msg::TextOr(row.argument), row.text != nullptr ? row.text : "") << row.what;
    AbstractPointerBase::Release(row.argument);
  }
}

struct Counter {
  std::vector<std::string> heard;
};

constexpr msg::Route<Counter> kCounterRoutes[] = {
    {msg::kStopSong, [](Counter& c, MessageArgs) { c.heard.push_back("stop"); }},
    {msg::kPlaySong,
     [](Counter& c, MessageArgs a) { c.heard.push_back(msg::TextOr(a[1]) + " starts"); }},
};
constexpr msg::RouteTable<Counter> kCounterTable{"Counter", kCounterRoutes};

TEST(RouteTable, ListensAndUnlistensTheSameNamesUnderItsOwnerOnly) {
  MessageHandler handler;
  Counter counter;
  handler.Listen(msg::kStopSong.name, "Other",
                 [&counter](MessageArgs) { counter.heard.push_back("other"); });
  kCounterTable.Listen(handler, counter);
  EXPECT_EQ(handler.ListenerCount(msg::kStopSong.name), 2u);
  EXPECT_EQ(handler.ListenerCount(msg::kPlaySong.name), 1u);

  msg::Post(handler, msg::kPlaySong, 1.0, "Theme");
  msg::Post(handler, msg::kStopSong);
  handler.Deliver(MessageHandler::kDeliverAll);
  EXPECT_EQ(counter.heard, (std::vector<std::string>{"Theme starts", "other", "stop"}));

  kCounterTable.UnListen(handler);
  EXPECT_EQ(handler.ListenedNames(), std::vector<std::string_view>{msg::kStopSong.name});
}

TEST(RouteTable, AResolvedTargetIsLookedUpAtDeliveryAndANullOneSkipsTheCall) {
  MessageHandler handler;
  Counter first;
  Counter* current = nullptr;
  kCounterTable.ListenVia(handler, [&current] { return current; });
  msg::Post(handler, msg::kStopSong);
  handler.Deliver(MessageHandler::kDeliverAll);
  current = &first;
  msg::Post(handler, msg::kStopSong);
  handler.Deliver(MessageHandler::kDeliverAll);
  EXPECT_EQ(first.heard.size(), 1u);
  kCounterTable.UnListen(handler);
}

}  // namespace
}  // namespace grindle

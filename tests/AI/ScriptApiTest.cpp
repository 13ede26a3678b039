// The engine functions as scripts call them: database paths, value marshalling, message sending
// limits, the listener bridge and ray casts without a physics system.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "AI/Script.h"
#include "ScriptWorld.h"
#include "TestOutput.h"

namespace grindle::test {
namespace {

class ScriptApiTest : public testing::Test {
 protected:
  // Runs `startBody` as the crate's "Start" in the current level "Arena" and returns the output.
  std::string RunStart(const std::string& startBody, const std::string& extra = "") {
    world_.WriteScript("Probe.lua", extra + "\nfunction Start()\n" + startBody + "\nend\n");
    crate_ = world_.AddObject("Arena", "Crate", {"Probe.lua"});
    const DataHandle<Database> transform = crate_->Add<Database>("Transform");
    transform->Add<double>("PositionX", 4.5);
    crate_->Add<std::string>("Label", "wooden");
    crate_->Add<bool>("Flag", true);
    crate_->Add<int>("Counter", 7);
    return CaptureStdout([&] { world_.AnnounceLevel("Arena"); });
  }

  Database root_;
  MessageHandler handler_;
  ScriptWorld world_{root_, handler_};
  DataHandle<Database> crate_;
};

TEST_F(ScriptApiTest, FindDataReadsNumbersTextsAndFlagsThroughSpecialPathParts) {
  RunStart(R"(
  SetData("GlobalVariables.px", FindData("*CurrentObject.Transform.PositionX"))
  SetData("GlobalVariables.level", FindData("*CurrentLevel.*Name"))
  SetData("GlobalVariables.object", FindData("*CurrentObject.*Name"))
  SetData("GlobalVariables.label", FindData("*CurrentObject.Label"))
  SetData("GlobalVariables.flag", FindData("*CurrentObject.Flag"))
  SetData("GlobalVariables.viaLevel", FindData("*CurrentLevel.GameObjects.Crate.Transform.PositionX"))
  SetData("GlobalVariables.intResults", select('#', FindData("*CurrentObject.Counter")))
  SetData("GlobalVariables.missingResults", select('#', FindData("No.Such.Path")))
  SetData("GlobalVariables.missingKeyResults", select('#', FindData("*CurrentObject.Nothing")))
  SetData("GlobalVariables.dbResults", select('#', FindData("*CurrentObject.Transform")))
  SetData("GlobalVariables.rootLevel", FindData("CurrentLevel"))
)");
  EXPECT_EQ(world_.Global("px"), 4.5);
  EXPECT_EQ(world_.Global("viaLevel"), 4.5);
  EXPECT_EQ(world_.GlobalText("level"), "Arena");
  EXPECT_EQ(world_.GlobalText("object"), "Crate");
  EXPECT_EQ(world_.GlobalText("label"), "wooden");
  EXPECT_EQ(world_.GlobalText("rootLevel"), "Arena");
  const auto flag = root_.Find<Database>("GlobalVariables")->Find<bool>("flag");
  ASSERT_TRUE(flag);
  EXPECT_TRUE(*flag);
  for (const char* none : {"intResults", "missingResults", "missingKeyResults", "dbResults"}) {
    EXPECT_EQ(world_.Global(none), 0.0) << none;
  }
}

TEST_F(ScriptApiTest, SetDataWritesByLuaTypeAndRefusesWhatItCannotWrite) {
  RunStart("");
  const DataHandle<double> px = crate_->Find<Database>("Transform")->Find<double>("PositionX");
  ASSERT_TRUE(px);
  world_.WriteScript("Writer.lua", R"(
function Start()
  SetData("Lives", 3)
  SetData("GlobalVariables.Name", "abc")
  SetData("GlobalVariables.On", false)
  SetData("*CurrentLevel.GameObjects.Crate.Transform.PositionX", 9)
  SetData("*CurrentLevel.GameObjects.Crate.Label", 12)
  SetData("GlobalVariables.Only")
  SetData("Nowhere.At.All", 5)
  SetData("GlobalVariables.", 5)
  SetData("GlobalVariables.Table", {})
  SetData("Levels", 7)
end)");
  world_.AddObject("Arena", "Writer", {"Writer.lua"});
  const std::string out = CaptureStdout([&] {
    handler_.SendArgs("msgObjectCreated",
                      root_.Find<Database>("Levels")
                          ->Find<Database>("Arena")
                          ->Find<Database>("GameObjects")
                          ->Find<Database>("Writer"),
                      "Writer", "Arena");
    world_.Deliver();
  });

  ASSERT_TRUE(root_.Find<double>("Lives"));
  EXPECT_EQ(*root_.Find<double>("Lives"), 3.0);
  EXPECT_EQ(world_.GlobalText("Name"), "abc");
  ASSERT_TRUE(root_.Find<Database>("GlobalVariables")->Find<bool>("On"));
  EXPECT_FALSE(*root_.Find<Database>("GlobalVariables")->Find<bool>("On"));
  // An existing number is written in place, so handles other systems hold stay good.
  EXPECT_EQ(*px, 9.0);
  // A plain value of another kind is replaced by the new kind.
  ASSERT_TRUE(crate_->Find<double>("Label"));
  EXPECT_EQ(*crate_->Find<double>("Label"), 12.0);
  EXPECT_NE(out.find("Wrong number of args passed to set database!"), std::string::npos) << out;
  EXPECT_FALSE(root_.FindEntry("Nowhere"));
  EXPECT_FALSE(root_.Find<Database>("GlobalVariables")->FindEntry("Table"));
  EXPECT_FALSE(root_.Find<Database>("GlobalVariables")->FindEntry("Only"));
  EXPECT_TRUE(root_.Find<Database>("Levels"));
  EXPECT_NE(out.find("SetData: \"Levels\" holds a database"), std::string::npos) << out;
}

struct Received {
  std::vector<uint32_t> codes;
  std::vector<std::string> texts;
  std::vector<double> numbers;
};

Received Record(MessageArgs args) {
  Received r;
  for (uint32_t i = 0; i < args.count; ++i) {
    r.codes.push_back(args.TypeCode(i));
    if (const std::string* t = args.Get<std::string>(i)) r.texts.push_back(*t);
    if (const double* d = args.Get<double>(i)) r.numbers.push_back(*d);
  }
  return r;
}

TEST_F(ScriptApiTest, SendConvertsValuesAndRefusesTooManyArguments) {
  std::vector<Received> queued;
  std::vector<Received> immediate;
  size_t queueWhenImmediate = 99;
  handler_.Listen("Probe", "Test", [&](MessageArgs args) { queued.push_back(Record(args)); });
  handler_.Listen("ProbeNow", "Test", [&](MessageArgs args) {
    immediate.push_back(Record(args));
    queueWhenImmediate = queued.size();
  });
  const std::string out = RunStart(R"(
  Send("Probe", 1, "two", true, 4)
  Send("Probe", 1, 2, 3, 4, 5)
  Send("Probe")
  SendImmediate("ProbeNow", 1, "2", 3)
  SendImmediate("ProbeNow", 1, 2, 3, 4)
  SayHey(" from the crate")
)");
  ASSERT_EQ(queued.size(), 2u);
  EXPECT_EQ(queued[0].codes,
            (std::vector<uint32_t>{kTypeDouble, kTypeString, kTypeString, kTypeDouble}));
  EXPECT_EQ(queued[0].numbers, (std::vector<double>{1.0, 4.0}));
  // A boolean is no string to Lua's conversion, so it travels as the empty text.
  EXPECT_EQ(queued[0].texts, (std::vector<std::string>{"two", ""}));
  EXPECT_TRUE(queued[1].codes.empty());
  ASSERT_EQ(immediate.size(), 1u);
  EXPECT_EQ(queueWhenImmediate, 0u);  // delivered during the call, before anything queued
  EXPECT_EQ(immediate[0].texts, (std::vector<std::string>{"2"}));
  EXPECT_NE(out.find("Can't send message with > 4 arguments\n"), std::string::npos) << out;
  EXPECT_NE(out.find("Can't send immediate message with > 3 arguments\n"), std::string::npos)
      << out;
  EXPECT_NE(out.find("Hey Guys! from the crate\n"), std::string::npos) << out;
}

TEST_F(ScriptApiTest, ListenerBridgeCallsTheScriptWithEveryArgumentAndSurvivesErrors) {
  RunStart(R"(
  Listen("Ping", "OnPing")
  Listen("Boom", "OnBoom")
  Listen("Gone", "OnPing")
  UnListen("Gone", "OnPing")
)",
           R"(
function OnPing(...)
  local a, b, c = ...
  SetData("GlobalVariables.count", select('#', ...))
  SetData("GlobalVariables.a", a)
  SetData("GlobalVariables.b", b)
  SetData("GlobalVariables.cIsNil", c == nil)
end
function OnBoom() error("boom") end
)");
  EXPECT_EQ(handler_.ListenerCount("Gone"), 0u);
  const std::string out = CaptureStdout([&] {
    handler_.SendArgs("Ping", "text", 2.5, true);
    handler_.SendArgs("Boom");
    handler_.SendArgs("Ping", "again");
    world_.Deliver();
  });
  EXPECT_NE(out.find("Attempt to pass wrong type of value to lua via message\n"), std::string::npos)
      << out;
  EXPECT_NE(out.find("Error executing lua function \"OnBoom\" : Scripts/Probe.lua:9: boom\n"),
            std::string::npos)
      << out;
  // The last Ping ran after the error: one argument this time.
  EXPECT_EQ(world_.Global("count"), 1.0);
  EXPECT_EQ(world_.GlobalText("a"), "again");
  EXPECT_EQ(world_.Global("b"), 2.5);  // left from the first Ping, which had all three

  // A closed state's listeners go with it.
  handler_.SendArgs("UnloadLevel", "Arena");
  world_.Deliver();
  EXPECT_EQ(handler_.ListenerCount("Ping"), 0u);
  handler_.SendArgs("Ping", "after");
  world_.Deliver();
  EXPECT_EQ(world_.GlobalText("a"), "again");
}

TEST_F(ScriptApiTest, RayCastWithoutAPhysicsSystemMisses) {
  RunStart(R"(
  SetData("GlobalVariables.distance", RayCast(0, 10, 0, 0, -1, 0))
  SetData("GlobalVariables.name", RayCastName(0, 10, 0, 0, -1, 0))
)");
  EXPECT_EQ(world_.Global("distance"), -1.0);
  EXPECT_EQ(world_.GlobalText("name"), "");
}

}  // namespace
}  // namespace grindle::test

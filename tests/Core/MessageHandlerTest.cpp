#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Core/MessageHandler.h"
#include "TestOutput.h"

namespace grindle {
namespace {

class MessageHandlerTest : public testing::Test {
 protected:
  // Records "<listener>:<message>" for every call.
  void Record(std::string_view message, std::string listener) {
    handler.Listen(message, listener, [this, listener, name = std::string(message)](MessageArgs) {
      calls.push_back(listener + ":" + name);
    });
  }

  MessageHandler handler;
  std::vector<std::string> calls;
};

TEST_F(MessageHandlerTest, QueuedMessagesWaitForDeliverWhichTakesThemInOrderUpToItsLimit) {
  Record("A", "x");
  Record("B", "x");
  handler.Send("A");
  handler.Send("B");
  handler.Send("A");
  EXPECT_TRUE(calls.empty());
  handler.Deliver(0);
  EXPECT_TRUE(calls.empty());
  handler.Deliver(2);
  EXPECT_EQ(calls, (std::vector<std::string>{"x:A", "x:B"}));
  EXPECT_EQ(handler.QueuedCount(), 1u);
  handler.Deliver(MessageHandler::kDeliverAll);
  EXPECT_EQ(calls.size(), 3u);
  EXPECT_EQ(handler.QueuedCount(), 0u);
}

TEST_F(MessageHandlerTest, ImmediateSendsReachTheListenersAtOnceInRegistrationOrder) {
  Record("M", "first");
  Record("M", "second");
  handler.SendImmediate("M");
  EXPECT_EQ(calls, (std::vector<std::string>{"first:M", "second:M"}));
  EXPECT_EQ(handler.QueuedCount(), 0u);
}

TEST_F(MessageHandlerTest, AMessageNobodyHearsIsDroppedAndTheNextStillArrives) {
  Record("Heard", "x");
  handler.Send("Unheard");
  handler.Send("Heard");
  handler.Deliver(MessageHandler::kDeliverAll);
  EXPECT_EQ(calls, (std::vector<std::string>{"x:Heard"}));
  EXPECT_EQ(handler.TakeHandledCount(), 2u);
  EXPECT_EQ(handler.TakeHandledCount(), 0u);
}

TEST_F(MessageHandlerTest, MessagesSentDuringDeliveryAreDeliveredInTheSameCall) {
  int echoes = 0;
  handler.Listen("Echo", "x", [&](MessageArgs) {
    if (++echoes < 3) handler.Send("Echo");
  });
  handler.Send("Echo");
  handler.Deliver(MessageHandler::kDeliverAll);
  EXPECT_EQ(echoes, 3);
}

TEST_F(MessageHandlerTest, ArgumentsArriveTypedAndInOrderAndAreReleasedWhenDeliveryEnds) {
  std::vector<uint32_t> codes;
  handler.Listen("PlaySong", "audio", [&](MessageArgs args) {
    for (uint32_t i = 0; i < args.count; ++i) codes.push_back(args.TypeCode(i));
    EXPECT_EQ(*args.Get<double>(0), 0.5);
    EXPECT_EQ(args.Get<int>(0), nullptr);
    EXPECT_EQ(*args.Get<std::string>(1), "MenuTheme");
    EXPECT_EQ(*args.Get<unsigned int>(2), 720u);
  });
  handler.SendArgs("PlaySong", 0.5, "MenuTheme", 720u);
  handler.Deliver(MessageHandler::kDeliverAll);
  EXPECT_EQ(codes, (std::vector<uint32_t>{0, 2, 7}));

  // Also when nobody listens: every block the send took goes back.
  MemoryManager* pool = CurrentMemoryRegistry().Find(sizeof(AbstractPointer<double>));
  ASSERT_NE(pool, nullptr);
  const uint32_t before = pool->BlocksInUse();
  handler.SendArgs("Nobody", 1.0, 2.0);
  EXPECT_GE(pool->BlocksInUse(), before + 2);
  handler.Deliver(MessageHandler::kDeliverAll);
  EXPECT_EQ(pool->BlocksInUse(), before);
}

TEST_F(MessageHandlerTest, UnListenRemovesOnlyThatOwnerEvenFromAListenerThatIsRunning) {
  Record("M", "a");
  Record("M", "b");
  handler.UnListen("M", "a");
  EXPECT_EQ(handler.ListenerCount("M"), 1u);
  handler.SendImmediate("M");
  EXPECT_EQ(calls, (std::vector<std::string>{"b:M"}));

  calls.clear();
  handler.Listen("N", "self", [&](MessageArgs) {
    calls.push_back("self");
    handler.UnListen("N", "self");
    handler.UnListen("N", "later");
    Record("N", "added");
  });
  Record("N", "later");
  handler.SendImmediate("N");
  EXPECT_EQ(calls, (std::vector<std::string>{"self"}));
  handler.SendImmediate("N");
  EXPECT_EQ(calls, (std::vector<std::string>{"self", "added:N"}));
}

TEST_F(MessageHandlerTest, ForwarderResendsUnderItsTargetName) {
  std::string seen;
  handler.Listen("Target", "x", [&](MessageArgs args) { seen = *args.Get<std::string>(0); });
  handler.Listen("Source", std::make_unique<MessageForwarder>(handler, "Target"), "fwd");
  handler.SendArgs("Source", "payload");
  handler.Deliver(MessageHandler::kDeliverAll);
  EXPECT_EQ(seen, "payload");
}

TEST_F(MessageHandlerTest, AListenerThatDeliversGoesOnWithTheMessagesBehindItsOwn) {
  handler.Listen("Outer", "nested", [&](MessageArgs args) {
    calls.push_back("outer:" + *args.Get<std::string>(0));
    handler.Send("Later");
    handler.Deliver(MessageHandler::kDeliverAll);
  });
  Record("Inner", "x");
  Record("Later", "x");
  handler.SendArgs("Outer", std::string("payload"));
  handler.Send("Inner");
  handler.Deliver(MessageHandler::kDeliverAll);
  EXPECT_EQ(calls, (std::vector<std::string>{"outer:payload", "x:Inner", "x:Later"}));
  EXPECT_EQ(handler.QueuedCount(), 0u);
}

TEST(MessageListenerDeathTest, ABlankMessageWithAPointerAssertsOnTheNameAlone) {
  EXPECT_DEATH(
      {
        StdoutToStderr();
        int bound = 0;
        MessageListener listener(nullptr, 0, &bound, "", "owner");
      },
      "Cannot have blank message(.|\n)*The expression sMessage_ == \"\" failed\\.");
}

}  // namespace
}  // namespace grindle

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

TEST_F(MessageHandlerTest, QueuedMessagesWaitForDeliverAndKeepTheirOrder) {
  Record("A", "x");
  Record("B", "x");
  handler.Send("A");
  handler.Send("B");
  EXPECT_TRUE(calls.empty());
  handler.Deliver(MessageHandler::kDeliverAll);
  EXPECT_EQ(calls, (std::vector<std::string>{"x:A", "x:B"}));
  EXPECT_EQ(handler.QueuedCount(), 0u);
}

TEST_F(MessageHandlerTest, ListenersRunInRegistrationOrder) {
  Record("M", "first");
  Record("M", "second");
  handler.SendImmediate("M");
  EXPECT_EQ(calls, (std::vector<std::string>{"first:M", "second:M"}));
}

TEST_F(MessageHandlerTest, DeliverWithALimitDeliversThatMany) {
  Record("M", "x");
  for (int i = 0; i < 3; ++i) handler.Send("M");
  handler.Deliver(1);
  EXPECT_EQ(calls.size(), 1u);
  EXPECT_EQ(handler.QueuedCount(), 2u);
  handler.Deliver(0);
  EXPECT_EQ(calls.size(), 1u);
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

TEST_F(MessageHandlerTest, ImmediateSendsDoNotQueue) {
  Record("Now", "x");
  handler.SendImmediate("Now");
  EXPECT_EQ(calls.size(), 1u);
  EXPECT_EQ(handler.QueuedCount(), 0u);
}

TEST_F(MessageHandlerTest, ArgumentsArriveTypedAndInOrder) {
  double number = 0;
  std::string text;
  uint32_t codes[3] = {};
  handler.Listen("PlaySong", "audio", [&](MessageArgs args) {
    ASSERT_EQ(args.count, 3u);
    for (uint32_t i = 0; i < 3; ++i) codes[i] = args.TypeCode(i);
    number = *args.Get<double>(0);
    text = *args.Get<std::string>(1);
    EXPECT_EQ(args.Get<int>(0), nullptr);
    EXPECT_EQ(*args.Get<unsigned int>(2), 720u);
  });
  handler.SendArgs("PlaySong", 0.5, "MenuTheme", 720u);
  handler.Deliver(MessageHandler::kDeliverAll);
  EXPECT_EQ(number, 0.5);
  EXPECT_EQ(text, "MenuTheme");
  EXPECT_EQ(codes[0], 0u);
  EXPECT_EQ(codes[1], 2u);
  EXPECT_EQ(codes[2], 7u);
}

TEST_F(MessageHandlerTest, ArgumentsAreReleasedWhenDeliveryEnds) {
  handler.SendArgs("Nobody", 1.0, 2.0);
  MemoryManager* pool = CurrentMemoryRegistry().Find(sizeof(AbstractPointer<double>));
  ASSERT_NE(pool, nullptr);
  const uint32_t inUse = pool->BlocksInUse();
  handler.Deliver(MessageHandler::kDeliverAll);
  EXPECT_EQ(pool->BlocksInUse(), inUse - 2);
}

TEST_F(MessageHandlerTest, UnListenRemovesOnlyThatOwner) {
  Record("M", "a");
  Record("M", "b");
  handler.UnListen("M", "a");
  EXPECT_EQ(handler.ListenerCount("M"), 1u);
  handler.SendImmediate("M");
  EXPECT_EQ(calls, (std::vector<std::string>{"b:M"}));
}

TEST_F(MessageHandlerTest, ListenersMayListenAndUnlistenWhileTheyRun) {
  handler.Listen("M", "self", [&](MessageArgs) {
    calls.push_back("self");
    handler.UnListen("M", "self");
    handler.UnListen("M", "later");
    Record("M", "added");
  });
  Record("M", "later");
  handler.SendImmediate("M");
  EXPECT_EQ(calls, (std::vector<std::string>{"self"}));
  handler.SendImmediate("M");
  EXPECT_EQ(calls, (std::vector<std::string>{"self", "added:M"}));
}

TEST_F(MessageHandlerTest, ForwarderResendsUnderItsTargetName) {
  std::string seen;
  handler.Listen("Target", "x", [&](MessageArgs args) { seen = *args.Get<std::string>(0); });
  handler.Listen("Source", std::make_unique<MessageForwarder>(handler, "Target"), "fwd");
  handler.SendArgs("Source", "payload");
  handler.Deliver(MessageHandler::kDeliverAll);
  EXPECT_EQ(seen, "payload");
}

TEST(MessageListenerDeathTest, ABlankMessageWithAPointerAsserts) {
  EXPECT_DEATH(
      {
        int bound = 0;
        MessageListener listener(nullptr, 0, &bound, "", "owner");
      },
      "Cannot have blank message");
}

}  // namespace
}  // namespace grindle

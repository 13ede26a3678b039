#include <string>

#include "Core/Assert.h"
#include "Core/MessageHandler.h"
#include "Core/UnitTests/CoreUnitTestDrivers.h"

namespace grindle {
namespace {

constexpr const char* kMessage = "SomeMessage";
constexpr const char* kOwner = "UnitTests";

bool message_test_add_listener() {
  MessageHandler handler;
  GRINDLE_ASSERT(handler.ListenerCount(kMessage) != 0,
                 "Listener list has something in it when it shouldn't");
  handler.Listen(kMessage, kOwner, [](MessageArgs) {});
  GRINDLE_ASSERT(handler.ListenerCount(kMessage) == 0, "Listener didn't add successfully");
  handler.UnListen(kMessage, kOwner);
  return handler.ListenerCount(kMessage) == 0;
}

// What the listener saw of the message it heard.
struct Heard {
  int calls = 0;
  uint32_t count = 0;
  double first = 0.0;
  std::string second;
  double third = 0.0;
};

// Queues the message with `values` and delivers it to one listener; nothing arrives before Deliver.
template <class... T>
Heard SendAndDeliver(T... values) {
  MessageHandler handler;
  Heard heard;
  handler.Listen(kMessage, kOwner, [&heard](MessageArgs args) {
    ++heard.calls;
    heard.count = args.count;
    if (const double* first = args.Get<double>(0)) heard.first = *first;
    if (const std::string* second = args.Get<std::string>(1)) heard.second = *second;
    if (const double* third = args.Get<double>(2)) heard.third = *third;
  });
  handler.SendArgs(kMessage, values...);
  if (heard.calls != 0) return {};
  handler.Deliver(MessageHandler::kDeliverAll);
  return heard;
}

bool message_test_call_function_one_arg() {
  const Heard heard = SendAndDeliver(1.5);
  return heard.calls == 1 && heard.count == 1 && heard.first == 1.5;
}

bool message_test_call_function_two_arg() {
  const Heard heard = SendAndDeliver(2.5, std::string("two"));
  return heard.calls == 1 && heard.count == 2 && heard.first == 2.5 && heard.second == "two";
}

bool message_test_call_function_three_arg() {
  const Heard heard = SendAndDeliver(3.5, std::string("three"), -3.0);
  return heard.calls == 1 && heard.count == 3 && heard.first == 3.5 && heard.second == "three" &&
         heard.third == -3.0;
}

}  // namespace

MessageUnitTestDriver::MessageUnitTestDriver() {
  AddTest("message_test_add_listener", message_test_add_listener);
  AddTest("message_test_call_function_one_arg", message_test_call_function_one_arg);
  AddTest("message_test_call_function_two_arg", message_test_call_function_two_arg);
  AddTest("message_test_call_function_three_arg", message_test_call_function_three_arg);
}

}  // namespace grindle

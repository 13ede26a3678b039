#include "Platform/Interrupts.h"

#include <signal.h>
#include <unistd.h>

#include <atomic>

namespace grindle::platform {
namespace {

struct sigaction gPrevious[2];
std::atomic<int> gInterrupts{0};

int SlotOf(int signal) { return signal == SIGINT ? 0 : 1; }

void Install(int signal);

void EndNow(int signal) {
  struct sigaction fallback {};
  fallback.sa_handler = SIG_DFL;
  sigaction(signal, &fallback, nullptr);
  raise(signal);
}

// Async-signal-safe throughout: a counter, write, sigaction and raise.
void OnInterrupt(int signal) {
  const struct sigaction& previous = gPrevious[SlotOf(signal)];
  if (previous.sa_handler == SIG_IGN) return;
  const bool isHandled = previous.sa_handler != SIG_DFL && (previous.sa_flags & SA_SIGINFO) == 0;
  if (!isHandled) return EndNow(signal);  // nobody would turn it into a quit request
  if (gInterrupts.fetch_add(1) > 0) {
    static constexpr char kText[] = "\nSecond interrupt: ending at once\n";
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kText, sizeof kText - 1);
    return EndNow(signal);
  }
  previous.sa_handler(signal);
  Install(signal);  // SDL's handler puts itself back in place; ours must stay in front
}

void Install(int signal) {
  struct sigaction action {};
  action.sa_handler = OnInterrupt;
  sigemptyset(&action.sa_mask);
  sigaction(signal, &action, nullptr);
}

}  // namespace

void EndOnSecondInterrupt() {
  for (int signal : {SIGINT, SIGTERM}) {
    struct sigaction current {};
    sigaction(signal, nullptr, &current);
    if (current.sa_handler == OnInterrupt) continue;
    gPrevious[SlotOf(signal)] = current;
    Install(signal);
  }
}

}  // namespace grindle::platform

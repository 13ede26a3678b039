// Waiting in a test for what another thread or the file watcher does: `condition` is polled every
// few milliseconds until it holds, and false once `limit` has gone by, so that a fault fails the
// test instead of hanging it. The default is generous and costs nothing when things work: on a
// machine running several builds beside the suite the watcher's round trip has taken seconds.
#pragma once

#include <chrono>
#include <thread>

template <class F>
bool Eventually(F&& condition, std::chrono::milliseconds limit = std::chrono::seconds(10)) {
  const auto deadline = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

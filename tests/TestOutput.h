// Captures what a piece of code prints on standard output (life-cycle lines, dumps), and counts
// how often a text occurs in it.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

template <class F>
std::string CaptureStdout(F&& body) {
  std::fflush(stdout);
  testing::internal::CaptureStdout();
  body();
  std::fflush(stdout);
  return testing::internal::GetCapturedStdout();
}

// Occurrences of `text` in `printed`, overlapping ones included.
inline size_t CountOf(const std::string& printed, const std::string& text) {
  size_t count = 0;
  for (size_t at = printed.find(text); at != std::string::npos; at = printed.find(text, at + 1))
    ++count;
  return count;
}

#include <unistd.h>

// Inside a death test: send standard output to standard error, where the death test looks, so the
// assertion routine's printed lines can be matched along with its box text.
inline void StdoutToStderr() {
  std::fflush(stdout);
  dup2(STDERR_FILENO, STDOUT_FILENO);
}

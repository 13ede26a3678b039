// Captures what a piece of code prints on standard output (life-cycle lines, dumps).
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

#include <unistd.h>

// Inside a death test: send standard output to standard error, where the death test looks, so the
// assertion routine's printed lines can be matched along with its box text.
inline void StdoutToStderr() {
  std::fflush(stdout);
  dup2(STDERR_FILENO, STDOUT_FILENO);
}

// Runs a shell command line as a child process for tests of whole programs: what it printed on
// standard output (and standard error where the command line redirects it) and how it ended.
#pragma once

#include <sys/wait.h>

#include <cstdio>
#include <string>

struct ProcessResult {
  int status = -1;  // the exit status, or 128 + the signal that ended it
  std::string output;
};

inline ProcessResult RunProcess(const std::string& commandLine) {
  ProcessResult result;
  FILE* pipe = popen(commandLine.c_str(), "r");
  if (pipe == nullptr) return result;
  char buffer[4096];
  for (size_t read; (read = fread(buffer, 1, sizeof(buffer), pipe)) > 0;)
    result.output.append(buffer, read);
  const int status = pclose(pipe);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return result;
}

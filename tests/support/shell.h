// Commands of the shell.
#pragma once

#include <sys/wait.h>

#include <cstdio>
#include <string>

struct ShellResult {
  int status = -1;
  std::string out;
};

// A word for the shell, whatever stands in it.
inline std::string Quoted(const std::string& word) {
  std::string quoted = "'";
  for (const char letter : word) quoted += letter == '\'' ? "'\\''" : std::string(1, letter);
  return quoted + "'";
}

inline ShellResult Shell(const std::string& command) {
  ShellResult result;
  FILE* const pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return result;
  char buffer[4096];
  while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, pipe)) result.out.append(buffer, count);
  result.status = WEXITSTATUS(pclose(pipe));
  return result;
}
